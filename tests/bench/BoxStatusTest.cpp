// What boxes make of the exit status.

#include "tests/bench/DeviceRun.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace benchtest {

namespace {

const std::vector<std::wstring> kAboveTheLimit{L"edit", L"channels", L"AI1_Offset", L"--keys",
                                               L"9999{ENTER}"};

std::vector<std::wstring> Tolerant(std::vector<std::wstring> arguments) {
    arguments.emplace_back(L"--tolerate-boxes");
    return arguments;
}

TEST(BoxStatusTest, ARefusedInputIsAFailure) {
    const Json edited = Bench(kAboveTheLimit, 1);
    EXPECT_EQ((Json{false, true}), Pluck(edited["boxes"], "fault")) << "the editor is none, its message is";
    EXPECT_EQ(Json(Local("The value is greater than 327.66")), edited["boxes"][1]["text"]);
    EXPECT_EQ(nullptr, edited["error"]);
    const Outcome run = RunBench(kAboveTheLimit);
    EXPECT_EQ(1U, run.status);
    EXPECT_EQ("tambench: the component reported a fault in one box (--tolerate-boxes passes over it)\n",
              run.err);
}

TEST(BoxStatusTest, StopBoxesAreAFailure) {
    const Outcome run = RunBench({L"inspect", L"oddities"});
    EXPECT_EQ(1U, run.status);
    EXPECT_EQ("tambench: the component reported faults in 8 boxes (--tolerate-boxes passes over them)\n",
              run.err);
}

TEST(BoxStatusTest, IsTheSameWhereNobodyAttends) {
    const Outcome attended = RunBench({L"inspect", L"oddities"});
    EXPECT_EQ(1U, attended.status);
    for (const wchar_t* const value : {L"1", L"unattended.txt"}) {
        SetEnvironmentVariableW(L"O_TAM_ID_UNATTENDED", value);
        const Outcome run = RunBench({L"inspect", L"oddities"});
        SetEnvironmentVariableW(L"O_TAM_ID_UNATTENDED", nullptr);
        EXPECT_EQ(attended.status, run.status);
        EXPECT_EQ(attended.out, run.out);
        EXPECT_EQ(attended.err, run.err);
    }
}

TEST(BoxStatusTest, AnErrorReportIsAFailure) {
    const std::wstring project =
        WrittenFile(L"no_name.xml", "<Project><O_Tam_id><UserName/><DevKey>K7</DevKey></O_Tam_id></Project>");
    const std::vector<std::wstring> load{L"load", L"channels", project};
    const Json failed = Bench(load, 1);
    ASSERT_EQ(1U, failed["boxes"].size());
    EXPECT_EQ("error report", failed["boxes"][0]["kind"]);
    EXPECT_EQ(true, failed["boxes"][0]["fault"]);
    EXPECT_EQ(failed["boxes"], Bench(Tolerant(load))["boxes"]);
}

TEST(BoxStatusTest, WhoToleratesThemGetsStatus0) {
    const Json edited = Bench(Tolerant(kAboveTheLimit));
    EXPECT_EQ(true, edited["boxes"][1]["fault"]);
    const Outcome run = RunBench({L"--tolerate-boxes", L"inspect", L"oddities"});
    EXPECT_EQ(0U, run.status);
    EXPECT_EQ("", run.err);
}

TEST(BoxStatusTest, AFailedCallIsNotTolerated) {
    EXPECT_EQ("0x800A005B", Bench(Tolerant({L"inspect", L"damaged"}), 1)["error"]["hresult"]);
    EXPECT_EQ("Init",
              Bench(Tolerant({L"inspect", L"channels", L"--definition", L"Nope"}), 1)["error"]["step"]);
}

TEST(BoxStatusTest, WhatTheCommandLineAskedForIsNoFault) {
    EXPECT_EQ(Json{false}, Pluck(Bench({L"about"})["boxes"], "fault"));
    EXPECT_EQ(Json{false}, Pluck(Bench({L"rename", L"Hall"})["boxes"], "fault"));
    EXPECT_EQ(Json{false}, Pluck(Bench({L"edit", L"channels", L"AI1_Offset"})["boxes"], "fault"));
    EXPECT_EQ(Json{false}, Pluck(Bench({L"export", L"channels", L"--no-compiler"})["boxes"], "fault"));
}

} // namespace

} // namespace benchtest
