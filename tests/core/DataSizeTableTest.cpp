#include "core/DataSizeTable.h"
#include "tests/core/Thrown.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace tam {
namespace {

std::uint8_t ByteOf(std::wstring_view text) {
    unsigned number = 0;
    for (const wchar_t c : text) {
        if (c < L'0' || c > L'9') {
            throw RunTimeError(RunTime::TypeMismatch);
        }
        number = number * 10 + static_cast<unsigned>(c - L'0');
        if (number > 255) {
            throw RunTimeError(RunTime::Overflow);
        }
    }
    if (text.empty()) {
        throw RunTimeError(RunTime::TypeMismatch);
    }
    return static_cast<std::uint8_t>(number);
}

/// An element of a definition's table.
struct Element {
    const wchar_t* name;
    std::vector<std::pair<const wchar_t*, const wchar_t*>> attributes = {};
};

/// Reads a definition's table up to its first fault; the number of the fault.
std::int32_t Read(DataSizeTable& table, const std::vector<Element>& elements) {
    table.Begin();
    return ErrorOf([&] {
        for (const Element& element : elements) {
            DataSizeEntry& row = table.RowOf(element.name, &ByteOf);
            for (const auto& [attribute, text] : element.attributes) {
                SetDataSize(row, attribute, text, &ByteOf);
            }
            table.CountRow();
        }
    });
}

const DataSizeEntry kEmpty;

TEST(DataSizeTableTest, StartsEmpty) {
    const DataSizeTable table;
    EXPECT_EQ(table.Count(), 0);
    ASSERT_EQ(table.Rows().size(), 6U);
    for (const DataSizeEntry& row : table.Rows()) {
        EXPECT_EQ(row, kEmpty);
    }
}

TEST(DataSizeTableTest, FillsTheRowThatAnElementIsNumberedBy) {
    DataSizeTable table;
    EXPECT_EQ(
        Read(
            table,
            {{L"T3",
              {{L"Name", L"Inputs"}, {L"CDB_Size", L"12"}, {L"Size_area_1", L"255"}, {L"Size_area_2", L"0"}}},
             {L"x0", {{L"Size_area_2", L"7"}}}}),
        0);
    EXPECT_EQ(table.Count(), 2);
    EXPECT_EQ(table.Rows()[3], (DataSizeEntry{L"Inputs", 12, 255, 0}));
    EXPECT_EQ(table.Rows()[0], (DataSizeEntry{L"", 0, 0, 7}));
    for (const std::size_t other : {1U, 2U, 4U, 5U}) {
        EXPECT_EQ(table.Rows()[other], kEmpty);
    }
}

TEST(DataSizeTableTest, IgnoresAttributesOfOtherNames) {
    DataSizeTable table;
    EXPECT_EQ(
        Read(table,
             {{L"T1", {{L"name", L"a"}, {L"cdb_size", L"1"}, {L"SIZE_AREA_1", L"many"}, {L"x", L"2"}}}}),
        0);
    EXPECT_EQ(table.Rows()[1], kEmpty);
    EXPECT_EQ(table.Count(), 1);
}

TEST(DataSizeTableTest, KeepsWhatWasReadBeforeAFault) {
    DataSizeTable table;
    EXPECT_EQ(Read(table, {{L"T0", {{L"Name", L"first"}, {L"CDB_Size", L"1"}}},
                           {L"T1", {{L"Name", L"second"}, {L"CDB_Size", L"many"}, {L"Size_area_1", L"9"}}},
                           {L"T2", {{L"Name", L"third"}}}}),
              kTypeMismatch);
    EXPECT_EQ(table.Count(), 1) << "the row of the fault is not counted";
    EXPECT_EQ(table.Rows()[0], (DataSizeEntry{L"first", 1, 0, 0}));
    EXPECT_EQ(table.Rows()[1], (DataSizeEntry{L"second", 0, 0, 0}));
    EXPECT_EQ(table.Rows()[2], kEmpty);
}

TEST(DataSizeTableTest, RefusesARowPastTheTable) {
    DataSizeTable table;
    EXPECT_EQ(Read(table, {{L"T5"}, {L"T6"}, {L"T0"}}), kSubscript);
    EXPECT_EQ(table.Count(), 1);
    EXPECT_EQ(Read(table, {{L"T255"}}), kSubscript);
    EXPECT_EQ(Read(table, {{L"T256"}}), kOverflow);
    EXPECT_EQ(Read(table, {{L"T"}}), kTypeMismatch);
    EXPECT_EQ(Read(table, {{L""}}), kTypeMismatch) << "a comment has no name";
    EXPECT_EQ(table.Count(), 0);
}

TEST(DataSizeTableTest, ALaterDefinitionOverwritesWhatItHas) {
    DataSizeTable table;
    Read(table, {{L"T0", {{L"Name", L"a"}, {L"CDB_Size", L"1"}}},
                 {L"T1", {{L"Name", L"b"}, {L"CDB_Size", L"2"}, {L"Size_area_1", L"3"}}}});
    EXPECT_EQ(Read(table, {{L"T1", {{L"Name", L"c"}, {L"CDB_Size", L"4"}}}}), 0);
    EXPECT_EQ(table.Count(), 1);
    EXPECT_EQ(table.Rows()[1], (DataSizeEntry{L"c", 4, 3, 0}));
    EXPECT_EQ(table.Rows()[0], (DataSizeEntry{L"a", 1, 0, 0}));
}

TEST(DataSizeTableTest, CountsRowsThatAreFilledTwice) {
    DataSizeTable table;
    EXPECT_EQ(Read(table, std::vector<Element>(255, {L"T0"})), 0);
    EXPECT_EQ(table.Count(), 255);
    EXPECT_EQ(Read(table, std::vector<Element>(256, {L"T0"})), kOverflow);
    EXPECT_EQ(table.Count(), 255);
}

} // namespace
} // namespace tam
