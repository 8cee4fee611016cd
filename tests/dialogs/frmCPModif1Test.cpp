#include "common/resource.h"
#include "tests/dialogs/Driver.h"

#include <string>
#include <utility>

namespace dialogs {
namespace {

using support::Local;

class frmCPModif1Test : public DialogTest {};

TEST_F(frmCPModif1Test, ShowsThePointItsTypeAndItsLimits) {
    const auto point = Attribute(kSigned, L"21.5");
    Edit(point, [](Shown& dialog) {
        EXPECT_EQ(dialog.Caption(), L"Edit Value");
        EXPECT_EQ(dialog.Text(IDC_NAME), L"Point");
        EXPECT_EQ(dialog.Text(IDC_TYPE), L"SNVT_temp_p");
        EXPECT_EQ(dialog.Text(IDC_MIN), Local(L"-100.5") + L" \u00B0C");
        EXPECT_EQ(dialog.Text(IDC_MAX), Local(L"500.25") + L" \u00B0C");
        EXPECT_EQ(dialog.Text(IDC_CURRENT), Local(L"21.5") + L" \u00B0C");
        EXPECT_EQ(dialog.Text(IDC_UNIT), L"\u00B0C");
        EXPECT_EQ(dialog.Text(IDC_INVALID), L"&Invalid value (" + Local(L"327.67") + L")");
        EXPECT_EQ(dialog.Text(IDCANCEL), L"&Cancel");
        EXPECT_EQ(dialog.Text(kValueBox), Local(L"21.5"));
        EXPECT_EQ(dialog.Selection(kValueBox), std::make_pair(0, static_cast<int>(Local(L"21.5").size())));
        EXPECT_TRUE(dialog.HasFocus(kValueBox));
        EXPECT_TRUE(dialog.IsEnabled(IDOK));
        EXPECT_EQ(dialog.DefaultButton(), IDOK);
        dialog.Click(IDCANCEL);
    });
}

TEST_F(frmCPModif1Test, WritesWhatWasTyped) {
    const auto value = Edit(Attribute(kSigned, L"21.5"), [](Shown& dialog) {
        dialog.Type(kValueBox, L"-" + Local(L"12.75"));
        EXPECT_EQ(dialog.Text(kValueBox), Local(L"-12.75"));
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, Local(L"-12.75"));
}

TEST_F(frmCPModif1Test, CancelLeavesTheValue) {
    const auto value = Edit(Attribute(kSigned, L"21.5"), [](Shown& dialog) {
        dialog.Type(kValueBox, L"5");
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(value, L"21.5");
}

TEST_F(frmCPModif1Test, RefusesKeysThatFormNoNumber) {
    Edit(Attribute(kFloat, L"0"), [](Shown& dialog) {
        dialog.Type(kValueBox, L"1a" + Local(L".") + L"2" + Local(L".") + L"e3+-x ");
        EXPECT_EQ(dialog.Text(kValueBox), Local(L"1.23"));
        dialog.Select(kValueBox, 1, 1);
        dialog.Type(kValueBox, Local(L"."));
        EXPECT_EQ(dialog.Text(kValueBox), Local(L"1.23"));
        dialog.Select(kValueBox, 0, -1);
        dialog.Type(kValueBox, Local(L".") + L"5");
        EXPECT_EQ(dialog.Text(kValueBox), Local(L".5"));
        dialog.Click(IDCANCEL);
    });
}

TEST_F(frmCPModif1Test, TakesASignOnlyWhereTheTypeHasNegatives) {
    Edit(Attribute(kUnsigned, L"5"), [](Shown& dialog) {
        dialog.Type(kValueBox, L"-7");
        EXPECT_EQ(dialog.Text(kValueBox), L"7");
        dialog.Click(IDCANCEL);
    });
}

TEST_F(frmCPModif1Test, PastesAWholeNumberOrNothing) {
    Edit(Attribute(kSigned, L"1"), [](Shown& dialog) {
        dialog.Paste(kValueBox, L" " + Local(L"-2.5") + L"\r\n");
        EXPECT_EQ(dialog.Text(kValueBox), Local(L"-2.5"));
        dialog.Select(kValueBox, 0, -1);
        dialog.Paste(kValueBox, L"12abc");
        EXPECT_EQ(dialog.Text(kValueBox), Local(L"-2.5"));
        SendMessageW(dialog.Control(kValueBox), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"3x"));
        EXPECT_EQ(dialog.Text(kValueBox), Local(L"-2.5"));
        SendMessageW(dialog.Control(kValueBox), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"33"));
        EXPECT_EQ(dialog.Text(kValueBox), L"33");
        dialog.Click(IDCANCEL);
    });
}

TEST_F(frmCPModif1Test, CorrectsAValueAboveTheMaximumWhileItIsTyped) {
    const auto value = Edit(Attribute(kSigned, L"1"), [](Shown& dialog) {
        dialog.Type(kValueBox, L"501");
        EXPECT_EQ(dialog.Text(kValueBox), Local(L"500.25"));
        EXPECT_EQ(dialog.Selection(kValueBox), std::make_pair(0, 6));
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, Local(L"500.25"));
    support::ExpectOnlyBox(Messages(), L"The value is greater than " + Local(L"500.25"), L"Gateway Object");
}

TEST_F(frmCPModif1Test, ConfirmsAValueAboveTheMaximumThatNobodyTouched) {
    const auto value = Edit(Attribute(kSigned, L"501"), [](Shown& dialog) {
        EXPECT_EQ(dialog.Text(kValueBox), L"501");
        dialog.Click(IDOK);
        EXPECT_FALSE(dialog.IsOpen());
    });
    EXPECT_EQ(value, L"501");
    EXPECT_TRUE(Messages().empty());
}

TEST_F(frmCPModif1Test, RefusesAValueBelowTheMinimumAtOk) {
    const auto value = Edit(Attribute(kSigned, L"1"), [](Shown& dialog) {
        dialog.Type(kValueBox, L"-101");
        dialog.Click(IDOK);
        EXPECT_TRUE(dialog.IsOpen());
        EXPECT_EQ(dialog.Text(kValueBox), Local(L"-100.5"));
        EXPECT_EQ(dialog.Selection(kValueBox), std::make_pair(0, 6));
        EXPECT_TRUE(dialog.HasFocus(kValueBox));
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, Local(L"-100.5"));
    support::ExpectOnlyBox(Messages(), L"The value is less than " + Local(L"-100.5"), L"Gateway Object");
}

TEST_F(frmCPModif1Test, ChecksNothingWithoutLimits) {
    const auto value = Edit(Attribute(kFloat, L"1"), [](Shown& dialog) {
        dialog.Type(kValueBox, std::wstring(20, L'9'));
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, std::wstring(20, L'9'));
}

TEST_F(frmCPModif1Test, PutsAZeroBeforeALeadingMark) {
    const auto half = Edit(Attribute(kSigned, L"1"), [](Shown& dialog) {
        dialog.Type(kValueBox, Local(L".5"));
        dialog.Click(IDOK);
    });
    EXPECT_EQ(half, Local(L"0.5"));
    const auto negative = Edit(Attribute(kSigned, L"1"), [](Shown& dialog) {
        dialog.Type(kValueBox, L"-" + Local(L".5"));
        dialog.Click(IDOK);
    });
    EXPECT_EQ(negative, Local(L"-0.5"));
}

TEST_F(frmCPModif1Test, EnablesOkWhenThereIsSomethingToWrite) {
    Edit(Attribute(kSigned, L"12"), [](Shown& dialog) {
        dialog.Type(kValueBox, L"\b");
        EXPECT_EQ(dialog.Text(kValueBox), L"");
        EXPECT_FALSE(dialog.IsEnabled(IDOK));
        dialog.Type(kValueBox, L"\r");
        EXPECT_TRUE(dialog.IsOpen());
        dialog.Type(kValueBox, Local(L"."));
        EXPECT_FALSE(dialog.IsEnabled(IDOK));
        dialog.Type(kValueBox, L"5");
        EXPECT_TRUE(dialog.IsEnabled(IDOK));
        dialog.Click(IDCANCEL);
    });
}

TEST_F(frmCPModif1Test, BackspaceShortensAndPutsTheCaretAtTheEnd) {
    Edit(Attribute(kSigned, L"123"), [](Shown& dialog) {
        dialog.Select(kValueBox, 1, 1);
        dialog.Type(kValueBox, L"\b");
        EXPECT_EQ(dialog.Text(kValueBox), L"23");
        EXPECT_EQ(dialog.Selection(kValueBox), std::make_pair(2, 2));
        dialog.Type(kValueBox, L"\b\b\b");
        EXPECT_EQ(dialog.Text(kValueBox), L"");
        dialog.Click(IDCANCEL);
    });
}

TEST_F(frmCPModif1Test, EscapeResetsTheTextAndEnterConfirms) {
    const auto value = Edit(Attribute(kSigned, L"12"), [](Shown& dialog) {
        dialog.PressKey('7');
        EXPECT_EQ(dialog.Text(kValueBox), L"7");
        dialog.PressKey(VK_ESCAPE);
        EXPECT_TRUE(dialog.IsOpen());
        EXPECT_EQ(dialog.Text(kValueBox), L"12");
        dialog.PressKey('8');
        dialog.PressKey(VK_RETURN);
        EXPECT_FALSE(dialog.IsOpen());
    });
    EXPECT_EQ(value, L"8");
}

TEST_F(frmCPModif1Test, TicksStoreTheInvalidValueAndClearingGivesTheTextBack) {
    const auto point = Attribute(kSigned, L"12");
    const auto value = Edit(point, [](Shown& dialog) {
        dialog.Type(kValueBox, L"\b");
        dialog.Click(IDC_INVALID);
        EXPECT_EQ(dialog.Text(kValueBox), Local(L"327.67"));
        EXPECT_FALSE(dialog.IsEnabled(kValueBox));
        EXPECT_TRUE(dialog.IsEnabled(IDOK));
        dialog.Click(IDC_INVALID);
        EXPECT_TRUE(dialog.IsEnabled(kValueBox));
        EXPECT_TRUE(dialog.HasFocus(kValueBox));
        EXPECT_TRUE(dialog.IsEnabled(IDOK));
        EXPECT_EQ(dialog.Selection(kValueBox), std::make_pair(0, 6));
        dialog.Click(IDC_INVALID);
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, Local(L"327.67"));
    Edit(point, [](Shown& dialog) {
        EXPECT_TRUE(dialog.IsTicked(IDC_INVALID));
        EXPECT_FALSE(dialog.IsEnabled(kValueBox));
        EXPECT_TRUE(dialog.HasFocus(IDC_INVALID));
        dialog.Click(IDCANCEL);
    });
}

/// What a dialog answered to WM_INITDIALOG, and which of its controls had the
/// focus by then.
struct Opening {
    LRESULT answer = -1;
    int focus = 0;

    static Opening last;
    static LRESULT CALLBACK Hook(int code, WPARAM wParam, LPARAM lParam) {
        const auto& call = *reinterpret_cast<const CWPRETSTRUCT*>(lParam);
        if (code >= 0 && call.message == WM_INITDIALOG) {
            last = {call.lResult, GetDlgCtrlID(GetFocus())};
        }
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }
};

Opening Opening::last;

TEST_F(frmCPModif1Test, TheTickHasTheFocusAtFirstWhereTheBoxIsGrey) {
    // The system gives the focus to the control that came first before the form
    // greyed it, unless the form does so itself and says it.
    const HHOOK hook = SetWindowsHookExW(WH_CALLWNDPROCRET, &Opening::Hook, nullptr, GetCurrentThreadId());
    Edit(Attribute(kSigned, Local(L"327.67")), [](Shown& dialog) {
        EXPECT_TRUE(dialog.HasFocus(IDC_INVALID));
        EXPECT_FALSE(dialog.IsEnabled(IDC_NEW_VALUE));
        dialog.Click(IDCANCEL);
    });
    UnhookWindowsHookEx(hook);
    EXPECT_EQ(Opening::last.answer, FALSE);
    EXPECT_EQ(Opening::last.focus, IDC_INVALID);
}

TEST_F(frmCPModif1Test, StoresAnInvalidValueBelowTheMinimum) {
    const auto value = Edit(Attribute(kPositive, L"12"), [](Shown& dialog) {
        dialog.Click(IDC_INVALID);
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"0");
}

TEST_F(frmCPModif1Test, ATypeWithoutInvalidValueHasNothingToTick) {
    Edit(Attribute(kUnsigned, L"5"), [](Shown& dialog) {
        EXPECT_FALSE(dialog.IsEnabled(IDC_INVALID));
        dialog.Click(IDCANCEL);
    });
}

TEST_F(frmCPModif1Test, SaysThatATextWithoutANumberCannotBeWritten) {
    const auto value = Edit(Attribute(kSigned, L"12"), [](Shown& dialog) {
        dialog.Type(kValueBox, L"-");
        EXPECT_TRUE(dialog.IsEnabled(IDOK));
        dialog.Click(IDOK);
        EXPECT_TRUE(dialog.IsOpen());
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(value, L"12");
    support::ExpectOnlyBox(Messages(), L"error in calculating the value", L"Gateway Object",
                           MB_ICONEXCLAMATION);
}

TEST_F(frmCPModif1Test, RefusesToOpenASecondTime) {
    const auto point = Attribute(kSigned, L"12");
    Edit(point, [&](Shown& dialog) {
        EXPECT_EQ(point->SetValue(), support::kInvalidCall);
        EXPECT_TRUE(dialog.IsOpen());
        dialog.Click(IDCANCEL);
    });
}

} // namespace
} // namespace dialogs
