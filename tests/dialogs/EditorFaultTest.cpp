// Editors whose data point fails while they are open.

#include "common/resource.h"
#include "tests/dialogs/Driver.h"
#include "tests/dialogs/HostPoint.h"

#include "com/LateBound.h"

#include <span>
#include <string>
#include <utility>
#include <vector>

namespace dialogs {
namespace {

constexpr const wchar_t* kRestoring = L"Form_Unload Form frmCPModif4";

class EditorFaultTest : public DialogTest {
  protected:
    void SetUp() override {
        DialogTest::SetUp();
        number_.type->AddText(L"Min", L"-100");
        number_.type->AddText(L"Max", L"100");
        number_.type->AddText(L"InvalidValue", L"127");
        text_.type->AddText(L"Length", L"8");
        mode_.type->AddText(L"EnumDesc", L"0,Off;1,On;");
        flags_.type->AddText(L"Length", L"1");
    }
    void Edit(const HostPoint& point, Script script) {
        const auto module = NewModule().As<ITamDialogs>();
        Next(std::move(script));
        EXPECT_EQ(module->EditValue(point.object.Get()), S_OK);
    }
    void ExpectOneReport(const std::wstring& description, const std::wstring& form,
                         const std::wstring& procedure) {
        support::ExpectOnlyReport(Messages(), description, form, procedure, L"Host");
    }
    /// OK on a point that refuses the value: the text is shown, the form stays.
    void ExpectOkFails(HostPoint& point, const std::wstring& text) {
        SCOPED_TRACE(::testing::PrintToString(text));
        point.refusesWrites = true;
        const std::wstring before = point.value;
        Edit(point, [](Shown& dialog) {
            dialog.Click(IDOK);
            EXPECT_TRUE(dialog.IsOpen());
            dialog.Click(IDCANCEL);
        });
        EXPECT_EQ(point.value, before);
        EXPECT_TRUE(point.writes.empty());
        support::ExpectOnlyBox(Messages(), text, L"Gateway Object", MB_ICONEXCLAMATION);
    }

