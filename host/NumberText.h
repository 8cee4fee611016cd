#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orv {

/// The marks of a number text.
struct NumberMarks {
    std::wstring decimal;
    /// Between groups of three digits; empty where there is none.
    std::wstring group;
};

/// The number that a text holds, with blanks around it, a sign, groups of
/// three digits and an exponent allowed. None for anything else: a text with
/// the other locale's decimal mark is no number rather than one a thousand
/// times as large.
std::optional<double> ParseNumber(std::wstring_view text, const NumberMarks& marks);

/// Rounds to seven significant digits, of the value or of a larger magnitude
/// that went into it. Never minus zero.
double RoundNumber(double value, double magnitude) noexcept;

/// The shortest text that reads back as the number: plain, or with an exponent
/// ("6.1E+38") below 0.00001 and from 1E15 on. Not by the system's conversion,
/// which not on every system brings the user's mark into the second form.
std::wstring FormatNumber(double number, const NumberMarks& marks);

} // namespace orv
