#pragma once

#include <optional>
#include <string_view>

namespace tam {

/// The number that a value text begins with, "." as its decimal mark; none for
/// a text without a digit, or one past the range of numbers.
std::optional<double> ValueNumber(std::wstring_view value);

} // namespace tam
