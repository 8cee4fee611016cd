#pragma once

#include "core/EditText.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tam {

/// Rules of the text editor: no blanks, and no more characters than the type holds.
class TextEditorState {
  public:
    explicit TextEditorState(std::wstring openingValue) : opening_(std::move(openingValue)) {}

    const std::wstring& OpeningValue() const noexcept { return opening_; }

    KeyAnswer Key(wchar_t key, const EditText& edit) const;
    /// What a pasted or dropped text puts in: its first line, each blank an
    /// underscore; none when that line is empty. An empty text is itself.
    static std::optional<std::wstring> Insertion(std::wstring_view pasted);

    struct Shortened {
        /// What the user is told, with its caption.
        std::wstring message;
        std::wstring caption;
        /// The characters that the type holds.
        std::wstring text;
    };
    /// Set when the text is longer than the type's length.
    static std::optional<Shortened> TooLong(std::wstring_view text, std::int32_t length);

  private:
    std::wstring opening_;
};

} // namespace tam
