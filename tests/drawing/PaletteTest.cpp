#include "drawing/Palette.h"

#include <gtest/gtest.h>

namespace drawingtest {

using namespace drawing;

namespace {

constexpr Paint kTexts[] = {Paint::title, Paint::subtitle, Paint::name,   Paint::hiddenName,
                            Paint::note,  Paint::address,  Paint::tagText};
constexpr Paint kLines[] = {Paint::outline,    Paint::openLead, Paint::wiredLead,
                            Paint::hiddenLead, Paint::openPin,  Paint::mirror};

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
    EXPECT_NE(LookOf(Paint::wiredLead, GetParam()).strokeWidth,
              LookOf(Paint::openLead, GetParam()).strokeWidth);
    EXPECT_EQ(Background(GetParam()), LookOf(Paint::openPin, GetParam()).fill);
    EXPECT_EQ(LookOf(Paint::wiredPin, GetParam()).stroke, LookOf(Paint::wiredPin, GetParam()).fill);
    EXPECT_TRUE(LookOf(Paint::hiddenLead, GetParam()).isDashed);
    EXPECT_FALSE(LookOf(Paint::openLead, GetParam()).isDashed);
}

INSTANTIATE_TEST_SUITE_P(Schemes, PaletteTest, testing::Values(Scheme::light, Scheme::dark));

TEST(PaletteContrastTest, GoesFromOneToTwentyOne) {
    EXPECT_DOUBLE_EQ(21, Contrast(0x000000, 0xFFFFFF));
    EXPECT_DOUBLE_EQ(21, Contrast(0xFFFFFF, 0x000000));
    EXPECT_DOUBLE_EQ(1, Contrast(0x336699, 0x336699));
    // The grey that is just readable on white.
    EXPECT_NEAR(4.54, Contrast(0x767676, 0xFFFFFF), 0.005);
}

} // namespace

} // namespace drawingtest
