#pragma once

#include "core/GeneralType.h"

#include <string>
#include <string_view>

namespace tam {

/// A number with its unit after it; the number alone when there is no unit, and
/// nothing without a number.
std::wstring WithUnit(const std::wstring& number, const std::wstring& unit);

/// What the display of a value depends on.
struct ValueToShow {
    std::wstring value;
    GeneralType generalType;
    std::wstring unit;
    std::wstring_view enumDescription;
    std::wstring_view decimalSeparator;
};

/// The value as a person reads it where its data point does not say so itself:
/// a number with the user's decimal mark and its unit, the text of an
/// enumeration's entry, any other value as it stands. Throws "overflow" for an
/// enumeration description with a value past 16 bits.
std::wstring ShownValue(const ValueToShow& what);

} // namespace tam
