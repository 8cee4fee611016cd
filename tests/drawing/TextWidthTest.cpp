#include "drawing/TextWidth.h"
#include "tests/drawing/Sheets.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace drawingtest {

using namespace drawing;

namespace {

std::vector<char32_t> CharactersOf(const std::string& text) {
    std::vector<char32_t> characters;
    for (std::size_t at = 0; at < text.size();) {
        characters.push_back(NextCharacter(text, at));
        EXPECT_LE(at, text.size());
    }
    return characters;
}

using Characters = std::vector<char32_t>;

TEST(TextWidthNextCharacterTest, ReadsCharactersOfEveryLength) {
    EXPECT_EQ((Characters{U'a', 0xB0, 0x20AC, 0x1F600, U'z'}),
              CharactersOf("a\xC2\xB0\xE2\x82\xAC\xF0\x9F\x98\x80z"));
}

TEST(TextWidthNextCharacterTest, TakesABrokenByteForOneReplacement) {
    EXPECT_EQ((Characters{0xFFFD, U'a'}), CharactersOf("\xFF"
                                                       "a"));
    EXPECT_EQ((Characters{0xFFFD, U'a'}), CharactersOf("\xC2"
                                                       "a"));
    EXPECT_EQ((Characters{0xFFFD}), CharactersOf("\xC2"));
    EXPECT_EQ((Characters{0xFFFD, 0xFFFD}), CharactersOf("\xE2\x82"));
    // Longer than need be, half a surrogate pair, past the last character.
    EXPECT_EQ((Characters{0xFFFD, 0xFFFD}), CharactersOf("\xC0\x80"));
    EXPECT_EQ((Characters{0xFFFD, 0xFFFD, 0xFFFD}), CharactersOf("\xE0\x80\x80"));
    EXPECT_EQ((Characters{0xFFFD, 0xFFFD, 0xFFFD}), CharactersOf("\xED\xA0\x80"));
    EXPECT_EQ((Characters{0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD}), CharactersOf("\xF4\x90\x80\x80"));
}

TEST(TextWidthShortenedTest, LeavesWhatFits) {
    EXPECT_EQ("AI1_Out", Shortened("AI1_Out", Font::Tag, 7 * 5.5, EvenWidth));
    EXPECT_EQ("", Shortened("", Font::Tag, 0, EvenWidth));
}

TEST(TextWidthShortenedTest, KeepsTheLongestBeginningThatFits) {
    // The ellipsis is three bytes long, so three letters wide here.
    EXPECT_EQ("AI1\u2026", Shortened("AI1_Out", Font::Tag, 6 * 5.5, EvenWidth));
    EXPECT_EQ("AI\u2026", Shortened("AI1_Out", Font::Tag, 6 * 5.5 - 0.1, EvenWidth));
    EXPECT_EQ("\u2026", Shortened("AI1_Out", Font::Tag, 1, EvenWidth));
}

TEST(TextWidthShortenedTest, CutsBetweenCharacters) {
    const std::string degrees = "\u00B0\u00B0\u00B0\u00B0\u00B0";
    EXPECT_EQ("\u00B0\u2026", Shortened(degrees, Font::Tag, 6 * 5.5, EvenWidth));
}

TEST(TextWidthShortenedTest, EndsATextFromRightToLeftOnItsOwnSide) {
    // Bet, vav and so on; each is two bytes long, so two letters wide here.
    const std::string boiler = "\u05D3\u05D5\u05D3";
    const std::string end = "\u2026\u200F"; // six bytes
    EXPECT_EQ("\u05D3" + end, Shortened(boiler + boiler, Font::Tag, 9 * 5.5, EvenWidth));
    EXPECT_EQ("\u05D3 1" + end, Shortened("\u05D3 1" + boiler + boiler, Font::Tag, 10 * 5.5, EvenWidth));
    EXPECT_EQ("\u062A" + end, Shortened("\u062A\u062B\u062C\u062D\u062E", Font::Tag, 8 * 5.5, EvenWidth));
    // The last letter counts, not the first.
    EXPECT_EQ("\u05D3AB\u2026", Shortened("\u05D3ABCDEFG", Font::Tag, 7 * 5.5, EvenWidth));
    EXPECT_EQ("A\u05D3" + end, Shortened("A" + boiler + boiler, Font::Tag, 9 * 5.5, EvenWidth));
    EXPECT_EQ("\u2026", Shortened(boiler, Font::Tag, 1, EvenWidth));
}

TEST(TextWidthByTableTest, GrowsWithTheTextAndTheFont) {
    EXPECT_EQ(0, WidthByTable("", Font::Name));
    EXPECT_LT(WidthByTable("il", Font::Name), WidthByTable("WM", Font::Name));
    EXPECT_DOUBLE_EQ(2 * WidthByTable("AI1", Font::Name), WidthByTable("AI1AI1", Font::Name));
    EXPECT_LT(WidthByTable("AI1", Font::Note), WidthByTable("AI1", Font::Name));
    // A combining mark takes no room, an ideograph that of a letter's height at least.
    EXPECT_DOUBLE_EQ(WidthByTable("a", Font::Name), WidthByTable("a\u0301", Font::Name));
    EXPECT_GE(WidthByTable("\u6C34", Font::Name), 13);
}

} // namespace

} // namespace drawingtest
