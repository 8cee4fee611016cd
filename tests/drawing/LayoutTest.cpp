// The drawing of a module without channels.

#include "drawing/Layout.h"
#include "tests/drawing/Sheets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace drawingtest {

using namespace drawing;

namespace {

using Texts = std::vector<std::string>;

Rectangle Body(const Drawing& drawing) {
    return ShapesOf<Rectangle>(drawing, Paint::Body).at(0);
}

TEST(LayoutDrawTest, PutsInputsLeftAndOutputsRightInTheirOrder) {
    const Drawing drawing = Draw(SmallSheet(), EvenWidth);
    const Rectangle body = Body(drawing);
    const double middle = body.x + body.width / 2;
    const auto names = ShapesOf<Text>(drawing, Paint::Name);
    ASSERT_EQ(5U, names.size());
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_LT(names[i].at.x, middle) << names[i].text;
        EXPECT_EQ(Anchor::Start, names[i].anchor);
    }
    for (std::size_t i = 3; i < 5; ++i) {
        EXPECT_GT(names[i].at.x, middle) << names[i].text;
        EXPECT_EQ(Anchor::End, names[i].anchor);
    }
    EXPECT_EQ((Texts{"AO1_In1", "DO1_In1", "CTX1_In1", "DI1_Out", "AI1_Out"}), TextsOf(drawing, Paint::Name));
    EXPECT_LT(names[0].at.y, names[1].at.y);
    EXPECT_LT(names[1].at.y, names[2].at.y);
    EXPECT_LT(names[3].at.y, names[4].at.y);
}

TEST(LayoutDrawTest, WritesTypeAndAddressOfEachPin) {
    const Drawing drawing = Draw(SmallSheet(), EvenWidth);
    EXPECT_EQ((Texts{"AO1_In1", "81 lev_percent", "11"}), TextsOf(drawing, PinId{0, Side::Input, 0}));
    EXPECT_EQ((Texts{"AI1_Out", "105 temp_p", "14"}), TextsOf(drawing, PinId{0, Side::Output, 1}));
    EXPECT_EQ((Texts{"CTX1_In1"}), TextsOf(drawing, PinId{0, Side::Input, 2}));
}

TEST(LayoutDrawTest, TellsWiredPinsApart) {
    const Drawing drawing = Draw(SmallSheet(), EvenWidth);
    EXPECT_EQ(2U, ShapesOf<Polygon>(drawing, Paint::WiredPin).size());
    EXPECT_EQ(3U, ShapesOf<Polygon>(drawing, Paint::OpenPin).size());
    EXPECT_EQ(2U, ShapesOf<Line>(drawing, Paint::WiredLead).size());
    EXPECT_EQ(3U, ShapesOf<Line>(drawing, Paint::OpenLead).size());
    EXPECT_EQ((Texts{"DI1_Out", "DO1_In1"}), TextsOf(drawing, Paint::TagText));
    const auto tags = ShapesOf<Text>(drawing, Paint::TagText);
    EXPECT_LT(tags[0].at.x, Body(drawing).x);
    EXPECT_GT(tags[1].at.x, Body(drawing).x + Body(drawing).width);
}

TEST(LayoutDrawTest, DrawsAWiredPinOfUnknownOriginWithoutATag) {
    Sheet sheet = SmallSheet();
    sheet.module.inputs[1].wiredTo.clear();
    const Drawing drawing = Draw(sheet, EvenWidth);
    EXPECT_EQ((Texts{"DO1_In1"}), TextsOf(drawing, Paint::TagText));
    EXPECT_EQ(2U, ShapesOf<Polygon>(drawing, Paint::WiredPin).size());
}

TEST(LayoutDrawTest, TellsHiddenPinsApart) {
    Sheet sheet = SmallSheet();
    sheet.module.inputs[0].isHidden = true;
    const Drawing drawing = Draw(sheet, EvenWidth);
    EXPECT_EQ((Texts{"AO1_In1"}), TextsOf(drawing, Paint::HiddenName));
    EXPECT_EQ(1U, ShapesOf<Line>(drawing, Paint::HiddenLead).size());
}

TEST(LayoutDrawTest, HasThePictureOnlyWhereThereIsAnIcon) {
    Sheet sheet = SmallSheet();
    EXPECT_EQ(1U, ShapesOf<Picture>(Draw(sheet, EvenWidth), Paint::Head).size());
    sheet.module.hasIcon = false;
    EXPECT_EQ(0U, ShapesOf<Picture>(Draw(sheet, EvenWidth), Paint::Head).size());
}

TEST(LayoutDrawTest, KeepsEverythingWithinItsSize) {
    Sheet sheet = SmallSheet();
    sheet.module.name = std::string(500, 'W');
    sheet.module.inputs[1].wiredTo = std::string(500, 'W');
    sheet.module.outputs[1].name = std::string(500, 'W');
    sheet.module.outputs[1].address = std::string(500, '9');
    const Drawing drawing = Draw(sheet);
    for (const Point& corner : CornersOf(drawing)) {
        EXPECT_GE(corner.x, 0);
        EXPECT_LE(corner.x, drawing.width);
        EXPECT_GE(corner.y, 0);
        EXPECT_LE(corner.y, drawing.height);
    }
    EXPECT_LT(drawing.width, 1000);
}

