// diff: what the bench says of two documents. What is a change is tested natively
// (tests/diff).

#include "tests/bench/DeviceRun.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace benchtest {

namespace {

std::wstring Sample() {
    return SamplesFolder() + L"streams\\channels.xml";
}

/// A sample stream in which a text stands in place of another.
std::wstring ChangedSample(const wchar_t* name, const std::string& from, const std::string& to) {
    std::string text = ReadFileBytes(Sample());
    const std::size_t at = text.find(from);
    EXPECT_NE(std::string::npos, at) << from;
    return WrittenFile(name, text.replace(at, from.size(), to));
}

TEST(DiffTest, AnswersZeroForTheSameDevice) {
    const Outcome outcome = RunBench({L"diff", Sample(), Sample()});
    EXPECT_EQ(0U, outcome.status) << outcome.err;
    EXPECT_EQ("No change in meaning.\n", outcome.out);
}

TEST(DiffTest, TellsAChangedValueWithItsUnit) {
    const std::wstring changed = ChangedSample(L"changed.xml", "-0.50", "1.25");
    const Outcome outcome = RunBench({L"diff", L"channels", changed});
    EXPECT_EQ(1U, outcome.status) << outcome.err;
    EXPECT_NE(std::string::npos,
              outcome.out.find("  ~ AI1_Offset, value: \"-0.50 degrees C\" -> \"1.25 degrees C\"  [line "))
        << outcome.out;
    EXPECT_EQ(std::string::npos, outcome.out.find('\x1B'));
}

TEST(DiffTest, TellsTheSameAsJson) {
    const Json answer = Bench({L"diff", Sample(), ChangedSample(L"json.xml", "-0.50", "1.25")}, 1);
    ASSERT_TRUE(answer.is_object());
    EXPECT_EQ("device stream", answer["kind"]);
    EXPECT_EQ(false, answer["same"]);
    ASSERT_EQ(1U, answer["changes"].size());
    EXPECT_EQ("1.25 degrees C", answer["changes"][0]["after"]);
}

TEST(DiffTest, TellsTroubleAsJsonToo) {
    const Json answer = Bench({L"diff", Sample(), SamplesFolder() + L"catalogue.xml"}, 2);
    ASSERT_TRUE(answer.is_object());
    EXPECT_TRUE(answer["same"].is_null());
    EXPECT_EQ(1U, answer["problems"].size());
}

TEST(DiffTest, AnswersTwoForTrouble) {
    EXPECT_EQ(2U, RunBench({L"diff", Sample(), ScratchFolder() + L"none.xml"}).status);
    EXPECT_EQ(2U, RunBench({L"diff", Sample(), SamplesFolder() + L"catalogue.xml"}).status);
    EXPECT_EQ(2U, RunBench({L"diff", Sample()}).status);
    EXPECT_EQ(2U, RunBench({L"diff", Sample(), Sample(), L"--catalogue", L"none.xml"}).status);
}

} // namespace

} // namespace benchtest
