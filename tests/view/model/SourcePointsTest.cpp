#include "view/model/SourcePoints.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>

using namespace view;

namespace {

/// The text with the bar taken out, and where the bar was.
struct Marked {
    explicit Marked(const std::string& marked) : text(marked), at(marked.find('|')) { text.erase(at, 1); }
    std::string text;
    std::size_t at;
};

std::optional<PointId> PointAtMark(const std::string& marked) {
    const Marked sample(marked);
    return SourcePoints(sample.text).At(sample.at);
}

TEST(SourcePointsTest, FindsThePointAroundAPlace) {
    EXPECT_EQ((PointId{Kind::Input, L"AO1"}),
              PointAtMark("<Tam><InReferences><AO1><VISIBLE>|1</VISIBLE></AO1></InReferences></Tam>"));
    EXPECT_EQ((PointId{Kind::Output, L"AI1"}),
              PointAtMark("<Tam><OutReferences><|AI1/></OutReferences></Tam>"));
    EXPECT_EQ((PointId{Kind::Attribute, L"Gain"}),
              PointAtMark("<Tam><Attributes><Gain><VALUE>1</VALUE></Gain|></Attributes></Tam>"));
}

TEST(SourcePointsTest, APlaceOutsideIsNoPoint) {
    EXPECT_EQ(std::nullopt, PointAtMark("<Tam><Name>|x</Name><Attributes><a/></Attributes></Tam>"));
    EXPECT_EQ(std::nullopt, PointAtMark("<Tam><Attributes|><a/></Attributes></Tam>"));
    EXPECT_EQ(std::nullopt, PointAtMark("<Tam><Attributes><a/>|</Attributes></Tam>"));
    EXPECT_EQ(std::nullopt, PointAtMark("<Tam><Attributes><a/> | <b/></Attributes></Tam>"));
    EXPECT_EQ(std::nullopt, PointAtMark("<Tam><Others><a>|</a></Others></Tam>"));
    EXPECT_EQ(std::nullopt, PointAtMark("|"));
}

TEST(SourcePointsTest, KnowsWhereAPointStands) {
    const std::string text = "<Tam><Attributes> <Gain><VALUE>1</VALUE></Gain><Mode/></Attributes></Tam>";
    const SourcePoints points(text);
    const auto* gain = points.Find({Kind::Attribute, L"GAIN"});
    ASSERT_NE(nullptr, gain);
    EXPECT_EQ("<Gain><VALUE>1</VALUE></Gain>", text.substr(gain->begin, gain->end - gain->begin));
    const auto* mode = points.Find({Kind::Attribute, L"Mode"});
    ASSERT_NE(nullptr, mode);
    EXPECT_EQ("<Mode/>", text.substr(mode->begin, mode->end - mode->begin));
    EXPECT_EQ(nullptr, points.Find({Kind::Input, L"Gain"}));
    EXPECT_EQ(2U, points.Places().size());
}

TEST(SourcePointsTest, ReadsCommentsAndSectionsOfTextForNoTags) {
    const SourcePoints points("<?xml version='1.0'?><!DOCTYPE Tam><Tam><!-- <Attributes><x/> --><Attributes>"
                              "<![CDATA[<y/>]]><?z <z/>?><Gain note='>'/></Attributes></Tam>");
    ASSERT_EQ(1U, points.Places().size());
    EXPECT_EQ(L"Gain", points.Places()[0].point.name);
}

TEST(SourcePointsTest, ReadsADamagedTextAsFarAsItsTagsGo) {
    const SourcePoints points("<Tam><Attributes><a><VALUE>1</a></NOTHING><b></Attributes>"
                              "<InReferences><c><VISIBLE>");
    ASSERT_EQ(3U, points.Places().size());
    EXPECT_EQ((PointId{Kind::Attribute, L"a"}), points.Places()[0].point);
    EXPECT_EQ((PointId{Kind::Attribute, L"b"}), points.Places()[1].point);
    EXPECT_EQ((PointId{Kind::Input, L"c"}), points.Places()[2].point);
}

TEST(SourcePointsTest, FindsTheFirstOfTwo) {
    const SourcePoints points("<Tam><Attributes><a/><A/></Attributes></Tam>");
    ASSERT_EQ(2U, points.Places().size());
    EXPECT_EQ(points.Places().data(), points.Find({Kind::Attribute, L"A"}));
}

TEST(SourcePointsTest, NamesAreTexts) {
    const SourcePoints points("<Tam><Attributes><N\xC3\xA4me/></Attributes></Tam>");
    ASSERT_EQ(1U, points.Places().size());
    EXPECT_EQ(L"N\u00E4me", points.Places()[0].point.name);
}

} // namespace