TEST(LayoutDrawTest, KeepsWordsOfBothSidesApart) {
    Sheet sheet = SmallSheet();
    sheet.module.inputs[0].name = std::string(500, 'i');
    sheet.module.outputs[0].type = std::string(500, 'o');
    const Drawing drawing = Draw(sheet, EvenWidth);
    double inputs = 0;
    double outputs = drawing.width;
    for (const Paint paint : {Paint::Name, Paint::Note}) {
        for (const Text& text : ShapesOf<Text>(drawing, paint)) {
            // The ellipsis has three bytes and counts as three letters here.
            const double width = EvenWidth(text.text, text.font);
            if (text.anchor == Anchor::Start) {
                inputs = std::max(inputs, text.at.x + width);
            } else {
                outputs = std::min(outputs, text.at.x - width);
            }
        }
    }
    EXPECT_LT(inputs, outputs);
    EXPECT_TRUE(TextsOf(drawing, PinId{0, Side::Input, 0})[0].ends_with("\u2026"));
    EXPECT_TRUE(TextsOf(drawing, PinId{0, Side::Output, 0})[1].ends_with("\u2026"));
}

TEST(LayoutNarrowDrawTest, GivesEachPinARowWithWhatItIsWiredTo) {
    const Drawing drawing = Draw(SmallSheet(), EvenWidth, Format::Narrow);
    EXPECT_EQ((Texts{"from DI1_Out", "to DO1_In1"}), TextsOf(drawing, Paint::TagText));
    const Rectangle body = Body(drawing);
    for (const Rectangle& chip : ShapesOf<Rectangle>(drawing, Paint::Tag)) {
        EXPECT_GT(chip.x, body.x);
        EXPECT_LT(chip.x + chip.width, body.x + body.width);
    }
    double last = 0;
    for (const Text& name : ShapesOf<Text>(drawing, Paint::Name)) {
        EXPECT_GT(name.at.y, last);
        last = name.at.y;
    }
    EXPECT_LT(drawing.width, Draw(SmallSheet(), EvenWidth).width);
}

TEST(LayoutNarrowDrawTest, KeepsChipsAndNamesApart) {
    Sheet sheet = SmallSheet();
    sheet.module.inputs[1].name = std::string(500, 'i');
    sheet.module.inputs[1].wiredTo = std::string(500, 'o');
    const Drawing drawing = Draw(sheet, EvenWidth, Format::Narrow);
    const Rectangle chip = ShapesOf<Rectangle>(drawing, Paint::Tag).at(0);
    const Text name = ShapesOf<Text>(drawing, Paint::Name).at(1);
    EXPECT_LT(name.at.x + EvenWidth(name.text, name.font), chip.x);
    EXPECT_LE(chip.x + chip.width, Body(drawing).x + Body(drawing).width);
}

TEST(LayoutDrawTest, DrawsABlockWithoutPoints) {
    const Drawing drawing = Draw(Sheet{}, EvenWidth);
    EXPECT_EQ(1U, ShapesOf<Rectangle>(drawing, Paint::Body).size());
    EXPECT_GT(drawing.width, 0);
    EXPECT_GT(drawing.height, 0);
    EXPECT_TRUE(drawing.spots.empty());
}

TEST(LayoutPinAtTest, FindsEachPinByItsArea) {
    const Drawing drawing = Draw(SmallSheet(), EvenWidth);
    ASSERT_EQ(5U, drawing.spots.size());
    for (const Spot& spot : drawing.spots) {
        const Point middle{spot.area.x + spot.area.width / 2, spot.area.y + spot.area.height / 2};
        EXPECT_EQ(spot.pin, PinAt(drawing, middle));
        ASSERT_NE(nullptr, AreaOf(drawing, spot.pin));
        EXPECT_TRUE(AreaOf(drawing, spot.pin)->Holds(middle));
    }
}

TEST(LayoutPinAtTest, FindsAPinAtItsArrowAndAtItsTag) {
    const Drawing drawing = Draw(SmallSheet(), EvenWidth);
    EXPECT_EQ((PinId{0, Side::Input, 1}), PinAt(drawing, ShapesOf<Text>(drawing, Paint::TagText)[0].at));
    const Polygon arrow = ShapesOf<Polygon>(drawing, Paint::WiredPin)[1];
    EXPECT_EQ((PinId{0, Side::Output, 0}), PinAt(drawing, arrow.points[1]));
}

TEST(LayoutPinAtTest, FindsNothingBesideThePins) {
    const Drawing drawing = Draw(SmallSheet(), EvenWidth);
    const Rectangle head = ShapesOf<Rectangle>(drawing, Paint::Head).at(0);
    EXPECT_EQ(std::nullopt, PinAt(drawing, {head.x + head.width / 2, head.y + head.height / 2}));
    EXPECT_EQ(std::nullopt, PinAt(drawing, {-1, -1}));
    EXPECT_EQ(std::nullopt, PinAt(drawing, {drawing.width, drawing.height}));
    EXPECT_EQ(nullptr, AreaOf(drawing, PinId{0, Side::Output, 2}));
}

TEST(LayoutDrawTest, DrawsTenThousandPins) {
    Sheet sheet;
    for (std::size_t i = 0; i < 5000; ++i) {
        sheet.module.inputs.push_back(OpenPin("In" + std::to_string(i)));
        sheet.module.outputs.push_back(WiredPin("Out" + std::to_string(i), "In" + std::to_string(i)));
    }
    const Drawing drawing = Draw(sheet);
    EXPECT_EQ(10000U, drawing.spots.size());
    const Rectangle& last = drawing.spots.back().area;
    EXPECT_EQ((PinId{0, Side::Output, 4999}), PinAt(drawing, {last.x + 1, last.y + 1}));
}

} // namespace

} // namespace drawingtest
