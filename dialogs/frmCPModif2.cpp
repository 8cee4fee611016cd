#include "dialogs/frmCPModif2.h"

#include "common/ErrorReport.h"
#include "common/resource.h"

namespace tam {

frmCPModif2::frmCPModif2() noexcept : ValueForm(IDD_TEXT), input_(*this) {}

void frmCPModif2::ReadDataPoint() {
    state_.emplace(Point().Value());
}

void frmCPModif2::OnInit() {
    filling_ = true;
    SetText(IDC_NAME, Point().Name());
    SetText(IDC_TYPE, Label(&DataPointType::Name));
    com::Attempt(
        [&] { SetText(IDC_LENGTH, std::to_wstring(Point().Type().Length()) + L" characters at most"); });
    input_.Attach(Control(IDC_NEW_VALUE));
    // The type's length is what limits the text, not the box.
    SendMessageW(Control(IDC_NEW_VALUE), EM_SETLIMITTEXT, 0, 0);
    input_.Show(AllSelected(state_->OpeningValue()));
    filling_ = false;
}

bool frmCPModif2::OnCommand(int control, int notification) {
    if (control == IDC_NEW_VALUE && notification == EN_CHANGE) {
        OnTextChanged();
        return true;
    }
    if (control == IDOK) {
        OkStep();
        return true;
    }
    return false;
}

void frmCPModif2::OnTextChanged() {
    if (filling_) {
        return;
    }
    Trap(L"txtNewCPValue_Change Form frmCPModif2", L"Sub txtNewCPValue_Change", [&] {
        const auto shortened = TextEditorState::TooLong(input_.Text(), Point().Type().Length());
        if (shortened) {
            ShowBox(shortened->message, shortened->caption, MB_ICONEXCLAMATION);
            filling_ = true;
            input_.Show(CaretAfter(shortened->text));
            filling_ = false;
        }
    });
}

KeyAnswer frmCPModif2::Key(wchar_t key, const EditText& edit) {
    return state_->Key(key, edit);
}

std::optional<std::wstring> frmCPModif2::Insertion(std::wstring_view pasted, const EditText&) {
    return TextEditorState::Insertion(pasted);
}

void frmCPModif2::Confirm() {
    OkStep();
}

void frmCPModif2::OnKeyFailure(const com::Failure& failure) noexcept {
    ShowErrorReport(failure, L"txtNewCPValue_KeyPress Form frmCPModif2", L"Sub txtNewCPValue_KeyPress");
}

void frmCPModif2::OkStep() {
    RunOkStep(L"error calculating CP value", [&] {
        Point().SetValue(input_.Text());
        Close();
    });
}

} // namespace tam
