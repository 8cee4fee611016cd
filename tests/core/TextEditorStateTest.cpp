#include "core/TextEditorState.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <optional>

namespace tam {
namespace {

using Kind = KeyAnswer::Kind;

TEST(TextEditorStateTest, TurnsABlankIntoAnUnderscoreAndPassesOtherKeys) {
    const TextEditorState state(L"old");
    for (const wchar_t key : {L'a', L'_', L'é', L'\x16'}) {
        const auto answer = state.Key(key, {L"x", 1, 1});
        EXPECT_EQ(answer.kind, Kind::PassOn);
        EXPECT_EQ(answer.character, key);
    }
    EXPECT_EQ(state.Key(L' ', {L"x", 1, 1}).character, L'_');
}

TEST(TextEditorStateTest, EscapeGoesBackEnterConfirmsBackspaceShortens) {
    const TextEditorState state(L"old");
    EXPECT_EQ(state.Key(kEscape, {L"x", 1, 1}).edit, (EditText{L"old", 0, 3}));
    EXPECT_EQ(state.Key(kEnter, {L"x", 1, 1}).kind, Kind::Confirm);
    EXPECT_EQ(state.Key(kBackspace, {L"xy", 2, 2}).edit, (EditText{L"x", 1, 1}));
}

TEST(TextEditorStateTest, PutsInTheFirstLineWithoutBlanks) {
    EXPECT_EQ(TextEditorState::Insertion(L"a b c"), L"a_b_c");
    EXPECT_EQ(TextEditorState::Insertion(L"one\r\ntwo"), L"one");
    EXPECT_EQ(TextEditorState::Insertion(L""), L"");
    EXPECT_EQ(TextEditorState::Insertion(L"\r\ntwo"), std::nullopt);
}

TEST(TextEditorStateTest, CutsATextThatIsLongerThanTheType) {
    EXPECT_FALSE(TextEditorState::TooLong(L"abcd", 4));
    const auto shortened = TextEditorState::TooLong(L"abcdef", 4);
    ASSERT_TRUE(shortened);
    EXPECT_EQ(shortened->message, L"The text cannot exceed 4 characters");
    EXPECT_EQ(shortened->caption, L"Name too long");
    EXPECT_EQ(shortened->text, L"abcd");
}

TEST(TextEditorStateTest, ATypeWithoutLengthHoldsNoText) {
    EXPECT_EQ(TextEditorState::TooLong(L"a", 0)->text, L"");
    EXPECT_EQ(TextEditorState::TooLong(L"a", -1)->text, L"");
    EXPECT_FALSE(TextEditorState::TooLong(L"", 0));
}

} // namespace
} // namespace tam
