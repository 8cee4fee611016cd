#include "dialogs/frmRename.h"

#include "com/Boundary.h"
#include "common/ComponentState.h"
#include "common/Report.h"
#include "component/resource.h"

#include <string>

namespace tam {

namespace {

/// The first character as the system's ANSI code page has it; 0 for none.
wchar_t FirstInAnsi(const std::wstring& text) {
    char bytes[8] = {};
    if (!text.empty()) {
        WideCharToMultiByte(CP_ACP, 0, text.c_str(), 1, bytes, sizeof(bytes), nullptr, nullptr);
    }
    return static_cast<wchar_t>(static_cast<unsigned char>(bytes[0]));
}

} // namespace

const RenameState& frmRename::ShowModal() {
    ShowOrThrow(IDD_RENAME);
    return state_;
}

void frmRename::OnInit() {
    const HWND text = Control(IDC_DEVICE_NAME);
    SetWindowLongPtrW(text, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    plainText_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(text, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&frmRename::TextProcedure)));
    SendMessageW(text, EM_SETLIMITTEXT, RenameState::kMostCharacters, 0);
    Enable(IDOK, false);
    SetText(IDC_DEVICE_NAME, state_.ShownName());
    Enable(IDOK, RenameState::IsOkEnabled(state_.ShownName()));
    SendMessageW(text, EM_SETSEL, 0, -1);
}

bool frmRename::OnCommand(int control, int notification) {
    switch (control) {
    case IDC_DEVICE_NAME:
        if (notification == EN_CHANGE) {
            Enable(IDOK, RenameState::IsOkEnabled(GetText(IDC_DEVICE_NAME)));
        }
        return true;
    case IDOK:
        OnOk();
        return true;
    case IDCANCEL:
        state_.Cancel();
        return false;
    default:
        return false;
    }
}

bool frmRename::OnMessage(UINT message, WPARAM wParam, LPARAM, LRESULT&) {
    if (message != WM_ACTIVATE || LOWORD(wParam) == WA_INACTIVE) {
        return false;
    }
    SetFocus(Control(IDC_DEVICE_NAME));
    return true;
}

void frmRename::OnOk() {
    std::wstring name = GetText(IDC_DEVICE_NAME);
    const wchar_t* const refusal = RenameState::Refusal(name, FirstInAnsi(name));
    if (*refusal != L'\0') {
        ShowBox(refusal, ComponentTitle(), MB_ICONEXCLAMATION);
        state_.Cancel();
        return;
    }
    state_.Confirm(std::move(name));
    Close();
}

LRESULT CALLBACK frmRename::TextProcedure(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    auto* form = reinterpret_cast<frmRename*>(GetWindowLongPtrW(edit, GWLP_USERDATA));
    if (message == WM_CHAR && wParam == 0) {
        // The key code 0 is what confirms; Enter reaches the default button.
        com::Attempt([&] { form->OnOk(); });
        return 0;
    }
    return CallWindowProcW(form->plainText_, edit, message, wParam, lParam);
}

} // namespace tam
