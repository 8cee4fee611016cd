#include "core/Numbers.h"

#include "AllocationFault.h"
#include "Thrown.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <string>
#include <system_error>

// Numbers that only all of their digits tell from the next double, and many at random
// beside the C++ library.

namespace tam {
namespace {

constexpr double kSmallest = std::numeric_limits<double>::denorm_min();

std::wstring Wide(const std::string& text) {
    return std::wstring(text.begin(), text.end());
}

/// 5 to the power of n, so n times the half of one has these digits.
std::string PowerOfFive(int n) {
    std::string digits = "1"; // the lowest first
    for (; n > 0; --n) {
        int carried = 0;
        for (char& digit : digits) {
            carried += (digit - '0') * 5;
            digit = static_cast<char>('0' + carried % 10);
            carried /= 10;
        }
        if (carried != 0) {
            digits.push_back(static_cast<char>('0' + carried));
        }
    }
    return std::string(digits.rbegin(), digits.rend());
}

TEST(DecimalNumberTest, TakesTheEvenOneOfTwoInTheMiddle) {
    // 2 to the power of 53, where doubles stand 2 apart.
    EXPECT_EQ(Val(L"9007199254740993"), 9007199254740992.0);
    EXPECT_EQ(Val(L"9007199254740995"), 9007199254740996.0);
    EXPECT_EQ(Val(L"-9007199254740995"), -9007199254740996.0);
    EXPECT_EQ(Val(L"9007199254740992999e-3"), 9007199254740992.0);
    EXPECT_EQ(Val(L"9007199254740993001e-3"), 9007199254740994.0);
}

TEST(DecimalNumberTest, CountsEveryDigitAfterTheMiddle) {
    const std::wstring middle = L"9007199254740993.";
    for (const std::size_t zeros : {1U, 100U, 750U, 760U, 800U, 5000U}) {
        EXPECT_EQ(Val(middle + std::wstring(zeros, L'0')), 9007199254740992.0) << zeros;
        EXPECT_EQ(Val(middle + std::wstring(zeros, L'0') + L"1"), 9007199254740994.0) << zeros;
    }
}

TEST(DecimalNumberTest, RoundsBelowTheSmallestNumbers) {
    // Half of the smallest one, in all of its 752 digits.
    const std::string half = PowerOfFive(1075);
    ASSERT_EQ(752U, half.size());
    EXPECT_EQ(Val(Wide(half + "e-1075")), 0);
    EXPECT_EQ(Val(Wide(half + "1e-1076")), kSmallest);
    EXPECT_EQ(Val(Wide(half.substr(0, half.size() - 1) + "4e-1075")), 0);
    EXPECT_EQ(Val(L"3e-324"), kSmallest);
    EXPECT_EQ(Val(L"2e-324"), 0);
    EXPECT_EQ(Val(L"1e-323"), 2 * kSmallest);
    EXPECT_EQ(Val(L"2.2250738585072011e-308"), std::numeric_limits<double>::min() - kSmallest);
    EXPECT_EQ(Val(L"2.2250738585072014e-308"), std::numeric_limits<double>::min());
}

TEST(DecimalNumberTest, IsInfinitePastTheMiddleAfterTheGreatest) {
    const double most = std::numeric_limits<double>::max();
    EXPECT_EQ(Val(L"1.79769313486231580e308"), most);
    EXPECT_EQ(Val(L"179769313486231580793e288"), most);
    for (const auto* text :
         {L"179769313486231580794e288", L"1.7976931348623159e308", L"1.8e308", L"2e308", L"3.6e308", L"5e308",
          L"9e308", L"9.99e308", L"-9e308", L"62730490057238e295", L"1e309", L"-1e309"}) {
        EXPECT_EQ(ErrorOf([text] { Val(text); }), kOverflow) << text;
    }
}

TEST(DecimalNumberTest, RoundsOnceInEveryBuild) {
    // In the middle of two doubles, as nearly as 64 bits can tell.
    EXPECT_EQ(Val(L".864881048496524e23"), 0x1.25087912723efp+76);
}

TEST(DecimalNumberTest, TakesNoMemory) {
    const std::wstring text = std::wstring(3000, L'7') + L"e-3000";
    const AllocationFault fault(0);
    EXPECT_EQ(Val(text), 0.7777777777777778);
    EXPECT_EQ(Val(L"0.1234567890123456789012345678901234567890"), 0.12345678901234568);
}

TEST(DecimalNumberTest, AgreesWithTheLibrary) {
    std::mt19937 random(20261122);
    for (int round = 0; round < 200'000; ++round) {
        std::string text = std::to_string(random() % 9 + 1);
        for (auto digits = random() % (round % 100 == 0 ? 800 : 24); digits > 0; --digits) {
            text.push_back(static_cast<char>('0' + random() % 10));
        }
        text.insert(random() % (text.size() + 1), ".");
        const int exponent = static_cast<int>(random() % 660) - 340;
        text.append("e").append(std::to_string(exponent));
        double expected = 0;
        const std::string plain = text.front() == '.' ? "0" + text : text;
        const auto read = std::from_chars(plain.data(), plain.data() + plain.size(), expected);
        if (read.ec != std::errc()) {
            // Past the range where the first digit, which is not 0, stands far before the mark.
            const bool isPast = static_cast<int>(text.find('.')) + exponent > 0;
            if (isPast) {
                ASSERT_EQ(ErrorOf([&] { Val(Wide(text)); }), kOverflow) << text;
            } else {
                ASSERT_EQ(Val(Wide(text)), 0) << text;
            }
            continue;
        }
        const double value = Val(Wide(text));
        // In 32 bits the library multiplies short numbers by a processor that rounds twice.
        const bool isNextToIt = sizeof(void*) == 4 && std::nextafter(value, expected) == expected;
        ASSERT_TRUE(value == expected || isNextToIt) << text;
    }
}

} // namespace
} // namespace tam
