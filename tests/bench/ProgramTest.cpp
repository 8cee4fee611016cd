// The program itself: help, statuses, and text as a person reads it.

#include "tests/bench/BenchRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace benchtest {

namespace {

bool Has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

std::size_t Places(const std::string& line) {
    return static_cast<std::size_t>(std::count_if(
        line.begin(), line.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

TEST(ProgramHelpTest, StandsOnTheOutputWithStatus0) {
    for (const std::vector<std::wstring>& arguments : {std::vector<std::wstring>{}, {L"--help"}, {L"-h"}}) {
        const Outcome run = RunBench(arguments);
        EXPECT_EQ(0U, run.status);
        EXPECT_EQ("", run.err);
        EXPECT_TRUE(Has(run.out, "Start with"));
        EXPECT_TRUE(Has(run.out, "Exit status"));
    }
}

TEST(ProgramHelpTest, EveryCommandHasExamples) {
    for (const std::wstring command :
         {L"inspect", L"types", L"save", L"load", L"interop", L"export", L"set", L"clear-refs", L"contains",
          L"edit", L"icon", L"datasheet", L"about"}) {
        const Outcome run = RunBench({command, L"--help"});
        EXPECT_EQ(0U, run.status);
        EXPECT_TRUE(Has(run.out, "\nExamples\n") && Has(run.out, "\n  tambench " + Narrow(command)))
            << run.out;
    }
}

TEST(ProgramConsoleTest, KeepsItsCodePage) {
    constexpr UINT kWestern = 1252;
    FreeConsole();
    ASSERT_TRUE(AllocConsole()) << GetLastError();
    EXPECT_TRUE(SetConsoleOutputCP(kWestern)) << GetLastError();
    EXPECT_EQ(0U, RunBench({L"--help"}).status);
    EXPECT_EQ(kWestern, GetConsoleOutputCP());
    FreeConsole();
}

TEST(ProgramUsageTest, WrongUsageIsStatus2WithAReason) {
    const std::pair<std::vector<std::wstring>, std::string> wrong[] = {
        {{L"bogus"}, "there is no command bogus"},
        {{L"inspect"}, "STREAM is required"},
        {{L"inspect", L"channels", L"extra"}, "extra"},
        {{L"inspect", L"channels", L"--bogus"}, "--bogus"},
        {{L"load", L"channels"}, "PROJECT is required"},
        {{L"contains", L"channels", L"K7"}, "OBJECTKEY is required"},
        {{L"set", L"channels"}, "NAME=VALUE is required"},
        {{L"set", L"channels", L"AI1_Offset"}, "not of the form NAME=VALUE"},
        {{L"save", L"channels", L"--at", L"12.5"}, "--at"},
        {{L"save", L"channels", L"--at", L"left", L"4"}, "--at"}};
    for (const auto& [arguments, reason] : wrong) {
        const Outcome run = RunBench(arguments);
        EXPECT_EQ(2U, run.status) << reason;
        EXPECT_EQ("", run.out) << reason;
        EXPECT_TRUE(Has(run.err, "tambench: ") && Has(run.err, reason)) << run.err;
    }
}

TEST(ProgramFailureTest, IsStatus1WithTheNumberAndTheDescription) {
    const Outcome run = RunBench({L"inspect", L"damaged"});
    EXPECT_EQ(1U, run.status);
    EXPECT_EQ(0U, run.err.find("tambench: LoadFromXmlStream: 0x800A005B Object variable or With block "
                               "variable not set\ntambench: damaged:"))
        << run.err;
}

TEST(ProgramFailureTest, AStreamThatIsNotThereIsNamed) {
    const Outcome run = RunBench({L"inspect", L"nowhere.xml"});
    EXPECT_EQ(1U, run.status);
    EXPECT_TRUE(Has(run.err, "0x80070002 nowhere.xml cannot be read")) << run.err;
}

TEST(ProgramTextTest, FitsAHundredColumns) {
    for (const std::vector<std::wstring>& arguments :
         {std::vector<std::wstring>{L"inspect", L"full", L"--wire"},
          {L"types"},
          {L"export", L"full"},
          {L"interop", L"full"},
          {L"contains", L"full", L"K7", L"AI1"},
          {L"clear-refs", L"full"},
          {L"set", L"full", L"AI1_Offset=1.5"},
          {L"save", L"full", L"-o", ScratchFolder() + L"columns.xml"},
          {L"load", L"full", ScratchFolder() + L"columns.xml"},
          {L"device", L"tree"},
          {L"device", L"fetch", L"AI1"},
          {L"device", L"save", L"--fetch", L"-o", ScratchFolder() + L"columns_device.xml"},
          {L"device", L"load", ScratchFolder() + L"columns_device.xml"},
          {L"device", L"export"}}) {
        const Outcome run = RunBench(arguments);
        EXPECT_EQ(0U, run.status);
        std::istringstream lines(run.out);
        for (std::string line; std::getline(lines, line);) {
            // A word alone is not broken: the path of the catalogue may be longer.
            const bool isWord = line.find(' ', line.find_first_not_of(' ')) == std::string::npos;
            EXPECT_TRUE(isWord || Places(line) <= 100U) << line;
        }
    }
}

TEST(ProgramTextTest, SaysWhatWasLoadedAndWhichBoxesCame) {
    const Outcome silent = RunBench({L"clear-refs", L"channels"});
    EXPECT_TRUE(
        Has(silent.out, "Loaded channels: \"Reading room\" with 3 inputs, 5 outputs and 11 attributes.\n"));
    EXPECT_TRUE(Has(silent.out, "The component showed no boxes.\n"));
    const Outcome boxed = RunBench({L"export", L"channels", L"--no-compiler"});
    EXPECT_TRUE(Has(boxed.out, "The component showed one box:\n"
                               "  1. message box \"Gateway Object\", during Stream\n"
                               "     Compiler.dll, necessary to exported Tam object hasn't been found\n"))
        << boxed.out;
}

TEST(ProgramTextTest, IsUtf8) {
    EXPECT_TRUE(Has(RunBench({L"inspect", L"channels"}).out, Local("-0.50 \u00B0C\n")));
}

TEST(ProgramOptionsTest, StandBeforeOrAfterTheCommand) {
    const Outcome before = RunBench({L"--us", L"--json", L"set", L"channels", L"AI1_Offset=1.5"});
    const Outcome after = RunBench({L"set", L"channels", L"AI1_Offset=1.5", L"--json", L"--us"});
    EXPECT_EQ(0U, before.status);
    EXPECT_EQ(before.out, after.out);
}

} // namespace

} // namespace benchtest
