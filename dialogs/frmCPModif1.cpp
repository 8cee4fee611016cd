#include "dialogs/frmCPModif1.h"

#include "com/Conversion.h"
#include "common/ComponentState.h"
#include "common/ErrorReport.h"
#include "common/mSNVTDataConversion.h"
#include "common/resource.h"
#include "core/ShownValue.h"

namespace tam {

namespace {

constexpr const wchar_t* kFailure = L"error in calculating the value";

} // namespace

frmCPModif1::frmCPModif1() noexcept : ValueForm(IDD_NUMERIC), input_(*this) {}

void frmCPModif1::ReadDataPoint() {
    InitDecimalSeparator();
    held_ = Point().Value();
    const DataPointType type = Point().Type();
    state_.emplace(NumericEditorState::Setup{held_, GeneralTypeOf(type.GenType()), type.Min(),
                                             type.InvalidValue(), State().DecimalSeparator, &com::SingleOf});
}

void frmCPModif1::OnInit() {
    filling_ = true;
    FillLabels();
    input_.Attach(Control(IDC_NEW_VALUE));
    input_.Show(AllSelected(state_->CurrentValue()));
    Enable(IDC_INVALID, state_->HasInvalidValue());
    if (state_->OpensInvalid()) {
        CheckDlgButton(Window(), IDC_INVALID, BST_CHECKED);
        Enable(IDC_NEW_VALUE, false);
        StartAt(IDC_INVALID);
    }
    Enable(IDOK, state_->IsOkEnabled(state_->CurrentValue()));
    filling_ = false;
}

void frmCPModif1::FillLabels() const {
    const std::wstring unit = Label(&DataPointType::Units);
    SetText(IDC_NAME, Point().Name());
    SetText(IDC_TYPE, Label(&DataPointType::Name));
    SetText(IDC_MIN, WithUnit(LocalizeValue(Label(&DataPointType::Min)), unit));
    SetText(IDC_MAX, WithUnit(LocalizeValue(Label(&DataPointType::Max)), unit));
    SetText(IDC_CURRENT, WithUnit(state_->CurrentValue(), unit));
    SetText(IDC_UNIT, unit);
    if (state_->HasInvalidValue()) {
        SetText(IDC_INVALID, L"&Invalid value (" + state_->InvalidValue() + L")");
    }
}

bool frmCPModif1::OnCommand(int control, int notification) {
    if (control == IDC_NEW_VALUE && notification == EN_CHANGE) {
        OnTextChanged();
        return true;
    }
    if (control == IDC_INVALID && notification == BN_CLICKED) {
        OnInvalidClicked();
        return true;
    }
    if (control == IDOK) {
        OkStep();
        return true;
    }
    return false;
}

void frmCPModif1::OnTextChanged() {
    if (filling_ || IsTicked(IDC_INVALID)) {
        return;
    }
    Trap(L"txtNewCPValue_Change Form frmCPModif1", L"Sub txtNewCPValue_Change", [&] {
        const auto limit = state_->AboveLimit(input_.Text(), Point().Type().Max());
        if (limit) {
            ShowBox(L"The value is greater than " + *limit, ComponentTitle());
            filling_ = true; // the limit itself needs no check
            input_.Show(AllSelected(*limit));
            filling_ = false;
        }
        Enable(IDOK, state_->IsOkEnabled(input_.Text()));
    });
}

void frmCPModif1::OnInvalidClicked() {
    const bool done = Trap(L"chkInvalid_Click Form frmCPModif1", L"Sub chkInvalid_Click", [&] {
        if (IsTicked(IDC_INVALID)) {
            input_.Show(CaretAfter(LocalizeValue(Point().Type().InvalidValue())));
            Enable(IDC_NEW_VALUE, false);
        } else {
            Enable(IDC_NEW_VALUE, true);
            input_.FocusAll();
        }
        Enable(IDOK, true);
    });
    if (!done) {
        // What is typed next must meet the limits: a tick would let it pass.
        CheckDlgButton(Window(), IDC_INVALID, BST_UNCHECKED);
    }
}

KeyAnswer frmCPModif1::Key(wchar_t key, const EditText& edit) {
    return state_->Key(key, edit);
}

std::optional<std::wstring> frmCPModif1::Insertion(std::wstring_view pasted, const EditText& edit) {
    return state_->Insertion(pasted, edit);
}

void frmCPModif1::Confirm() {
    OkStep();
}

void frmCPModif1::OnKeyFailure(const com::Failure& failure) noexcept {
    ShowErrorReport(failure, L"txtNewCPValue_KeyPress Form frmCPModif1", L"Sub txtNewCPValue_KeyPress");
}

void frmCPModif1::OkStep() {
    // Enter arrives here too, whether the button can be pressed or not.
    if (!IsEnabled(IDOK)) {
        return;
    }
    RunOkStep(kFailure, [&] {
        std::optional<std::wstring> min;
        if (!IsTicked(IDC_INVALID)) {
            min = Point().Type().Min();
        }
        const auto outcome = state_->Confirm(input_.Text(), min);
        if (!outcome.accepted) {
            ShowBox(L"The value is less than " + outcome.text, ComponentTitle());
            input_.Show(AllSelected(outcome.text));
            input_.FocusAll();
            return;
        }
        Point().SetValue(outcome.text);
        held_ = outcome.text;
        Close();
    });
}

void frmCPModif1::OnFinished() {
    if (IsCalledFramModif4()) {
        Trap(L"Form_Unload Form frmCPModif1", L"Sub Form_Unload", [&] { Point().SetValue(held_); });
    }
}

} // namespace tam
