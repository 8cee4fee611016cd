#include "view/model/Listing.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using namespace view;

namespace {

using Texts = std::vector<std::wstring>;

class ListingTest : public testing::Test {
  protected:
    void Fill(std::vector<Texts> rows) {
        rows_ = std::move(rows);
        list_.Reset(rows_.size(), 3);
    }
    /// The first cells of the rows that are shown.
    Texts Names() const {
        Texts names;
        for (std::size_t place = 0; place < list_.Shown(); ++place) {
            names.push_back(rows_.at(list_.RowAt(place)).front());
        }
        return names;
    }

    std::vector<Texts> rows_;
    Listing list_{
        [this](std::size_t row, std::size_t column) { return std::wstring_view(rows_.at(row).at(column)); }};
};

TEST_F(ListingTest, ShowsRowsInTheOrderOfTheirSource) {
    Fill({{L"b", L"2", L""}, {L"a", L"10", L""}, {L"c", L"1", L""}});
    EXPECT_EQ((Texts{L"b", L"a", L"c"}), Names());
    EXPECT_EQ(3U, list_.Shown());
    EXPECT_EQ(3U, list_.Rows());
    EXPECT_EQ(std::nullopt, list_.Order());
}

TEST_F(ListingTest, IsEmptyWithoutRows) {
    EXPECT_EQ(0U, list_.Shown());
    list_.ToggleSort(1);
    list_.Filter(L"x");
    EXPECT_EQ(0U, list_.Shown());
    EXPECT_EQ(std::nullopt, list_.PlaceOf(0));
    EXPECT_EQ(std::nullopt, list_.FindBeginning(L"a", 0, 0));
}

TEST_F(ListingTest, AClickSortsUpwardThenDownwardThenNotAtAll) {
    Fill({{L"b", L"2", L""}, {L"a", L"10", L""}, {L"c", L"1", L""}});
    list_.ToggleSort(1);
    EXPECT_EQ((Texts{L"c", L"b", L"a"}), Names());
    EXPECT_EQ((SortOrder{1, false}), list_.Order());
    list_.ToggleSort(1);
    EXPECT_EQ((Texts{L"a", L"b", L"c"}), Names());
    list_.ToggleSort(1);
    EXPECT_EQ((Texts{L"b", L"a", L"c"}), Names());
    EXPECT_EQ(std::nullopt, list_.Order());
}

TEST_F(ListingTest, AClickOnAnotherColumnSortsUpward) {
    Fill({{L"b", L"2", L""}, {L"a", L"10", L""}});
    list_.Sort(SortOrder{1, true});
    list_.ToggleSort(0);
    EXPECT_EQ((SortOrder{0, false}), list_.Order());
    EXPECT_EQ((Texts{L"a", L"b"}), Names());
}

TEST_F(ListingTest, EqualRowsKeepTheirOrder) {
    Fill({{L"b", L"1", L""}, {L"a", L"1", L""}, {L"c", L"0", L""}});
    list_.Sort(SortOrder{1, false});
    EXPECT_EQ((Texts{L"c", L"b", L"a"}), Names());
    list_.Sort(SortOrder{1, true});
    EXPECT_EQ((Texts{L"b", L"a", L"c"}), Names());
}

TEST_F(ListingTest, EmptyCellsStandLastEitherWay) {
    Fill({{L"a", L"", L""}, {L"b", L"1", L""}, {L"c", L"2", L""}, {L"d", L" ", L""}});
    list_.Sort(SortOrder{1, false});
    EXPECT_EQ((Texts{L"b", L"c", L"a", L"d"}), Names());
    list_.Sort(SortOrder{1, true});
    EXPECT_EQ((Texts{L"c", L"b", L"a", L"d"}), Names());
}

TEST_F(ListingTest, AColumnThatIsNotThereSortsNothing) {
    Fill({{L"b", L"", L""}, {L"a", L"", L""}});
    list_.Sort(SortOrder{3, false});
    EXPECT_EQ(std::nullopt, list_.Order());
    EXPECT_EQ((Texts{L"b", L"a"}), Names());
    EXPECT_EQ(std::nullopt, list_.FindBeginning(L"a", 3, 0));
}

TEST_F(ListingTest, FindsWordsInAnyColumnAndLetterCase) {
    Fill({{L"Gain", L"81 lev_percent", L""}, {L"Offset", L"105 temp_p", L""}, {L"Mode", L"162", L"gain"}});
    list_.Filter(L"gAIN");
    EXPECT_EQ((Texts{L"Gain", L"Mode"}), Names());
    list_.Filter(L"temp");
    EXPECT_EQ((Texts{L"Offset"}), Names());
    list_.Filter(L"nothing");
    EXPECT_EQ(Texts(), Names());
    list_.Filter(L"");
    EXPECT_EQ((Texts{L"Gain", L"Offset", L"Mode"}), Names());
}

TEST_F(ListingTest, EachWordMustOccurSomewhere) {
    Fill({{L"AO1_Gain", L"81", L""}, {L"AO2_Gain", L"105", L""}, {L"AO1_Offset", L"81", L""}});
    list_.Filter(L" 81  ao1\tgain ");
    EXPECT_EQ((Texts{L"AO1_Gain"}), Names());
    EXPECT_EQ(L" 81  ao1\tgain ", list_.Words());
}

TEST_F(ListingTest, NoWordReachesFromCellToCell) {
    Fill({{L"ab", L"cd", L""}});
    list_.Filter(L"bc");
    EXPECT_EQ(0U, list_.Shown());
}

TEST_F(ListingTest, KnowsWhereARowIsShown) {
    Fill({{L"b", L"2", L""}, {L"a", L"10", L"x"}, {L"c", L"1", L"x"}});
    list_.Sort(SortOrder{0, false});
    EXPECT_EQ(1U, list_.PlaceOf(0));
    EXPECT_EQ(0U, list_.PlaceOf(1));
    list_.Filter(L"x");
    EXPECT_EQ(std::nullopt, list_.PlaceOf(0));
    EXPECT_EQ(0U, list_.PlaceOf(1));
    EXPECT_EQ(1U, list_.PlaceOf(2));
    EXPECT_EQ(std::nullopt, list_.PlaceOf(3));
}

TEST_F(ListingTest, AChangedRowStaysUntilTheNextSortOrFilter) {
    Fill({{L"a", L"1", L""}, {L"b", L"2", L""}, {L"c", L"3", L""}});
    list_.Sort(SortOrder{1, false});
    rows_[0][1] = L"9";
    list_.Changed(0);
    EXPECT_EQ((Texts{L"a", L"b", L"c"}), Names());
    list_.Sort(list_.Order());
    EXPECT_EQ((Texts{L"b", L"c", L"a"}), Names());
    list_.Filter(L"9");
    EXPECT_EQ((Texts{L"a"}), Names());
    rows_[0][1] = L"4";
    list_.Changed(0);
    EXPECT_EQ((Texts{L"a"}), Names());
    list_.Filter(L"9");
    EXPECT_EQ(Texts(), Names());
}

TEST_F(ListingTest, ANewSourceKeepsOrderAndWords) {
    Fill({{L"a", L"1", L"x"}, {L"b", L"2", L"y"}});
    list_.Sort(SortOrder{1, true});
    list_.Filter(L"x");
    Fill({{L"c", L"1", L"x"}, {L"d", L"5", L"x"}, {L"e", L"9", L"y"}});
    EXPECT_EQ((Texts{L"d", L"c"}), Names());
}

TEST_F(ListingTest, FindsTheNextRowThatBeginsAsTyped) {
    Fill({{L"Gain", L"", L""}, {L"Mode", L"", L""}, {L"glow", L"", L""}, {L"Offset", L"", L""}});
    EXPECT_EQ(0U, list_.FindBeginning(L"g", 0, 0));
    EXPECT_EQ(2U, list_.FindBeginning(L"g", 0, 1));
    EXPECT_EQ(0U, list_.FindBeginning(L"G", 0, 3)) << "around the end";
    EXPECT_EQ(2U, list_.FindBeginning(L"gl", 0, 0));
    EXPECT_EQ(std::nullopt, list_.FindBeginning(L"gx", 0, 0));
    EXPECT_EQ(std::nullopt, list_.FindBeginning(L"Gains", 0, 0));
    EXPECT_EQ(1U, list_.FindBeginning(L"", 0, 1));
}

/// All the work of a large document; a walk of rows within a walk of rows would take minutes.
TEST_F(ListingTest, TakesTwentyThousandRows) {
    std::vector<Texts> rows;
    for (std::size_t i = 0; i < 20000; ++i) {
        rows.push_back({L"P" + std::to_wstring(i), std::to_wstring((i * 7919) % 20000), L"on"});
    }
    Fill(std::move(rows));
    list_.Sort(SortOrder{1, false});
    for (std::size_t place = 0; place < list_.Shown(); ++place) {
        ASSERT_EQ(std::to_wstring(place), rows_[list_.RowAt(place)][1]);
        ASSERT_EQ(place, list_.PlaceOf(list_.RowAt(place)));
    }
    list_.Filter(L"p1999");
    EXPECT_EQ(11U, list_.Shown());
}

} // namespace
