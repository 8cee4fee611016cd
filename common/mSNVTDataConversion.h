#pragma once

#include <string>
#include <string_view>

namespace tam {

/// A number text with the user's decimal mark. Errors reach the caller.
std::wstring LocalizeValue(std::wstring_view number);

/// The same transformation for a text read from a file. An error is reported
/// and gives "". Kept apart from LocalizeValue for this difference.
std::wstring UnlocalizeValue(std::wstring_view number) noexcept;

} // namespace tam
