#pragma once

#include <string_view>

namespace tam {

/// The text without the blanks around it; what counts as a blank differs.
constexpr std::wstring_view Trimmed(std::wstring_view text, std::wstring_view blanks = L" ") noexcept {
    const auto first = text.find_first_not_of(blanks);
    return first == std::wstring_view::npos ? std::wstring_view()
                                            : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

} // namespace tam
