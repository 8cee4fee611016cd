#include "dialogs/frmCPModif3.h"

#include "common/resource.h"
#include "core/RunTimeError.h"

#include <cstddef>

namespace tam {

frmCPModif3::frmCPModif3() noexcept : ValueForm(IDD_ENUM) {}

void frmCPModif3::ReadDataPoint() {
    state_.emplace(Point().Value(), Point().Type().EnumDesc());
}

void frmCPModif3::OnInit() {
    SetText(IDC_NAME, Point().Name());
    SetText(IDC_TYPE, Label(&DataPointType::Name));
    SetText(IDC_CURRENT, state_->Current());
    const HWND list = Control(IDC_ENUM);
    for (const EnumEntry& entry : state_->Entries()) {
        const LRESULT item =
            SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry.text.c_str()));
        SendMessageW(list, CB_SETITEMDATA, static_cast<WPARAM>(item), entry.value);
    }
    if (const auto selected = state_->Selected()) {
        SendMessageW(list, CB_SETCURSEL, *selected, 0);
    }
    Enable(IDOK, IsChosen());
}

bool frmCPModif3::OnCommand(int control, int notification) {
    if (control == IDC_ENUM && notification == CBN_SELCHANGE) {
        Enable(IDOK, IsChosen());
        return true;
    }
    if (control == IDOK) {
        OkStep();
        return true;
    }
    return false;
}

bool frmCPModif3::IsChosen() const noexcept {
    return SendMessageW(Control(IDC_ENUM), CB_GETCURSEL, 0, 0) != CB_ERR;
}

std::wstring frmCPModif3::Shown() const {
    const HWND list = Control(IDC_ENUM);
    const LRESULT item = SendMessageW(list, CB_GETCURSEL, 0, 0);
    const LRESULT length =
        item == CB_ERR ? 0 : SendMessageW(list, CB_GETLBTEXTLEN, static_cast<WPARAM>(item), 0);
    std::wstring text(static_cast<std::size_t>(length), L'\0');
    if (item != CB_ERR) {
        SendMessageW(list, CB_GETLBTEXT, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(text.data()));
    }
    return text;
}

void frmCPModif3::OkStep() {
    if (!IsChosen()) {
        return;
    }
    RunOkStep(L"error calculating CP value", [&] {
        const auto value = state_->ValueOf(Shown());
        if (!value) {
            throw RunTimeError(RunTime::InvalidCall);
        }
        Point().SetValue(*value);
        Close();
    });
}

} // namespace tam
