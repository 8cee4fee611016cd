#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace tam {

// Characters that a text box receives beside what is typed.
inline constexpr wchar_t kBackspace = 8;
inline constexpr wchar_t kEnter = 13;
inline constexpr wchar_t kEscape = 27;

/// What a text box holds: its text and what is selected of it. Without a
/// selection both ends are the caret.
struct EditText {
    std::wstring text;
    std::size_t selectionStart = 0;
    std::size_t selectionEnd = 0;

    bool HasSelection() const noexcept { return selectionStart != selectionEnd; }
    bool IsAllSelected() const noexcept { return selectionStart == 0 && selectionEnd == text.size(); }
    bool IsCaretAtEnd() const noexcept { return !HasSelection() && selectionEnd == text.size(); }
    bool operator==(const EditText&) const = default;
};

/// The text with all of it selected.
EditText AllSelected(std::wstring text);
/// The text with the caret after it.
EditText CaretAfter(std::wstring text);
/// The text with the selection replaced, the caret after what was put in.
EditText WithInsertion(const EditText& edit, std::wstring_view inserted);
/// What Backspace leaves: the selection is gone, or the character before the
/// caret; the caret stands at the end of the text. Nothing changes when there
/// is nothing before the caret.
EditText AfterBackspace(const EditText& edit);

/// A character that moves or copies text and adds none: the clipboard keys,
/// undo and "select all" arrive as such.
bool IsEditingCommand(wchar_t key) noexcept;

/// What becomes of a key that is pressed in a text box.
struct KeyAnswer {
    enum class Kind {
        /// The text box receives `character`.
        PassOn,
        Discard,
        /// The text box shows `edit`.
        Replace,
        /// The OK step runs.
        Confirm,
    };
    Kind kind = Kind::Discard;
    wchar_t character = 0;
    EditText edit;

    static KeyAnswer PassOn(wchar_t character) { return {Kind::PassOn, character, {}}; }
    static KeyAnswer Discard() { return {}; }
    static KeyAnswer Replace(EditText edit) { return {Kind::Replace, 0, std::move(edit)}; }
    static KeyAnswer Confirm() { return {Kind::Confirm, 0, {}}; }
};

} // namespace tam
