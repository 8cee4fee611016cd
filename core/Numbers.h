#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tam {

/// The number that a text begins with, whatever the user's locale; 0 when it
/// begins with none.
///
/// Blanks, tabs and line feeds are skipped wherever they stand. Then: a sign,
/// digits, "." as the decimal point, and an exponent after E, e, D or d. The
/// first character that fits nowhere ends the number, and so does an exponent
/// letter without digits. Or, unsigned: &H and hexadecimal, &O and octal digits,
/// read as a signed 16-bit number when they fit into 16 bits (&HFFFF is -1)
/// unless an "&" follows (&HFFFF& is 65535), else as a signed 32-bit one.
///
/// "Overflow" for a number past the range of double, or past 32 bits in the
/// second form; one too small to tell from 0 is 0.
double Val(std::wstring_view text);

/// The nearest whole number, the even one of two. NaN and infinities stay.
double RoundToEven(double number);

/// The nearest whole number, the even one of two. "Overflow" when it is out of
/// range or the number is NaN.
std::int32_t ToInt32(double number);
std::int16_t ToInt16(double number);

/// The 1-based position among so many items that a text begins with, to the nearest
/// whole number, the even one of two; 0 when it begins with none of theirs. What is no
/// number or is past the range of numbers is no position.
std::size_t PositionIn(std::wstring_view text, std::size_t count) noexcept;

} // namespace tam
