#include "dialogs/frmRename.h"

#include "com/Boundary.h"
#include "common/ComponentState.h"
#include "common/ErrorReport.h"
#include "common/resource.h"

#include <string>

namespace tam {

namespace {

constexpr int kButtons[] = {IDOK, IDCANCEL};

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
    for (const int id : kButtons) {
        const HWND button = Control(id);
        SetWindowLongPtrW(button, GWLP_USERDATA, GetWindowLongPtrW(button, GWLP_WNDPROC));
        SetWindowLongPtrW(button, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&frmRename::ButtonProcedure));
    }
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

bool frmRename::OnMessage(UINT message, WPARAM wParam, LPARAM, LRESULT& result) {
    switch (message) {
    case WM_ACTIVATE:
        if (LOWORD(wParam) == WA_INACTIVE) {
            return false;
        }
        SetFocus(Control(IDC_DEVICE_NAME));
        return true;
    case DM_GETDEFID:
        // The system remembers the button that had the focus last.
        result = 0;
        return GetFocus() == Control(IDC_DEVICE_NAME);
    default:
        return false;
    }
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
    LRESULT result = 0;
    bool handled = true;
    com::Attempt([&] { handled = form->HandleText(edit, message, wParam, lParam, result); });
    return handled ? result : form->PlainText(edit, message, wParam, lParam);
}

LRESULT frmRename::PlainText(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) const noexcept {
    return CallWindowProcW(plainText_, edit, message, wParam, lParam);
}

bool frmRename::HandleText(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    switch (message) {
    case WM_GETDLGCODE:
        // Enter is for the text, not for a button.
        result = PlainText(edit, message, wParam, lParam);
        result |= lParam != 0 && wParam == VK_RETURN ? DLGC_WANTMESSAGE : 0;
        return true;
    case WM_SETFOCUS:
        // A button that had the focus still looks like the default one.
        for (const int id : kButtons) {
            SendMessageW(Control(id), BM_SETSTYLE, BS_PUSHBUTTON, TRUE);
        }
        return false;
    case WM_CHAR:
        if (!RenameState::IsConfirmedBy(static_cast<wchar_t>(wParam))) {
            return false;
        }
        OnOk();
        return true;
    default:
        return false;
    }
}

LRESULT CALLBACK frmRename::ButtonProcedure(HWND button, UINT message, WPARAM wParam,
                                            LPARAM lParam) noexcept {
    if (message == BM_SETSTYLE && (wParam & BS_TYPEMASK) == BS_DEFPUSHBUTTON && GetFocus() != button) {
        // The system gives the look of the default button back to one of them
        // whenever the focus leaves the buttons.
        wParam = (wParam & ~static_cast<WPARAM>(BS_TYPEMASK)) | BS_PUSHBUTTON;
    }
    const auto plain = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(button, GWLP_USERDATA));
    return CallWindowProcW(plain, button, message, wParam, lParam);
}

} // namespace tam
