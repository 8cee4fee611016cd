#include "core/LongText.h"

#include <gtest/gtest.h>

#include <string>

namespace tam {
namespace {

const std::wstring kSoft(kSoftBreak);

TEST(LongTextTest, MakesEachLineBreakOneOfTwoCharacters) {
    EXPECT_EQ(WithLineBreaks(L"a\rb"), L"a\r\nb");
    EXPECT_EQ(WithLineBreaks(L"a\nb"), L"a\r\nb");
    EXPECT_EQ(WithLineBreaks(L"a\r\nb"), L"a\r\nb");
    EXPECT_EQ(WithLineBreaks(L"\n\n\r\ra\n"), L"\r\n\r\n\r\n\r\na\r\n");
    EXPECT_EQ(WithLineBreaks(L"a\r\r\nb"), L"a\r\n\r\nb");
    EXPECT_EQ(WithLineBreaks(L"a\n\rb"), L"a\r\n\r\nb");
    EXPECT_EQ(WithLineBreaks(L""), L"");
    EXPECT_EQ(WithLineBreaks(L"plain"), L"plain");
}

TEST(LongTextTest, MakesEachNulABlank) {
    const std::wstring nul(1, L'\0');
    EXPECT_EQ(WithLineBreaks(L"a" + nul + L"b"), L"a b");
    EXPECT_EQ(WithLineBreaks(nul + nul + L"\n" + nul), L"  \r\n ");
}

TEST(LongTextTest, BreaksALongWordSoftly) {
    const std::wstring row(500, L'x');
    EXPECT_EQ(WithSoftBreaks(row), row);
    EXPECT_EQ(WithSoftBreaks(row + L"y"), row + kSoft + L"y");
    EXPECT_EQ(WithSoftBreaks(row + row + L"y"), row + kSoft + row + kSoft + L"y");
}

TEST(LongTextTest, BreaksAfterABlankWhereThereIsOne) {
    const std::wstring words = std::wstring(300, L'a') + L" " + std::wstring(100, L'b') + L"\t";
    EXPECT_EQ(WithSoftBreaks(words + std::wstring(200, L'c')), words + kSoft + std::wstring(200, L'c'));
    const std::wstring full = std::wstring(499, L'a') + L" ";
    EXPECT_EQ(WithSoftBreaks(full + L"b"), full + kSoft + L"b");
}

TEST(LongTextTest, CountsFromTheLastLineBreakOn) {
    const std::wstring row(500, L'x');
    EXPECT_EQ(WithSoftBreaks(row + L"\r\n" + row + L"\r\n" + row), row + L"\r\n" + row + L"\r\n" + row);
    EXPECT_EQ(WithSoftBreaks(L"\r\n" + row + L"y\r\n"), L"\r\n" + row + kSoft + L"y\r\n");
}

TEST(LongTextTest, LeavesAPairOfSurrogatesTogether) {
    const std::wstring row(499, L'x');
    for (const wchar_t first : {L'\xD800', L'\xD83D', L'\xDBFF'}) {
        const std::wstring pair{first, L'\xDE00'};
        EXPECT_EQ(WithSoftBreaks(row + pair), row + kSoft + pair);
        EXPECT_EQ(WithSoftBreaks(row.substr(1) + pair + L"y"), row.substr(1) + pair + kSoft + L"y");
    }
    // What stands beside those in the table is a letter, or a second half alone.
    for (const wchar_t other : {L'\xD7FF', L'\xDC00'}) {
        EXPECT_EQ(WithSoftBreaks(row + other + L"y"), row + other + kSoft + L"y");
    }
}

TEST(LongTextTest, TakesItsSoftBreaksOutAgain) {
    const std::wstring word(1 << 20, L'n');
    for (const std::wstring& text :
         {word, L"a b " + word + L" \n" + word, std::wstring(L"short"), std::wstring()}) {
        const std::wstring whole = WithLineBreaks(text);
        EXPECT_TRUE(WithoutSoftBreaks(WithSoftBreaks(whole)) == whole);
    }
    EXPECT_EQ(WithoutSoftBreaks(L"a\r\nb"), L"a\r\nb");
}

} // namespace
} // namespace tam
