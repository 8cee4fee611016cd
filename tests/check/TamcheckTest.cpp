// The program itself: its arguments, what it prints where, and its exit status.

#include "tests/Places.h"
#include "tests/ShellWord.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <ios>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct Outcome {
    int status = -1;
    /// Both streams.
    std::string said;
};

constexpr const char* kGood =
    "<Tam><Name>H</Name><DevKey>K</DevKey><IsLastOnDev>0</IsLastOnDev><TamObjID>3</TamObjID></Tam>";
constexpr const char* kBad =
    "<Tam><Name>H</Name><DevKey>K</DevKey><IsLastOnDev>2</IsLastOnDev><TamObjID>3</TamObjID></Tam>";

class TamcheckTest : public testing::Test {
  protected:
    void SetUp() override {
        Write("good.xml", kGood);
        Write("bad.xml", kBad);
        Write("-odd.xml", kGood);
        Write("catalogue.xml", "<x><SNVT_1><Type>Struct</Type><Length>1</Length></SNVT_1></x>");
    }
    void Write(const char* name, const std::string& text) const {
        std::ofstream(own_.Path() / name, std::ios::binary) << text;
    }

    /// Run in the folder of the files. `rest` is the shell's: where streams come from and go to.
    Outcome Run(const std::vector<std::string>& arguments, const std::string& rest = "2>&1") const {
        std::string command = "cd " + tests::ShellWord(own_.Path().string()) + " && " +
                              tests::ShellWord((tests::BinFolder() / "tamcheck").string());
        for (const std::string& argument : arguments) {
            command += " " + tests::ShellWord(argument);
        }
        Outcome outcome;
        std::FILE* const pipe = popen((command + " " + rest).c_str(), "r");
        if (pipe == nullptr) {
            return outcome;
        }
        std::array<char, 4096> piece{};
        for (std::size_t size = 0; (size = std::fread(piece.data(), 1, piece.size(), pipe)) > 0;) {
            outcome.said.append(piece.data(), size);
        }
        const int closed = pclose(pipe);
        outcome.status = closed >= 0 && closed % 256 == 0 ? closed / 256 : -1;
        return outcome;
    }

    tests::OwnFolder own_;
};

std::string FirstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

TEST_F(TamcheckTest, AnswersAStatusAndALine) {
    constexpr const char* kNothing = "1 file: nothing found";
    const std::string found = "bad.xml:1:51: error: <IsLastOnDev> is \"2\"; expected: 0 or 1 [flag-value]";
    struct Case {
        std::vector<std::string> arguments;
        int status;
        std::string line;
    };
    const std::vector<Case> cases = {
        {{"good.xml"}, 0, kNothing},
        {{"bad.xml"}, 1, found},
        {{"--jobs=2", "bad.xml"}, 1, found},
        {{"bad.xml", "--jobs", "0"}, 1, found},
        {{"--", "-odd.xml"}, 0, kNothing},
        {{"--catalogue=catalogue.xml", "good.xml"}, 0, kNothing},
        {{"none.xml"}, 2, "1 file: 1 not read"},
        {{}, 2, "tamcheck: no file was named"},
        {{"-odd.xml"}, 2, "tamcheck: there is no option -odd.xml"},
        {{"--format"}, 2, "tamcheck: --format needs a value"},
        {{"--format", "yaml", "good.xml"}, 2, "tamcheck: there is no format yaml; text, json or sarif"},
        {{"--format", "markdown", "good.xml"},
         2,
         "tamcheck: --format markdown goes with --rules; text, json or sarif"},
        {{"--jobs=two", "good.xml"}, 2, "tamcheck: --jobs takes a number, not \"two\""},
        {{"--catalogue=", "good.xml"}, 2, "tamcheck: --catalogue needs a name"},
        {{"--rules", "good.xml"}, 2, "tamcheck: --rules checks no files: leave them out"},
        {{"--rules", "--format", "sarif"}, 2, "tamcheck: --rules takes text, json or markdown"},
        {{"--schemas", "s", "--format=json"}, 2, "tamcheck: --schemas takes no format"},
        {{"--help"}, 0, "Usage: tamcheck FILE|FOLDER... [OPTION...]"},
        {{"-h"}, 0, "Usage: tamcheck FILE|FOLDER... [OPTION...]"}};
    for (const Case& one : cases) {
        const Outcome outcome = Run(one.arguments);
        const std::string shown = testing::PrintToString(one.arguments);
        EXPECT_EQ(outcome.status, one.status) << shown << "\n" << outcome.said;
        EXPECT_EQ(FirstLine(outcome.said), one.line) << shown;
    }
}

TEST_F(TamcheckTest, SaysItsVersion) {
    const Outcome outcome = Run({"--version"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.said.find("tamcheck "), 0U) << outcome.said;
    EXPECT_NE(outcome.said.find_first_of("0123456789"), std::string::npos) << outcome.said;
}

TEST_F(TamcheckTest, ReadsTheStandardInput) {
    const Outcome outcome = Run({"-"}, "<bad.xml 2>&1");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(FirstLine(outcome.said),
              "-:1:51: error: <IsLastOnDev> is \"2\"; expected: 0 or 1 [flag-value]");
}

TEST_F(TamcheckTest, KeepsComplaintsFromTheAnswer) {
    EXPECT_EQ(Run({"none.xml"}, "2>/dev/null").said, "1 file: 1 not read\n");
    EXPECT_EQ(FirstLine(Run({"none.xml"}, "2>&1 >/dev/null").said),
              "tamcheck: none.xml: there is no such file");
    EXPECT_EQ(Run({"bad.xml"}).said.find('\x1B'), std::string::npos) << "no terminal, no colour";
}

TEST_F(TamcheckTest, WritesSchemas) {
    const Outcome outcome = Run({"--schemas", "schemas"});
    EXPECT_EQ(outcome.status, 0) << outcome.said;
    EXPECT_TRUE(fs::is_regular_file(own_.Path() / "schemas" / "device-stream.xsd"));
}

TEST_F(TamcheckTest, SaysThatTheAnswerCouldNotBeWritten) {
    if (!fs::exists("/dev/full")) {
        GTEST_SKIP() << "no device that is always full";
    }
    const Outcome outcome = Run({"good.xml"}, "2>&1 >/dev/full");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.said, "tamcheck: the output could not be written\n");
}

} // namespace
