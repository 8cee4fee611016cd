// Each command's own help.

#include "tests/bench/BenchRun.h"
#include "tests/bench/HelpText.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace benchtest {

namespace {

/// The commands of the help that run the component; the others have options of their own.
const std::vector<std::vector<std::wstring>>& AllCommands() {
    static const std::vector<std::vector<std::wstring>> commands = [] {
        std::vector<std::vector<std::wstring>> found;
        for (const std::string& command : CommandsIn(RunBench({L"--help"}).out)) {
            if (command != "device" && command != "check" && command != "diff" && command != "doctor") {
                found.push_back({std::wstring(command.begin(), command.end())});
            }
        }
        for (const std::string& command : CommandsIn(RunBench({L"device", L"--help"}).out)) {
            found.push_back({L"device", std::wstring(command.begin(), command.end())});
        }
        EXPECT_LE(23U, found.size()) << "the help lists them all";
        return found;
    }();
    return commands;
}

std::string HelpOf(std::vector<std::wstring> command) {
    command.emplace_back(L"--help");
    const Outcome run = RunBench(command);
    EXPECT_EQ(0U, run.status) << Narrow(command.front());
    return run.out;
}

bool Has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(CommandHelpTest, ShowsTheOptionsOfEveryCommandToo) {
    for (const auto& command : AllCommands()) {
        const std::string help = HelpOf(command);
        for (const char* const option : {"--us ", "--wire ", "--json ", "--catalogue FILE",
                                         "--definition NAME", "--interactive ", "--tolerate-boxes "}) {
            EXPECT_TRUE(Has(help, option)) << option << " of " << help;
        }
    }
}

TEST(CommandHelpTest, CommandsThatReadDocumentsShowWhatTheyUse) {
    for (const wchar_t* const command : {L"check", L"diff"}) {
        const std::string help = HelpOf({command});
        EXPECT_TRUE(Has(help, "--json ")) << help;
        EXPECT_TRUE(Has(help, "--catalogue FILE")) << help;
        EXPECT_TRUE(Has(help, "upwards")) << help;
        for (const char* const option :
             {"--us ", "--wire ", "--definition ", "--interactive ", "--tolerate-boxes "}) {
            EXPECT_FALSE(Has(help, option)) << option << " of " << help;
        }
    }
}

TEST(CommandHelpTest, NamesWhatAnOptionTakes) {
    EXPECT_TRUE(Has(HelpOf({L"save"}), "-o,--output FILE"));
    EXPECT_TRUE(Has(HelpOf({L"save"}), "--out FOLDER"));
    EXPECT_TRUE(Has(HelpOf({L"icon"}), "-o,--output FILE"));
    EXPECT_TRUE(Has(HelpOf({L"device", L"tree"}), "--device FILE"));
    EXPECT_TRUE(Has(HelpOf({L"device", L"tree"}), "--project FILE"));
}

TEST(CommandHelpTest, SaysNoOptionTwiceAndNoneExcludesItself) {
    for (const auto& command : AllCommands()) {
        const std::string help = HelpOf(command);
        EXPECT_FALSE(Has(help, "Excludes")) << help;
        EXPECT_EQ(help.find("--json "), help.rfind("--json ", help.find("\nExamples"))) << help;
    }
}

TEST(CommandHelpTest, FitsAHundredColumns) {
    for (const auto& command : AllCommands()) {
        std::istringstream lines(HelpOf(command));
        for (std::string line; std::getline(lines, line);) {
            EXPECT_GE(100U, line.size()) << line;
        }
    }
}

TEST(CommandHelpTest, KeysAndInteractiveExcludeEachOther) {
    const Outcome run = RunBench({L"edit", L"channels", L"AI1_Offset", L"--keys", L"1", L"--interactive"});
    EXPECT_EQ(2U, run.status);
    EXPECT_TRUE(Has(run.err, "--keys excludes --interactive")) << run.err;
}

TEST(CommandHelpTest, TheVersionIsPrinted) {
    const Outcome run = RunBench({L"--version"});
    EXPECT_EQ(0U, run.status);
    EXPECT_EQ("tambench 1.0.0\n", run.out);
    EXPECT_EQ("", run.err);
}

TEST(CommandHelpTest, EachOptionCountsBeforeAndAfterTheCommand) {
    EXPECT_EQ(RunBench({L"--us", L"inspect", L"channels"}).out,
              RunBench({L"inspect", L"channels", L"--us"}).out);
    EXPECT_NE(RunBench({L"inspect", L"channels"}).out, RunBench({L"inspect", L"channels", L"--us"}).out);
}

} // namespace

} // namespace benchtest
