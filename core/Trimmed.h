#pragma once

#include <string_view>

namespace tam {

/// Both forms of Trimmed.
template <class Char>
constexpr std::basic_string_view<Char> TrimmedOf(std::basic_string_view<Char> text,
                                                 std::basic_string_view<Char> blanks) noexcept {
    const auto first = text.find_first_not_of(blanks);
    return first == text.npos ? std::basic_string_view<Char>()
                              : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The text without the blanks around it; what counts as a blank differs.
constexpr std::wstring_view Trimmed(std::wstring_view text, std::wstring_view blanks = L" ") noexcept {
    return TrimmedOf(text, blanks);
}
constexpr std::string_view Trimmed(std::string_view text, std::string_view blanks = " ") noexcept {
    return TrimmedOf(text, blanks);
}

} // namespace tam
