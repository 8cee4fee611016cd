#include "core/EditText.h"

#include <utility>

namespace tam {

EditText AllSelected(std::wstring text) {
    const std::size_t end = text.size();
    return {std::move(text), 0, end};
}

EditText CaretAfter(std::wstring text) {
    const std::size_t end = text.size();
    return {std::move(text), end, end};
}

EditText WithInsertion(const EditText& edit, std::wstring_view inserted) {
    EditText result = edit;
    result.text.replace(edit.selectionStart, edit.selectionEnd - edit.selectionStart, inserted);
    result.selectionStart = edit.selectionStart + inserted.size();
    result.selectionEnd = result.selectionStart;
    return result;
}

EditText AfterBackspace(const EditText& edit) {
    if (edit.HasSelection()) {
        return CaretAfter(WithInsertion(edit, {}).text);
    }
    if (edit.selectionStart == 0) {
        return edit;
    }
    std::wstring text = edit.text;
    text.erase(edit.selectionStart - 1, 1);
    return CaretAfter(std::move(text));
}

bool IsEditingCommand(wchar_t key) noexcept {
    constexpr wchar_t kSelectAll = 1;
    constexpr wchar_t kCopy = 3;
    constexpr wchar_t kPaste = 22;
    constexpr wchar_t kCut = 24;
    constexpr wchar_t kUndo = 26;
    return key == kSelectAll || key == kCopy || key == kPaste || key == kCut || key == kUndo;
}

} // namespace tam
