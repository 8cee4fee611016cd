#include "view/model/Viewport.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <optional>
#include <string>

using namespace view;

namespace {

class ViewportTest : public testing::Test {
  protected:
    ViewportTest() {
        view_.SetWindow({800, 600});
        view_.SetSheet({400, 200});
    }
    void ExpectAt(const drawing::Point& expected, const drawing::Point& place) {
        EXPECT_NEAR(expected.x, place.x, 1e-6);
        EXPECT_NEAR(expected.y, place.y, 1e-6);
    }
    Viewport view_;
};

TEST_F(ViewportTest, ASmallSheetIsShownInTheMiddleInItsNaturalSize) {
    EXPECT_TRUE(view_.IsFitted());
    EXPECT_DOUBLE_EQ(1, view_.Zoom());
    ExpectAt({200, 200}, view_.ToScreen(drawing::Point{0, 0}));
    ExpectAt({600, 400}, view_.ToScreen(drawing::Point{400, 200}));
}

TEST_F(ViewportTest, ALargeSheetIsMadeToFitWithAMargin) {
    view_.SetSheet({1536, 400}); // 1536 in 800 - 32
    EXPECT_DOUBLE_EQ(0.5, view_.Zoom());
    ExpectAt({16, 200}, view_.ToScreen(drawing::Point{0, 0}));
    view_.SetSheet({100, 1136}); // 1136 in 600 - 32
    EXPECT_DOUBLE_EQ(0.5, view_.Zoom());
    ExpectAt({375, 16}, view_.ToScreen(drawing::Point{0, 0}));
}

TEST_F(ViewportTest, ASheetThatGrowsStaysWhereItIs) {
    view_.ZoomAbout({100, 50}, 2);
    const double zoom = view_.Zoom();
    const drawing::Point corner = view_.ToScreen(drawing::Point{0, 0});
    view_.SetSheetSize({500, 220});
    EXPECT_DOUBLE_EQ(zoom, view_.Zoom());
    ExpectAt(corner, view_.ToScreen(drawing::Point{0, 0}));
    view_.Fit();
    ExpectAt({150, 190}, view_.ToScreen(drawing::Point{0, 0}));
}

TEST_F(ViewportTest, AFittedSheetThatGrowsIsFittedAgain) {
    view_.SetSheetSize({1536, 400});
    EXPECT_TRUE(view_.IsFitted());
    EXPECT_DOUBLE_EQ(0.5, view_.Zoom());
}

TEST_F(ViewportTest, ASheetThatCannotFitShowsItsBeginning) {
    view_.SetSheet({400, 100000});
    EXPECT_DOUBLE_EQ(Viewport::kLeast, view_.Zoom());
    EXPECT_DOUBLE_EQ(16, view_.ToScreen(drawing::Point{0, 0}).y);
}

TEST_F(ViewportTest, GoesThereAndBack) {
    view_.ZoomAbout({100, 50}, 1.7);
    view_.Drag(-33, 12);
    for (const drawing::Point& pixel : {drawing::Point{0, 0}, {799, 599}, {123, 456}}) {
        ExpectAt(pixel, view_.ToScreen(view_.ToSheet(pixel)));
    }
    const drawing::Rectangle seen = view_.Seen();
    ExpectAt({0, 0}, view_.ToScreen(drawing::Point{seen.x, seen.y}));
    ExpectAt({800, 600}, view_.ToScreen(drawing::Point{seen.x + seen.width, seen.y + seen.height}));
}

TEST_F(ViewportTest, WhatLiesUnderThePointerStaysThere) {
    const drawing::Point pointer{333, 222};
    const drawing::Point place = view_.ToSheet(pointer);
    for (const double times : {1.25, 3.0, 0.5, 0.9}) {
        view_.ZoomAbout(pointer, times);
        ExpectAt(place, view_.ToSheet(pointer));
    }
    EXPECT_DOUBLE_EQ(1.25 * 3 * 0.5 * 0.9, view_.Zoom());
    EXPECT_FALSE(view_.IsFitted());
}

TEST_F(ViewportTest, ZoomHasLimits) {
    view_.ZoomAbout({400, 300}, 1000);
    EXPECT_DOUBLE_EQ(8, view_.Zoom());
    view_.ZoomAbout({400, 300}, 1e-9);
    EXPECT_DOUBLE_EQ(0.05, view_.Zoom());
}

TEST_F(ViewportTest, StepsThroughTheUsualSizes) {
    view_.ZoomIn();
    EXPECT_DOUBLE_EQ(1.1, view_.Zoom());
    view_.ZoomIn();
    EXPECT_DOUBLE_EQ(1.25, view_.Zoom());
    view_.ZoomOut();
    view_.ZoomOut();
    view_.ZoomOut();
    EXPECT_DOUBLE_EQ(0.9, view_.Zoom());
    view_.ZoomAbout({0, 0}, 0.6 / 0.9);
    view_.ZoomOut();
    EXPECT_DOUBLE_EQ(0.5, view_.Zoom()) << "from between two sizes to the next one";
    for (int i = 0; i < 30; ++i) {
        view_.ZoomOut();
    }
    EXPECT_DOUBLE_EQ(0.05, view_.Zoom());
    for (int i = 0; i < 30; ++i) {
        view_.ZoomIn();
    }
    EXPECT_DOUBLE_EQ(8, view_.Zoom());
    view_.ZoomToNatural();
    EXPECT_DOUBLE_EQ(1, view_.Zoom());
}

TEST_F(ViewportTest, AStepKeepsWhatIsUnderThePointer) {
    const drawing::Point place = view_.ToSheet({250, 250});
    view_.ZoomStep({250, 250}, true);
    ExpectAt(place, view_.ToSheet({250, 250}));
    EXPECT_DOUBLE_EQ(1.1, view_.Zoom());
    view_.ZoomStep({250, 250}, false);
    EXPECT_DOUBLE_EQ(1, view_.Zoom());
}

TEST_F(ViewportTest, IsDraggedButNotOutOfSight) {
    view_.Drag(30, -20);
    ExpectAt({230, 180}, view_.ToScreen(drawing::Point{0, 0}));
    view_.Drag(-10000, -10000);
    ExpectAt({48, 48}, view_.ToScreen(drawing::Point{400, 200}));
    view_.Drag(10000, 10000);
    ExpectAt({752, 552}, view_.ToScreen(drawing::Point{0, 0}));
}

TEST_F(ViewportTest, AnotherSizeOfTheWindowFitsAgainOrKeepsTheMiddle) {
    view_.SetWindow({232, 600}); // 232 - 32 for 400
    EXPECT_DOUBLE_EQ(0.5, view_.Zoom());
    view_.SetWindow({800, 600});
    EXPECT_DOUBLE_EQ(1, view_.Zoom());
    view_.Drag(50, 0);
    const drawing::Point middle = view_.ToSheet({400, 300});
    view_.SetWindow({400, 200});
    ExpectAt(middle, view_.ToSheet({200, 100}));
    EXPECT_DOUBLE_EQ(1, view_.Zoom());
}

TEST_F(ViewportTest, IsAsLargeToTheEyeOnEachMonitor) {
    view_.SetDpi(144);
    EXPECT_DOUBLE_EQ(1, view_.Zoom());
    EXPECT_DOUBLE_EQ(1.5, view_.Scale());
    ExpectAt({100, 150}, view_.ToScreen(drawing::Point{0, 0})); // 600 by 300 in the middle
    view_.SetDpi(192);
    EXPECT_DOUBLE_EQ(0.92, view_.Zoom()) << "800 in 800 - 64";
    view_.ZoomToNatural();
    EXPECT_DOUBLE_EQ(2, view_.Scale());
    const drawing::Point middle = view_.ToSheet({400, 300});
    view_.SetDpi(96);
    EXPECT_DOUBLE_EQ(1, view_.Zoom());
    ExpectAt(middle, view_.ToSheet({400, 300}));
}

TEST_F(ViewportTest, HasNoSizeYet) {
    Viewport view;
    view.SetSheet({400, 200});
    EXPECT_DOUBLE_EQ(0.05, view.Zoom());
    view.SetWindow({800, 600});
    EXPECT_DOUBLE_EQ(1, view.Zoom());
    view.SetSheet({0, 0});
    EXPECT_DOUBLE_EQ(1, view.Zoom());
    view.Drag(5, 5);
    view.ZoomAbout({1, 1}, 2);
    EXPECT_DOUBLE_EQ(2, view.Zoom());
}

TEST_F(ViewportTest, BringsAPartIntoSightWithTheLeastMove) {
    view_.Reveal({10, 10, 50, 20});
    EXPECT_TRUE(view_.IsFitted()) << "it is in sight already";
    view_.ZoomAbout({400, 300}, 4); // 1600 by 800, from -400 -100
    ExpectAt({-400, -100}, view_.ToScreen(drawing::Point{0, 0}));
    view_.Reveal({0, 50, 20, 10});
    ExpectAt({12, -100}, view_.ToScreen(drawing::Point{0, 0}));
    view_.Reveal({380, 190, 20, 10}); // to 1600 + 12 and 700: by -824 and -112
    ExpectAt({788, 588}, view_.ToScreen(drawing::Point{400, 200}));
    view_.Reveal({0, 0, 400, 200});
    ExpectAt({12, 12}, view_.ToScreen(drawing::Point{0, 0}));
}

TEST_F(ViewportTest, FindsThePinUnderThePointer) {
    drawing::Drawing sheet;
    const drawing::PinId pin{0, drawing::Side::Output, 2};
    sheet.spots.push_back({{100, 100, 50, 20}, pin});
    EXPECT_EQ(pin, view_.PinAt(sheet, {300, 300}));
    EXPECT_EQ(std::nullopt, view_.PinAt(sheet, {299, 300}));
    view_.ZoomAbout({200, 200}, 2);
    EXPECT_EQ(pin, view_.PinAt(sheet, {499, 439}));
    EXPECT_EQ(std::nullopt, view_.PinAt(sheet, {501, 439}));
}

TEST_F(ViewportTest, KnowsWhatAnItemCovers) {
    using namespace drawing;
    const Rectangle box = BoundsOf({Paint::Body, Rectangle{1, 2, 3, 4}});
    EXPECT_EQ(1, box.x);
    EXPECT_EQ(4, box.height);
    const Rectangle line = BoundsOf({Paint::OpenLead, Line{{{5, 9}, {1, 3}, {7, 4}}}});
    EXPECT_EQ(1, line.x);
    EXPECT_EQ(3, line.y);
    EXPECT_EQ(6, line.width);
    EXPECT_EQ(6, line.height);
    const double width = WidthByTable("Gain", Font::Name);
    EXPECT_DOUBLE_EQ(100, BoundsOf({Paint::Name, Text{{100, 50}, "Gain", Font::Name}}).x);
    EXPECT_DOUBLE_EQ(100 - width,
                     BoundsOf({Paint::Name, Text{{100, 50}, "Gain", Font::Name, Anchor::End}}).x);
    const Rectangle middle = BoundsOf({Paint::Name, Text{{100, 50}, "Gain", Font::Name, Anchor::Middle}});
    EXPECT_DOUBLE_EQ(100 - width / 2, middle.x);
    EXPECT_LT(middle.y, 50);
    EXPECT_GT(middle.y + middle.height, 50) << "letters reach below their line";
    EXPECT_EQ(3, BoundsOf({Paint::Head, Picture{{1, 2, 3, 4}}}).width);
    EXPECT_EQ(0, BoundsOf({Paint::OpenPin, Polygon{}}).width);
}

TEST_F(ViewportTest, LevelLinesOverlapToo) {
    EXPECT_TRUE(Overlap({0, 0, 10, 10}, {5, 5, 0, 0}));
    EXPECT_TRUE(Overlap({0, 0, 10, 10}, {-5, 5, 100, 0}));
    EXPECT_FALSE(Overlap({0, 0, 10, 10}, {11, 0, 5, 5}));
    EXPECT_FALSE(Overlap({0, 0, 10, 10}, {0, -6, 5, 5}));
}

} // namespace
