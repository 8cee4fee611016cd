#include "core/NumericEditorState.h"

#include "core/Numbers.h"
#include "core/RunTimeError.h"
#include "core/Trimmed.h"
#include "core/ValueText.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tam {

namespace {

// The largest single-precision number has 39 digits before its mark. Other
// types hold scaled integers; what lies beyond 15 digits no number keeps.
constexpr std::ptrdiff_t kFloatDigits = 39;
constexpr std::ptrdiff_t kOtherDigits = 15;

bool IsDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

std::ptrdiff_t CountDigits(std::wstring_view text) {
    return std::count_if(text.begin(), text.end(), IsDigit);
}

bool IsNumber(std::wstring_view text) {
    return std::any_of(text.begin(), text.end(), IsDigit);
}

// What a paste or a catalogue may have around a number.
constexpr std::wstring_view kBlanks = L" \t\r\n";

bool HasNegatives(const NumericEditorState::Setup& setup) {
    const std::wstring_view min = Trimmed(setup.min, kBlanks);
    return min.empty() ? setup.generalType != GeneralType::UnsignedNumeric : min.front() == L'-';
}

} // namespace

NumericEditorState::NumericEditorState(const Setup& setup)
    : separator_(setup.separator)
    , readSingle_(setup.readSingle)
    , current_(Local(setup.value))
    , invalid_(Local(setup.invalidValue))
    , isFloat_(setup.generalType == GeneralType::Float)
    , takesMinus_(HasNegatives(setup)) {}

KeyAnswer NumericEditorState::Key(wchar_t key, const EditText& edit) const {
    switch (key) {
    case kEscape:
        return KeyAnswer::Replace(AllSelected(current_));
    case kEnter:
        return KeyAnswer::Confirm();
    case kBackspace:
        return KeyAnswer::Replace(AfterBackspace(edit));
    default:
        return IsEditingCommand(key) || AcceptsCharacter(key, edit) ? KeyAnswer::PassOn(key)
                                                                    : KeyAnswer::Discard();
    }
}

std::optional<std::wstring> NumericEditorState::Insertion(std::wstring_view pasted,
                                                          const EditText& edit) const {
    const std::wstring_view number = Trimmed(pasted, kBlanks);
    if (number.empty() && !pasted.empty()) {
        return std::nullopt; // blanks alone would only take the selection away
    }
    EditText result = edit;
    for (const wchar_t c : number) {
        if (!AcceptsCharacter(c, result)) {
            return std::nullopt;
        }
        result = WithInsertion(result, {&c, 1});
    }
    return std::wstring(number);
}

bool NumericEditorState::AcceptsCharacter(wchar_t key, const EditText& edit) const {
    if (IsDigit(key)) {
        return AcceptsDigit(edit);
    }
    if (separator_ == std::wstring_view(&key, 1)) {
        return AcceptsSeparator(edit);
    }
    return key == L'-' && AcceptsMinus(edit);
}

bool NumericEditorState::AcceptsDigit(const EditText& edit) const {
    const EditText after = WithInsertion(edit, L"0");
    if (after.text.find(L'-', 1) != std::wstring::npos) {
        return false; // it would stand before the sign
    }
    const std::ptrdiff_t digits = CountDigits(after.text);
    return digits <= (isFloat_ ? kFloatDigits : kOtherDigits) || digits <= CountDigits(edit.text);
}

bool NumericEditorState::AcceptsSeparator(const EditText& edit) const {
    if (edit.HasSelection()) {
        return edit.IsAllSelected();
    }
    return edit.IsCaretAtEnd() && edit.text.find(separator_) == std::wstring::npos;
}

bool NumericEditorState::AcceptsMinus(const EditText& edit) const {
    const std::wstring left = WithInsertion(edit, {}).text;
    return takesMinus_ && edit.selectionStart == 0 && left.find(L'-') == std::wstring::npos;
}

std::optional<std::wstring> NumericEditorState::AboveLimit(std::wstring_view text,
                                                           std::wstring_view max) const {
    if (max.empty() || !IsNumber(text)) {
        return std::nullopt;
    }
    std::wstring limit = Local(max);
    if (NumberOf(text) > NumberOf(limit)) {
        return limit;
    }
    return std::nullopt;
}

bool NumericEditorState::IsOkEnabled(std::wstring_view text) const {
    return !text.empty() && text != separator_;
}

NumericEditorState::Outcome NumericEditorState::Confirm(std::wstring_view text,
                                                        std::optional<std::wstring_view> min) const {
    std::wstring number(text);
    if (number.starts_with(separator_)) {
        number.insert(0, L"0");
    } else if (number.starts_with(L"-" + separator_)) {
        number.insert(1, L"0");
    }
    if (!min) {
        return {true, std::move(number)};
    }
    if (!IsNumber(text)) {
        throw RunTimeError(RunTime::TypeMismatch);
    }
    if (!min->empty()) {
        std::wstring limit = Local(*min);
        if (NumberOf(number) < NumberOf(limit)) {
            return {false, std::move(limit)};
        }
    }
    return {true, std::move(number)};
}

std::wstring NumericEditorState::Local(std::wstring_view number) const {
    return MoveDecimalMark(number, separator_);
}

double NumericEditorState::NumberOf(std::wstring_view text) const {
    return separator_ == L"." ? Val(text) : static_cast<double>(readSingle_(text));
}

} // namespace tam
