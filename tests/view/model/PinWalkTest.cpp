#include "view/model/PinWalk.h"

#include "drawing/Layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

using namespace view;
using drawing::PinId;
using drawing::Side;

namespace {

drawing::Block BlockWith(std::size_t inputs, std::size_t outputs) {
    drawing::Block block;
    block.name = "block";
    for (std::size_t i = 0; i < inputs; ++i) {
        block.inputs.push_back({.name = "in" + std::to_string(i)});
    }
    for (std::size_t i = 0; i < outputs; ++i) {
        block.outputs.push_back({.name = "out" + std::to_string(i)});
    }
    return block;
}

/// A module of two inputs and three outputs. Its outputs lead to two channels at the right
/// of one input each, its inputs come from a channel at the left with an input and an output.
class PinWalkTest : public testing::Test {
  protected:
    PinWalkTest() {
        sheet_.module = BlockWith(2, 3);
        sheet_.channels = {BlockWith(1, 0), BlockWith(1, 0)};
        sheet_.mirrors = {{{0, Side::Output, 0}, {1, Side::Input, 0}},
                          {{0, Side::Output, 2}, {2, Side::Input, 0}}};
    }
    std::optional<PinId> From(const std::optional<PinId>& pin, Direction direction) const {
        return NextPin(sheet_, drawing::Draw(sheet_), pin, direction);
    }
    drawing::Sheet sheet_;
};

TEST_F(PinWalkTest, BeginsAtTheFirstInput) {
    for (const Direction direction : {Direction::Left, Direction::Right, Direction::Up, Direction::Down}) {
        EXPECT_EQ((PinId{0, Side::Input, 0}), From(std::nullopt, direction));
    }
    sheet_.module = BlockWith(0, 1);
    sheet_.channels.clear();
    sheet_.mirrors.clear();
    EXPECT_EQ((PinId{0, Side::Output, 0}), From(std::nullopt, Direction::Down));
    sheet_.module = BlockWith(0, 0);
    EXPECT_EQ(std::nullopt, From(std::nullopt, Direction::Down));
}

TEST_F(PinWalkTest, GoesUpAndDownASide) {
    EXPECT_EQ((PinId{0, Side::Output, 1}), From(PinId{0, Side::Output, 0}, Direction::Down));
    EXPECT_EQ((PinId{0, Side::Output, 0}), From(PinId{0, Side::Output, 1}, Direction::Up));
    EXPECT_EQ(std::nullopt, From(PinId{0, Side::Output, 0}, Direction::Up));
    EXPECT_EQ(std::nullopt, From(PinId{0, Side::Input, 1}, Direction::Down));
}

TEST_F(PinWalkTest, GoesToTheOtherSideOfABlock) {
    EXPECT_EQ((PinId{0, Side::Output, 1}), From(PinId{0, Side::Input, 1}, Direction::Right));
    EXPECT_EQ((PinId{0, Side::Input, 1}), From(PinId{0, Side::Output, 2}, Direction::Left));
}

TEST_F(PinWalkTest, EveryPinIsReachedFromTheFirst) {
    // The channels stand on that side of the module on which their items are.
    sheet_.channels.push_back(BlockWith(1, 2));
    sheet_.mirrors.push_back({{0, Side::Input, 1}, {3, Side::Input, 0}});
    const drawing::Drawing drawing = drawing::Draw(sheet_);
    ASSERT_EQ(10U, drawing.spots.size());
    std::vector<PinId> reached = {*From(std::nullopt, Direction::Down)};
    for (std::size_t i = 0; i < reached.size(); ++i) {
        for (const Direction direction :
             {Direction::Left, Direction::Right, Direction::Up, Direction::Down}) {
            const auto next = From(reached[i], direction);
            if (next && std::find(reached.begin(), reached.end(), *next) == reached.end()) {
                reached.push_back(*next);
            }
        }
    }
    EXPECT_EQ(drawing.spots.size(), reached.size());
}

TEST_F(PinWalkTest, GoesFromTheModuleToAChannelAndBack) {
    const auto there = From(PinId{0, Side::Output, 0}, Direction::Right);
    ASSERT_TRUE(there);
    EXPECT_GT(there->block, 0U);
    const auto back = From(there, Direction::Left);
    ASSERT_TRUE(back);
    EXPECT_EQ(0U, back->block);
    EXPECT_EQ(Side::Output, back->side) << "what is next to it";
    EXPECT_EQ(std::nullopt, From(there, Direction::Right)) << "there is nothing after it";
}

TEST_F(PinWalkTest, GoesFromChannelToChannel) {
    EXPECT_EQ((PinId{2, Side::Input, 0}), From(PinId{1, Side::Input, 0}, Direction::Down));
    EXPECT_EQ((PinId{1, Side::Input, 0}), From(PinId{2, Side::Input, 0}, Direction::Up));
    EXPECT_EQ(std::nullopt, From(PinId{2, Side::Input, 0}, Direction::Down));
}

TEST_F(PinWalkTest, APinThatIsNotThereLeadsNowhere) {
    EXPECT_EQ(std::nullopt, From(PinId{0, Side::Input, 9}, Direction::Down));
}

} // namespace
