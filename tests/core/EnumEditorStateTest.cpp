#include "core/EnumEditorState.h"

#include "Thrown.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <optional>

namespace tam {
namespace {

TEST(EnumEditorStateTest, OffersTheEntriesAndOpensWithTheCurrentOne) {
    const EnumEditorState state(L"1", L"0,Off;1,On");
    ASSERT_EQ(state.Entries().size(), 2U);
    EXPECT_EQ(state.Entries()[1].text, L"On");
    EXPECT_EQ(state.Selected(), 1U);
}

TEST(EnumEditorStateTest, OpensWithTheFirstOfTwoEntriesOfOneValue) {
    EXPECT_EQ(EnumEditorState(L"1", L"0,a;1,b;1,c;").Selected(), 1U);
}

TEST(EnumEditorStateTest, OpensWithNothingWhenNoEntryHasTheValue) {
    for (const wchar_t* value : {L"", L"5", L"On", L"99999", L"1e999"}) {
        EXPECT_EQ(EnumEditorState(value, L"0,Off;1,On").Selected(), std::nullopt);
    }
    EXPECT_EQ(EnumEditorState(L"0", L"").Selected(), std::nullopt);
}

TEST(EnumEditorStateTest, FindsANegativeValue) {
    EXPECT_EQ(EnumEditorState(L"-1", L"0,Off;-1,None;").Selected(), 1U);
}

TEST(EnumEditorStateTest, FindsTheNearestWholeNumber) {
    EXPECT_EQ(EnumEditorState(L"0.6", L"0,Off;1,On;2,Auto").Selected(), 1U);
    EXPECT_EQ(EnumEditorState(L"1.5", L"0,Off;1,On;2,Auto").Selected(), 2U);
    EXPECT_EQ(EnumEditorState(L"0.5", L"0,Off;1,On;2,Auto").Selected(), 0U);
}

TEST(EnumEditorStateTest, GivesTheValueOfTheFirstEntryWithTheTextShown) {
    const EnumEditorState state(L"0", L"0,Off;1,On;2,On;");
    EXPECT_EQ(state.ValueOf(L"On"), L"1");
    EXPECT_EQ(state.ValueOf(L"Off"), L"0");
    EXPECT_EQ(state.ValueOf(L"on"), std::nullopt);
}

TEST(EnumEditorStateTest, ShowsTheCurrentValueByItsText) {
    EXPECT_EQ(EnumEditorState(L"1", L"0,Off;1,On").Current(), L"On");
    EXPECT_EQ(EnumEditorState(L"0.6", L"0,Off;1,On").Current(), L"On");
    EXPECT_EQ(EnumEditorState(L"7", L"0,Off;1,On").Current(), L"7") << "no entry has it";
    EXPECT_EQ(EnumEditorState(L"", L"0,Off;1,On").Current(), L"");
}

TEST(EnumEditorStateTest, RefusesADescriptionWithAValuePast16Bits) {
    EXPECT_EQ(ErrorOf([] { EnumEditorState(L"0", L"70000,Far;"); }), kOverflow);
}

} // namespace
} // namespace tam
