#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tam {

// An enumeration description is a list of entries, each a value, ",", a display
// text and ";". The label of a value and the list of the enumeration editor
// read it in slightly different ways; both are kept.

/// The label of a value: the text between the first comma and the closing
/// semicolon of the first entry whose text before the comma is exactly the
/// value. A comma in a label belongs to it. Empty when the value is empty or
/// no entry has it. "Invalid call" when that entry is not closed after its
/// comma.
std::wstring EnumLabel(std::wstring_view value, std::wstring_view description);

struct EnumEntry {
    std::int16_t value;
    std::wstring text;
};

/// The entries before the first empty one, whether the last is closed or not.
/// The text ends at a second comma. A value is the number that it begins with,
/// to the nearest whole one, the even one of two; "overflow" when that does
/// not fit into 16 bits.
std::vector<EnumEntry> EnumEntries(std::wstring_view description);

/// The value of the first entry as it stands. "Subscript out of range" when the first
/// entry is empty or there is none.
std::wstring FirstEnumValue(std::wstring_view description);

} // namespace tam
