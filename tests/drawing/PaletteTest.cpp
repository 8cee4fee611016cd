#include "drawing/Palette.h"

#include <gtest/gtest.h>

namespace drawingtest {

using namespace drawing;

namespace {

constexpr Paint kTexts[] = {Paint::Title, Paint::Subtitle, Paint::Name,   Paint::HiddenName,
                            Paint::Note,  Paint::Address,  Paint::TagText};
constexpr Paint kLines[] = {Paint::Outline,    Paint::OpenLead, Paint::WiredLead,
                            Paint::HiddenLead, Paint::OpenPin,  Paint::Mirror};

class PaletteTest : public testing::TestWithParam<Scheme> {};

TEST_P(PaletteTest, MakesTextsReadable) {
    for (const Paint paint : kTexts) {
        const Look look = LookOf(paint, GetParam());
        ASSERT_TRUE(look.fill);
        EXPECT_GE(Contrast(*look.fill, GroundOf(paint, GetParam())), 4.5) << static_cast<int>(paint);
        EXPECT_FALSE(look.stroke);
    }
}

TEST_P(PaletteTest, MakesLinesVisible) {
    for (const Paint paint : kLines) {
        const Look look = LookOf(paint, GetParam());
        ASSERT_TRUE(look.stroke);
        EXPECT_GE(Contrast(*look.stroke, Background(GetParam())), 3) << static_cast<int>(paint);
    }
}

TEST_P(PaletteTest, TellsWiredPinsApartWithoutColour) {
    EXPECT_NE(LookOf(Paint::WiredLead, GetParam()).strokeWidth,
              LookOf(Paint::OpenLead, GetParam()).strokeWidth);
    EXPECT_EQ(Background(GetParam()), LookOf(Paint::OpenPin, GetParam()).fill);
    EXPECT_EQ(LookOf(Paint::WiredPin, GetParam()).stroke, LookOf(Paint::WiredPin, GetParam()).fill);
    EXPECT_TRUE(LookOf(Paint::HiddenLead, GetParam()).isDashed);
    EXPECT_FALSE(LookOf(Paint::OpenLead, GetParam()).isDashed);
}

INSTANTIATE_TEST_SUITE_P(Schemes, PaletteTest, testing::Values(Scheme::Light, Scheme::Dark));

TEST(PaletteContrastTest, GoesFromOneToTwentyOne) {
    EXPECT_DOUBLE_EQ(21, Contrast(0x000000, 0xFFFFFF));
    EXPECT_DOUBLE_EQ(21, Contrast(0xFFFFFF, 0x000000));
    EXPECT_DOUBLE_EQ(1, Contrast(0x336699, 0x336699));
    // The grey that is just readable on white.
    EXPECT_NEAR(4.54, Contrast(0x767676, 0xFFFFFF), 0.005);
}

} // namespace

} // namespace drawingtest
