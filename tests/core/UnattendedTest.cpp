#include "core/Unattended.h"

#include <gtest/gtest.h>

#include <string>

namespace tam {
namespace {

TEST(UnattendedTest, IsOffWithoutAValueAndForZero) {
    for (const wchar_t* value : {L"", L"0"}) {
        EXPECT_FALSE(IsUnattendedBy(value));
        EXPECT_EQ(UnattendedFile(value), L"");
    }
}

TEST(UnattendedTest, IsOnForOneWithoutAFile) {
    EXPECT_TRUE(IsUnattendedBy(L"1"));
    EXPECT_EQ(UnattendedFile(L"1"), L"");
}

TEST(UnattendedTest, TakesAnyOtherValueForAFile) {
    for (const wchar_t* value : {L"C:\\night.jsonl", L"2", L"00", L"01"}) {
        EXPECT_TRUE(IsUnattendedBy(value));
        EXPECT_EQ(UnattendedFile(value), value);
    }
}

TEST(UnattendedTest, WritesAllMembersInOneLine) {
    EXPECT_EQ(JsonLine({L"report", L"Title", L"Text", L"Sub X", L"Class Y", L"O_Tam_id"},
                       L"2026-01-02T03:04:05.006Z"),
              LR"({"time": "2026-01-02T03:04:05.006Z", "kind": "report", "title": "Title", "text": "Text", )"
              LR"("label": "Sub X", "place": "Class Y", "source": "O_Tam_id"})");
}

std::wstring TextOf(const std::wstring& text) {
    const std::wstring line = JsonLine({{}, {}, text, {}, {}, {}}, {});
    const std::wstring before = LR"({"time": "", "kind": "", "title": "", "text": )";
    const std::wstring after = LR"(, "label": "", "place": "", "source": ""})";
    EXPECT_EQ(line.substr(0, before.size()), before);
    return line.substr(before.size(), line.size() - before.size() - after.size());
}

TEST(UnattendedTest, EscapesWhatWouldEndTheTextOrTheLine) {
    EXPECT_EQ(TextOf(LR"(a "b" \c)"), LR"("a \"b\" \\c")");
    EXPECT_EQ(TextOf(L"a\r\nb\tc"), LR"("a\u000d\u000ab\u0009c")");
    EXPECT_EQ(TextOf(std::wstring(1, L'\0') + L"\x1f\x20"), LR"("\u0000\u001f )"
                                                            L"\"");
}

TEST(UnattendedTest, EscapesHalfOfASurrogatePairAlone) {
    const std::wstring high(1, static_cast<wchar_t>(0xD83D));
    const std::wstring low(1, static_cast<wchar_t>(0xDE00));
    EXPECT_EQ(TextOf(high + low), L"\"" + high + low + L"\"");
    EXPECT_EQ(TextOf(high), LR"("\ud83d")");
    EXPECT_EQ(TextOf(low + high), LR"("\ude00\ud83d")");
    EXPECT_EQ(TextOf(high + high + low), LR"("\ud83d)" + high + low + L"\"");
}

} // namespace
} // namespace tam
