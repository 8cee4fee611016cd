#include "view/model/CellOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace view;

namespace {

using Texts = std::vector<std::wstring>;

Texts Sorted(Texts cells) {
    std::stable_sort(cells.begin(), cells.end(), [](const std::wstring& left, const std::wstring& right) {
        return CellKey(left).Compare(CellKey(right)) < 0;
    });
    return cells;
}

TEST(CellOrderTest, SortsNumbersAsNumbers) {
    EXPECT_EQ((Texts{L"-40", L"-3.5", L"0", L"7", L"10", L"100.25"}),
              Sorted({L"10", L"100.25", L"-3.5", L"7", L"-40", L"0"}));
}

TEST(CellOrderTest, TakesEitherDecimalMark) {
    EXPECT_EQ((Texts{L"0,5", L"1,25", L"1,3", L"2"}), Sorted({L"2", L"1,3", L"1,25", L"0,5"}));
    EXPECT_EQ(0, CellKey(L"1,5").Compare(CellKey(L"1.5")));
}

TEST(CellOrderTest, KnowsExponentsAndSigns) {
    EXPECT_EQ((Texts{L"-1E3", L"2.5e-3", L"+1", L"1E+2", L"1e5"}),
              Sorted({L"1e5", L"+1", L"1E+2", L"-1E3", L"2.5e-3"}));
}

TEST(CellOrderTest, SortsByTheNumberInFrontAndThenByTheRest) {
    EXPECT_EQ((Texts{L"8 count", L"81 lev_percent", L"105 temp_p", L"105 Temp_q"}),
              Sorted({L"105 Temp_q", L"105 temp_p", L"8 count", L"81 lev_percent"}));
}

TEST(CellOrderTest, SortsNamesByTheirNumbers) {
    EXPECT_EQ((Texts{L"AO1_In1", L"ao2_In1", L"AO2_In9", L"AO10_In1"}),
              Sorted({L"AO10_In1", L"AO2_In9", L"ao2_In1", L"AO1_In1"}));
}

TEST(CellOrderTest, PutsNumbersBeforeTexts) {
    EXPECT_EQ((Texts{L"3E", L"9", L"-", L"Gain"}), Sorted({L"Gain", L"9", L"-", L"3E"}));
}

TEST(CellOrderTest, LetterCaseDoesNotCount) {
    EXPECT_EQ(0, CellKey(L"gain").Compare(CellKey(L"GAIN")));
    EXPECT_EQ(0, CompareNaturally(L"\u00E4rger", L"\u00C4RGER"));
}

TEST(CellOrderTest, ComparesRunsOfDigitsOfAnyLength) {
    EXPECT_LT(CompareNaturally(L"a99999999999999999999999998", L"a99999999999999999999999999"), 0);
    EXPECT_GT(CompareNaturally(L"a100000000000000000000000000", L"a99999999999999999999999999"), 0);
    EXPECT_EQ(0, CompareNaturally(L"a007", L"a7"));
}

TEST(CellOrderTest, ANumberPastTheRangeIsAText) {
    EXPECT_LT(CellKey(L"5").Compare(CellKey(L"1E999")), 0);
    EXPECT_EQ(0, CellKey(L"1E999").Compare(CellKey(L"1E999")));
}

TEST(CellOrderTest, KnowsAnEmptyCell) {
    EXPECT_TRUE(CellKey(L"").IsEmpty());
    EXPECT_TRUE(CellKey(L"   ").IsEmpty());
    EXPECT_FALSE(CellKey(L" 0").IsEmpty());
    EXPECT_FALSE(CellKey(L"-").IsEmpty());
}

/// What std::sort asks of an order, over cells of all kinds.
TEST(CellOrderTest, IsAnOrder) {
    const Texts cells = {L"",   L"0",   L"-0", L"1",   L"1,0",   L"01", L"1.5 m", L"1.5 K", L"a",  L"A1",
                         L"a2", L"a10", L"-",  L"+",   L".5",    L"1E", L"1E5",   L"1E5x",  L"1e", L"\u00DF",
                         L"9a", L"9",   L"a-", L"a-1", L"1E999", L" 3", L"3 ",    L"b\tc",  L"b c"};
    for (const auto& x : cells) {
        for (const auto& y : cells) {
            const int order = CellKey(x).Compare(CellKey(y));
            EXPECT_EQ(order<0, CellKey(y).Compare(CellKey(x))> 0);
            for (const auto& z : cells) {
                if (order <= 0 && CellKey(y).Compare(CellKey(z)) <= 0) {
                    EXPECT_LE(CellKey(x).Compare(CellKey(z)), 0);
                }
            }
        }
    }
}

} // namespace
