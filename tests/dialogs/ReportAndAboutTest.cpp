#include "component/resource.h"
#include "tests/dialogs/Driver.h"

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

class frmAboutTest : public DialogTest {};

TEST_F(frmAboutTest, ShowsTitleVersionAndLogo) {
    const auto module = NewModule().As<ITamDialogs>();
    Next([](Shown& dialog) {
        EXPECT_EQ(dialog.Caption(), L"About Gateway Object");
        EXPECT_EQ(dialog.Text(IDC_ABOUT_TITLE), L"Gateway Object");
        EXPECT_EQ(dialog.Text(IDC_ABOUT_VERSION), L"Version 1.0.0");
        EXPECT_EQ(dialog.Text(IDC_ABOUT_DESCRIPTION),
                  L"Application objects of remote I/O modules for building-automation controllers.");
        EXPECT_NE(SendMessageW(dialog.Control(IDC_ABOUT_LOGO), STM_GETICON, 0, 0), 0);
        EXPECT_EQ(dialog.DefaultButton(), IDOK);
        dialog.Click(IDOK);
    });
    EXPECT_EQ(module->ShowAbout(), S_OK);
}

} // namespace
} // namespace dialogs
