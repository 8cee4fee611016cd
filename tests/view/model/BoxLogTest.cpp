#include "view/model/BoxLog.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

using namespace view;

namespace {

/// Boxes with the numbers from `first` on as their messages.
std::vector<FindingRow> Boxes(std::size_t first, std::size_t count) {
    std::vector<FindingRow> boxes(count);
    for (FindingRow& box : boxes) {
        box.message = std::to_string(first++);
    }
    return boxes;
}

TEST(BoxLogTest, KeepsAllThatThereIsRoomFor) {
    BoxLog log;
    log.Add(Boxes(1, 600));
    log.Add(Boxes(601, 400));
    ASSERT_EQ(1000U, log.Latest().size());
    EXPECT_EQ(0U, log.LeftOut());
    EXPECT_EQ(1000U, log.All());
    EXPECT_EQ("1", log.Latest().front().message);
    EXPECT_EQ("1000", log.Latest().back().message);
}

TEST(BoxLogTest, KeepsTheLatestAndCountsTheOthers) {
    BoxLog log;
    log.Add(Boxes(1, 900));
    log.Add(Boxes(901, 107));
    ASSERT_EQ(1000U, log.Latest().size());
    EXPECT_EQ(7U, log.LeftOut());
    EXPECT_EQ(1007U, log.All());
    EXPECT_EQ("8", log.Latest().front().message);
    EXPECT_EQ("1007", log.Latest().back().message);
    log.Add(Boxes(1008, 2500));
    EXPECT_EQ(1000U, log.Latest().size());
    EXPECT_EQ(2507U, log.LeftOut());
    EXPECT_EQ("2508", log.Latest().front().message);
}

TEST(BoxLogTest, IsEmptyAfterClear) {
    BoxLog log;
    log.Add(Boxes(1, 1001));
    log.Clear();
    EXPECT_TRUE(log.Latest().empty());
    EXPECT_EQ(0U, log.All());
    log.Add(Boxes(1, 1));
    EXPECT_EQ(1U, log.All());
}

} // namespace
