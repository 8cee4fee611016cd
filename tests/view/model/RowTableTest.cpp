#include "view/model/RowTable.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>

using namespace view;

namespace {

PointId Attribute(const std::wstring& name) {
    return {Kind::Attribute, name};
}

Row RowOf(const std::wstring& name, std::size_t index, const std::wstring& value) {
    Row row;
    row.id = Attribute(name);
    row.index = index;
    row.value = value;
    return row;
}

TEST(RowTableTest, GivesEachColumnItsCell) {
    const Row row{
        Attribute(L"Gain"), 3, L"81 lev_percent", L"12.5", L"12.5 %", L"%", L"0", L"11", L"yes", true};
    EXPECT_EQ(L"Gain", CellOf(row, Column::Name));
    EXPECT_EQ(L"81 lev_percent", CellOf(row, Column::Type));
    EXPECT_EQ(L"12.5", CellOf(row, Column::Value));
    EXPECT_EQ(L"12.5 %", CellOf(row, Column::Displayed));
    EXPECT_EQ(L"%", CellOf(row, Column::Unit));
    EXPECT_EQ(L"0", CellOf(row, Column::DefaultValue));
    EXPECT_EQ(L"11", CellOf(row, Column::Address));
    EXPECT_EQ(L"yes", CellOf(row, Column::Visible));
}

TEST(RowTableTest, FindsAPointAndItsPlace) {
    RowTable table;
    table.Assign({RowOf(L"b", 0, L"2"), RowOf(L"a", 1, L"1")});
    table.List().Sort(SortOrder{0, false});
    EXPECT_EQ(L"a", table.At(0).id.name);
    EXPECT_EQ(L"b", table.At(1).id.name);
    EXPECT_EQ(1U, table.PlaceOf(Attribute(L"b")));
    ASSERT_NE(nullptr, table.Find(Attribute(L"a")));
    EXPECT_EQ(1U, table.Find(Attribute(L"a"))->index);
    EXPECT_EQ(nullptr, table.Find({Kind::Input, L"a"}));
    EXPECT_EQ(std::nullopt, table.PlaceOf(Attribute(L"c")));
    table.List().Filter(L"a");
    EXPECT_EQ(std::nullopt, table.PlaceOf(Attribute(L"b")));
}

TEST(RowTableTest, PutsAChangedRowInItsPlace) {
    RowTable table;
    table.Assign({RowOf(L"b", 0, L"2"), RowOf(L"a", 1, L"1")});
    Row changed = RowOf(L"a", 1, L"77");
    changed.isUnsaved = true;
    EXPECT_TRUE(table.Update(changed));
    EXPECT_EQ(L"77", table.At(1).value);
    EXPECT_TRUE(table.At(1).isUnsaved);
    table.List().Filter(L"77");
    EXPECT_EQ(1U, table.List().Shown());
    EXPECT_FALSE(table.Update(RowOf(L"c", 2, L"0")));
    EXPECT_EQ(2U, table.Rows().size());
}

TEST(RowTableTest, MarksWhatIsUnsaved) {
    RowTable table;
    table.Assign({RowOf(L"a", 0, L"1")});
    EXPECT_TRUE(table.MarkUnsaved(Attribute(L"a"), true));
    EXPECT_TRUE(table.At(0).isUnsaved);
    EXPECT_TRUE(table.MarkUnsaved(Attribute(L"a"), false));
    EXPECT_FALSE(table.At(0).isUnsaved);
    EXPECT_FALSE(table.MarkUnsaved(Attribute(L"b"), true));
}

TEST(RowTableTest, AnotherDocumentReplacesAllRows) {
    RowTable table;
    table.Assign({RowOf(L"a", 0, L"1"), RowOf(L"b", 1, L"1")});
    table.List().Filter(L"c");
    table.Assign({RowOf(L"c", 0, L"1")});
    EXPECT_EQ(1U, table.List().Shown());
    EXPECT_EQ(nullptr, table.Find(Attribute(L"a")));
}

} // namespace
