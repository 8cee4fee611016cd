// edit, rename and about: what opens a dialog, and the keys typed into it.

#include "tests/bench/BenchRun.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <functional>
#include <string>
#include <string_view>
#include <thread>

namespace benchtest {

namespace {

/// An attribute of the sample "channels", edited by keys.
Json Edited(const std::wstring& attribute, const std::wstring& keys, DWORD status = 0) {
    return Bench({L"edit", L"channels", attribute, L"--keys", keys}, status);
}

BOOL CALLBACK FindShownDialog(HWND window, LPARAM found) {
    std::array<wchar_t, 16> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    if (IsWindowVisible(window) == FALSE || name.data() != std::wstring_view(L"#32770")) {
        return TRUE;
    }
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

/// Puts a window of its own in front when a dialog is shown, until the end.
void StealTheForeground(const std::atomic<bool>& isOver) {
    HWND dialog = nullptr;
    while (!isOver && dialog == nullptr) {
        EnumWindows(&FindShownDialog, reinterpret_cast<LPARAM>(&dialog));
        Sleep(1);
    }
    const HWND own = CreateWindowExW(0, L"Static", L"in front", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 200,
                                     100, nullptr, nullptr, nullptr, nullptr);
    SetForegroundWindow(own);
    while (!isOver) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
            DispatchMessageW(&message);
        }
        Sleep(1);
    }
    DestroyWindow(own);
}

/// What the program says of a command line that it refuses.
std::string Refusal(const std::wstring& keys) {
    const Outcome run = RunBench({L"edit", L"channels", L"AI1_Offset", L"--keys", keys});
    EXPECT_EQ(2U, run.status) << Narrow(keys);
    EXPECT_EQ("", run.out);
    return run.err.substr(0, run.err.find('\n'));
}

// The editor keeps the text that it shows, in the user's form.
TEST(DialogsEditTest, AnswersTheEditorWithItsText) {
    const Json edited = Bench({L"edit", L"channels", L"AI1_Offset"});
    EXPECT_EQ("-0.50", edited["before"]["value"]);
    EXPECT_EQ(Json(Local("-0.50")), edited["after"]["value"]);
    EXPECT_EQ(edited["before"]["display"], edited["after"]["display"]);
    ASSERT_EQ(1U, edited["boxes"].size());
    EXPECT_EQ("dialog", edited["boxes"][0]["kind"]);
    EXPECT_EQ("SetValue", edited["boxes"][0]["during"]);
    EXPECT_EQ(Json{Local("-0.50")}, edited["boxes"][0]["fields"]);
}

TEST(DialogsEditTest, FailsWithoutAnEditor) {
    EXPECT_EQ("0x800A005B", Bench({L"edit", SmallStream(), L"AI6_Label"}, 1)["error"]["hresult"]);
    EXPECT_EQ("0x80070057", Bench({L"edit", L"channels", L"Nope"}, 1)["error"]["hresult"]);
}

TEST(DialogsEditTest, TypesIntoTheEditor) {
    const Json edited = Edited(L"AI1_Offset", IsCommaUser() ? L"1,5{ENTER}" : L"1.5{ENTER}");
    EXPECT_EQ((Json{{"value", "-0.50"}, {"display", Local("-0.50 \u00B0C")}}), edited["before"]);
    EXPECT_EQ((Json{{"value", Local("1.5")}, {"display", Local("1.5 \u00B0C")}}), edited["after"]);
    EXPECT_EQ(1U, edited["boxes"].size());
    EXPECT_EQ("keys", edited["boxes"][0]["answeredBy"]);
    EXPECT_EQ("", edited["keysLeft"]);
    EXPECT_EQ(Json::array(), edited["leftOpen"]);
}

TEST(DialogsEditTest, KeysGoToTheControlWithTheFocus) {
    const Json ticked = Edited(L"AI1_Offset", L"{TAB}{SPACE}{ENTER}");
    EXPECT_EQ(Json(Local("327.67")), ticked["after"]["value"]) << "the invalid value";
    EXPECT_EQ(ticked["after"], Edited(L"AI1_Offset", L"{alt+I}{enter}")["after"]);
    // Cancel by its button, and by its access key.
    EXPECT_EQ("-0.50", Edited(L"AI1_Offset", L"7{TAB 3} ")["after"]["value"]);
    EXPECT_EQ("-0.50", Edited(L"AI1_Offset", L"7{ALT+c}")["after"]["value"]);
}

TEST(DialogsEditTest, EscTakesTheTypedTextBack) {
    EXPECT_EQ(Json(Local("-0.50")), Edited(L"AI1_Offset", L"7{ESC}{ENTER}")["after"]["value"]);
}

TEST(DialogsEditTest, KeysMoveTheCaretAndDelete) {
    EXPECT_EQ("35", Edited(L"AI1_Offset", L"123{HOME}{DEL 2}{RIGHT}5{ENTER}")["after"]["value"]);
    EXPECT_EQ("102", Edited(L"AI1_Offset", L"123{BACKSPACE}{LEFT}0{ENTER}")["after"]["value"]);
}

TEST(DialogsEditTest, ArrowKeysChooseFromAList) {
    const Json edited = Edited(L"AO1_Setup", L"{DOWN 2}{UP}{ENTER}");
    EXPECT_EQ((Json{{"value", "21"}, {"display", "DCM_LINEAR"}}), edited["before"]);
    EXPECT_EQ((Json{{"value", "22"}, {"display", "DCM_EQUAL_PERCENT"}}), edited["after"]);
}

TEST(DialogsEditTest, AMessageBoxGetsNoKey) {
    const Json edited = Edited(L"AI1_Offset", L"999{ENTER}", 1);
    ASSERT_EQ(2U, edited["boxes"].size());
    EXPECT_EQ(Json(Local("The value is greater than 327.66")), edited["boxes"][1]["text"]);
    EXPECT_EQ("bench", edited["boxes"][1]["answeredBy"]);
    EXPECT_EQ(Json(Local("327.66")), edited["after"]["value"]);
}

TEST(DialogsEditTest, FailsWhenADialogIsStillOpen) {
    const Json edited = Edited(L"AI1_Offset", L"5", 1);
    EXPECT_EQ(Json{"Edit Value"}, edited["leftOpen"]);
    EXPECT_EQ("-0.50", edited["after"]["value"]);
    EXPECT_EQ("0x80004004", edited["error"]["hresult"]);
    EXPECT_EQ("the keys did not close \"Edit Value\"; it was closed with Cancel",
              edited["error"]["description"]);
}

TEST(DialogsEditTest, FailsWhenKeysAreLeft) {
    const Json edited = Edited(L"AI1_Offset", L"5{ENTER}{tab 2}{{}x", 1);
    EXPECT_EQ("5", edited["after"]["value"]);
    EXPECT_EQ("{TAB}{TAB}{{}x", edited["keysLeft"]);
    EXPECT_EQ("all dialogs had closed before these keys were typed: {TAB}{TAB}{{}x",
              edited["error"]["description"]);
}

TEST(DialogsKeysTest, AFaultInThemIsWrongUsage) {
    EXPECT_EQ("tambench: --keys: there is no key in it", Refusal(L""));
    EXPECT_EQ("tambench: --keys: the { at character 2 is not closed; the brace itself is written {{}",
              Refusal(L"1{ENTER"));
    EXPECT_EQ("tambench: --keys: the } at character 1 closes nothing; the brace itself is written {}}",
              Refusal(L"}"));
    EXPECT_EQ("tambench: --keys: there is no key {ENTR}; there are {ENTER} {ESC} {TAB} {SPACE} {BACKSPACE} "
              "{DEL} {LEFT} {RIGHT} {UP} {DOWN} {HOME} {END} {PGUP} {PGDN} {F2} {F4} {ALT+x}, and {{} and "
              "{}} for the braces",
              Refusal(L"{ENTR}"));
    for (const wchar_t* const count : {L"{TAB 0}", L"{TAB x}", L"{TAB 1000}", L"{TAB }"}) {
        EXPECT_NE(std::string::npos, Refusal(count).find("how often the key is pressed, 1 to 999"));
    }
    EXPECT_EQ("tambench: --keys: {ALT+xy}: ALT+ takes one character, the underlined one of a control",
              Refusal(L"{ALT+xy}"));
    EXPECT_EQ("tambench: --keys: character 2 is a control character; write the key's name", Refusal(L"1\t"));
}

TEST(DialogsKeysTest, AreNotForAUserWhoTypes) {
    const Outcome run = RunBench({L"edit", L"channels", L"AI1_Offset", L"--keys", L"1", L"--interactive"});
    EXPECT_EQ(2U, run.status);
}

TEST(DialogsRenameTest, TellsWhatTheUserChose) {
    const Json renamed =
        Bench({L"rename", L"Tam_1", L"--key", L"K9", L"--keys", L"{END}{BACKSPACE}2{ENTER}{TAB}{SPACE}"});
    EXPECT_EQ("confirmed", renamed["choice"]);
    EXPECT_EQ("Tam_1", renamed["before"]);
    EXPECT_EQ("Tam_2", renamed["after"]);
    EXPECT_EQ("K9", renamed["deviceKey"]);
    EXPECT_EQ("Add Gateway Device", renamed["boxes"][0]["caption"]);
    EXPECT_EQ(Json{"Tam_1"}, renamed["boxes"][0]["fields"]);

    const Json cancelled = Bench({L"rename", L"Tam_1", L"--keys", L"Hall{ESC}"});
    EXPECT_EQ("cancelled", cancelled["choice"]);
    EXPECT_EQ("Tam_1", cancelled["after"]);
}

// A night's script has no window in front.
TEST(DialogsRenameTest, KeysAreTypedWhileAnotherProgramIsInFront) {
    std::atomic<bool> isOver = false;
    std::thread other(&StealTheForeground, std::cref(isOver));
    const Outcome run =
        RunBench({L"rename", L"Tam_1", L"--keys", L"{HOME 40}{END 40}{BACKSPACE}3{ALT+o}", L"--json"});
    isOver = true;
    other.join();
    EXPECT_EQ(0U, run.status) << run.err;
    EXPECT_EQ("Tam_3", Json::parse(run.out, nullptr, false).value("after", ""));
}

TEST(DialogsRenameTest, IsAnsweredWithOkWithoutKeys) {
    EXPECT_EQ("confirmed", Bench({L"rename", L"Hall"})["choice"]);
    EXPECT_EQ("cancelled", Bench({L"rename"})["choice"]) << "without a name its OK is grey";
}

TEST(DialogsRenameTest, ARefusedNameLeavesTheDialogOpen) {
    const Json refused = Bench({L"rename", L"--keys", L"a-b{ALT+o}{ESC}"}, 1);
    EXPECT_EQ("cancelled", refused["choice"]);
    ASSERT_EQ(2U, refused["boxes"].size());
    EXPECT_EQ("The name haven't to contain special keys.", refused["boxes"][1]["text"]);
    const Json plain = Bench({L"rename", L"1st"}, 1);
    EXPECT_EQ("The name have to start with a letter.", plain["boxes"][1]["text"]);
    EXPECT_EQ("its OK did not close \"Add Gateway Device\"; it was closed with Cancel",
              plain["error"]["description"]);
}

TEST(DialogsRenameTest, TakesSixCharacters) {
    EXPECT_EQ("abcdef", Bench({L"rename", L"--keys", L"abcdefgh{ALT+o}"})["after"]);
}

TEST(DialogsAboutTest, ShowsTheVersion) {
    const Json boxes = Bench({L"about"})["boxes"];
    ASSERT_EQ(1U, boxes.size());
    EXPECT_EQ("dialog", boxes[0]["kind"]);
    EXPECT_EQ("About Gateway Object", boxes[0]["caption"]);
    EXPECT_NE(std::string::npos, boxes[0]["text"].get<std::string>().find("Version 1.0.0"));
}

} // namespace

} // namespace benchtest