    HostPoint number_{L"Speed", L"40", L"SignedNumeric"};
    HostPoint text_{L"Label", L"hall", L"Textual"};
    HostPoint mode_{L"Mode", L"1", L"Enum"};
    HostPoint flags_{L"Flags", L"5", L"Bitfield"};
};

TEST_F(EditorFaultTest, AMaximumThatCannotBeReadIsReportedAtEachChange) {
    Edit(number_, [this](Shown& dialog) {
        number_.type->Break(L"Max");
        dialog.Type(kValueBox, L"7");
        EXPECT_EQ(dialog.Text(kValueBox), L"7");
        EXPECT_TRUE(dialog.IsOpen());
        dialog.Click(IDCANCEL);
    });
    ExpectOneReport(L"Max is out of order", L"txtNewCPValue_Change Form frmCPModif1",
                    L"Sub txtNewCPValue_Change");
}

TEST_F(EditorFaultTest, AnInvalidValueThatCannotBeReadIsReported) {
    Edit(number_, [this](Shown& dialog) {
        number_.type->Break(L"InvalidValue");
        dialog.Click(IDC_INVALID);
        EXPECT_EQ(dialog.Text(kValueBox), L"40");
        EXPECT_TRUE(dialog.IsOpen());
        dialog.Click(IDCANCEL);
    });
    ExpectOneReport(L"InvalidValue is out of order", L"chkInvalid_Click Form frmCPModif1",
                    L"Sub chkInvalid_Click");
}

TEST_F(EditorFaultTest, WithoutAnInvalidValueToReadTheLimitsHoldOn) {
    Edit(number_, [this](Shown& dialog) {
        number_.type->Break(L"InvalidValue");
        dialog.Click(IDC_INVALID);
        EXPECT_FALSE(dialog.IsTicked(IDC_INVALID));
        EXPECT_TRUE(dialog.IsEnabled(kValueBox));
        dialog.Select(kValueBox, 0, -1);
        dialog.Type(kValueBox, L"101");
        EXPECT_EQ(dialog.Text(kValueBox), L"100");
        dialog.Type(kValueBox, L"-101");
        dialog.Click(IDOK);
        EXPECT_EQ(dialog.Text(kValueBox), L"-100");
        dialog.Click(IDCANCEL);
    });
    EXPECT_TRUE(number_.writes.empty());
    const auto messages = Messages();
    ASSERT_EQ(messages.size(), 3U);
    support::ExpectReport(messages[0], L"InvalidValue is out of order", L"chkInvalid_Click Form frmCPModif1",
                          L"Sub chkInvalid_Click", L"Host");
    support::ExpectBox(messages[1], L"The value is greater than 100", L"Gateway Object");
    support::ExpectBox(messages[2], L"The value is less than -100", L"Gateway Object");
}

TEST_F(EditorFaultTest, AMinimumThatCannotBeReadFailsOk) {
    Edit(number_, [this](Shown& dialog) {
        number_.type->Break(L"Min");
        dialog.Click(IDOK);
        EXPECT_TRUE(dialog.IsOpen());
        dialog.Click(IDCANCEL);
    });
    EXPECT_TRUE(number_.writes.empty());
    support::ExpectOnlyBox(Messages(), L"error in calculating the value", L"Gateway Object",
                           MB_ICONEXCLAMATION);
}

TEST_F(EditorFaultTest, ALengthThatCannotBeReadIsReported) {
    Edit(text_, [this](Shown& dialog) {
        text_.type->Break(L"Length");
        dialog.Type(kValueBox, L"x");
        EXPECT_EQ(dialog.Text(kValueBox), L"x");
        dialog.Click(IDCANCEL);
    });
    ExpectOneReport(L"Length is out of order", L"txtNewCPValue_Change Form frmCPModif2",
                    L"Sub txtNewCPValue_Change");
}

TEST_F(EditorFaultTest, AValueThatIsRefusedLeavesTheFormOpen) {
    ExpectOkFails(number_, L"error in calculating the value");
    ExpectOkFails(text_, L"error calculating CP value");
    ExpectOkFails(mode_, L"error calculating CP value");
    ExpectOkFails(flags_, L"error in calculating the value");
}

TEST_F(EditorFaultTest, AWriteBackThatFailsIsReported) {
    HostPoint structure(L"All", L"", L"Struct");
    structure.SetFields({&number_});
    Edit(structure, [this](Shown& dialog) {
        Next([this](Shown& field) {
            field.Type(kValueBox, L"5");
            field.Click(IDOK);
            EXPECT_EQ(number_.writes, std::vector<std::wstring>{L"5"});
            number_.object->Break(L"Value");
        });
        dialog.DoubleClickRow(IDC_FIELDS, 0);
        EXPECT_TRUE(dialog.IsOpen());
        dialog.Click(IDCANCEL);
    });
    const auto messages = Messages();
    ASSERT_EQ(messages.size(), 3U) << "the write-back, the row that is read again, Cancel";
    support::ExpectReport(messages[0], L"Value is out of order", L"Form_Unload Form frmCPModif1",
                          L"Sub Form_Unload", L"Host");
    support::ExpectReport(messages[1], L"Value is out of order", L"lvwMain_DblClick Form frmCPModif4",
                          L"Sub lvwMain_DblClick", L"Host");
    support::ExpectReport(messages[2], L"Value is out of order", kRestoring, L"Sub Form_Unload", L"Host");
}

TEST_F(EditorFaultTest, CancelOfAStructureReportsTheFirstValueThatItCannotRestore) {
    HostPoint structure(L"All", L"", L"Struct");
    structure.SetFields({&text_, &mode_, &number_});
    Edit(structure, [this](Shown& dialog) {
        Next([](Shown& field) {
            field.Type(kValueBox, L"attic");
            field.Click(IDOK);
        });
        dialog.DoubleClickRow(IDC_FIELDS, 0);
        Next([](Shown& field) {
            field.Type(kValueBox, L"5");
            field.Click(IDOK);
        });
        dialog.DoubleClickRow(IDC_FIELDS, 2);
        text_.refusesWrites = true;
        mode_.object->Break(L"Value");
        dialog.Click(IDCANCEL);
        EXPECT_FALSE(dialog.IsOpen());
    });
    EXPECT_EQ(text_.value, L"attic");
    EXPECT_EQ(number_.value, L"40") << "the others are restored all the same";
    support::ExpectOnlyReport(Messages(), HostPoint::kRefusal, kRestoring, L"Sub Form_Unload", L"Host");
}

TEST_F(EditorFaultTest, CancelOfANestedStructureReportsToo) {
    HostPoint inner(L"Inner", L"", L"Struct");
    inner.SetFields({&number_});
    HostPoint structure(L"All", L"", L"Struct");
    structure.SetFields({&inner});
    Edit(structure, [this](Shown& dialog) {
        Next([this](Shown& nested) {
            Next([](Shown& field) {
                field.Type(kValueBox, L"5");
                field.Click(IDOK);
            });
            nested.DoubleClickRow(IDC_FIELDS, 0);
            number_.refusesWrites = true;
            nested.Click(IDCANCEL);
        });
        dialog.DoubleClickRow(IDC_FIELDS, 0);
        number_.refusesWrites = false;
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(number_.value, L"40") << "the outer Cancel could restore it";
    support::ExpectOnlyReport(Messages(), HostPoint::kRefusal, kRestoring, L"Sub Form_Unload", L"Host");
}

TEST_F(EditorFaultTest, AFieldThatRefusesItsValueAtOkLeavesTheStructureOpen) {
    HostPoint structure(L"All", L"", L"Struct");
    structure.SetFields({&number_, &text_});
    Edit(structure, [this](Shown& dialog) {
        Next([](Shown& field) {
            field.Type(kValueBox, L"attic");
            field.Click(IDOK);
        });
        dialog.DoubleClickRow(IDC_FIELDS, 1);
        text_.refusesWrites = true;
        dialog.Click(IDOK);
        EXPECT_TRUE(dialog.IsOpen());
        text_.refusesWrites = false;
        dialog.Click(IDCANCEL);
    });
    EXPECT_EQ(text_.value, L"hall");
    EXPECT_TRUE(number_.writes.empty());
    EXPECT_TRUE(structure.writes.empty());
    support::ExpectOnlyBox(Messages(), L"error calculating CP value", L"Gateway Object", MB_ICONEXCLAMATION);
}

TEST_F(EditorFaultTest, AHostsErrorReachesAScriptWithItsSource) {
    number_.object->Break(L"Value");
    VARIANT argument{};
    argument.vt = VT_DISPATCH;
    argument.pdispVal = number_.object.Get();
    try {
        com::CallMember(*NewModule().Get(), L"EditValue", std::span<VARIANT>(&argument, 1));
        ADD_FAILURE() << "was not refused";
    } catch (...) {
        const auto failure = com::CurrentFailure();
        EXPECT_EQ(failure.code, NamedObject::kRaised);
        EXPECT_EQ(failure.Source(), L"Host");
        EXPECT_EQ(failure.Description(), L"Value is out of order");
    }
}

TEST_F(EditorFaultTest, AFieldThatIsGoneIsReported) {
    HostPoint other(L"Other", L"?", L"Invalid");
    HostPoint structure(L"All", L"", L"Struct");
    auto fields = NamedObject::Make();
    bool isGone = false;
    bool raises = false;
    fields->Add(L"Count", [](auto) { return com::Variant(2L); });
    fields->Add(L"Item", [&](std::span<const VARIANT> arguments) {
        if (raises) {
            throw com::CallError(DISP_E_BADINDEX);
        }
        const bool first = arguments.front().vt == VT_I4 && arguments.front().lVal == 1;
        return isGone ? com::Variant() : com::Variant(first ? number_.object.Get() : other.object.Get());
    });
    structure.object->Add(L"Fields", [held = fields](auto) { return com::Variant(held.Get()); });
    Edit(structure, [&](Shown& dialog) {
        isGone = true;
        dialog.DoubleClickRow(IDC_FIELDS, 0);
        raises = true;
        // The field is fetched before its general type is looked at.
        dialog.DoubleClickRow(IDC_FIELDS, 1);
        dialog.Click(IDCANCEL);
    });
    const auto messages = Messages();
    ASSERT_EQ(messages.size(), 3U) << "Cancel does not find it either";
    support::ExpectReport(messages[0], support::kObjectNotSetText, L"lvwMain_DblClick Form frmCPModif4",
                          L"Sub lvwMain_DblClick");
    support::ExpectReport(messages[1], L"", L"lvwMain_DblClick Form frmCPModif4", L"Sub lvwMain_DblClick");
    support::ExpectReport(messages[2], L"", kRestoring, L"Sub Form_Unload");
}

} // namespace
} // namespace dialogs
