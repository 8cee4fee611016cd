#include "batch/Progress.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace batch {

namespace {

using std::chrono::milliseconds;

TEST(ProgressTest, TellsHowManyAreDoneAndTheTimeLeft) {
    EXPECT_EQ("0 of 4  a.xml", ProgressLine(0, 4, "a.xml", milliseconds(500), 80));
    EXPECT_EQ("1 of 4  b.xml  6 s left", ProgressLine(1, 4, "b.xml", milliseconds(2000), 80));
    EXPECT_EQ("1 of 4  b.xml  1 s left", ProgressLine(1, 4, "b.xml", milliseconds(1), 80));
    EXPECT_EQ("1 of 3  b.xml  2 min left", ProgressLine(1, 3, "b.xml", milliseconds(31000), 80));
}

TEST(ProgressTest, ALongNameLosesItsBeginning) {
    EXPECT_EQ("0 of 4  …/hall.xml", ProgressLine(0, 4, "a/long/way/hall.xml", milliseconds(0), 18));
    EXPECT_EQ("0 of 4  …öö.xml", ProgressLine(0, 4, "ööööö.xml", milliseconds(0), 15));
    EXPECT_EQ("0 of 4  ", ProgressLine(0, 4, "hall.xml", milliseconds(0), 3));
}

TEST(ProgressTest, TakesItsLineAwayAtTheEnd) {
    std::vector<std::string> shown;
    {
        Progress progress([&](std::string_view line) { shown.emplace_back(line); }, 2, 80);
        progress.At(0, "a");
        progress.Clear();
        progress.Clear();
        progress.At(0, "b");
    }
    EXPECT_EQ((std::vector<std::string>{"0 of 2  a", "", "0 of 2  b", ""}), shown);
}

TEST(ProgressTest, TellsNobodyWhereNobodyLooks) {
    Progress progress(nullptr, 2, 80);
    progress.At(0, "a");
    progress.Clear();
}

} // namespace

} // namespace batch
