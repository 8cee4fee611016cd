#include "view/model/Colours.h"

#include "drawing/Palette.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <ios>
#include <optional>

using namespace view;

namespace {

TEST(ColoursTest, LettersOfFindingsAreReadOnAnyWindow) {
    for (const drawing::Colour background : {0xFFFFFFU, 0xF0F0F0U, 0x000000U, 0x202020U, 0x1E1E2EU}) {
        for (const Weight weight : {Weight::Box, Weight::Error, Weight::Warning}) {
            const auto colour = ColourOf(weight, background);
            ASSERT_TRUE(colour);
            EXPECT_GE(drawing::Contrast(*colour, background), 4.5) << std::hex << background;
        }
        EXPECT_EQ(std::nullopt, ColourOf(Weight::Note, background));
    }
}

TEST(ColoursTest, ErrorsAndWarningsDiffer) {
    for (const drawing::Colour background : {0xFFFFFFU, 0x000000U}) {
        EXPECT_NE(ColourOf(Weight::Error, background), ColourOf(Weight::Warning, background));
        EXPECT_EQ(ColourOf(Weight::Error, background), ColourOf(Weight::Box, background));
    }
}

TEST(ColoursTest, KnowsALightBackground) {
    EXPECT_TRUE(IsLight(0xFFFFFF));
    EXPECT_TRUE(IsLight(0xFFFF00));
    EXPECT_TRUE(IsLight(0x00FF00));
    EXPECT_FALSE(IsLight(0x0000FF));
    EXPECT_FALSE(IsLight(0x000000));
}

} // namespace
