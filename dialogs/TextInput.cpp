#include "dialogs/TextInput.h"

#include "dialogs/Clipboard.h"

#include <algorithm>
#include <cstddef>

namespace tam {

void TextInput::Attach(HWND edit) {
    edit_ = edit;
    SetWindowLongPtrW(edit, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    plain_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(edit, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&TextInput::Procedure)));
}

EditText TextInput::Read() const {
    EditText edit;
    edit.text.resize(static_cast<std::size_t>(GetWindowTextLengthW(edit_)));
    const int length = GetWindowTextW(edit_, edit.text.data(), static_cast<int>(edit.text.size()) + 1);
    edit.text.resize(static_cast<std::size_t>(length));
    DWORD start = 0;
    DWORD end = 0;
    SendMessageW(edit_, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    edit.selectionStart = std::min<std::size_t>(start, edit.text.size());
    edit.selectionEnd = std::min<std::size_t>(end, edit.text.size());
    return edit;
}

void TextInput::Show(const EditText& edit) const {
    if (Text() != edit.text) {
        SetWindowTextW(edit_, edit.text.c_str());
        // The box's owner may have corrected the text by now, and selected what
        // it put there.
        if (Text() != edit.text) {
            return;
        }
    }
    SendMessageW(edit_, EM_SETSEL, edit.selectionStart, static_cast<LPARAM>(edit.selectionEnd));
}

void TextInput::FocusAll() const {
    // The dialog's own message keeps its default button right.
    SendMessageW(GetParent(edit_), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(edit_), TRUE);
    SendMessageW(edit_, EM_SETSEL, 0, -1);
}

LRESULT CALLBACK TextInput::Procedure(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    auto* input = reinterpret_cast<TextInput*>(GetWindowLongPtrW(edit, GWLP_USERDATA));
    LRESULT result = 0;
    if (const auto failure = com::Attempt([&] { result = input->Handle(message, wParam, lParam); })) {
        input->rules_.OnKeyFailure(*failure);
    }
    return result;
}

LRESULT TextInput::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_GETDLGCODE: {
        // Esc and Enter are for the text, not for the dialog's buttons.
        const LRESULT code = Plain(message, wParam, lParam);
        const bool isOwn = wParam == VK_ESCAPE || wParam == VK_RETURN;
        return lParam != 0 && isOwn ? code | DLGC_WANTMESSAGE : code;
    }
    case WM_KEYDOWN:
        // Answered when they arrive as characters; the box itself would turn
        // them into the dialog's buttons.
        return wParam == VK_ESCAPE || wParam == VK_RETURN ? 0 : Plain(message, wParam, lParam);
    case WM_CHAR:
        return Character(wParam, lParam);
    case WM_PASTE:
        // Without a text nothing is put in, so the selection stays too.
        if (const auto text = ClipboardText(edit_)) {
            Insert(*text, true);
        }
        return 0;
    case EM_REPLACESEL:
        Insert(lParam != 0 ? reinterpret_cast<const wchar_t*>(lParam) : L"", wParam != FALSE);
        return 0;
    case WM_NCDESTROY: {
        const LRESULT result = Plain(message, wParam, lParam);
        edit_ = nullptr;
        return result;
    }
    default:
        return Plain(message, wParam, lParam);
    }
}

LRESULT TextInput::Plain(UINT message, WPARAM wParam, LPARAM lParam) const {
    return CallWindowProcW(plain_, edit_, message, wParam, lParam);
}

LRESULT TextInput::Character(WPARAM wParam, LPARAM lParam) {
    const KeyAnswer answer = rules_.Key(static_cast<wchar_t>(wParam), Read());
    switch (answer.kind) {
    case KeyAnswer::Kind::PassOn:
        return Plain(WM_CHAR, answer.character, lParam);
    case KeyAnswer::Kind::Discard:
        MessageBeep(MB_OK);
        break;
    case KeyAnswer::Kind::Replace:
        Show(answer.edit);
        break;
    case KeyAnswer::Kind::Confirm:
        rules_.Confirm();
        break;
    }
    return 0;
}

void TextInput::Insert(std::wstring_view text, bool canUndo) {
    const auto insertion = rules_.Insertion(text, Read());
    if (!insertion) {
        MessageBeep(MB_OK);
        return;
    }
    Plain(EM_REPLACESEL, canUndo ? TRUE : FALSE, reinterpret_cast<LPARAM>(insertion->c_str()));
}

} // namespace tam
