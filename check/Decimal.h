#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace check {

/// A number as documents write it: digits with "." as decimal mark, perhaps a sign
/// and an exponent, and nothing else.
struct Decimal {
    double value = 0;
    bool isNegative = false;
    /// Without zeros in front and after; "" is zero.
    std::string digits;
    /// The number is digits times this power of ten.
    int exponent = 0;
};

std::optional<Decimal> ReadDecimal(std::string_view text);
/// A whole number without point and exponent.
std::optional<long long> ReadWhole(std::string_view text);
/// Whether the number is a whole multiple of a times ten to the power of b.
bool IsMultiple(const Decimal& number, long a, long b);
/// A text with a comma as its decimal mark, written with a point; nothing when that is no
/// number either.
std::optional<std::string> WithPoint(std::string_view text);
/// The step between two values of a type, a times ten to the power of b, without zeros after.
std::string StepText(long a, long b, std::string_view mark);
/// What the component reads of a text: the number that it begins with; empty
/// when it begins with none.
std::string LeadingNumber(std::string_view text);

} // namespace check
