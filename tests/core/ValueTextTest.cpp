#include "core/ValueText.h"

#include "Thrown.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <utility>

namespace tam {
namespace {

TEST(ValueTextDecimalSeparatorFromTest, IsACommaExactlyWhenTheTextHasOne) {
    EXPECT_EQ(DecimalSeparatorFrom(L"0,5"), L",");
    EXPECT_EQ(DecimalSeparatorFrom(L"0.5"), L".");
    EXPECT_EQ(DecimalSeparatorFrom(L",5"), L",");
    EXPECT_EQ(DecimalSeparatorFrom(L"0'5"), L".");
    EXPECT_EQ(DecimalSeparatorFrom(L""), L".");
}

TEST(ValueTextMoveDecimalMarkTest, LeavesATextWithoutMark) {
    for (const wchar_t* text : {L"12", L"", L"abc", L"-7"}) {
        EXPECT_EQ(MoveDecimalMark(text, L","), text);
        EXPECT_EQ(MoveDecimalMark(text, L"."), text);
        EXPECT_EQ(MoveDecimalMark(text, L""), text);
    }
}

TEST(ValueTextMoveDecimalMarkTest, PutsTheUsersMarkForEitherMark) {
    EXPECT_EQ(MoveDecimalMark(L"1.5", L","), L"1,5");
    EXPECT_EQ(MoveDecimalMark(L"1,5", L","), L"1,5");
    EXPECT_EQ(MoveDecimalMark(L"1.5", L"."), L"1.5");
    EXPECT_EQ(MoveDecimalMark(L"1,5", L"."), L"1.5");
    EXPECT_EQ(MoveDecimalMark(L"-12.5", L","), L"-12,5");
}

TEST(ValueTextMoveDecimalMarkTest, PrefersThePointWhereverTheCommaStands) {
    EXPECT_EQ(MoveDecimalMark(L"1.234,5", L","), L"1,234,5");
    EXPECT_EQ(MoveDecimalMark(L"1.234,5", L"."), L"1.234,5");
    EXPECT_EQ(MoveDecimalMark(L"1,000.5", L","), L"1,000,5");
    EXPECT_EQ(MoveDecimalMark(L"1,000.5", L"."), L"1,000.5");
}

TEST(ValueTextMoveDecimalMarkTest, ReplacesTheFirstOfTwoEqualMarks) {
    EXPECT_EQ(MoveDecimalMark(L"1.2.3", L","), L"1,2.3");
    EXPECT_EQ(MoveDecimalMark(L"1,2,3", L"."), L"1.2,3");
}

TEST(ValueTextMoveDecimalMarkTest, WorksAtTheEndsOfTheText) {
    EXPECT_EQ(MoveDecimalMark(L",5", L"."), L".5");
    EXPECT_EQ(MoveDecimalMark(L"5.", L","), L"5,");
    EXPECT_EQ(MoveDecimalMark(L".", L","), L",");
}

TEST(ValueTextMoveDecimalMarkTest, DropsTheMarkWhileThereIsNoSeparator) {
    EXPECT_EQ(MoveDecimalMark(L"1.5", L""), L"15");
    EXPECT_EQ(MoveDecimalMark(L"1,5", L""), L"15");
}

TEST(ValueTextMoveDecimalMarkTest, GivesTheSameWhenAppliedTwice) {
    for (const wchar_t* separator : {L",", L"."}) {
        for (const wchar_t* text : {L"-12.5", L"1,000.5", L"7", L",5"}) {
            const std::wstring once = MoveDecimalMark(text, separator);
            EXPECT_EQ(MoveDecimalMark(once, separator), once) << std::wstring(text);
        }
    }
}

/// The text and the value afterwards, such as "00 256".
std::wstring Hex(std::int32_t value, int digits) {
    const std::wstring text = ToFixedHex(value, static_cast<std::int16_t>(digits));
    return text + L" " + std::to_wstring(value);
}

TEST(ValueTextToFixedHexTest, FillsWithZerosToTheNumberOfDigits) {
    EXPECT_EQ(Hex(255, 2), L"FF 255");
    EXPECT_EQ(Hex(10, 4), L"000A 10");
    EXPECT_EQ(Hex(0, 4), L"0000 0");
    EXPECT_EQ(Hex(16899, 4), L"4203 16899");
    EXPECT_EQ(Hex(0, 1), L"0 0");
}

TEST(ValueTextToFixedHexTest, SetsAValueAboveTheRangeToTheRangeAndShowsZeros) {
    EXPECT_EQ(Hex(256, 2), L"00 256");
    EXPECT_EQ(Hex(257, 2), L"00 256");
    EXPECT_EQ(Hex(300, 2), L"00 256");
    EXPECT_EQ(Hex(65537, 4), L"0000 65536");
    EXPECT_EQ(Hex(std::numeric_limits<std::int32_t>::max(), 7), L"0000000 268435456");
    EXPECT_EQ(Hex(std::numeric_limits<std::int32_t>::max(), 8), L"7FFFFFFF 2147483647");
}

TEST(ValueTextToFixedHexTest, ShowsTheLastDigitsOfANegativeValue) {
    EXPECT_EQ(Hex(-1, 8), L"FFFFFFFF -1");
    EXPECT_EQ(Hex(-1, 4), L"FFFF -1");
    EXPECT_EQ(Hex(std::numeric_limits<std::int32_t>::min(), 8), L"80000000 -2147483648");
    EXPECT_EQ(Hex(-2, 10), L"00FFFFFFFE -2");
}

TEST(ValueTextToFixedHexTest, ShowsNothingForNoDigits) {
    EXPECT_EQ(Hex(7, 0), L" 1");
    EXPECT_EQ(Hex(1, 0), L" 1");
    EXPECT_EQ(Hex(-7, 0), L" -7");
}

TEST(ValueTextToFixedHexTest, FillsToAnyNumberOfDigitsWhoseFourFoldFitsSixteenBits) {
    EXPECT_EQ(Hex(171, 8191), std::wstring(8189, L'0') + L"AB 171");
}

TEST(ValueTextToFixedHexTest, ThrowsWhenFourTimesTheDigitsLeaveSixteenBits) {
    std::int32_t value = 7;
    for (const int digits : {8192, 32767, -8193, -32768}) {
        EXPECT_EQ(ErrorOf([&] { ToFixedHex(value, static_cast<std::int16_t>(digits)); }), kOverflow)
            << digits;
    }
    EXPECT_EQ(value, 7);
}

TEST(ValueTextToFixedHexTest, RefusesANegativeNumberOfDigits) {
    std::int32_t value = 7;
    for (const int digits : {-1, -8192}) {
        EXPECT_EQ(ErrorOf([&] { ToFixedHex(value, static_cast<std::int16_t>(digits)); }), kInvalidCall)
            << digits;
    }
    EXPECT_EQ(value, 7);
}

} // namespace
} // namespace tam
