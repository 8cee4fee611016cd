#include "core/RenameState.h"

#include <gtest/gtest.h>

#include <string>

namespace tam {
namespace {

std::wstring Refusal(const std::wstring& name) {
    return RenameState::Refusal(name, name.empty() ? L'\0' : name.front());
}

constexpr const wchar_t* kLetter = L"The name have to start with a letter.";
constexpr const wchar_t* kSpecial = L"The name haven't to contain special keys.";

TEST(RenameStateTest, TakesAnIdentifier) {
    EXPECT_EQ(Refusal(L"a_1"), L"");
    EXPECT_EQ(Refusal(L"Z"), L"");
    EXPECT_EQ(Refusal(L"zA09_"), L"");
}

TEST(RenameStateTest, RefusesANameThatDoesNotBeginWithALetter) {
    for (const wchar_t* name : {L"1a", L"_a", L" a", L"-", L"@a", L"[a", L"`a", L"{a", L"éa", L""}) {
        EXPECT_EQ(Refusal(name), kLetter);
    }
}

TEST(RenameStateTest, RefusesANameWithAnotherCharacter) {
    for (const wchar_t* name : {L"a-b", L"a b", L"ab.", L"aé", L"a/", L"a:", L"a@", L"a["}) {
        EXPECT_EQ(Refusal(name), kSpecial);
    }
}

TEST(RenameStateTest, JudgesTheFirstCharacterByItsAnsiForm) {
    // A full-width A is an A in the code page, and still no character of a name.
    EXPECT_EQ(RenameState::Refusal(L"\xFF21", L'A'), std::wstring(kSpecial));
}

TEST(RenameStateTest, IsCancelledUntilConfirmed) {
    RenameState state(L"Longname", L"K7");
    EXPECT_EQ(state.RetValue(), RenameState::kCancelled);
    EXPECT_EQ(state.DeviceName(), L"Longname");
    EXPECT_EQ(state.DeviceKey(), L"K7");
    EXPECT_EQ(state.ShownName(), L"Longna");
    state.Confirm(L"new");
    EXPECT_EQ(state.RetValue(), RenameState::kConfirmed);
    EXPECT_EQ(state.DeviceName(), L"new");
    state.Cancel();
    EXPECT_EQ(state.RetValue(), RenameState::kCancelled);
}

TEST(RenameStateTest, IsConfirmedByTheKeyCodeZeroAndNotByEnter) {
    EXPECT_TRUE(RenameState::IsConfirmedBy(0));
    for (const wchar_t key : {L'\r', L'\n', L'0', L'a', L'\x1B'}) {
        EXPECT_FALSE(RenameState::IsConfirmedBy(key));
    }
}

TEST(RenameStateTest, EnablesOkForATextThatIsNotEmpty) {
    EXPECT_FALSE(RenameState::IsOkEnabled(L""));
    EXPECT_TRUE(RenameState::IsOkEnabled(L"1"));
}

} // namespace
} // namespace tam
