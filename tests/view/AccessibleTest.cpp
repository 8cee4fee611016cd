// What a screen reader hears of the sheet and of a field in a list.

#include "tests/view/Fixture.h"

#include "com/Conversion.h"
#include "com/Ref.h"

#include <oleacc.h>

#include <string>

namespace viewtest {

namespace {

/// COM for the life of a test; what it holds goes before.
class Apartment {
  public:
    Apartment() { EXPECT_EQ(S_OK, CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)); }
    ~Apartment() { CoUninitialize(); }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
};

class AccessibleTest : public OpenedTest {
  protected:
    AccessibleTest() {
        EXPECT_EQ(S_OK, AccessibleObjectFromWindow(viewer_.Part(IDC_SHEET), static_cast<DWORD>(OBJID_CLIENT),
                                                   __uuidof(IAccessible), sheet_.PutVoid()));
    }
    void SetUp() override { ASSERT_TRUE(sheet_); }
    static VARIANT Child(LONG number) {
        VARIANT child{};
        child.vt = VT_I4;
        child.lVal = number;
        return child;
    }
    std::wstring NameOf(LONG child) const {
        com::Bstr name;
        EXPECT_EQ(S_OK, sheet_->get_accName(Child(child), name.Put())) << child;
        return std::wstring(name.View());
    }
    LONG RoleOf(LONG child) const {
        VARIANT role{};
        EXPECT_EQ(S_OK, sheet_->get_accRole(Child(child), &role)) << child;
        return role.lVal;
    }
    LONG StateOf(LONG child) const {
        VARIANT state{};
        EXPECT_EQ(S_OK, sheet_->get_accState(Child(child), &state)) << child;
        return state.lVal;
    }
    Apartment apartment_;
    com::Ref<IAccessible> sheet_;
};

TEST_F(AccessibleTest, TheSheetIsADiagramOfItsPins) {
    LONG count = 0;
    EXPECT_EQ(S_OK, sheet_->get_accChildCount(&count));
    EXPECT_EQ(kInputs + kOutputs, count);
    EXPECT_EQ(ROLE_SYSTEM_DIAGRAM, RoleOf(CHILDID_SELF));
    EXPECT_EQ(ROLE_SYSTEM_GRAPHIC, RoleOf(1));
    EXPECT_TRUE(NameOf(CHILDID_SELF).starts_with(L"Sheet: Reading room")) << Narrow(NameOf(CHILDID_SELF));
    EXPECT_TRUE(NameOf(1).starts_with(L"input AO1_In1")) << Narrow(NameOf(1));
    EXPECT_TRUE(NameOf(kInputs + 1).starts_with(L"output AI1_Out")) << Narrow(NameOf(kInputs + 1));
}

TEST_F(AccessibleTest, APinIsPickedByItsReader) {
    EXPECT_EQ(0, StateOf(kInputs + 2) & STATE_SYSTEM_SELECTED);
    EXPECT_EQ(S_OK, sheet_->accSelect(SELFLAG_TAKESELECTION, Child(kInputs + 2)));
    EXPECT_NE(0, StateOf(kInputs + 2) & STATE_SYSTEM_SELECTED);
    EXPECT_EQ(L"AO1_Out", viewer_.PickedName(IDC_OUTPUTS)) << "the lists follow";
    VARIANT picked{};
    EXPECT_EQ(S_OK, sheet_->get_accSelection(&picked));
    EXPECT_EQ(kInputs + 2, picked.lVal);
    viewer_.ToFront();
    EXPECT_EQ(S_OK, sheet_->accSelect(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION, Child(1)));
    Await("the focus", [&] { return viewer_.Focus() == IDC_SHEET; });
    EXPECT_EQ(L"AO1_In1", viewer_.PickedName(IDC_INPUTS));
    EXPECT_EQ(E_INVALIDARG, sheet_->accSelect(SELFLAG_ADDSELECTION, Child(1)));
}

TEST_F(AccessibleTest, APinsActionOpensIt) {
    com::Bstr action;
    EXPECT_EQ(S_OK, sheet_->get_accDefaultAction(Child(1), action.Put()));
    EXPECT_EQ(L"Edit value", action.View());
    EXPECT_EQ(S_OK, sheet_->accDoDefaultAction(Child(1)));
    Await("the field of the input",
          [&] { return GetDlgItem(viewer_.Part(IDC_INPUTS), IDC_CELL) != nullptr; });
    EXPECT_EQ(L"AO1_In1", viewer_.PickedName(IDC_INPUTS));
}

TEST_F(AccessibleTest, WhatIsNotThereIsRefused) {
    const LONG none = kInputs + kOutputs + 1;
    com::Bstr name;
    VARIANT answer{};
    LONG left = 0;
    LONG top = 0;
    LONG width = 0;
    LONG height = 0;
    EXPECT_EQ(E_INVALIDARG, sheet_->get_accName(Child(none), name.Put()));
    EXPECT_EQ(E_INVALIDARG, sheet_->get_accRole(Child(none), &answer));
    EXPECT_EQ(E_INVALIDARG, sheet_->get_accState(Child(none), &answer));
    EXPECT_EQ(E_INVALIDARG, sheet_->accLocation(&left, &top, &width, &height, Child(none)));
    EXPECT_EQ(E_INVALIDARG, sheet_->accSelect(SELFLAG_TAKESELECTION, Child(none)));
}

TEST_F(AccessibleTest, APinIsWhereItIsSeen) {
    LONG left = 0;
    LONG top = 0;
    LONG width = 0;
    LONG height = 0;
    ASSERT_EQ(S_OK, sheet_->accLocation(&left, &top, &width, &height, Child(1)));
    VARIANT hit{};
    EXPECT_EQ(S_OK, sheet_->accHitTest(left + width / 2, top + height / 2, &hit));
    EXPECT_EQ(1, hit.lVal);
}

TEST_F(AccessibleTest, PartsHaveNames) {
    EXPECT_EQ(L"Lists", viewer_.PartText(IDC_PAGES));
    viewer_.Pick(IDC_ATTRIBUTES, L"AO1_Gain");
    const HWND cell = viewer_.OpenCell(IDC_ATTRIBUTES);
    ASSERT_NE(nullptr, cell);
    const HWND label = GetWindow(cell, GW_HWNDPREV);
    EXPECT_EQ(L"AO1_Gain, Value", TextOf(label)) << "a field is named by the label before it";
    EXPECT_TRUE(IsWindowVisible(label));
}

TEST_F(AccessibleTest, TheProgressBarSaysWhatIsLoaded) {
    com::Ref<IAccessible> bar;
    ASSERT_EQ(S_OK, AccessibleObjectFromWindow(viewer_.Part(IDC_PROGRESS), static_cast<DWORD>(OBJID_CLIENT),
                                               __uuidof(IAccessible), bar.PutVoid()));
    com::Bstr name;
    EXPECT_EQ(S_OK, bar->get_accName(Child(CHILDID_SELF), name.Put()));
    EXPECT_EQ(L"Loading channels.xml \u2026", std::wstring(name.View()));
    const HWND label = GetWindow(viewer_.Part(IDC_PROGRESS), GW_HWNDPREV);
    EXPECT_EQ(IDC_PROGRESS_LABEL, GetDlgCtrlID(label));
    EXPECT_EQ(L"Loading channels.xml \u2026", TextOf(label));
}

TEST_F(AccessibleTest, AnUnsavedRowIsToldInWords) {
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
    viewer_.Pick(IDC_ATTRIBUTES, L"AO1_Gain");
    viewer_.Pick(IDC_ATTRIBUTES, L"AI1_Channel");
    EXPECT_EQ(L"The value of AI1_Channel is not saved.", viewer_.Status(VIEW_STATUS_MESSAGE));
    viewer_.Pick(IDC_ATTRIBUTES, L"AO1_Gain");
    EXPECT_EQ(L"", viewer_.Status(VIEW_STATUS_MESSAGE));
}

} // namespace

} // namespace viewtest
