#include "view/model/SourceText.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

using namespace view;

namespace {

TEST(SourceTextTest, AnEmptyTextHasOneLine) {
    const SourceText source;
    EXPECT_EQ(1U, source.Lines());
    EXPECT_EQ("", source.Line(1));
    EXPECT_EQ(0U, source.OffsetOf({1, 1}));
    EXPECT_EQ((SourcePlace{1, 1}), source.PlaceOf(0));
    EXPECT_EQ(u"", source.Shown(u"\r\n"));
}

TEST(SourceTextTest, KnowsEachEndOfLine) {
    const SourceText source("one\r\ntwo\nthree\rfour\n\r\n\r");
    ASSERT_EQ(7U, source.Lines());
    EXPECT_EQ("one", source.Line(1));
    EXPECT_EQ("two", source.Line(2));
    EXPECT_EQ("three", source.Line(3));
    EXPECT_EQ("four", source.Line(4));
    EXPECT_EQ("", source.Line(5));
    EXPECT_EQ("", source.Line(6));
    EXPECT_EQ("", source.Line(7));
    EXPECT_EQ("", source.Line(0));
    EXPECT_EQ("", source.Line(8));
}

TEST(SourceTextTest, ALineOfALineFeedAfterACarriageReturnIsOneEnd) {
    EXPECT_EQ(2U, SourceText("a\r\nb").Lines());
    EXPECT_EQ(3U, SourceText("a\n\rb").Lines());
}

TEST(SourceTextTest, FindsTheByteOfAPlaceAndBack) {
    const SourceText source("ab\r\n\tc\nd");
    EXPECT_EQ(0U, source.OffsetOf({1, 1}));
    EXPECT_EQ(1U, source.OffsetOf({1, 2}));
    EXPECT_EQ(4U, source.OffsetOf({2, 1}));
    EXPECT_EQ(5U, source.OffsetOf({2, 2})) << "a tab is one character";
    EXPECT_EQ(7U, source.OffsetOf({3, 1}));
    EXPECT_EQ((SourcePlace{1, 3}), source.PlaceOf(2));
    EXPECT_EQ((SourcePlace{1, 3}), source.PlaceOf(3)) << "within the end of the line";
    EXPECT_EQ((SourcePlace{2, 1}), source.PlaceOf(4));
    EXPECT_EQ((SourcePlace{2, 2}), source.PlaceOf(5));
    EXPECT_EQ((SourcePlace{3, 2}), source.PlaceOf(8));
}

TEST(SourceTextTest, APlacePastAnEndIsTheEnd) {
    const SourceText source("ab\ncd");
    EXPECT_EQ(2U, source.OffsetOf({1, 99}));
    EXPECT_EQ(5U, source.OffsetOf({2, 99}));
    EXPECT_EQ(5U, source.OffsetOf({9, 1}));
    EXPECT_EQ(0U, source.OffsetOf({0, 0})) << "and before the beginning the beginning";
    EXPECT_EQ((SourcePlace{2, 3}), source.PlaceOf(99));
}

TEST(SourceTextTest, CountsCharactersNotBytes) {
    const SourceText source("\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9Ex"); // two bytes, three, four, one
    EXPECT_EQ(2U, source.OffsetOf({1, 2}));
    EXPECT_EQ(5U, source.OffsetOf({1, 3}));
    EXPECT_EQ(9U, source.OffsetOf({1, 4}));
    EXPECT_EQ((SourcePlace{1, 4}), source.PlaceOf(9));
    EXPECT_EQ(u"\u00E4\u20AC\U0001D11Ex", source.Shown(u""));
    EXPECT_EQ(2U, source.UnitsBefore({1, 3}));
    EXPECT_EQ(4U, source.UnitsBefore({1, 4})) << "what is past the first 65,536 takes two";
    EXPECT_EQ(5U, source.UnitsBefore({1, 99}));
    EXPECT_EQ(0U, source.UnitsBefore({2, 1}));
}

TEST(SourceTextTest, IsShownWithOneEndForEachLine) {
    const SourceText source("a\nbc\r\n\rd");
    EXPECT_EQ(u"a\r\nbc\r\n\r\nd", source.Shown(u"\r\n"));
    EXPECT_EQ(u"a\rbc\r\rd", source.Shown(u"\r"));
    EXPECT_EQ(3U, source.ShownOffsetOf({2, 1}, 2));
    EXPECT_EQ(4U, source.ShownOffsetOf({2, 2}, 2));
    EXPECT_EQ(9U, source.ShownOffsetOf({4, 1}, 2));
    EXPECT_EQ(10U, source.ShownOffsetOf({4, 2}, 2));
    EXPECT_EQ(7U, source.ShownOffsetOf({4, 2}, 1));
    EXPECT_EQ(10U, source.ShownOffsetOf({5, 1}, 2)) << "past the end";
}

TEST(SourceTextTest, WhereAPlaceIsShownIsWhatStandsThere) {
    const SourceText source("\xEF\xBB\xBF<Tam>\r\n\t<N\xC3\xA4me/>\n\xF0\x9D\x84\x9E</Tam>");
    const std::u16string shown = source.Shown(u"\r\n");
    EXPECT_EQ(u'<', shown.at(source.ShownOffsetOf({1, 2}, 2)));
    EXPECT_EQ(u'N', shown.at(source.ShownOffsetOf({2, 3}, 2)));
    EXPECT_EQ(u'm', shown.at(source.ShownOffsetOf({2, 5}, 2)));
    EXPECT_EQ(u'/', shown.at(source.ShownOffsetOf({3, 3}, 2)));
}

TEST(SourceTextTest, WhatIsShownLeadsBackToItsPlace) {
    const SourceText source("ab\r\n\n\xF0\x9D\x84\x9E\xC3\xA4x");
    EXPECT_EQ((SourcePlace{1, 1}), source.PlaceOfShown(0, 2));
    EXPECT_EQ((SourcePlace{1, 3}), source.PlaceOfShown(2, 2));
    EXPECT_EQ((SourcePlace{1, 3}), source.PlaceOfShown(3, 2)) << "within the end of the line";
    EXPECT_EQ((SourcePlace{2, 1}), source.PlaceOfShown(4, 2));
    EXPECT_EQ((SourcePlace{3, 1}), source.PlaceOfShown(6, 2));
    EXPECT_EQ((SourcePlace{3, 1}), source.PlaceOfShown(7, 2)) << "within a character of two units";
    EXPECT_EQ((SourcePlace{3, 2}), source.PlaceOfShown(8, 2));
    EXPECT_EQ((SourcePlace{3, 3}), source.PlaceOfShown(9, 2));
    EXPECT_EQ((SourcePlace{3, 4}), source.PlaceOfShown(10, 2));
    EXPECT_EQ((SourcePlace{3, 4}), source.PlaceOfShown(99, 2)) << "past the end";
    for (const SourcePlace place :
         {SourcePlace{1, 2}, SourcePlace{2, 1}, SourcePlace{3, 2}, SourcePlace{3, 4}}) {
        EXPECT_EQ(place, source.PlaceOfShown(source.ShownOffsetOf(place, 1), 1));
    }
}

TEST(SourceTextTest, EveryPlaceOfAByteLeadsBackToIt) {
    const std::string text = "<a>\r\n\t\xC3\xA4\n\r\xE2\x82\xAC</a>";
    const SourceText source(text);
    for (std::size_t at = 0; at <= text.size(); ++at) {
        const SourcePlace place = source.PlaceOf(at);
        EXPECT_EQ(place, source.PlaceOf(source.OffsetOf(place))) << at;
    }
}

TEST(SourceTextTest, TakesBytesThatAreNoText) {
    const SourceText source("\xFF\x80\n\xC3");
    EXPECT_EQ(2U, source.Lines());
    EXPECT_EQ(u"\uFFFD\uFFFD\r\uFFFD", source.Shown(u"\r"));
}

} // namespace
