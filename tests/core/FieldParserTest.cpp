#include "core/FieldParser.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace tam {
namespace {

std::vector<std::wstring> Fields(std::wstring_view text, std::wstring_view delimiter) {
    std::vector<std::wstring> fields;
    FieldWalker walker(text, delimiter);
    while (const auto field = walker.Next()) {
        fields.emplace_back(*field);
    }
    return fields;
}

using Texts = std::vector<std::wstring>;

TEST(FieldParserParseStringTest, GivesTheFieldsAndNothingAfterTheLast) {
    EXPECT_EQ(ParseString(L"a;b;c", 0, L";"), L"a");
    EXPECT_EQ(ParseString(L"a;b;c", 1, L";"), L"b");
    EXPECT_EQ(ParseString(L"a;b;c", 2, L";"), L"c");
    EXPECT_EQ(ParseString(L"a;b;c", 3, L";"), L"");
}

TEST(FieldParserParseStringTest, GivesTheWholeTextWhenTheDelimiterIsAbsent) {
    EXPECT_EQ(ParseString(L"abc", 0, L";"), L"abc");
    EXPECT_EQ(ParseString(L"abc", 1, L";"), L"");
}

TEST(FieldParserParseStringTest, GivesAnEmptyFieldBetweenTwoDelimiters) {
    EXPECT_EQ(ParseString(L"a;;c", 1, L";"), L"");
    EXPECT_EQ(ParseString(L"a;;c", 2, L";"), L"c");
}

TEST(FieldParserParseStringTest, GivesNothingOfAnEmptyText) {
    for (const std::int32_t field : {-1, 0, 1, 2, std::numeric_limits<std::int32_t>::max()}) {
        EXPECT_EQ(ParseString(L"", field, L";"), L"") << "field " << field;
    }
}

TEST(FieldParserParseStringTest, GivesNothingForANegativeField) {
    EXPECT_EQ(ParseString(L"a;b", -1, L";"), L"");
    EXPECT_EQ(ParseString(L"a;b", std::numeric_limits<std::int32_t>::min(), L";"), L"");
}

TEST(FieldParserParseStringTest, EndsForTheHighestFieldNumber) {
    EXPECT_EQ(ParseString(L"a;b", std::numeric_limits<std::int32_t>::max(), L";"), L"");
}

TEST(FieldParserParseStringTest, TellsCaseApartInTheDelimiter) {
    EXPECT_EQ(ParseString(L"aXbxc", 0, L"x"), L"aXb");
    EXPECT_EQ(ParseString(L"aXbxc", 1, L"x"), L"c");
}

TEST(FieldParserParseStringTest, SplitsAtADelimiterOfSeveralCharacters) {
    EXPECT_EQ(ParseString(L"one->two->three", 0, L"->"), L"one");
    EXPECT_EQ(ParseString(L"one->two->three", 1, L"->"), L"two");
    EXPECT_EQ(ParseString(L"one->two->three", 2, L"->"), L"three");
}

TEST(FieldParserParseStringTest, SearchesOneCharacterAfterAHitSoThatDelimitersMayOverlap) {
    // Delimiters stand at characters 2 and 3; nothing lies between them.
    EXPECT_EQ(ParseString(L"a;;;b", 0, L";;"), L"a");
    EXPECT_EQ(ParseString(L"a;;;b", 1, L";;"), L"");
    EXPECT_EQ(ParseString(L"a;;;b", 2, L";;"), L"b");
    EXPECT_EQ(ParseString(L"a;;;b", 3, L";;"), L"");
}

TEST(FieldParserParseStringTest, SplitsNothingAtAnEmptyDelimiter) {
    EXPECT_EQ(ParseString(L"abc", 0, L""), L"abc");
    EXPECT_EQ(ParseString(L"abc", 1, L""), L"");
    EXPECT_EQ(ParseString(L"", 0, L""), L"");
}

TEST(FieldParserParseStringTest, GivesAnEmptyFieldAfterAClosingDelimiter) {
    EXPECT_EQ(ParseString(L"a;", 0, L";"), L"a");
    EXPECT_EQ(ParseString(L"a;", 1, L";"), L"");
    EXPECT_EQ(ParseString(L";", 0, L";"), L"");
}

TEST(FieldParserWalkerTest, GivesOneFieldMoreThanDelimiters) {
    EXPECT_EQ(Fields(L"a;;c;", L";"), (Texts{L"a", L"", L"c", L""}));
    EXPECT_EQ(Fields(L"abc", L";"), Texts{L"abc"});
    EXPECT_EQ(Fields(L"", L";"), Texts{L""});
    EXPECT_EQ(Fields(L"abc", L""), Texts{L"abc"});
}

TEST(FieldParserWalkerTest, StaysAtItsEnd) {
    FieldWalker walker(L"a", L";");
    EXPECT_TRUE(walker.Next());
    EXPECT_FALSE(walker.Next());
    EXPECT_FALSE(walker.Next());
}

/// The field by a search from the text's start, as the rule is worded.
std::wstring FieldByRule(const std::wstring& text, int field, const std::wstring& delimiter) {
    if (text.empty()) {
        return {};
    }
    std::size_t hit = text.find(delimiter);
    if (field == 0) {
        return text.substr(0, hit);
    }
    for (int i = 1; i < field && hit != std::wstring::npos; ++i) {
        hit = text.find(delimiter, hit + 1);
    }
    if (hit == std::wstring::npos) {
        return {};
    }
    const std::size_t begin = hit + delimiter.size();
    const std::size_t next = text.find(delimiter, hit + 1);
    const std::size_t end = next != std::wstring::npos ? next : text.size();
    return begin < end ? text.substr(begin, end - begin) : std::wstring();
}

TEST(FieldParserWalkerTest, AgreesWithTheRuleOnRandomTexts) {
    std::mt19937 random(20);
    for (int round = 0; round < 2000; ++round) {
        std::wstring text(random() % 12, L'a');
        for (wchar_t& c : text) {
            c = L"ab;,"[random() % 4];
        }
        const std::wstring delimiter =
            std::vector<std::wstring>{L";", L",", L";;", L";,;", L"aa"}[random() % 5];
        const auto fields = Fields(text, delimiter);
        for (int field = 0; field < 15; ++field) {
            const auto at = static_cast<std::size_t>(field);
            const std::wstring expected = FieldByRule(text, field, delimiter);
            EXPECT_EQ(ParseString(text, field, delimiter), expected)
                << "round " << round << " field " << field;
            EXPECT_EQ(at < fields.size() ? fields[at] : L"", expected)
                << "round " << round << " field " << field;
        }
    }
}

TEST(FieldParserWalkerTest, WalksALongListOnce) {
    // 200,000 fields: a walk from the start for each would take minutes.
    std::wstring list;
    for (int i = 0; i < 200'000; ++i) {
        list.append(L"17,");
    }
    EXPECT_EQ(Fields(list, L",").size(), 200'001u);
}

} // namespace
} // namespace tam
