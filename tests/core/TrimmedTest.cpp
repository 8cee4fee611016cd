#include "core/Trimmed.h"

#include <gtest/gtest.h>

namespace tam {
namespace {

TEST(TrimmedTest, TakesBlanksFromBothEndsAlone) {
    EXPECT_EQ(Trimmed(L"  a b "), L"a b");
    EXPECT_EQ(Trimmed(L"a"), L"a");
}

TEST(TrimmedTest, OfBlanksAloneNothingIsLeft) {
    EXPECT_EQ(Trimmed(L"   "), L"");
    EXPECT_EQ(Trimmed(L""), L"");
}

TEST(TrimmedTest, ANarrowTextIsReadAlike) {
    EXPECT_EQ(Trimmed("  a b "), "a b");
    EXPECT_EQ(Trimmed("   "), "");
    EXPECT_EQ(Trimmed("\t a\n", " \t\r\n"), "a");
}

TEST(TrimmedTest, ABlankIsWhatTheCallerTakesForOne) {
    EXPECT_EQ(Trimmed(L"\t a\n"), L"\t a\n");
    EXPECT_EQ(Trimmed(L"\t a\n", L" \t\r\n"), L"a");
}

} // namespace
} // namespace tam
