// The drawing of a module with its channels beside it.

#include "drawing/Layout.h"
#include "tests/drawing/Sheets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace drawingtest {

using namespace drawing;

namespace {

struct Piece {
    Point from;
    Point to;
    bool IsLevel() const { return from.y == to.y; }
    bool IsUpright() const { return from.x == to.x; }
};

std::vector<Piece> PiecesOf(const Line& line) {
    std::vector<Piece> pieces;
    for (std::size_t i = 1; i < line.points.size(); ++i) {
        if (line.points[i - 1] != line.points[i]) {
            pieces.push_back({line.points[i - 1], line.points[i]});
        }
    }
    return pieces;
}

bool RunsThrough(const Piece& piece, const Rectangle& body) {
    const auto [left, right] = std::minmax(piece.from.x, piece.to.x);
    const auto [top, bottom] = std::minmax(piece.from.y, piece.to.y);
    return right > body.x && left < body.x + body.width && bottom > body.y && top < body.y + body.height;
}

/// Two pieces on one straight line that have more than a point in common.
bool LieOnEachOther(const Piece& one, const Piece& other) {
    const auto overlap = [](double a, double b, double c, double d) {
        return std::min(std::max(a, b), std::max(c, d)) > std::max(std::min(a, b), std::min(c, d));
    };
    if (one.IsLevel() && other.IsLevel() && one.from.y == other.from.y) {
        return overlap(one.from.x, one.to.x, other.from.x, other.to.x);
    }
    return one.IsUpright() && other.IsUpright() && one.from.x == other.from.x &&
           overlap(one.from.y, one.to.y, other.from.y, other.to.y);
}

/// A module with many channels of all kinds.
Sheet LargeSheet() {
    Sheet sheet;
    for (std::size_t i = 1; i <= 8; ++i) {
        const std::string key = "AO" + std::to_string(i);
        for (const char* const name : {"_In1", "_In2"}) {
            sheet.module.inputs.push_back(WiredPin(key + name, "AI1_Out"));
        }
        sheet.module.outputs.push_back(WiredPin(key + "_Out", "AO1_In1, AO2_In1"));
        sheet.channels.push_back(
            {.name = key, .inputs = {OpenPin("In1"), OpenPin("In2")}, .outputs = {OpenPin("Out")}});
        sheet.mirrors.push_back({{0, Side::Input, 2 * i - 2}, {i, Side::Input, 0}});
        sheet.mirrors.push_back({{0, Side::Input, 2 * i - 1}, {i, Side::Input, 1}});
        sheet.mirrors.push_back({{0, Side::Output, i - 1}, {i, Side::Output, 0}});
    }
    for (std::size_t i = 1; i <= 8; ++i) {
        sheet.module.outputs.push_back(OpenPin("AI" + std::to_string(i) + "_Out"));
        sheet.channels.push_back({.name = "AI" + std::to_string(i), .outputs = {OpenPin("Out")}});
        sheet.mirrors.push_back({{0, Side::Output, 7 + i}, {8 + i, Side::Output, 0}});
    }
    return sheet;
}

class ChannelsTest : public testing::TestWithParam<Sheet (*)()> {
  protected:
    Sheet sheet_ = GetParam()();
    Drawing drawing_ = Draw(sheet_, EvenWidth);
    std::vector<Rectangle> bodies_ = ShapesOf<Rectangle>(drawing_, Paint::Body);
    std::vector<Line> lines_ = ShapesOf<Line>(drawing_, Paint::Mirror);
};

TEST_P(ChannelsTest, DrawsEachChannelApartFromTheOthers) {
    ASSERT_EQ(sheet_.channels.size() + 1, bodies_.size());
    for (std::size_t i = 0; i < bodies_.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            const Rectangle& one = bodies_[i];
            const Rectangle& other = bodies_[j];
            EXPECT_TRUE(one.x + one.width < other.x || other.x + other.width < one.x ||
                        one.y + one.height < other.y || other.y + other.height < one.y)
                << i << " and " << j;
        }
    }
}

