// What a test leaves of the user's settings, also one that is ended.

#include "tests/view/Fixture.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace viewtest {

namespace {

/// The numbers in the window's key and beside it; 0 when there is none.
class UserStateTest : public testing::Test {
  protected:
    static constexpr const wchar_t* kKey = L"Software\\O_Tam_id\\View";
    static constexpr const wchar_t* kOther = L"Software\\O_Tam_id other";
    static constexpr const wchar_t* kName = L"Probe";

    UserStateTest() : variable_(Variable()) {}
    ~UserStateTest() override {
        RegDeleteKeyValueW(HKEY_CURRENT_USER, kKey, kName);
        RegDeleteTreeW(HKEY_CURRENT_USER, kOther);
        SetEnvironmentVariableW(L"LOCALAPPDATA", variable_.c_str());
    }
    static std::wstring Variable() {
        wchar_t text[MAX_PATH] = {};
        GetEnvironmentVariableW(L"LOCALAPPDATA", text, MAX_PATH);
        return text;
    }
    static DWORD Number(const wchar_t* key) {
        DWORD number = 0;
        DWORD size = sizeof number;
        RegGetValueW(HKEY_CURRENT_USER, key, kName, RRF_RT_REG_DWORD, nullptr, &number, &size);
        return number;
    }
    static void Set(const wchar_t* key, DWORD number) {
        RegSetKeyValueW(HKEY_CURRENT_USER, key, kName, REG_DWORD, &number, sizeof number);
    }
    std::wstring folder_ = benchtest::ScratchFolder();
    std::wstring variable_;
};

TEST_F(UserStateTest, TheNextTestGivesBackWhatAnEndedOneHasLeft) {
    Set(kKey, 7);
    Set(kOther, 8);
    {
        // Their ends never come, as in a program that is ended.
        std::make_unique<UserState>(folder_).release();
        std::make_unique<UserNumber>(kOther, kName).release()->Set(9);
        Set(kKey, 1);
    }
    {
        const UserState next(folder_);
        EXPECT_EQ(0U, Number(kKey));
        EXPECT_EQ(8U, Number(kOther));
    }
    EXPECT_EQ(7U, Number(kKey));
    EXPECT_EQ(8U, Number(kOther));
}

TEST_F(UserStateTest, ANumberThatWasNotThereIsNotThereAfterIt) {
    {
        const UserNumber number(kOther, kName);
        number.Set(9);
        EXPECT_EQ(9U, Number(kOther));
    }
    DWORD size = 0;
    EXPECT_NE(ERROR_SUCCESS,
              RegGetValueW(HKEY_CURRENT_USER, kOther, kName, RRF_RT_ANY, nullptr, nullptr, &size));
}

TEST_F(UserStateTest, TheNextTestGivesBackColoursThatAnEndedOneHasLeft) {
    constexpr COLORREF kColour = RGB(12, 34, 56);
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    const COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
    std::make_unique<UserColours>(
        std::vector<std::pair<int, COLORREF>>{{COLOR_WINDOW, kColour}, {COLOR_WINDOWTEXT, kColour}})
        .release();
    EXPECT_EQ(kColour, GetSysColor(COLOR_WINDOW));
    EXPECT_EQ(kColour, GetSysColor(COLOR_WINDOWTEXT));
    {
        const UserState next(folder_);
        EXPECT_EQ(window, GetSysColor(COLOR_WINDOW));
        EXPECT_EQ(text, GetSysColor(COLOR_WINDOWTEXT));
    }
    { const UserColours colours({{COLOR_WINDOW, kColour}}); }
    EXPECT_EQ(window, GetSysColor(COLOR_WINDOW)) << "its own end gives them back too";
}

} // namespace

} // namespace viewtest
