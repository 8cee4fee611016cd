// Several streams, and folders of them, in one run.

#include "tests/bench/DeviceRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace benchtest {

namespace {

namespace fs = std::filesystem;

/// A folder with the streams of the samples that load, twice over, and a broken one.
class ManyStreamsTest : public testing::Test {
  protected:
    ManyStreamsTest() {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
        fs::create_directories(folder_ / "deep");
        fs::copy(SamplesFolder() + L"streams\\channels.xml", folder_ / "a.xml");
        fs::copy(SamplesFolder() + L"streams\\damaged.xml", folder_ / "broken.xml");
        fs::copy(SamplesFolder() + L"streams\\full.xml", folder_ / "deep" / "c.xml");
        fs::copy(SamplesFolder() + L"streams\\oddities.xml", folder_ / "odd.xml");
    }

    std::wstring Streams() const { return folder_.wstring(); }
    fs::path Results() const { return folder_.parent_path() / "many_results"; }

    Json Into(const wchar_t* command, DWORD status) const {
        std::error_code ignored;
        fs::remove_all(Results(), ignored);
        return Bench({command, Streams(), L"--out", Results().wstring()}, status);
    }

  private:
    fs::path folder_ = fs::path(ScratchFolder()) / "many";
};

std::vector<std::string> FilesBelow(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            names.push_back(entry.path().lexically_relative(folder).generic_string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

TEST_F(ManyStreamsTest, ABrokenOneDoesNotStopTheOthers) {
    const Json run = Into(L"save", 1);
    EXPECT_EQ((Json{{"files", 4}, {"done", 2}, {"withFaults", 1}, {"failed", 1}}), run["summary"]);
    EXPECT_EQ((std::vector<std::string>{"a.xml", "deep/c.xml", "odd.xml"}), FilesBelow(Results()));
    ASSERT_EQ(4U, run["files"].size());
    EXPECT_EQ(nullptr, run["files"][0]["error"]);
    EXPECT_EQ("0x800A005B", run["files"][1]["error"]["hresult"]);
    EXPECT_EQ(8U, run["files"][3]["boxes"].size());
}

TEST_F(ManyStreamsTest, ResultsAreThoseOfSingleRuns) {
    Into(L"export", 1);
    const std::wstring single = ScratchFolder() + L"single.txt";
    ASSERT_EQ(0U, RunBench({L"export", L"full", L"-o", single}).status);
    EXPECT_EQ(ReadFileBytes(single), ReadFileBytes((Results() / "deep" / "c.txt").wstring()));
    Into(L"interop", 1);
    EXPECT_EQ((std::vector<std::string>{"a.xml", "deep/c.xml", "odd.xml"}), FilesBelow(Results()));
}

TEST_F(ManyStreamsTest, PicturesOfBlocksAreNamedAsPictures) {
    std::error_code ignored;
    fs::remove_all(Results(), ignored);
    Bench({L"sheet", Streams() + L"\\a.xml", L"channels", L"--svg", L"--out", Results().wstring()});
    EXPECT_EQ((std::vector<std::string>{"a.svg", "channels.svg"}), FilesBelow(Results()));
}

TEST_F(ManyStreamsTest, EachHasALineAndThenComesASummary) {
    const Outcome run = RunBench({L"save", Streams() + L"\\a.xml", Streams() + L"\\broken.xml", L"channels"});
    EXPECT_EQ(1U, run.status);
    EXPECT_EQ(
        Narrow(Streams()) + "\\a.xml: done\n" + Narrow(Streams()) +
            "\\broken.xml: failed\nchannels: done\n\n3 streams: 2 done, 0 with faults in boxes, 1 failed.\n",
        run.out);
    EXPECT_EQ(
        "tambench: " + Narrow(Streams()) +
            "\\broken.xml: LoadFromXmlStream: 0x800A005B Object variable or With block variable not set\n",
        run.err.substr(0, run.err.find('\n') + 1));
    // A finding names its file once.
    const std::string finding = run.err.substr(run.err.find('\n') + 1);
    const std::string begin = "tambench: " + Narrow(Streams()) + "\\broken.xml:";
    ASSERT_TRUE(finding.starts_with(begin)) << finding;
    EXPECT_EQ(0U, finding.find_first_of("123456789", begin.size()) - begin.size()) << finding;
}

TEST_F(ManyStreamsTest, NoProgressIsShownWhereNobodyLooks) {
    const Outcome run = RunBench({L"export", L"channels", L"full"});
    EXPECT_EQ(0U, run.status);
    EXPECT_EQ("", run.err);
    EXPECT_EQ("channels: done\nfull: done\n\n2 streams: 2 done, 0 with faults in boxes, 0 failed.\n",
              run.out);
}

TEST_F(ManyStreamsTest, BoxesAreToleratedWhenAsked) {
    const Json run = Bench({L"save", L"channels", L"oddities", L"--tolerate-boxes"});
    EXPECT_EQ((Json{{"files", 2}, {"done", 2}, {"withFaults", 0}, {"failed", 0}}), run["summary"]);
}

TEST_F(ManyStreamsTest, OneFileForSeveralIsWrongUsage) {
    for (const std::vector<std::wstring>& arguments :
         {std::vector<std::wstring>{L"save", L"channels", L"full", L"-o", L"x.xml"},
          {L"save", Streams(), L"-o", L"x.xml"},
          {L"save", L"channels", L"--out", L"x", L"-o", L"x.xml"}}) {
        const Outcome run = RunBench(arguments);
        EXPECT_EQ(2U, run.status);
        EXPECT_NE(std::string::npos, run.err.find("--out")) << run.err;
    }
}

TEST_F(ManyStreamsTest, TwoResultsOfOneNameAreWrongUsage) {
    const Outcome run =
        RunBench({L"save", Streams() + L"\\a.xml", Streams() + L"\\deep\\..\\deep\\c.xml",
                  SamplesFolder() + L"streams\\channels.xml", L"channels.xml", L"--out", L"x"});
    EXPECT_EQ(2U, run.status);
    EXPECT_NE(std::string::npos, run.err.find("would both be written to")) << run.err;
    EXPECT_FALSE(fs::exists("x"));
}

TEST_F(ManyStreamsTest, AFolderWithoutStreamsIsNamed) {
    fs::create_directories(Results() / "empty");
    const Json run = Bench({L"save", (Results() / "empty").wstring()}, 1);
    EXPECT_EQ(1, run["summary"]["failed"]);
    EXPECT_EQ(Json(Narrow((Results() / "empty").wstring())), run["files"][0]["stream"]);
    EXPECT_EQ("the folder holds no file whose name ends in .xml", run["files"][0]["error"]["description"]);
}

} // namespace

} // namespace benchtest
