#include "core/BitEditorState.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace tam {
namespace {

/// The labels, the highest bit first.
std::wstring Labels(const BitEditorState& state) {
    std::wstring labels;
    for (std::size_t bit = state.Count(); bit-- > 0;) {
        labels.append(state.Label(bit));
    }
    return labels;
}

TEST(BitEditorStateTest, ShowsTheBitsOfTheValue) {
    EXPECT_EQ(Labels(BitEditorState(L"5", 1)), L"00000101");
    EXPECT_EQ(Labels(BitEditorState(L"32769", 2)), L"1000000000000001");
    EXPECT_EQ(Labels(BitEditorState(L" 5 ", 1)), L"00000101");
}

TEST(BitEditorStateTest, ShowsSixteenBitsForAnyLengthButOne) {
    EXPECT_EQ(BitEditorState(L"0", 1).Count(), 8U);
    EXPECT_EQ(BitEditorState(L"0", 0).Count(), 16U);
    EXPECT_EQ(BitEditorState(L"0", 2).Count(), 16U);
    EXPECT_EQ(BitEditorState(L"0", 8).Count(), 16U);
}

TEST(BitEditorStateTest, DropsTheBitsThatAreNotShown) {
    EXPECT_EQ(BitEditorState(L"65541", 2).Value(), L"5");
    EXPECT_EQ(BitEditorState(L"257", 1).Value(), L"1");
}

TEST(BitEditorStateTest, ReadsANegativeValueAsItsTwosComplement) {
    EXPECT_EQ(Labels(BitEditorState(L"-1", 2)), L"1111111111111111");
    EXPECT_EQ(BitEditorState(L"-65537", 2).Value(), L"65535");
}

TEST(BitEditorStateTest, RoundsToTheNearestWholeNumberTiesToEven) {
    EXPECT_EQ(BitEditorState(L"2.7", 1).Value(), L"3");
    EXPECT_EQ(BitEditorState(L"2.5", 1).Value(), L"2");
    EXPECT_EQ(BitEditorState(L"3.5", 1).Value(), L"4");
    EXPECT_EQ(BitEditorState(L"-0.6", 1).Value(), L"255");
}

TEST(BitEditorStateTest, HasNoBitSetWhenTheValueIsNoNumber) {
    EXPECT_EQ(BitEditorState(L"", 2).Value(), L"0");
    EXPECT_EQ(BitEditorState(L"abc", 2).Value(), L"0");
    EXPECT_EQ(BitEditorState(L"1e999", 2).Value(), L"0");
}

TEST(BitEditorStateTest, GoesFromBitToBitAsTheyStand) {
    const BitEditorState word(L"0", 2);
    EXPECT_EQ(word.First(), 15U);
    EXPECT_EQ(word.After(12, BitMove::Left), 13U);
    EXPECT_EQ(word.After(12, BitMove::Right), 11U);
    EXPECT_EQ(word.After(12, BitMove::Down), 4U);
    EXPECT_EQ(word.After(4, BitMove::Up), 12U);
    EXPECT_EQ(word.After(7, BitMove::Left), 8U) << "the end of the row above";
    EXPECT_EQ(word.After(8, BitMove::Right), 7U) << "the beginning of the row below";
    EXPECT_EQ(word.After(4, BitMove::First), 15U);
    EXPECT_EQ(word.After(12, BitMove::Last), 0U);
    const BitEditorState byte(L"0", 1);
    EXPECT_EQ(byte.First(), 7U);
    EXPECT_EQ(byte.After(3, BitMove::First), 7U);
    EXPECT_EQ(byte.After(3, BitMove::Last), 0U);
}

TEST(BitEditorStateTest, StaysWhereThereIsNoFurtherBit) {
    const BitEditorState word(L"0", 2);
    EXPECT_EQ(word.After(15, BitMove::Left), 15U);
    EXPECT_EQ(word.After(0, BitMove::Right), 0U);
    EXPECT_EQ(word.After(9, BitMove::Up), 9U);
    EXPECT_EQ(word.After(3, BitMove::Down), 3U);
    const BitEditorState byte(L"0", 1);
    EXPECT_EQ(byte.After(7, BitMove::Left), 7U);
    EXPECT_EQ(byte.After(3, BitMove::Up), 3U);
    EXPECT_EQ(byte.After(3, BitMove::Down), 3U);
}

TEST(BitEditorStateTest, SaysWhichBitsAreSet) {
    BitEditorState state(L"5", 1);
    EXPECT_TRUE(state.IsSet(0));
    EXPECT_FALSE(state.IsSet(1));
    state.Flip(1);
    EXPECT_TRUE(state.IsSet(1));
}

TEST(BitEditorStateTest, SumsTheBitsThatAreSet) {
    BitEditorState state(L"5", 1);
    state.Flip(1);
    EXPECT_EQ(state.Value(), L"7");
    state.Flip(0);
    EXPECT_EQ(state.Value(), L"6");
    EXPECT_EQ(state.Summary(), L"6 (0x06)");
    EXPECT_EQ(BitEditorState(L"43690", 2).Summary(), L"43690 (0xAAAA)");
}

} // namespace
} // namespace tam
