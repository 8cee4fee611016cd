#include "common/resource.h"
#include "tests/dialogs/Driver.h"

#include "com/LateBound.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace dialogs {
namespace {

using support::ExpectBox;

constexpr int kNameBox = IDC_DEVICE_NAME;

class frmRenameTest : public DialogTest {
  protected:
    struct Answer {
        short choice;
        std::wstring name;
    };
    Answer Rename(const std::wstring& name, Script script) {
        const auto module = NewModule().As<ITamDialogs>();
        Next(std::move(script));
        com::Variant deviceName(name);
        const com::Bstr key(L"K7");
        VARIANT argument = deviceName.Detach();
        short choice = 0;
        EXPECT_EQ(module->ShowRename(&argument, key.Get(), &choice), S_OK);
        Answer answer{choice, com::Text(argument.bstrVal)};
        VariantClear(&argument);
        return answer;
    }
    static bool LooksLikeDefault(const Shown& dialog, int id) {
        return (GetWindowLongW(dialog.Control(id), GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
    }
    /// Neither does the system press a button for Enter, nor does one look so.
    static void ExpectNoDefaultButton(const Shown& dialog) {
        EXPECT_EQ(SendMessageW(dialog.Window(), DM_GETDEFID, 0, 0), 0);
        EXPECT_FALSE(LooksLikeDefault(dialog, IDOK));
        EXPECT_FALSE(LooksLikeDefault(dialog, IDCANCEL));
    }
};

TEST_F(frmRenameTest, OpensWithTheNameSelected) {
    const auto answer = Rename(L"Dev1", [](Shown& dialog) {
        EXPECT_EQ(dialog.Caption(), L"Add Gateway Device");
        EXPECT_EQ(dialog.Text(-1), L" Device Name");
        EXPECT_EQ(dialog.Text(kNameBox), L"Dev1");
        EXPECT_EQ(dialog.Selection(kNameBox), std::make_pair(0, 4));
        EXPECT_TRUE(dialog.HasFocus(kNameBox));
        EXPECT_TRUE(dialog.IsEnabled(IDOK));
        EXPECT_EQ(dialog.DefaultButton(), 0);
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(answer.choice, 2);
    EXPECT_EQ(answer.name, L"Dev1");
}

TEST_F(frmRenameTest, GivesTheNewNameBack) {
    const auto answer = Rename(L"Dev1", [](Shown& dialog) {
        dialog.Type(kNameBox, L"a_1");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(answer.choice, 1);
    EXPECT_EQ(answer.name, L"a_1");
}

TEST_F(frmRenameTest, TakesSixCharacters) {
    const auto answer = Rename(L"", [](Shown& dialog) {
        EXPECT_FALSE(dialog.IsEnabled(IDOK));
        dialog.Type(kNameBox, L"abcdefg");
        EXPECT_EQ(dialog.Text(kNameBox), L"abcdef");
        EXPECT_TRUE(dialog.IsEnabled(IDOK));
        dialog.Click(IDOK);
    });
    EXPECT_EQ(answer.name, L"abcdef");
}

TEST_F(frmRenameTest, RefusesABadNameAndStaysOpen) {
    const auto answer = Rename(L"Dev1", [](Shown& dialog) {
        for (const wchar_t* name : {L"1a", L"a-b", L"a b"}) {
            dialog.Select(kNameBox, 0, -1);
            dialog.Type(kNameBox, name);
            dialog.Click(IDOK);
            EXPECT_TRUE(dialog.IsOpen());
            EXPECT_EQ(dialog.Text(kNameBox), name);
        }
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(answer.choice, 2);
    EXPECT_EQ(answer.name, L"Dev1");
    const auto messages = Messages();
    ASSERT_EQ(messages.size(), 3U);
    ExpectBox(messages[0], L"The name have to start with a letter.", L"Gateway Object", MB_ICONEXCLAMATION);
    for (const std::size_t i : {1U, 2U}) {
        ExpectBox(messages[i], L"The name haven't to contain special keys.", L"Gateway Object",
                  MB_ICONEXCLAMATION);
    }
}

TEST_F(frmRenameTest, JudgesTheFirstCharacterByItsCodeInTheAnsiCodePage) {
    ASSERT_EQ(GetACP(), 1252U) << "the code page that the expectations are of";
    Rename(L"Dev1", [](Shown& dialog) {
        for (const wchar_t* name : {L"\u00e91", L"\u4e2da", L"\u0100b", L"a\u00e9"}) {
            dialog.Select(kNameBox, 0, -1);
            dialog.Type(kNameBox, name);
            dialog.Click(IDOK);
            EXPECT_EQ(dialog.Text(kNameBox), name);
        }
        dialog.Click(IDCANCEL);
    });
    const auto messages = Messages();
    ASSERT_EQ(messages.size(), 4U);
    for (const std::size_t i : {0U, 1U}) { // E9 and "?", neither of which is a letter of ASCII
        ExpectBox(messages[i], L"The name have to start with a letter.", L"Gateway Object",
                  MB_ICONEXCLAMATION);
    }
    for (const std::size_t i : {2U, 3U}) { // A with a macron is the code page's plain A
        ExpectBox(messages[i], L"The name haven't to contain special keys.", L"Gateway Object",
                  MB_ICONEXCLAMATION);
    }
}

TEST_F(frmRenameTest, TheKeyCodeZeroConfirms) {
    const auto answer = Rename(L"Dev1", [](Shown& dialog) {
        SendMessageW(dialog.Control(kNameBox), WM_CHAR, 0, 0);
        EXPECT_FALSE(dialog.IsOpen());
    });
    EXPECT_EQ(answer.choice, 1);
    EXPECT_EQ(answer.name, L"Dev1");
}

TEST_F(frmRenameTest, TheKeyCodeZeroConfirmsNoBadName) {
    const auto answer = Rename(L"", [](Shown& dialog) {
        for (const wchar_t* name : {L"", L"a-b"}) {
            dialog.Type(kNameBox, name);
            SendMessageW(dialog.Control(kNameBox), WM_CHAR, 0, 0);
            EXPECT_TRUE(dialog.IsOpen());
            EXPECT_EQ(dialog.Text(kNameBox), name);
        }
        dialog.Select(kNameBox, 0, -1);
        dialog.Type(kNameBox, L"ab");
        SendMessageW(dialog.Control(kNameBox), WM_CHAR, 0, 0);
    });
    EXPECT_EQ(answer.choice, 1) << "a refusal before does not count";
    EXPECT_EQ(answer.name, L"ab");
    const auto messages = Messages();
    ASSERT_EQ(messages.size(), 2U);
    ExpectBox(messages[0], L"The name have to start with a letter.", L"Gateway Object", MB_ICONEXCLAMATION);
    ExpectBox(messages[1], L"The name haven't to contain special keys.", L"Gateway Object",
              MB_ICONEXCLAMATION);
}

TEST_F(frmRenameTest, ALongNameIsShownCutAndLeftAloneByCancel) {
    const auto close = [](Shown& dialog) {
        EXPECT_EQ(dialog.Text(kNameBox), L"Longna");
        EXPECT_EQ(dialog.Selection(kNameBox), std::make_pair(0, 6));
        dialog.CloseByItsFrame();
    };
    const auto answer = Rename(L"Longname", close);
    EXPECT_EQ(answer.choice, 2);
    EXPECT_EQ(answer.name, L"Longname");
}

TEST_F(frmRenameTest, ActivationPutsTheFocusIntoTheName) {
    Rename(L"Dev1", [](Shown& dialog) {
        SetFocus(dialog.Control(IDCANCEL));
        SendMessageW(dialog.Window(), WM_ACTIVATE, WA_INACTIVE, 0);
        EXPECT_TRUE(dialog.HasFocus(IDCANCEL));
        SendMessageW(dialog.Window(), WM_ACTIVATE, WA_ACTIVE, 0);
        EXPECT_TRUE(dialog.HasFocus(kNameBox));
        dialog.Click(IDCANCEL);
    });
}

TEST_F(frmRenameTest, TakesNoMoreThanSixPastedCharacters) {
    const auto answer = Rename(L"x", [](Shown& dialog) {
        dialog.Type(kNameBox, L"\b");
        EXPECT_FALSE(dialog.IsEnabled(IDOK));
        dialog.Paste(kNameBox, L"abcdefgh");
        EXPECT_EQ(dialog.Text(kNameBox), L"abcdef");
        EXPECT_TRUE(dialog.IsEnabled(IDOK));
        dialog.Click(IDOK);
    });
    EXPECT_EQ(answer.name, L"abcdef");
}

TEST_F(frmRenameTest, EnterIsLeftToTheName) {
    const auto answer = Rename(L"Dev1", [](Shown& dialog) {
        dialog.Type(kNameBox, L"new");
        ExpectNoDefaultButton(dialog);
        dialog.PressKey(VK_RETURN);
        EXPECT_TRUE(dialog.IsOpen());
        EXPECT_TRUE(dialog.HasFocus(kNameBox));
        EXPECT_EQ(dialog.Text(kNameBox), L"new");
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(answer.choice, 2);
    EXPECT_EQ(answer.name, L"Dev1");
}

TEST_F(frmRenameTest, EscapePressesCancel) {
    EXPECT_EQ(Rename(L"Dev1", [](Shown& dialog) { dialog.PressKey(VK_ESCAPE); }).choice, 2);
}

TEST_F(frmRenameTest, OkIsPressedWithTheFocusOnIt) {
    for (const WORD key : {WORD{VK_SPACE}, WORD{VK_RETURN}}) {
        const auto answer = Rename(L"Dev1", [key](Shown& dialog) {
            dialog.PressKey(VK_TAB);
            EXPECT_TRUE(dialog.HasFocus(IDOK));
            EXPECT_TRUE(LooksLikeDefault(dialog, IDOK));
            dialog.PressKey(key);
            EXPECT_FALSE(dialog.IsOpen());
        });
        EXPECT_EQ(answer.choice, 1);
    }
    EXPECT_EQ(Rename(L"Dev1",
                     [](Shown& dialog) {
                         dialog.PressKey(VK_TAB);
                         dialog.PressKey(VK_TAB);
                         EXPECT_TRUE(dialog.HasFocus(IDCANCEL));
                         dialog.PressKey(VK_RETURN);
                     })
                  .choice,
              2);
}

TEST_F(frmRenameTest, OkIsPressedByItsAccessKey) {
    const auto answer = Rename(L"Dev1", [](Shown& dialog) {
        EXPECT_EQ(dialog.Text(IDOK), L"&OK");
        dialog.PressAccessKey(L'o');
        EXPECT_FALSE(dialog.IsOpen());
    });
    EXPECT_EQ(answer.choice, 1);
}

TEST_F(frmRenameTest, NoButtonIsTheDefaultOneAfterARoundOfTheTabKey) {
    const auto answer = Rename(L"Dev1", [](Shown& dialog) {
        for (const int id : {IDOK, IDCANCEL, kNameBox}) {
            dialog.PressKey(VK_TAB);
            EXPECT_TRUE(dialog.HasFocus(id));
        }
        ExpectNoDefaultButton(dialog);
        dialog.PressKey(VK_RETURN);
        EXPECT_TRUE(dialog.IsOpen());
        // The focus goes back without the Tab key, and by the dialog's own message.
        SetFocus(dialog.Control(IDOK));
        SetFocus(dialog.Control(kNameBox));
        ExpectNoDefaultButton(dialog);
        SendMessageW(dialog.Window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(dialog.Control(IDOK)), TRUE);
        SendMessageW(dialog.Window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(dialog.Control(kNameBox)),
                     TRUE);
        ExpectNoDefaultButton(dialog);
        SendMessageW(dialog.Control(IDOK), BM_SETSTYLE, BS_DEFPUSHBUTTON, TRUE);
        ExpectNoDefaultButton(dialog);
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(answer.choice, 2);
}

TEST_F(frmRenameTest, IsReachedByNameWithAVariableByReference) {
    const auto module = NewModule();
    Next([](Shown& dialog) {
        dialog.Type(kNameBox, L"new");
        dialog.Click(IDOK);
    });
    OLECHAR member[] = L"ShowRename";
    LPOLESTR name = member;
    DISPID id = 0;
    ASSERT_EQ(module->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id), S_OK);
    com::Variant variable(std::wstring_view(L"old"));
    VARIANT argument{};
    argument.vt = VT_VARIANT | VT_BYREF;
    VARIANT value = variable.Detach();
    argument.pvarVal = &value;
    DISPPARAMS params{&argument, nullptr, 1, 0};
    com::Variant result;
    ASSERT_EQ(module->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, result.Put(),
                             nullptr, nullptr),
              S_OK);
    EXPECT_EQ(result.Get().iVal, 1);
    EXPECT_EQ(com::Text(value.bstrVal), L"new");
    VariantClear(&value);
}

TEST_F(frmRenameTest, WritesThroughAReferenceToAText) {
    const auto module = NewModule();
    const auto typeNew = [](Shown& dialog) {
        EXPECT_EQ(dialog.Text(kNameBox), L"old");
        dialog.Type(kNameBox, L"new");
        dialog.Click(IDOK);
    };
    for (const bool isVariablesVariable : {false, true}) {
        com::Bstr text(L"old");
        VARIANT byReference = com::ByReference(text);
        VARIANT variable{};
        variable.vt = VT_VARIANT | VT_BYREF;
        variable.pvarVal = &byReference;
        short choice = 0;
        Next(typeNew);
        EXPECT_EQ(module.As<ITamDialogs>()->ShowRename(isVariablesVariable ? &variable : &byReference,
                                                       nullptr, &choice),
                  S_OK);
        EXPECT_EQ(choice, 1);
        EXPECT_EQ(text.View(), L"new");
        EXPECT_EQ(byReference.vt, VT_BSTR | VT_BYREF);
    }
    com::Bstr text(L"old");
    VARIANT argument = com::ByReference(text);
    Next(typeNew);
    EXPECT_EQ(com::CallMember(*module.Get(), L"ShowRename", std::span<VARIANT>(&argument, 1)).Get().iVal, 1);
    EXPECT_EQ(text.View(), L"new");
}

TEST_F(frmRenameTest, OpensEmptyForAVariableThatHoldsNothing) {
    const auto module = NewModule().As<ITamDialogs>();
    for (const VARTYPE kind : {VT_EMPTY, VT_NULL, VT_BSTR}) {
        VARIANT argument{};
        argument.vt = kind;
        short choice = 0;
        Next([](Shown& dialog) {
            EXPECT_EQ(dialog.Text(kNameBox), L"");
            EXPECT_FALSE(dialog.IsEnabled(IDOK));
            dialog.Click(IDCANCEL);
        });
        EXPECT_EQ(module->ShowRename(&argument, nullptr, &choice), S_OK);
        EXPECT_EQ(choice, 2);
        EXPECT_EQ(argument.vt, kind);
    }
}

} // namespace
} // namespace dialogs
