// A structure of a host's own objects, reached by name alone, some of whose
// members fail.

#include "common/resource.h"
#include "tests/dialogs/Driver.h"
#include "tests/dialogs/HostPoint.h"

#include <string>
#include <utility>
#include <vector>

namespace dialogs {
namespace {

class HostStructureTest : public DialogTest {
  protected:
    void Fill(HostPoint::Walk walk) {
        inner_.SetFields({&deep_}, walk);
        structure_.SetFields({&speed_, &inner_, &mode_}, walk);
    }
    HRESULT Edit() { return NewModule().As<ITamDialogs>()->EditValue(structure_.object.Get()); }
    HRESULT Edit(Script script) {
        Next(std::move(script));
        return Edit();
    }
    /// The text of the error that the last call left.
    static std::wstring Error() {
        com::Ref<IErrorInfo> info;
        com::Bstr text;
        if (GetErrorInfo(0, info.Put()) == S_OK) {
            info->GetDescription(text.Put());
        }
        return std::wstring(text.View());
    }
    void ExpectOneReport(const std::wstring& description) {
        support::ExpectOnlyReport(Messages(), description, L"lvwMain_DblClick Form frmCPModif4",
                                  L"Sub lvwMain_DblClick", L"Host");
    }
    /// A field's editor could not be opened, and Cancel could not tell whether the
    /// field is as it was.
    void ExpectReportOfOpeningAndCancel(const std::wstring& description) {
        const auto messages = Messages();
        ASSERT_EQ(messages.size(), 2U);
        support::ExpectReport(messages[0], description, L"lvwMain_DblClick Form frmCPModif4",
                              L"Sub lvwMain_DblClick", L"Host");
        support::ExpectReport(messages[1], description, L"Form_Unload Form frmCPModif4", L"Sub Form_Unload",
                              L"Host");
    }
    void ExpectOneMessage(const std::wstring& text, const std::wstring& caption) {
        support::ExpectOnlyBox(Messages(), text, caption, MB_ICONEXCLAMATION);
    }

    /// Confirms a new number in the editor of the first field.
    void EditFirst(Shown& dialog, const std::wstring& number) {
        Next([number](Shown& field) {
            field.Type(IDC_NEW_VALUE, number);
            field.Click(IDOK);
        });
        dialog.DoubleClickRow(IDC_FIELDS, 0);
    }

    static constexpr HRESULT kRaised = NamedObject::kRaised;

