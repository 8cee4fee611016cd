#include "component/resource.h"
#include "tests/dialogs/Driver.h"

#include <utility>

namespace dialogs {
namespace {

class frmErrorTest : public DialogTest {
  protected:
    /// A member that traps: an XML node that is none.
    void Report(Script script) {
        const auto point = Attribute(kSigned, L"1").As<_CDBAttribute>();
        Next(std::move(script));
        EXPECT_EQ(point->XmlLoad(nullptr), S_OK);
    }
};

TEST_F(frmErrorTest, ShowsTheErrorAndFoldsItsAdvancedPart) {
    Report([](Shown& dialog) {
        EXPECT_EQ(dialog.Caption(), L"Gateway Object - Error report");
        EXPECT_EQ(dialog.Text(IDC_ERROR_TITLE), L"Gateway Object");
        EXPECT_EQ(dialog.Text(IDC_ERROR_LINE1), L"The application has reported the following error:");
        EXPECT_EQ(dialog.Text(IDC_ERROR_DESCRIPTION), L"Object variable or With block variable not set");
        EXPECT_EQ(dialog.Text(IDC_ERROR_ADVANCED), L"Advanced Information  > >");
        EXPECT_FALSE(dialog.IsVisible(IDC_ERROR_ADVANCED_INFO));
        EXPECT_EQ(dialog.DefaultButton(), IDOK);
        EXPECT_TRUE(dialog.HasFocus(IDOK));
        const int folded = dialog.Height();

        dialog.Click(IDC_ERROR_ADVANCED);
        EXPECT_EQ(dialog.Text(IDC_ERROR_ADVANCED), L"Advanced Information  < <");
        EXPECT_TRUE(dialog.IsVisible(IDC_ERROR_ADVANCED_INFO));
        EXPECT_GT(dialog.Height(), folded);
        EXPECT_EQ(dialog.Text(IDC_ERROR_ADVANCED_INFO),
                  L"* Source application (Err.Source): \r\n  O_Tam_id\r\n"
                  L"* Calling object (Me.Name or module name): \r\n  O_Tam_id Class Module CDBAttribute\r\n"
                  L"* Calling function: \r\n  Sub XmlLoad");

        dialog.Click(IDC_ERROR_ADVANCED);
        EXPECT_EQ(dialog.Height(), folded);
        EXPECT_FALSE(dialog.IsVisible(IDC_ERROR_ADVANCED_INFO));
        dialog.Click(IDOK);
    });
}

TEST_F(frmErrorTest, ItsTextsAreReadOnlyAndCanBeCopied) {
    Report([](Shown& dialog) {
        for (const int id : {IDC_ERROR_DESCRIPTION, IDC_ERROR_ADVANCED_INFO}) {
            EXPECT_NE(GetWindowLongW(dialog.Control(id), GWL_STYLE) & ES_READONLY, 0);
            EXPECT_NE(GetWindowLongW(dialog.Control(id), GWL_STYLE) & WS_TABSTOP, 0);
        }
        dialog.PressKey(VK_ESCAPE);
        EXPECT_FALSE(dialog.IsOpen());
    });
}

TEST_F(frmErrorTest, GrowsAndStaysOnTheScreen) {
    Report([](Shown& dialog) {
        MONITORINFO monitor{};
        monitor.cbSize = sizeof(monitor);
        GetMonitorInfoW(MonitorFromWindow(dialog.Window(), MONITOR_DEFAULTTONEAREST), &monitor);
        const RECT work = monitor.rcWork;
        RECT place{};
        GetWindowRect(dialog.Window(), &place);
        const int folded = place.bottom - place.top;
        SetWindowPos(dialog.Window(), nullptr, work.right - (place.right - place.left), work.bottom - folded,
                     0, 0, SWP_NOSIZE | SWP_NOZORDER);

        dialog.Click(IDC_ERROR_ADVANCED);
        GetWindowRect(dialog.Window(), &place);
        EXPECT_GT(place.bottom - place.top, folded);
        EXPECT_EQ(place.bottom, work.bottom);
        EXPECT_EQ(place.right, work.right);
        EXPECT_GE(place.top, work.top);
        EXPECT_GE(place.left, work.left);
        dialog.Click(IDOK);
    });
}

class frmAboutTest : public DialogTest {
  protected:
    /// The control shows the component's icon A_LOGO: the system hands out one
    /// handle for an icon of a module, however often it is loaded.
    void ExpectLogo(HWND control) {
        const HICON logo = LoadIconW(Dll().Module(), L"A_LOGO");
        ASSERT_NE(logo, nullptr);
        EXPECT_EQ(reinterpret_cast<HICON>(SendMessageW(control, STM_GETICON, 0, 0)), logo);
        EXPECT_NE(logo, LoadIconW(nullptr, IDI_APPLICATION));
    }
};

TEST_F(frmAboutTest, ShowsTitleVersionAndLogo) {
    const auto module = NewModule().As<ITamDialogs>();
    Next([this](Shown& dialog) {
        EXPECT_EQ(dialog.Caption(), L"About Gateway Object");
        EXPECT_EQ(dialog.Text(IDC_ABOUT_TITLE), L"Gateway Object");
        EXPECT_EQ(dialog.Text(IDC_ABOUT_VERSION), L"Version 1.0.0");
        EXPECT_EQ(dialog.Text(IDC_ABOUT_DESCRIPTION),
                  L"Application objects of remote I/O modules for building-automation controllers.");
        ExpectLogo(dialog.Control(IDC_ABOUT_LOGO));
        EXPECT_EQ(dialog.DefaultButton(), IDOK);
        dialog.Click(IDOK);
    });
    EXPECT_EQ(module->ShowAbout(), S_OK);
}

} // namespace
} // namespace dialogs
