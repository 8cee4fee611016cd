#include "view/model/FileWatch.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace view;

namespace {

using Paths = std::vector<std::wstring>;

class FileWatchTest : public testing::Test {
  protected:
    FileWatchTest() { watch_.Watch({{L"a", {1, 10}}, {L"b", {2, 20}}}); }
    /// What is told of by the second of two looks that see the same.
    Paths Settled(FileStamp a, FileStamp b) {
        watch_.Look({a, b});
        return watch_.Look({a, b});
    }
    FileWatch watch_;
};

TEST_F(FileWatchTest, TellsOfEachChangeOnce) {
    EXPECT_EQ(Paths(), Settled({1, 10}, {2, 20}));
    EXPECT_EQ((Paths{L"b"}), Settled({1, 10}, {2, 21}));
    EXPECT_EQ(Paths(), Settled({1, 10}, {2, 21}));
    EXPECT_EQ((Paths{L"a", L"b"}), Settled({3, 10}, {2, 22}));
    EXPECT_EQ((Paths{L"a"}), Settled({1, 10}, {2, 22})) << "back to what was read";
}

TEST_F(FileWatchTest, WaitsUntilAFileIsWritten) {
    EXPECT_EQ(Paths(), watch_.Look({{5, 11}, {2, 20}}));
    EXPECT_EQ(Paths(), watch_.Look({{6, 12}, {2, 20}}));
    EXPECT_EQ(Paths(), watch_.Look({{7, 12}, {2, 20}}));
    EXPECT_EQ((Paths{L"a"}), watch_.Look({{7, 12}, {2, 20}}));
}

TEST_F(FileWatchTest, AFileThatIsGoneHasNotChanged) {
    EXPECT_EQ(Paths(), Settled({0, 0}, {2, 20}));
    EXPECT_EQ(Paths(), Settled({1, 10}, {2, 20})) << "nor has one that is there again";
    EXPECT_EQ((Paths{L"a"}), Settled({1, 11}, {2, 20}));
}

TEST_F(FileWatchTest, WhatTheProgramWroteIsNoChange) {
    watch_.MarkRead(1, {4, 40});
    EXPECT_EQ(Paths(), Settled({1, 10}, {4, 40}));
    EXPECT_EQ((Paths{L"b"}), Settled({1, 10}, {4, 41}));
}

TEST_F(FileWatchTest, AnotherFileIsWatchedFromItsOpening) {
    Settled({1, 11}, {2, 20});
    watch_.Watch({{L"c", {1, 11}}});
    EXPECT_EQ(Paths(), watch_.Look({{1, 11}}));
    EXPECT_EQ(Paths(), watch_.Look({{1, 12}}));
    EXPECT_EQ((Paths{L"c"}), watch_.Look({{1, 12}}));
}

} // namespace