    HostPoint speed_{L"Speed", L"40", L"UnsignedNumeric"};
    HostPoint deep_{L"Deep", L"1", L"SignedNumeric"};
    HostPoint inner_{L"Inner", L"in", L"Struct"};
    HostPoint mode_{L"Mode", L"0", L"Float"};
    HostPoint structure_{L"Setpoints", L"whole", L"Struct"};
};

TEST_F(HostStructureTest, ACollectionThatCanOnlyBeWalkedWillDo) {
    Fill(HostPoint::Walk::ByEnumeratorAlone);
    EXPECT_EQ(Edit([this](Shown& dialog) {
                  ASSERT_EQ(dialog.Rows(IDC_FIELDS), 3);
                  EXPECT_EQ(dialog.Cell(IDC_FIELDS, 1, 0), L"Inner");
                  Next([this](Shown& nested) {
                      EXPECT_EQ(nested.Text(IDC_NAME), L"Inner");
                      Next([](Shown& field) {
                          EXPECT_EQ(field.Text(IDC_NAME), L"Deep");
                          field.Type(IDC_NEW_VALUE, L"7");
                          field.Click(IDOK);
                      });
                      nested.DoubleClickRow(IDC_FIELDS, 0);
                      EXPECT_EQ(nested.Cell(IDC_FIELDS, 0, 1), L"7");
                      nested.Click(IDOK);
                  });
                  dialog.DoubleClickRow(IDC_FIELDS, 1);
                  dialog.Click(IDOK);
              }),
              S_OK);
    EXPECT_EQ(deep_.value, L"7");
    EXPECT_EQ(inner_.writes, std::vector<std::wstring>{L"in"});
    EXPECT_EQ(structure_.writes, std::vector<std::wstring>{L"whole"});
}

TEST_F(HostStructureTest, FieldsOfEqualNamesAreToldApart) {
    HostPoint second(L"Speed", L"41", L"UnsignedNumeric");
    structure_.SetFields({&speed_, &second});
    EXPECT_EQ(Edit([this](Shown& dialog) {
                  Next([](Shown& field) {
                      EXPECT_EQ(field.Text(IDC_CURRENT), L"41");
                      field.Click(IDCANCEL);
                  });
                  dialog.DoubleClickRow(IDC_FIELDS, 1);
                  dialog.Click(IDCANCEL);
              }),
              S_OK);
}

TEST_F(HostStructureTest, WhatKeepsItFromOpeningReachesTheCaller) {
    Fill(HostPoint::Walk::ByEnumerator);
    const std::pair<NamedObject*, const wchar_t*> members[] = {{mode_.object.Get(), L"Value"},
                                                               {inner_.object.Get(), L"Name"},
                                                               {structure_.object.Get(), L"Name"},
                                                               {structure_.object.Get(), L"Fields"},
                                                               {structure_.object.Get(), L"SNVTType"}};
    for (const auto& [object, member] : members) {
        object->Break(member);
        EXPECT_EQ(Edit(), kRaised);
        EXPECT_EQ(Error(), member + std::wstring(L" is out of order"));
    }
    // A form whose opening failed gets as far as a window that closes at once.
    for (const bench::Box& box : Messages()) {
        EXPECT_EQ(box.caption, L"Edit Value");
    }
}

TEST_F(HostStructureTest, AFieldWithoutAReadableTypeCannotBeChanged) {
    Fill(HostPoint::Walk::ByCount);
    mode_.object->Break(L"SNVTType");
    EXPECT_EQ(Edit([](Shown& dialog) {
                  dialog.DoubleClickRow(IDC_FIELDS, 2);
                  dialog.Click(IDCANCEL);
              }),
              S_OK);
    ExpectOneMessage(L"Unknown or Not modificable Attribute", L"Edit Value");
}

TEST_F(HostStructureTest, TakesAnErrorThatHasAClassicNumberAlone) {
    Fill(HostPoint::Walk::ByEnumerator);
    structure_.object->Break(L"Fields", support::kNoSuchMember);
    EXPECT_EQ(Edit(), support::kNoSuchMember);
}

TEST_F(HostStructureTest, ANestedStructureThatCannotBeShownIsReported) {
    Fill(HostPoint::Walk::ByEnumerator);
    EXPECT_EQ(Edit([this](Shown& dialog) {
                  inner_.object->Break(L"Fields");
                  dialog.DoubleClickRow(IDC_FIELDS, 1);
                  EXPECT_TRUE(dialog.IsOpen());
                  dialog.Click(IDCANCEL);
              }),
              S_OK);
    ExpectReportOfOpeningAndCancel(L"Fields is out of order");
}

TEST_F(HostStructureTest, AFieldWhoseEditorCannotReadItIsReported) {
    Fill(HostPoint::Walk::ByCount);
    EXPECT_EQ(Edit([this](Shown& dialog) {
                  speed_.object->Break(L"Value");
                  dialog.DoubleClickRow(IDC_FIELDS, 0);
                  EXPECT_EQ(dialog.Cell(IDC_FIELDS, 0, 1), L"40");
                  dialog.Click(IDCANCEL);
              }),
              S_OK);
    ExpectReportOfOpeningAndCancel(L"Value is out of order");
}

TEST_F(HostStructureTest, ARowThatCannotBeReadAgainIsReported) {
    Fill(HostPoint::Walk::ByEnumerator);
    EXPECT_EQ(Edit([this](Shown& dialog) {
                  Next([this](Shown& field) {
                      field.Type(IDC_NEW_VALUE, L"55");
                      field.Click(IDOK);
                      mode_.object->Break(L"Value");
                  });
                  dialog.DoubleClickRow(IDC_FIELDS, 0);
                  EXPECT_EQ(dialog.Cell(IDC_FIELDS, 0, 1), L"55");
                  EXPECT_EQ(dialog.Cell(IDC_FIELDS, 2, 1), L"0");
                  dialog.Click(IDOK);
              }),
              S_OK);
    ExpectOneReport(L"Value is out of order");
    EXPECT_EQ(speed_.value, L"55");
}

TEST_F(HostStructureTest, FieldsStayAfterTheirStructureCouldNotBeWritten) {
    for (const bool hasNoValue : {false, true}) {
        speed_.value = L"40";
        deep_.value = L"1";
        Fill(HostPoint::Walk::ByEnumerator);
        structure_.refusesWrites = true;
        if (hasNoValue) {
            structure_.object->Break(L"Value");
        }
        EXPECT_EQ(Edit([this](Shown& dialog) {
                      EditFirst(dialog, L"55");
                      Next([this](Shown& nested) {
                          EditFirst(nested, L"7");
                          nested.Click(IDOK);
                      });
                      dialog.DoubleClickRow(IDC_FIELDS, 1);
                      dialog.Click(IDOK);
                      EXPECT_TRUE(dialog.IsOpen());
                      dialog.Click(IDCANCEL);
                  }),
                  S_OK);
        ExpectOneMessage(L"error calculating CP value", L"Gateway Object");
        EXPECT_EQ(speed_.value, L"55");
        EXPECT_EQ(deep_.value, L"7");
        EXPECT_TRUE(mode_.writes.empty());
    }
}

// The nested structure's own editor has told it: OK of the outer one does not try again.
TEST_F(HostStructureTest, ANestedStructureThatCannotBeWrittenKeepsNoOtherFromIt) {
    Fill(HostPoint::Walk::ByEnumerator);
    inner_.refusesWrites = true;
    EXPECT_EQ(Edit([this](Shown& dialog) {
                  Next([this](Shown& nested) {
                      EditFirst(nested, L"7");
                      inner_.value = L"in, with a 7";
                      nested.Click(IDOK);
                      EXPECT_TRUE(nested.IsOpen());
                      nested.Click(IDCANCEL);
                  });
                  dialog.DoubleClickRow(IDC_FIELDS, 1);
                  EXPECT_EQ(dialog.Cell(IDC_FIELDS, 1, 1), L"in, with a 7");
                  EditFirst(dialog, L"55");
                  dialog.Click(IDOK);
                  EXPECT_FALSE(dialog.IsOpen());
              }),
              S_OK);
    ExpectOneMessage(L"error calculating CP value", L"Gateway Object");
    EXPECT_EQ(deep_.value, L"7") << "a field stays when its structure could not be written";
    EXPECT_TRUE(inner_.writes.empty());
    EXPECT_EQ(speed_.value, L"55");
    EXPECT_EQ(structure_.writes, std::vector<std::wstring>{L"whole"});
}

TEST_F(HostStructureTest, CancelTakesBackWhatWasEditedAfterTheFailure) {
    Fill(HostPoint::Walk::ByEnumerator);
    structure_.refusesWrites = true;
    EXPECT_EQ(Edit([this](Shown& dialog) {
                  EditFirst(dialog, L"55");
                  dialog.Click(IDOK);
                  EditFirst(dialog, L"66");
                  EXPECT_EQ(speed_.value, L"66");
                  dialog.Click(IDCANCEL);
              }),
              S_OK);
    ExpectOneMessage(L"error calculating CP value", L"Gateway Object");
    EXPECT_EQ(speed_.value, L"55");
}

TEST_F(HostStructureTest, CancelRestoresAllWhenAFieldCouldNotBeWritten) {
    Fill(HostPoint::Walk::ByEnumerator);
    EXPECT_EQ(Edit([this](Shown& dialog) {
                  EditFirst(dialog, L"55");
                  speed_.refusesWrites = true;
                  dialog.Click(IDOK);
                  EXPECT_TRUE(dialog.IsOpen());
                  speed_.refusesWrites = false;
                  dialog.Click(IDCANCEL);
              }),
              S_OK);
    ExpectOneMessage(L"error calculating CP value", L"Gateway Object");
    EXPECT_EQ(speed_.value, L"40");
    EXPECT_TRUE(structure_.writes.empty());
}

TEST_F(HostStructureTest, AnOkAfterAFailedOneWritesAll) {
    Fill(HostPoint::Walk::ByEnumerator);
    structure_.refusesWrites = true;
    EXPECT_EQ(Edit([this](Shown& dialog) {
                  EditFirst(dialog, L"55");
                  dialog.Click(IDOK);
                  structure_.refusesWrites = false;
                  dialog.Click(IDOK);
                  EXPECT_FALSE(dialog.IsOpen());
              }),
              S_OK);
    ExpectOneMessage(L"error calculating CP value", L"Gateway Object");
    EXPECT_EQ(speed_.value, L"55");
    EXPECT_EQ(structure_.writes, std::vector<std::wstring>{L"whole"});
}

TEST_F(HostStructureTest, AValueThatCannotBeWrittenLeavesTheFormOpen) {
    Fill(HostPoint::Walk::ByEnumerator);
    structure_.object->Break(L"Value");
    EXPECT_EQ(Edit([](Shown& dialog) {
                  dialog.Click(IDOK);
                  EXPECT_TRUE(dialog.IsOpen());
                  dialog.Click(IDCANCEL);
              }),
              S_OK);
    ExpectOneMessage(L"error calculating CP value", L"Gateway Object");
}

} // namespace
} // namespace dialogs