TEST_P(ChannelsTest, JoinsTheItemsByLinesThatMeetBothPins) {
    ASSERT_EQ(sheet_.mirrors.size(), lines_.size());
    for (const Mirror& mirror : sheet_.mirrors) {
        const Rectangle* const own = AreaOf(drawing_, mirror.module);
        const Rectangle* const far = AreaOf(drawing_, mirror.channel);
        ASSERT_TRUE(own != nullptr && far != nullptr);
        const double from = own->y + own->height / 2;
        const double to = far->y + far->height / 2;
        const auto joins = [&](const Line& line) {
            const Point& start = line.points.front();
            const Point& end = line.points.back();
            return start.y == from && end.y == to && start.x >= own->x && start.x <= own->x + own->width &&
                   end.x >= far->x && end.x <= far->x + far->width;
        };
        EXPECT_EQ(1, std::count_if(lines_.begin(), lines_.end(), joins)) << from << " to " << to;
    }
    EXPECT_EQ(sheet_.mirrors.size(), ShapesOf<Polygon>(drawing_, Paint::MirrorPort).size());
}

TEST_P(ChannelsTest, LeadsLinesAroundTheBlocks) {
    for (const Line& line : lines_) {
        for (const Piece& piece : PiecesOf(line)) {
            EXPECT_TRUE(piece.IsLevel() || piece.IsUpright());
            for (const Rectangle& body : bodies_) {
                EXPECT_FALSE(RunsThrough(piece, body))
                    << piece.from.x << "," << piece.from.y << " to " << piece.to.x << "," << piece.to.y;
            }
        }
    }
}

TEST_P(ChannelsTest, PutsNoLineOnAnother) {
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            for (const Piece& one : PiecesOf(lines_[i])) {
                for (const Piece& other : PiecesOf(lines_[j])) {
                    EXPECT_FALSE(LieOnEachOther(one, other))
                        << one.from.x << "," << one.from.y << " to " << one.to.x << "," << one.to.y;
                }
            }
        }
    }
}

TEST_P(ChannelsTest, KeepsEverythingWithinItsSize) {
    for (const Point& corner : CornersOf(drawing_)) {
        EXPECT_GE(corner.x, 0);
        EXPECT_LE(corner.x, drawing_.width);
        EXPECT_GE(corner.y, 0);
        EXPECT_LE(corner.y, drawing_.height);
    }
}

TEST_P(ChannelsTest, FindsEachPinByItsArea) {
    for (const Spot& spot : drawing_.spots) {
        EXPECT_EQ(spot.pin, PinAt(drawing_, {spot.area.x + spot.area.width / 2, spot.area.y + 1}));
    }
}

INSTANTIATE_TEST_SUITE_P(Sheets, ChannelsTest, testing::Values(SheetWithChannels, LargeSheet));

TEST(ChannelsPlacesTest, PutsAChannelWhereMostOfItsItemsAre) {
    const Drawing drawing = Draw(SheetWithChannels(), EvenWidth);
    const auto bodies = ShapesOf<Rectangle>(drawing, Paint::Body);
    ASSERT_EQ(4U, bodies.size());
    EXPECT_GT(bodies[1].x, bodies[0].x); // AI1: an output
    EXPECT_LT(bodies[2].x, bodies[0].x); // AO1: two inputs and an output
    EXPECT_GT(bodies[3].x, bodies[0].x); // DO1: one of each
}

TEST(ChannelsPlacesTest, PassesOverMirrorsOfWhatIsNotThere) {
    Sheet sheet = SheetWithChannels();
    sheet.mirrors = {{{0, Side::Input, 9}, {1, Side::Output, 0}},
                     {{0, Side::Input, 0}, {9, Side::Input, 0}},
                     {{1, Side::Output, 0}, {1, Side::Output, 0}},
                     {{0, Side::Input, 0}, {0, Side::Input, 0}}};
    const Drawing drawing = Draw(sheet, EvenWidth);
    EXPECT_TRUE(ShapesOf<Line>(drawing, Paint::Mirror).empty());
    EXPECT_EQ(4U, ShapesOf<Rectangle>(drawing, Paint::Body).size());
}

} // namespace

} // namespace drawingtest
