#include "core/Numbers.h"

#include "Thrown.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string>
#include <utility>

namespace tam {
namespace {

struct Case {
    const wchar_t* text;
    double number;
};

void ExpectNumbers(std::initializer_list<Case> cases) {
    for (const Case& one : cases) {
        EXPECT_EQ(Val(one.text), one.number) << std::wstring(one.text);
    }
}

TEST(NumbersValTest, ReadsTheLeadingNumber) {
    ExpectNumbers({{L"12abc", 12},
                   {L"2.5", 2.5},
                   {L"-12.5", -12.5},
                   {L"+7", 7},
                   {L"007", 7},
                   {L".5", 0.5},
                   {L"5.", 5},
                   {L"-.5", -0.5},
                   {L"1.0", 1},
                   {L"123456.789", 123456.789},
                   {L"0.1", 0.1}});
}

TEST(NumbersValTest, GivesZeroForATextThatBeginsWithNoNumber) {
    ExpectNumbers({{L"", 0},
                   {L"abc", 0},
                   {L"-", 0},
                   {L".", 0},
                   {L"--1", 0},
                   {L"+-1", 0},
                   {L"e5", 0},
                   {L".e5", 0},
                   {L"true", 0},
                   {L",5", 0},
                   {L"\u0663", 0}});
}

TEST(NumbersValTest, TakesThePointAloneForTheDecimalMark) {
    ExpectNumbers({{L"12,5", 12}, {L"1.234,5", 1.234}, {L"1,000.5", 1}, {L"1.2.3", 1.2}});
}

TEST(NumbersValTest, SkipsBlanksTabsAndLineFeedsAnywhere) {
    ExpectNumbers({{L" 12", 12},
                   {L"\t\n 1 2\t.\n5", 12.5},
                   {L"- 5", -5},
                   {L"1615 198th Street", 1615198},
                   {L"1 e 2", 100},
                   {L"   ", 0},
                   {L"1\u00A02", 1},
                   {L"1\r2", 1}});
}

TEST(NumbersValTest, ReadsAnExponentAfterFourLetters) {
    ExpectNumbers({{L"1e3", 1000}, {L"1E+3", 1000}, {L"25d-1", 2.5}, {L"1.5D2", 150}, {L"1e22", 1e22}});
}

TEST(NumbersValTest, LeavesAnExponentWithoutDigits) {
    ExpectNumbers({{L"7e", 7}, {L"7e+", 7}, {L"7d-x", 7}, {L"7ee2", 7}});
}

TEST(NumbersValTest, ReadsHexadecimalAndOctalNumbers) {
    ExpectNumbers({{L"&H1F", 31},
                   {L"&hff", 255},
                   {L"&O17", 15},
                   {L"&o778", 63},
                   {L" & H 1 0", 16},
                   {L"&HG", 0},
                   {L"&O8", 0},
                   {L"&H", 0},
                   {L"&", 0},
                   {L"&17", 0},
                   {L"-&H10", 0},
                   {L"&H10.5", 16}});
}

TEST(NumbersValTest, ReadsSixteenHexadecimalBitsAsASignedNumberUnlessMarkedLong) {
    ExpectNumbers({{L"&H7FFF", 32767},
                   {L"&H8000", -32768},
                   {L"&HFFFF", -1},
                   {L"&HFFFF&", 65535},
                   {L"&H10000", 65536},
                   {L"&O177777", -1},
                   {L"&O177777&", 65535},
                   {L"&H7FFFFFFF", 2147483647.0},
                   {L"&HFFFFFFFF", -1},
                   {L"&HFFFFFFFF&", -1},
                   {L"&H0000000012", 18}});
}

TEST(NumbersValTest, ThrowsPastTheRangeOfNumbers) {
    for (const wchar_t* text : {L"1e309", L"-1e309", L"1e99999999999999999999999", L"&H100000000"}) {
        EXPECT_EQ(ErrorOf([&] { Val(text); }), kOverflow) << std::wstring(text);
    }
    EXPECT_EQ(ErrorOf([&] { Val(std::wstring(310, L'9')); }), kOverflow);
}

TEST(NumbersValTest, GivesZeroForWhatIsTooSmall) {
    ExpectNumbers({{L"1e-400", 0}, {L"-1e-99999999999999999999999", 0}, {L"0e99999999999", 0}});
    EXPECT_EQ(Val(L"0." + std::wstring(400, L'0') + L"1"), 0);
}

TEST(NumbersValTest, WeighsTheExponentAgainstTheDigits) {
    EXPECT_EQ(Val(L"0." + std::wstring(400, L'0') + L"1e410"), 1e9);
    EXPECT_EQ(Val(L"1" + std::wstring(400, L'0') + L"e-400"), 1);
    // All digits of the exponent count.
    EXPECT_EQ(ErrorOf([] { Val(L"1e400"); }), kOverflow);
    EXPECT_EQ(ErrorOf([] { Val(L"0." + std::wstring(400, L'0') + L"1e720"); }), kOverflow);
    EXPECT_EQ(Val(L"1" + std::wstring(400, L'0') + L"e-1000"), 0);
}

TEST(NumbersValTest, ReadsTheEndsOfTheRangeExactly) {
    EXPECT_EQ(Val(L"1.7976931348623157e308"), std::numeric_limits<double>::max());
    EXPECT_EQ(Val(L"5e-324"), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(Val(L"9007199254740993"), 9007199254740992.0);
}

TEST(NumbersValTest, StopsAtANul) {
    EXPECT_EQ(Val(std::wstring(L"1\0002", 3)), 1);
}

TEST(NumbersRoundToEvenTest, TakesTheEvenOneOfTwo) {
    for (const auto& [number, rounded] : {std::pair{2.5, 2.0},
                                          {3.5, 4.0},
                                          {-2.5, -2.0},
                                          {-3.5, -4.0},
                                          {0.5, 0.0},
                                          {-0.5, 0.0},
                                          {2.4999, 2.0},
                                          {2.5001, 3.0},
                                          {1e300, 1e300}}) {
        EXPECT_EQ(RoundToEven(number), rounded) << number;
    }
    EXPECT_TRUE(std::isnan(RoundToEven(std::nan(""))));
    EXPECT_EQ(RoundToEven(-HUGE_VAL), -HUGE_VAL);
}

TEST(NumbersToInt32Test, RoundsAndKeepsTheRange) {
    EXPECT_EQ(ToInt32(Val(L"2.5")), 2);
    EXPECT_EQ(ToInt32(Val(L"3.5")), 4);
    EXPECT_EQ(ToInt32(Val(L"12abc")), 12);
    EXPECT_EQ(ToInt32(2147483647.4), 2147483647);
    EXPECT_EQ(ToInt32(-2147483648.5), std::numeric_limits<std::int32_t>::min());
}

TEST(NumbersToInt32Test, ThrowsOutOfRange) {
    for (const double number : {2147483647.5, -2147483648.6, 1e300, HUGE_VAL, -HUGE_VAL, std::nan("")}) {
        EXPECT_EQ(ErrorOf([&] { ToInt32(number); }), kOverflow) << number;
    }
}

TEST(NumbersPositionInTest, IsOneOfTheItemsPlaces) {
    EXPECT_EQ(PositionIn(L"1", 3), 1u);
    EXPECT_EQ(PositionIn(L"3rd", 3), 3u);
    EXPECT_EQ(PositionIn(L"1.5", 3), 2u);
    EXPECT_EQ(PositionIn(L"2.5", 3), 2u);
    EXPECT_EQ(PositionIn(L"0.6", 3), 1u);
}

TEST(NumbersPositionInTest, IsNoneForAnythingElse) {
    for (const wchar_t* text : {L"", L"0", L"0.5", L"3.5", L"4", L"-1", L"three", L"99999999999", L"1e999"}) {
        EXPECT_EQ(PositionIn(text, 3), 0u) << std::wstring(text);
    }
    EXPECT_EQ(PositionIn(L"1", 0), 0u);
}

TEST(NumbersToInt16Test, RoundsAndThrowsOutOfRange) {
    EXPECT_EQ(ToInt16(0.5), 0);
    EXPECT_EQ(ToInt16(1.5), 2);
    EXPECT_EQ(ToInt16(32767.4), 32767);
    EXPECT_EQ(ToInt16(-32768.5), -32768);
    EXPECT_EQ(ErrorOf([&] { ToInt16(32767.5); }), kOverflow);
    EXPECT_EQ(ErrorOf([&] { ToInt16(-32769); }), kOverflow);
    EXPECT_EQ(ErrorOf([&] { ToInt16(std::nan("")); }), kOverflow);
}

} // namespace
} // namespace tam
