#include "dialogs/ModalDialog.h"

#include "com/Dll.h"
#include "common/Unattended.h"
#include "core/RunTimeError.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace tam {

namespace {

/// A DLL's manifest for its own windows stands under number 2.
constexpr WORD kManifest = 2;

HANDLE ComponentContext() noexcept {
    // Kept for the life of the process: a context may not be released while a
    // window that was made under it lives.
    static const HANDLE context = [] {
        ACTCTXW request{};
        request.cbSize = sizeof(request);
        request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
        request.hModule = com::ThisDll().Instance();
        request.lpResourceName = MAKEINTRESOURCEW(kManifest);
        return CreateActCtxW(&request);
    }();
    return context;
}

/// The title in a dialog's template, after the fixed part of it, its menu and its
/// window class: each of these two is 0, FFFF with a number, or a text.
std::wstring TitleOf(int resource) {
    constexpr std::size_t kFixedWords = 13;
    const HINSTANCE dll = com::ThisDll().Instance();
    const HRSRC found = FindResourceW(dll, MAKEINTRESOURCEW(resource), RT_DIALOG);
    const auto* word = static_cast<const wchar_t*>(LockResource(LoadResource(dll, found)));
    if (word == nullptr) {
        return {};
    }
    word += kFixedWords;
    for (int field = 0; field < 2; ++field) {
        constexpr wchar_t kNumberFollows = 0xFFFF;
        word += *word == kNumberFollows ? 2 : std::wstring_view(word).size() + 1;
    }
    return word;
}

RECT WorkAreaAt(HWND window) noexcept {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof(monitor);
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
}

} // namespace

VisualStyles::VisualStyles() noexcept {
    const HANDLE context = ComponentContext();
    active_ = context != INVALID_HANDLE_VALUE && ActivateActCtx(context, &cookie_) != FALSE;
}

VisualStyles::~VisualStyles() {
    if (active_) {
        DeactivateActCtx(0, cookie_);
    }
}

bool ModalDialog::Show(int resource) noexcept {
    isLeftOut_ = IsUnattended();
    if (isLeftOut_) {
        openingFailure_.reset();
        com::Attempt([&] {
            Unshown unshown{L"dialog", TitleOf(resource), {}, {}, {}, {}};
            com::Attempt([&] { unshown.text = Subject(); }); // the host's own object may fail
            WriteUnshown(unshown);
        });
        return true;
    }
    const VisualStyles styles;
    firstFocus_ = 0;
    openingFailure_.reset();
    const INT_PTR result =
        DialogBoxParamW(com::ThisDll().Instance(), MAKEINTRESOURCEW(resource), GetActiveWindow(),
                        &ModalDialog::Procedure, reinterpret_cast<LPARAM>(this));
    window_ = nullptr;
    return result != -1;
}

bool ModalDialog::ShowOrThrow(int resource) {
    const bool shown = Show(resource);
    const HRESULT result = HRESULT_FROM_WIN32(GetLastError());
    if (openingFailure_ && openingFailure_->isCallees) {
        throw com::CallError(openingFailure_->code, openingFailure_->info); // as the callee told it, or not
    }
    if (openingFailure_) {
        throw RunTimeError(static_cast<std::int32_t>(openingFailure_->code), openingFailure_->Source(),
                           openingFailure_->Description());
    }
    if (!shown) {
        throw com::CallError(FAILED(result) ? result : E_FAIL);
    }
    return !isLeftOut_;
}

bool ModalDialog::OnMessage(UINT, WPARAM, LPARAM, LRESULT&) {
    return false;
}

std::wstring ModalDialog::GetText(int id) const {
    const HWND control = Control(id);
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(control)), L'\0');
    const int length = GetWindowTextW(control, text.data(), static_cast<int>(text.size()) + 1);
    text.resize(static_cast<std::size_t>(length));
    return text;
}

void ModalDialog::Shorten(int firstMovedTop, int distance) const noexcept {
    for (HWND child = GetWindow(window_, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        RECT place{};
        GetWindowRect(child, &place);
        MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&place), 2);
        if (place.top >= firstMovedTop) {
            SetWindowPos(child, nullptr, place.left, place.top - distance, 0, 0,
                         SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        }
    }
    RECT window{};
    GetWindowRect(window_, &window);
    SetWindowPos(window_, nullptr, 0, 0, window.right - window.left, window.bottom - window.top - distance,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void ModalDialog::Centre() const noexcept {
    const HWND owner = GetWindow(window_, GW_OWNER);
    RECT window{};
    GetWindowRect(window_, &window);
    RECT around = WorkAreaAt(owner != nullptr ? owner : window_);
    if (owner != nullptr && IsWindowVisible(owner) != FALSE && IsIconic(owner) == FALSE) {
        GetWindowRect(owner, &around);
    }
    const LONG left = (around.left + around.right - (window.right - window.left)) / 2;
    const LONG top = (around.top + around.bottom - (window.bottom - window.top)) / 2;
    SetWindowPos(window_, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    KeepOnScreen();
}

void ModalDialog::KeepOnScreen() const noexcept {
    RECT window{};
    GetWindowRect(window_, &window);
    const RECT work = WorkAreaAt(window_);
    const LONG right = std::max(work.left, work.right - (window.right - window.left));
    const LONG bottom = std::max(work.top, work.bottom - (window.bottom - window.top));
    SetWindowPos(window_, nullptr, std::clamp(window.left, work.left, right),
                 std::clamp(window.top, work.top, bottom), 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

INT_PTR CALLBACK ModalDialog::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        reinterpret_cast<ModalDialog*>(lParam)->window_ = window;
    }
    auto* dialog = reinterpret_cast<ModalDialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (dialog == nullptr) {
        return FALSE;
    }
    INT_PTR handled = FALSE;
    auto failure = com::Attempt([&] { handled = dialog->Handle(message, wParam, lParam); });
    if (failure && message == WM_INITDIALOG) {
        // A form that cannot fill itself must not stay open half empty.
        dialog->openingFailure_ = std::move(failure);
        EndDialog(window, 0);
    }
    return handled;
}

INT_PTR ModalDialog::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        OnInit();
        if (firstFocus_ != 0) {
            SetFocus(Control(firstFocus_));
            return FALSE;
        }
        return TRUE;
    case WM_COMMAND: {
        const int control = LOWORD(wParam);
        if (!OnCommand(control, HIWORD(wParam)) && control == IDCANCEL) {
            Close();
        }
        return TRUE;
    }
    default: {
        LRESULT result = 0;
        if (!OnMessage(message, wParam, lParam, result)) {
            return FALSE;
        }
        if (message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC) {
            return result; // the one answer that goes back as it is: a brush
        }
        SetWindowLongPtrW(window_, DWLP_MSGRESULT, result);
        return TRUE;
    }
    }
}

} // namespace tam
