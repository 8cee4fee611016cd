#include "dialogs/LongTextBox.h"

#include "com/Boundary.h"
#include "core/LongText.h"
#include "dialogs/Clipboard.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace tam {

void LongTextBox::Show(HWND edit, const std::wstring& text) {
    const std::wstring shown = WithSoftBreaks(WithLineBreaks(text));
    SetWindowTextW(edit, shown.c_str());
    if (shown == text) {
        return; // the box has the text itself
    }
    text_ = &text;
    SetWindowLongPtrW(edit, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    plain_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(edit, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&LongTextBox::Procedure)));
}

LRESULT CALLBACK LongTextBox::Procedure(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    const auto* box = reinterpret_cast<const LongTextBox*>(GetWindowLongPtrW(edit, GWLP_USERDATA));
    LRESULT result = 0;
    com::Attempt([&] { result = box->Handle(edit, message, wParam, lParam); });
    return result;
}

LRESULT LongTextBox::Handle(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) const {
    switch (message) {
    case WM_GETTEXTLENGTH:
        return static_cast<LRESULT>(text_->size());
    case WM_GETTEXT: {
        if (wParam == 0) {
            return 0;
        }
        auto* const place = reinterpret_cast<wchar_t*>(lParam);
        const std::size_t length = std::min<std::size_t>(text_->size(), wParam - 1);
        *std::copy_n(text_->c_str(), length, place) = L'\0';
        return static_cast<LRESULT>(length);
    }
    case WM_COPY:
        Copy(edit);
        return 0;
    default:
        return Plain(edit, message, wParam, lParam);
    }
}

LRESULT LongTextBox::Plain(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) const {
    return CallWindowProcW(plain_, edit, message, wParam, lParam);
}

void LongTextBox::Copy(HWND edit) const {
    const auto length = static_cast<std::size_t>(Plain(edit, WM_GETTEXTLENGTH, 0, 0));
    std::wstring shown(length + 1, L'\0');
    Plain(edit, WM_GETTEXT, shown.size(), reinterpret_cast<LPARAM>(shown.data()));
    DWORD start = 0;
    DWORD end = 0;
    Plain(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    end = std::min<DWORD>(end, static_cast<DWORD>(length));
    if (start < end) {
        CopyToClipboard(edit, WithoutSoftBreaks(std::wstring_view(shown).substr(start, end - start)));
    }
}

} // namespace tam
