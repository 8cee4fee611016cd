// export, when the compiler refuses what the component hands it.

#include "tests/bench/DeviceRun.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace benchtest {

namespace {

constexpr const char* kReason =
    "attribute \"LogicalAddress\" of \"_AI6_Out\" in \"Outputs\" is \"x1\"; it must "
    "be a number from 0 to 65535 or nothing";

/// A stream that loads without a box; its output has an address that is no number.
std::wstring RefusedStream() {
    return WrittenFile(L"refused_stream.xml",
                       "<Tam><Name>Small</Name><DevKey>K9</DevKey><IsLastOnDev>0</IsLastOnDev>"
                       "<TamObjID>7</TamObjID><OutReferences><_AI6_Out><SNVTTYPE>105</SNVTTYPE>"
                       "<LOGICALADDRESS>x1</LOGICALADDRESS></_AI6_Out></OutReferences></Tam>");
}

/// Line 1 is the first one.
std::string LineOf(const std::string& text, std::size_t number) {
    std::size_t begin = 0;
    for (; number > 1; --number) {
        begin = text.find('\n', begin) + 1;
    }
    return text.substr(begin, text.find('\n', begin) - begin);
}

TEST(RefusalExportTest, FailsAndLeavesTheFileAsItWas) {
    const std::wstring file = WrittenFile(L"keep.txt", "kept");
    const Json failed = Bench({L"export", RefusedStream(), L"-o", file}, 1);
    EXPECT_EQ("kept", ReadFileBytes(file));
    EXPECT_FALSE(failed.contains("file"));
    EXPECT_EQ("nothing", failed["kind"]);
    EXPECT_EQ("Stream", failed["error"]["step"]);
    EXPECT_EQ("0x80040402", failed["error"]["hresult"]);
    EXPECT_EQ(Json("the compiler refused the export document: line " + failed["refusal"]["line"].dump() +
                   ", column " + failed["refusal"]["column"].dump() + ": " + kReason),
              failed["error"]["description"]);
    EXPECT_EQ(Json::array(), failed["boxes"]) << "asking why shows nobody a box";
}

TEST(RefusalExportTest, WritesNoFileWhereThereWasNone) {
    const std::wstring file = ScratchFolder() + L"never.txt";
    DeleteFileW(file.c_str());
    EXPECT_EQ(1U, RunBench({L"export", RefusedStream(), L"-o", file}).status);
    EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesW(file.c_str()));
}

TEST(RefusalExportTest, TellsThePlaceInTheExportDocument) {
    const Json failed = Bench({L"export", RefusedStream()}, 1);
    const Json refusal = failed["refusal"];
    const std::string line = LineOf(refusal["document"], refusal["line"]);
    EXPECT_EQ(0U, line.substr(refusal["column"].get<std::size_t>() - 1).find("LogicalAddress=\"x1\""))
        << line;
    EXPECT_EQ(failed["sizesBefore"], failed["sizes"]) << "the sizes stay when nothing is compiled";
}

TEST(RefusalExportTest, ShowsThePlaceToPeople) {
    const Outcome run = RunBench({L"export", RefusedStream()});
    EXPECT_EQ(1U, run.status);
    EXPECT_EQ(0U,
              run.err.find("tambench: Stream: 0x80040402 the compiler refused the export document: line "))
        << run.err;
    EXPECT_EQ(std::string::npos, run.out.find("The stream is empty")) << run.out;
    const std::size_t place = run.out.find("LogicalAddress=\"x1\"");
    const std::size_t caret = run.out.find("^\n");
    ASSERT_NE(std::string::npos, place) << run.out;
    ASSERT_NE(std::string::npos, caret) << run.out;
    EXPECT_EQ(place - run.out.rfind('\n', place), caret - run.out.rfind('\n', caret)) << run.out;
}

TEST(RefusalExportTest, WithoutACompilerTheSameDocumentIsAnAnswer) {
    const Json exported = Bench({L"export", RefusedStream(), L"--no-compiler"});
    EXPECT_EQ("export document", exported["kind"]);
    EXPECT_EQ(Bench({L"export", RefusedStream()}, 1)["refusal"]["document"], exported["streamText"]);
}

TEST(RefusalExportTest, ADumpThatIsNotWrittenIsAFailure) {
    const std::wstring dump = L"C:\\interop_K9_7.xml";
    DeleteFileW(dump.c_str());
    CreateDirectoryW(dump.c_str(), nullptr);
    const Json failed = Bench({L"export", SmallStream(), L"--debug-dump", L"--wire"}, 1);
    RemoveDirectoryW(dump.c_str());
    EXPECT_EQ(Json(), failed["dump"]);
    EXPECT_EQ(Json("the component did not write " + Narrow(dump)), failed["error"]["description"]);
}

} // namespace

} // namespace benchtest
