#pragma once

#include "core/EditText.h"
#include "core/GeneralType.h"

#include <optional>
#include <string>
#include <string_view>

namespace tam {

/// Reads a number text by the rules of the user's locale, to single precision.
/// Throws when the text is no number.
using SingleReader = float (*)(std::wstring_view text);

/// Rules of the numeric editor: which keys can form a number, what is corrected
/// while the user types, what is written.
class NumericEditorState {
  public:
    struct Setup {
        /// The data point's value as it stands.
        std::wstring value;
        GeneralType generalType;
        /// The type's lower limit; empty for none.
        std::wstring min;
        /// The type's invalid value; empty for none.
        std::wstring invalidValue;
        /// The user's decimal mark.
        std::wstring separator;
        SingleReader readSingle;
    };
    explicit NumericEditorState(const Setup& setup);

    /// For tests: the dialog asks for keys and texts alone.
    bool IsFloat() const noexcept { return isFloat_; }
    /// The current value with the user's decimal mark.
    const std::wstring& CurrentValue() const noexcept { return current_; }
    bool HasInvalidValue() const noexcept { return !invalid_.empty(); }
    /// The invalid value with the user's decimal mark.
    const std::wstring& InvalidValue() const noexcept { return invalid_; }
    /// True when the data point holds the invalid value at opening.
    bool OpensInvalid() const noexcept { return HasInvalidValue() && current_ == invalid_; }

    KeyAnswer Key(wchar_t key, const EditText& edit) const;
    /// What a pasted or dropped text puts in: itself without blanks around it,
    /// when each of its characters could be typed in turn; else none. An empty
    /// text, with which a driver deletes the selection, is itself.
    std::optional<std::wstring> Insertion(std::wstring_view pasted, const EditText& edit) const;

    /// The limit with the user's decimal mark when the text is a number above
    /// it. An empty limit, and a text that is no number yet, are in range.
    std::optional<std::wstring> AboveLimit(std::wstring_view text, std::wstring_view max) const;
    /// False for an empty text and for a decimal mark alone.
    bool IsOkEnabled(std::wstring_view text) const;

    /// What OK does with a text.
    struct Outcome {
        /// False: the number is below the limit, and `text` is that limit.
        bool accepted;
        /// The text to write, with a 0 before a leading decimal mark.
        std::wstring text;
    };
    /// Throws "type mismatch" when the text is no number. Without `min` any
    /// text is taken: the invalid value lies outside the limits, and may be a
    /// word such as NaN.
    Outcome Confirm(std::wstring_view text, std::optional<std::wstring_view> min) const;

  private:
    bool AcceptsDigit(const EditText& edit) const;
    bool AcceptsSeparator(const EditText& edit) const;
    bool AcceptsMinus(const EditText& edit) const;
    bool AcceptsCharacter(wchar_t key, const EditText& edit) const;
    std::wstring Local(std::wstring_view number) const;
    double NumberOf(std::wstring_view text) const;

    std::wstring separator_;
    SingleReader readSingle_;
    std::wstring current_;
    std::wstring invalid_;
    bool isFloat_;
    bool takesMinus_;
};

} // namespace tam
