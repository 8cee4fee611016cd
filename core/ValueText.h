#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tam {

// The pure half of the module mSNVTDataConversion.

/// The decimal mark of a user for whom one half is written like this: "," if
/// the text has one, else ".".
std::wstring DecimalSeparatorFrom(std::wstring_view formattedHalf);

/// The text with its first "." replaced by the separator, or, when it has no
/// ".", its first ","; any other mark stays. The separator may be empty: the
/// mark is then dropped.
std::wstring MoveDecimalMark(std::wstring_view text, std::wstring_view separator);

/// The last `digits` hexadecimal digits of a value, in capitals, with zeros in
/// front; a negative value has the eight digits of its two's complement. A
/// value above 16 to the power `digits` is set to that power, in the caller's
/// variable too, and so comes out as zeros only.
///
/// "Overflow" when four times `digits` leaves the 16-bit range, "invalid call"
/// when `digits` is negative: there is no text of such a length. The value is
/// untouched then.
std::wstring ToFixedHex(std::int32_t& value, std::int16_t digits);

} // namespace tam
