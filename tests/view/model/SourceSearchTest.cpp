#include "view/model/SourceSearch.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string_view>

using namespace view;

namespace {

constexpr std::u16string_view kText = u"<Gain>2</Gain>\r\n<GAIN_2/>";
//                                     0123456789...     16

std::optional<TextMatch> Match(std::size_t begin, std::size_t end, bool isAround) {
    return TextMatch{{begin, end}, isAround};
}

std::optional<TextMatch> Next(std::u16string_view text, std::u16string_view words, TextRange selected) {
    return FindInText(text, words, selected, true);
}

std::optional<TextMatch> Former(std::u16string_view text, std::u16string_view words, TextRange selected) {
    return FindInText(text, words, selected, false);
}

TEST(SourceSearchTest, FindsTheNextPlaceAfterTheSelectionInAnyLetterCase) {
    EXPECT_EQ(Match(1, 5, false), Next(kText, u"gain", {0, 0}));
    EXPECT_EQ(Match(1, 5, false), Next(kText, u"GaIn", {1, 1})) << "where the caret is";
    EXPECT_EQ(Match(9, 13, false), Next(kText, u"gain", {1, 5}));
    EXPECT_EQ(Match(17, 21, false), Next(kText, u"gain", {9, 13}));
}

TEST(SourceSearchTest, GoesOnAroundTheEnd) {
    EXPECT_EQ(Match(1, 5, true), Next(kText, u"gain", {17, 21}));
    EXPECT_EQ(Match(17, 23, true), Next(kText, u"gain_2", {17, 23})) << "the only one is the next one too";
    EXPECT_EQ(Match(17, 21, true), Former(kText, u"gain", {1, 5}));
    EXPECT_EQ(Match(17, 21, true), Former(kText, u"gain", {0, 0}));
}

TEST(SourceSearchTest, FindsThePlaceBeforeTheSelection) {
    EXPECT_EQ(Match(9, 13, false), Former(kText, u"gain", {17, 21}));
    EXPECT_EQ(Match(1, 5, false), Former(kText, u"gain", {9, 13}));
    EXPECT_EQ(Match(1, 5, false), Former(kText, u"gain", {12, 12})) << "a place is before its end alone";
}

TEST(SourceSearchTest, NeitherWayFindsTwoPlacesThatOverlap) {
    EXPECT_EQ(Match(0, 2, false), Next(u"aaaa", u"aa", {0, 0}));
    EXPECT_EQ(Match(2, 4, false), Next(u"aaaa", u"aa", {0, 2}));
    EXPECT_EQ(Match(0, 2, false), Former(u"aaaa", u"aa", {2, 4}));
}

TEST(SourceSearchTest, WhatIsNowhereIsNotFound) {
    EXPECT_EQ(std::nullopt, Next(kText, u"offset", {0, 0}));
    EXPECT_EQ(std::nullopt, Former(kText, u"offset", {20, 20}));
    EXPECT_EQ(std::nullopt, Next(kText, u"", {0, 0}));
    EXPECT_EQ(std::nullopt, Next(u"", u"gain", {0, 0}));
    EXPECT_EQ(std::nullopt, Former(u"", u"", {0, 0}));
    EXPECT_EQ(std::nullopt, Next(u"ga", u"gain", {0, 0})) << "longer than the text";
}

TEST(SourceSearchTest, ASelectionPastTheEndIsTheEnd) {
    EXPECT_EQ(Match(1, 5, true), Next(kText, u"gain", {99, 99}));
    EXPECT_EQ(Match(17, 21, false), Former(kText, u"gain", {99, 99}));
}

TEST(SourceSearchTest, LettersBeyondTheFirstAlphabetHaveCasesToo) {
    EXPECT_EQ(Match(1, 6, false), Next(u"<Z\u00E4hler\u00D6>", u"Z\u00C4HLE", {0, 0}));
    EXPECT_EQ(Match(7, 8, false), Next(u"<Z\u00E4hler\u00D6>", u"\u00F6", {0, 0}));
    EXPECT_EQ(Match(1, 3, false), Next(u"x\U0001D11E", u"\U0001D11E", {0, 0})) << "two units";
}

} // namespace
