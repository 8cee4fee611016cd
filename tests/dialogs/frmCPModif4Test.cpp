#include "common/resource.h"
#include "tests/dialogs/Driver.h"
#include "tests/dialogs/HostPoint.h"

#include <commctrl.h>
#include <string>
#include <utility>
#include <vector>
namespace dialogs {
namespace {

class frmCPModif4Test : public DialogTest {
  protected:
    void SetUp() override {
        DialogTest::SetUp();
        speed_.type->AddText(L"Max", L"100");
        speed_.type->AddText(L"Length", L"2");
        name_.type->AddText(L"Length", L"8");
        mode_.type->AddText(L"EnumDesc", L"0,Off;1,On;");
        flags_.type->AddText(L"Length", L"1");
        inner_.SetFields({&deep_});
    }

    /// A structure of all kinds of fields.
    void Fill(HostPoint::Walk walk = HostPoint::Walk::ByEnumerator) {
        structure_.SetFields({&speed_, &name_, &mode_, &flags_, &inner_, &other_}, walk);
    }
    void EditStructure(Script script) {
        const auto module = NewModule().As<ITamDialogs>();
        Next(std::move(script));
        EXPECT_EQ(module->EditValue(structure_.object.Get()), S_OK);
    }

    HostPoint speed_{L"Speed", L"40", L"UnsignedNumeric"};
    HostPoint name_{L"Label", L"hall", L"Textual"};
    HostPoint mode_{L"Mode", L"0", L"Enum"};
    HostPoint flags_{L"Flags", L"5", L"Bitfield"};
    HostPoint deep_{L"Deep", L"1", L"SignedNumeric"};
    HostPoint inner_{L"Inner", L"in", L"Struct"};
    HostPoint other_{L"Other", L"?", L"Invalid"};
    HostPoint structure_{L"Setpoints", L"whole", L"Struct"};
};

TEST_F(frmCPModif4Test, ListsTheFieldsWithTheirValues) {
    Fill();
    EditStructure([](Shown& dialog) {
        EXPECT_EQ(dialog.Caption(), L"Edit Value");
        EXPECT_EQ(dialog.Text(IDC_NAME), L"Setpoints");
        ASSERT_EQ(dialog.Rows(IDC_FIELDS), 6);
        const std::pair<const wchar_t*, const wchar_t*> rows[] = {{L"Speed", L"40"}, {L"Label", L"hall"},
                                                                  {L"Mode", L"0"},   {L"Flags", L"5"},
                                                                  {L"Inner", L"in"}, {L"Other", L"?"}};
        for (int row = 0; row < 6; ++row) {
            EXPECT_EQ(dialog.Cell(IDC_FIELDS, row, 0), rows[row].first);
            EXPECT_EQ(dialog.Cell(IDC_FIELDS, row, 1), rows[row].second);
        }
        EXPECT_TRUE(dialog.HasFocus(IDC_FIELDS));
        EXPECT_EQ(dialog.DefaultButton(), IDOK);
        dialog.Click(IDCANCEL);
    });
}

TEST_F(frmCPModif4Test, ListsACollectionThatHasOnlyItsCount) {
    Fill(HostPoint::Walk::ByCount);
    EditStructure([](Shown& dialog) {
        EXPECT_EQ(dialog.Rows(IDC_FIELDS), 6);
        EXPECT_EQ(dialog.Cell(IDC_FIELDS, 5, 0), L"Other");
        dialog.Click(IDCANCEL);
    });
}

TEST_F(frmCPModif4Test, AStructureWithoutFieldsHasAnEmptyList) {
    EditStructure([](Shown& dialog) {
        EXPECT_EQ(dialog.Rows(IDC_FIELDS), 0);
        EXPECT_FALSE(dialog.IsEnabled(IDC_EDIT_FIELD));
        dialog.Click(IDOK);
    });
    EXPECT_EQ(structure_.writes, std::vector<std::wstring>{L"whole"});
}

TEST_F(frmCPModif4Test, AnAttributeOfAModuleHasAnEmptyList) {
    const auto value = Edit(Attribute(kStruct, L"1,2"), [](Shown& dialog) {
        EXPECT_EQ(dialog.Text(IDC_NAME), L"Point");
        EXPECT_EQ(dialog.Rows(IDC_FIELDS), 0);
        dialog.Click(IDOK);
    });
    EXPECT_EQ(value, L"1,2");
}

TEST_F(frmCPModif4Test, OpensTheEditorOfEachFieldAndShowsItsNewValue) {
    Fill();
    EditStructure([this](Shown& dialog) {
        Next([](Shown& field) {
            EXPECT_EQ(field.Text(IDC_NAME), L"Speed");
            field.Type(IDC_NEW_VALUE, L"55");
            field.Click(IDOK);
        });
        dialog.DoubleClickRow(IDC_FIELDS, 0);
        EXPECT_EQ(dialog.Cell(IDC_FIELDS, 0, 1), L"55");
        Next([](Shown& field) {
            EXPECT_EQ(field.Text(IDC_LENGTH), L"8 characters at most");
            field.Type(IDC_NEW_VALUE, L"attic");
            field.Click(IDOK);
        });
        dialog.DoubleClickRow(IDC_FIELDS, 1);
        EXPECT_EQ(dialog.Cell(IDC_FIELDS, 1, 1), L"attic");
        Next([](Shown& field) {
            field.Choose(IDC_ENUM, 1);
            field.Click(IDOK);
        });
        dialog.DoubleClickRow(IDC_FIELDS, 2);
        EXPECT_EQ(dialog.Cell(IDC_FIELDS, 2, 1), L"1");
        Next([](Shown& field) {
            field.DoubleClick(IDC_BIT + 1);
            field.Click(IDOK);
        });
        dialog.DoubleClickRow(IDC_FIELDS, 3);
        EXPECT_EQ(dialog.Cell(IDC_FIELDS, 3, 1), L"7");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(speed_.value, L"55");
    EXPECT_EQ(name_.value, L"attic");
    EXPECT_EQ(mode_.value, L"1");
    EXPECT_EQ(flags_.value, L"7");
    EXPECT_EQ(structure_.writes, std::vector<std::wstring>{L"whole"});
    EXPECT_TRUE(other_.writes.empty());
}

TEST_F(frmCPModif4Test, ANumericFieldIsWrittenBackWhenItsEditorCloses) {
    Fill();
    EditStructure([this](Shown& dialog) {
        Next([](Shown& field) {
            field.Type(IDC_NEW_VALUE, L"9");
            field.Click(IDCANCEL);
        });
        dialog.DoubleClickRow(IDC_FIELDS, 0);
        EXPECT_EQ(speed_.writes, std::vector<std::wstring>{L"40"});
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(speed_.value, L"40");
}

TEST_F(frmCPModif4Test, ANewValueOfANumericFieldIsWrittenTwiceAndStays) {
    Fill();
    EditStructure([this](Shown& dialog) {
        Next([](Shown& field) {
            field.Type(IDC_NEW_VALUE, L"9");
            field.Click(IDOK);
        });
        dialog.DoubleClickRow(IDC_FIELDS, 0);
        EXPECT_EQ(speed_.writes, (std::vector<std::wstring>{L"9", L"9"})) << "by OK and by closing";
        dialog.Click(IDOK);
    });
    EXPECT_EQ(speed_.writes, (std::vector<std::wstring>{L"9", L"9", L"9"})) << "by the structure's OK too";
}

TEST_F(frmCPModif4Test, OpensANestedStructureInAnEditorOfItsOwn) {
    Fill();
    EditStructure([this](Shown& dialog) {
        Next([this](Shown& nested) {
            EXPECT_EQ(nested.Text(IDC_NAME), L"Inner");
            Next([](Shown& field) {
                field.Type(IDC_NEW_VALUE, L"2");
                field.Click(IDOK);
            });
            nested.DoubleClickRow(IDC_FIELDS, 0);
            nested.Click(IDOK);
        });
        dialog.DoubleClickRow(IDC_FIELDS, 4);
        EXPECT_EQ(deep_.value, L"2");
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(deep_.value, L"1")
        << "Cancel goes back to the values at opening, whatever was confirmed inside";
}

TEST_F(frmCPModif4Test, CancelRestoresTheFields) {
    Fill();
    EditStructure([this](Shown& dialog) {
        Next([](Shown& field) {
            field.Type(IDC_NEW_VALUE, L"55");
            field.Click(IDOK);
        });
        dialog.DoubleClickRow(IDC_FIELDS, 0);
        EXPECT_EQ(speed_.value, L"55");
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(speed_.value, L"40");
    EXPECT_TRUE(name_.writes.empty());
    EXPECT_TRUE(structure_.writes.empty());
}

TEST_F(frmCPModif4Test, SaysThatAFieldWithoutEditorCannotBeChanged) {
    Fill();
    EditStructure([](Shown& dialog) {
        dialog.DoubleClickRow(IDC_FIELDS, 5);
        dialog.Click(IDCANCEL);
    });
    support::ExpectOnlyBox(Messages(), L"Unknown or Not modificable Attribute", L"Edit Value",
                           MB_ICONEXCLAMATION);
}

TEST_F(frmCPModif4Test, TheButtonIsEnabledForEveryRow) {
    Fill();
    EditStructure([](Shown& dialog) {
        SetFocus(dialog.Control(IDC_FIELDS));
        for (const WORD key : {WORD{VK_END}, WORD{VK_HOME}}) { // the last row, then the first
            dialog.PressKey(key);
            EXPECT_TRUE(dialog.IsEnabled(IDC_EDIT_FIELD)) << key;
        }
        ListView_SetItemState(dialog.Control(IDC_FIELDS), 0, 0, LVIS_SELECTED);
        EXPECT_FALSE(dialog.IsEnabled(IDC_EDIT_FIELD)) << "no row is selected";
        dialog.Click(IDCANCEL);
    });
}

TEST_F(frmCPModif4Test, TheKeyboardAndTheButtonOpenTheSelectedField) {
    Fill();
    EditStructure([this](Shown& dialog) {
        const auto cancel = [](Shown& field) { field.Click(IDCANCEL); };
        Next(cancel);
        dialog.Click(IDC_EDIT_FIELD);
        SetFocus(dialog.Control(IDC_FIELDS));
        Next(cancel);
        dialog.PressKey(VK_F2);
        Next(cancel);
        dialog.PressKey(VK_SPACE);
        dialog.PressKey(VK_RETURN);
        EXPECT_FALSE(dialog.IsOpen());
    });
}

TEST_F(frmCPModif4Test, StaysOpenWhenTheDataPointRefusesTheValue) {
    Fill();
    structure_.refusesWrites = true;
    EditStructure([](Shown& dialog) {
        dialog.Click(IDOK);
        EXPECT_TRUE(dialog.IsOpen());
        dialog.Click(IDCANCEL);
    });
    support::ExpectOnlyBox(Messages(), L"error calculating CP value", L"Gateway Object", MB_ICONEXCLAMATION);
}

TEST_F(frmCPModif4Test, AnEditorThatCannotReadItsFieldIsReported) {
    HostPoint broken(L"Broken", L"0", L"Enum");
    broken.type->AddText(L"EnumDesc", L"70000,Far;");
    structure_.SetFields({&broken});
    EditStructure([](Shown& dialog) {
        dialog.DoubleClickRow(IDC_FIELDS, 0);
        dialog.Click(IDCANCEL);
    });
    support::ExpectOnlyReport(Messages(), support::kOverflowText, L"lvwMain_DblClick Form frmCPModif4",
                              L"Sub lvwMain_DblClick");
}

TEST_F(frmCPModif4Test, ADataPointThatNoEditorFitsOpensNothing) {
    const auto module = NewModule().As<ITamDialogs>();
    EXPECT_EQ(module->EditValue(other_.object.Get()), support::kObjectNotSet);
    EXPECT_EQ(module->EditValue(nullptr), support::kObjectNotSet);
}

} // namespace
} // namespace dialogs
