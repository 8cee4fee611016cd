// Input: a setup, the text of a text box, its selection, then keys, each of
// which is answered for that same text. The text need not be a number.
#include "core/TextEditorState.h"
#include "Editing.h"

#include <optional>
#include <string>

namespace tam::fuzz {

namespace {

using Kind = KeyAnswer::Kind;

bool IsDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

bool IsPassed(const KeyAnswer& answer, wchar_t key) {
    return answer.kind == Kind::PassOn && answer.character == key;
}

/// Esc, Enter and Backspace, which both editors answer alike.
bool CheckCommon(const KeyAnswer& answer, wchar_t key, const EditText& edit, const std::wstring& opening) {
    if (key == kEscape) {
        Require(answer.kind == Kind::Replace && answer.edit == AllSelected(opening));
    } else if (key == kEnter) {
        Require(answer.kind == Kind::Confirm);
    } else if (key == kBackspace) {
        Require(answer.kind == Kind::Replace);
        const bool hasWork = edit.HasSelection() || edit.selectionStart > 0;
        Require(hasWork ? answer.edit.text.size() < edit.text.size() : answer.edit == edit);
        Require(!hasWork || answer.edit.IsCaretAtEnd());
    } else {
        return false;
    }
    return true;
}

void CheckNumericKey(const NumericEditorState& state, const NumericEditorState::Setup& setup, wchar_t key,
                     const EditText& edit) {
    const KeyAnswer answer = state.Key(key, edit);
    if (CheckCommon(answer, key, edit, state.CurrentValue())) {
        return;
    }
    Require(IsPassed(answer, key) || answer.kind == Kind::Discard);
    const bool passes = answer.kind == Kind::PassOn;
    if (IsEditingCommand(key)) {
        Require(passes);
    } else if (key == setup.separator.front()) {
        const bool isFree = edit.text.find(setup.separator) == std::wstring::npos;
        Require(passes == (edit.HasSelection() ? edit.IsAllSelected() : edit.IsCaretAtEnd() && isFree));
    } else if (key == L'-') {
        const std::wstring left =
            edit.text.substr(0, edit.selectionStart) + edit.text.substr(edit.selectionEnd);
        const bool isFree = left.find(L'-') == std::wstring::npos;
        Require(passes == (TakesMinus(setup) && edit.selectionStart == 0 && isFree));
    } else if (!IsDigit(key)) {
        Require(!passes);
    }
    // A paste of one character is that character typed.
    const std::wstring one(1, key);
    if (one.find_first_of(L" \t\r\n") == std::wstring::npos && !IsEditingCommand(key)) {
        Require(state.Insertion(one, edit) == (passes ? std::optional(one) : std::nullopt));
    }
}

void CheckTextKey(const TextEditorState& state, wchar_t key, const EditText& edit) {
    const KeyAnswer answer = state.Key(key, edit);
    if (!CheckCommon(answer, key, edit, state.OpeningValue())) {
        Require(IsPassed(answer, key == L' ' ? L'_' : key));
    }
}

} // namespace

void FuzzKeys(Input& input) {
    NumericEditorState::Setup setup = AnySetup(input);
    setup.value = input.Word(12);
    const NumericEditorState numeric(setup);
    const TextEditorState text(setup.value);
    const EditText edit = AnyEdit(input, input.Line());
    while (!input.IsAtEnd()) {
        const wchar_t key = input.Character();
        CheckNumericKey(numeric, setup, key, edit);
        CheckTextKey(text, key, edit);
    }
}

} // namespace tam::fuzz
