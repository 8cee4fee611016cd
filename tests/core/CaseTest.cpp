#include "core/Case.h"

#include <gtest/gtest.h>

#include <string>

namespace tam {
namespace {

TEST(CaseTest, MapsAsciiLettersAndNothingElseOfAscii) {
    EXPECT_EQ(UpperCase(L"Az09_[`{ @"), L"AZ09_[`{ @");
    EXPECT_EQ(LowerCase(L"Az09_[`{ @"), L"az09_[`{ @");
    EXPECT_EQ(UpperCase(L""), L"");
}

TEST(CaseTest, MapsLettersOfLatin1) {
    EXPECT_EQ(UpperCase(L"\u00E0\u00E9\u00F6\u00F8\u00FE\u00FF"), L"\u00C0\u00C9\u00D6\u00D8\u00DE\u0178");
    EXPECT_EQ(LowerCase(L"\u00C0\u00C9\u00D6\u00D8\u00DE\u0178"), L"\u00E0\u00E9\u00F6\u00F8\u00FE\u00FF");
}

TEST(CaseTest, LeavesSignsAndLettersWithoutPartner) {
    // Multiplication and division sign, sharp s, micro sign, dotted capital
    // and dotless small i, kra, n with apostrophe, long s.
    const std::wstring text = L"\u00D7\u00F7\u00DF\u00B5\u0130\u0131\u0138\u0149\u017F";
    EXPECT_EQ(UpperCase(text), text);
    EXPECT_EQ(LowerCase(text), text);
}

TEST(CaseTest, MapsLatinExtendedAInBothOfItsOrders) {
    EXPECT_EQ(UpperCase(L"\u0101\u0119\u0137\u013A\u0148\u014B\u0161\u0177\u017E"),
              L"\u0100\u0118\u0136\u0139\u0147\u014A\u0160\u0176\u017D");
    EXPECT_EQ(LowerCase(L"\u0100\u0118\u0136\u0139\u0147\u014A\u0160\u0176\u017D"),
              L"\u0101\u0119\u0137\u013A\u0148\u014B\u0161\u0177\u017E");
}

TEST(CaseTest, MapsLettersOfRomanianAndVietnamese) {
    EXPECT_EQ(UpperCase(L"\u0219\u021B\u01A1\u01B0\u1EA1\u1EC7\u1EF9\u1E95"),
              L"\u0218\u021A\u01A0\u01AF\u1EA0\u1EC6\u1EF8\u1E94");
    EXPECT_EQ(LowerCase(L"\u0218\u021A\u01A0\u01AF\u1EA0\u1EC6\u1EF8\u1E94"),
              L"\u0219\u021B\u01A1\u01B0\u1EA1\u1EC7\u1EF9\u1E95");
    // A letter of its own with its capital elsewhere, and those between the pairs.
    const std::wstring text = L"\u01AE\u01B1\u0220\u0221\u1E96\u1E9E";
    EXPECT_EQ(UpperCase(text), text);
    EXPECT_EQ(LowerCase(text), text);
}

TEST(CaseTest, MapsGreekWithTonosAndBothSigmas) {
    EXPECT_EQ(UpperCase(L"\u03AC\u03AD\u03AF\u03B1\u03C9\u03CA\u03CB\u03CC\u03CD\u03CE"),
              L"\u0386\u0388\u038A\u0391\u03A9\u03AA\u03AB\u038C\u038E\u038F");
    EXPECT_EQ(LowerCase(L"\u0386\u0388\u038A\u0391\u03A9\u03AA\u03AB\u038C\u038E\u038F"),
              L"\u03AC\u03AD\u03AF\u03B1\u03C9\u03CA\u03CB\u03CC\u03CD\u03CE");
    EXPECT_EQ(UpperCase(L"\u03C3\u03C2"), L"\u03A3\u03A3");
    EXPECT_EQ(LowerCase(L"\u03A3"), L"\u03C3");
}

TEST(CaseTest, MapsCyrillic) {
    EXPECT_EQ(UpperCase(L"\u0430\u044F\u0450\u0451\u045F\u0461\u0491\u04C2\u04CF\u04D9"),
              L"\u0410\u042F\u0400\u0401\u040F\u0460\u0490\u04C1\u04C0\u04D8");
    EXPECT_EQ(LowerCase(L"\u0410\u042F\u0400\u0401\u040F\u0460\u0490\u04C1\u04C0\u04D8"),
              L"\u0430\u044F\u0450\u0451\u045F\u0461\u0491\u04C2\u04CF\u04D9");
}

TEST(CaseTest, MapsEveryCharacterBackToWhereItCameFrom) {
    for (unsigned code = 0; code <= 0xFFFF; ++code) {
        const auto c = static_cast<wchar_t>(code);
        EXPECT_EQ(UpperCase(LowerCase(UpperCase(c))), UpperCase(c)) << "character " << code;
        // The final sigma shares the capital of the other one.
        EXPECT_TRUE(UpperCase(c) == c || c == L'\u03C2' || LowerCase(UpperCase(c)) == c)
            << "character " << code;
    }
}

TEST(CaseTest, ComparesIgnoringCase) {
    EXPECT_TRUE(EqualIgnoringCase(L"DataSizes", L"DATASIZES"));
    EXPECT_TRUE(EqualIgnoringCase(L"\u00DCbergang", L"\u00FCBERGANG"));
    EXPECT_TRUE(EqualIgnoringCase(L"", L""));
    EXPECT_FALSE(EqualIgnoringCase(L"Name", L"Names"));
    EXPECT_FALSE(EqualIgnoringCase(L"[", L"{"));
}

TEST(CaseTest, KeepsCharactersAfterANul) {
    EXPECT_EQ(UpperCase(std::wstring(L"a\0b", 3)), std::wstring(L"A\0B", 3));
    EXPECT_FALSE(EqualIgnoringCase(std::wstring(L"a\0b", 3), std::wstring(L"a\0c", 3)));
}

TEST(CaseFoldedHashTest, IsTheSameForKeysThatDifferInCaseOnly) {
    const FoldedHash hash;
    EXPECT_EQ(hash(L"Val_\u03C3"), hash(L"VAL_\u03C2"));
    EXPECT_TRUE(FoldedEqual()(L"Val_\u03C3", L"VAL_\u03C2"));
    EXPECT_EQ(UpperCase(L"Val_\u03C3"), UpperCase(L"VAL_\u03C2"));
    EXPECT_NE(hash(L"Val1"), hash(L"Val2"));
}

} // namespace
} // namespace tam
