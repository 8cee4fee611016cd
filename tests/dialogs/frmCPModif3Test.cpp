#include "common/resource.h"
#include "tests/dialogs/Driver.h"

#include <string>
#include <utility>

namespace dialogs {
namespace {

class frmCPModif3Test : public DialogTest {
  protected:
    com::Ref<IAttribute> EnumAttribute(const std::wstring& value, const std::wstring& description) {
        auto point = Attribute(kEnum, value);
        const auto type = support::Object(point, &IAttribute::get_SNVTType).As<IEnumType>();
        EXPECT_EQ(support::Put(type, &IEnumType::put_EnumDesc, description), S_OK);
        return point;
    }
    static LRESULT Send(const Shown& dialog, UINT message, WPARAM wParam = 0) {
        return SendMessageW(dialog.Control(IDC_ENUM), message, wParam, 0);
    }
};

TEST_F(frmCPModif3Test, OffersTheEntriesWithTheirValues) {
    const auto value = Edit(EnumAttribute(L"0", L"0,Off;1,On;"), [](Shown& dialog) {
        EXPECT_EQ(dialog.Text(IDC_NAME), L"Point");
        EXPECT_EQ(dialog.Text(IDC_TYPE), L"SNVT_switch_state");
        EXPECT_EQ(dialog.Text(IDC_CURRENT), L"Off");
        EXPECT_EQ(Send(dialog, CB_GETCOUNT), 2);
        EXPECT_EQ(Send(dialog, CB_GETITEMDATA, 0), 0);
        EXPECT_EQ(Send(dialog, CB_GETITEMDATA, 1), 1);
        EXPECT_EQ(dialog.Text(IDC_ENUM), L"Off");
        EXPECT_TRUE(dialog.HasFocus(IDC_ENUM));
        EXPECT_EQ(dialog.DefaultButton(), IDOK);
        dialog.Choose(IDC_ENUM, 1);
        EXPECT_EQ(dialog.Text(IDC_CURRENT), L"Off") << "until OK";
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"1");
}

TEST_F(frmCPModif3Test, CancelLeavesTheValue) {
    const auto value = Edit(EnumAttribute(L"0", L"0,Off;1,On"), [](Shown& dialog) {
        dialog.Choose(IDC_ENUM, 1);
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(value, L"0");
}

TEST_F(frmCPModif3Test, ShowsNothingUntilOneIsChosenWhenNoEntryHasTheValue) {
    const auto value = Edit(EnumAttribute(L"7", L"0,Off;-1,None"), [](Shown& dialog) {
        EXPECT_EQ(Send(dialog, CB_GETCURSEL), CB_ERR);
        EXPECT_EQ(dialog.Text(IDC_CURRENT), L"7");
        EXPECT_FALSE(dialog.IsEnabled(IDOK));
        dialog.Choose(IDC_ENUM, 1);
        EXPECT_TRUE(dialog.IsEnabled(IDOK));
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"-1");
}

TEST_F(frmCPModif3Test, AnEmptyDescriptionGivesAnEmptyList) {
    Edit(EnumAttribute(L"0", L""), [](Shown& dialog) {
        EXPECT_EQ(Send(dialog, CB_GETCOUNT), 0);
        EXPECT_FALSE(dialog.IsEnabled(IDOK));
        dialog.Click(IDCANCEL);
    });
}

TEST_F(frmCPModif3Test, ReadsEntriesAsTheyStandUpToTheFirstEmptyOne) {
    const auto value =
        Edit(EnumAttribute(L"3", L"2.5,half;3;4x,,tail;on,On;6,a,b; 7 , seven;;8,lost"), [](Shown& dialog) {
            ASSERT_EQ(Send(dialog, CB_GETCOUNT), 6);
            const std::pair<LRESULT, const wchar_t*> entries[] = {{2, L"half"}, {3, L""},  {4, L""},
                                                                  {0, L"On"},   {6, L"a"}, {7, L" seven"}};
            EXPECT_EQ(Send(dialog, CB_GETCURSEL), 1);
            for (int i = 0; i < 6; ++i) {
                EXPECT_EQ(Send(dialog, CB_GETITEMDATA, static_cast<WPARAM>(i)), entries[i].first);
                dialog.Choose(IDC_ENUM, i);
                EXPECT_EQ(dialog.Text(IDC_ENUM), entries[i].second);
            }
            dialog.Choose(IDC_ENUM, 2);
            dialog.Click(IDOK);
        });
    EXPECT_EQ(value, L"3") << "the first entry with the text shown";
}

TEST_F(frmCPModif3Test, TextsThatDifferInCaseAreTwo) {
    const auto value = Edit(EnumAttribute(L"0", L"0,on;1,On;-32768,ON"), [](Shown& dialog) {
        dialog.Choose(IDC_ENUM, 2);
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"-32768");
}

TEST_F(frmCPModif3Test, TheKeyboardChoosesAndConfirms) {
    const auto value = Edit(EnumAttribute(L"0", L"0,Off;1,On;2,Auto"), [](Shown& dialog) {
        dialog.PressKey(VK_DOWN);
        dialog.PressKey(VK_DOWN);
        EXPECT_EQ(dialog.Text(IDC_ENUM), L"Auto");
        dialog.PressKey(VK_RETURN);
        EXPECT_FALSE(dialog.IsOpen());
    });
    EXPECT_EQ(value, L"2");
}

TEST_F(frmCPModif3Test, ADescriptionThatCannotBeReadOpensNothing) {
    const auto point = EnumAttribute(L"0", L"70000,Far;");
    EXPECT_EQ(point->SetValue(), support::kOverflow);
}

} // namespace
} // namespace dialogs
