#include "common/resource.h"
#include "tests/dialogs/Driver.h"

#include <utility>

namespace dialogs {
namespace {

class frmCPModif2Test : public DialogTest {};

TEST_F(frmCPModif2Test, ShowsThePointItsTypeAndItsLength) {
    Edit(Attribute(kText, L"hall"), [](Shown& dialog) {
        EXPECT_EQ(dialog.Text(IDC_NAME), L"Point");
        EXPECT_EQ(dialog.Text(IDC_TYPE), L"SNVT_str");
        EXPECT_EQ(dialog.Text(IDC_LENGTH), L"8 characters at most");
        EXPECT_EQ(dialog.Text(kValueBox), L"hall");
        EXPECT_EQ(dialog.Selection(kValueBox), std::make_pair(0, 4));
        EXPECT_TRUE(dialog.HasFocus(kValueBox));
        EXPECT_EQ(dialog.DefaultButton(), IDOK);
        dialog.Click(IDCANCEL);
    });
}

TEST_F(frmCPModif2Test, WritesUnderscoresForBlanks) {
    const auto value = Edit(Attribute(kText, L"hall"), [](Shown& dialog) {
        dialog.Type(kValueBox, L"a b");
        EXPECT_EQ(dialog.Text(kValueBox), L"a_b");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"a_b");
}

TEST_F(frmCPModif2Test, CancelLeavesTheValue) {
    const auto value = Edit(Attribute(kText, L"hall"), [](Shown& dialog) {
        dialog.Type(kValueBox, L"x");
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(value, L"hall");
}

TEST_F(frmCPModif2Test, CutsAPastedTextOnce) {
    const auto value = Edit(Attribute(kText, L"hall"), [](Shown& dialog) {
        dialog.Paste(kValueBox, L"one two three\r\nfour");
        EXPECT_EQ(dialog.Text(kValueBox), L"one_two_");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"one_two_");
    support::ExpectOnlyBox(Messages(), L"The text cannot exceed 8 characters", L"Name too long",
                           MB_ICONEXCLAMATION);
}

TEST_F(frmCPModif2Test, EscapeResetsTheTextAndEnterConfirms) {
    const auto value = Edit(Attribute(kText, L"hall"), [](Shown& dialog) {
        dialog.PressKey('7');
        dialog.PressKey(VK_BACK);
        EXPECT_EQ(dialog.Text(kValueBox), L"");
        dialog.PressKey(VK_ESCAPE);
        EXPECT_TRUE(dialog.IsOpen());
        EXPECT_EQ(dialog.Text(kValueBox), L"hall");
        dialog.PressKey('8');
        dialog.PressKey(VK_SPACE);
        dialog.PressKey(VK_RETURN);
        EXPECT_FALSE(dialog.IsOpen());
    });
    EXPECT_EQ(value, L"8_");
}

TEST_F(frmCPModif2Test, WritesAnEmptyText) {
    const auto value = Edit(Attribute(kText, L"hall"), [](Shown& dialog) {
        dialog.Type(kValueBox, L"\b");
        EXPECT_TRUE(dialog.IsEnabled(IDOK));
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"");
}

} // namespace
} // namespace dialogs
