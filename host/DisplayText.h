#pragma once

#include "host/Units.h"

#include <string>
#include <string_view>

namespace orv {

/// How a value is shown.
struct DisplayRule {
    /// Identifier of the value's type.
    std::wstring_view type;
    /// Entries "value,label;". Empty for a value that is no enumeration.
    std::wstring_view enumDesc;
    UnitSystem system = UnitSystem::Metric;
    /// A difference follows the unit, but not the zero of its scale.
    bool isDifference = false;
};

/// The text that a person reads for a stored value: the label of an
/// enumeration's value (the value itself where no entry has it), a number in
/// the user's form with the label of its unit, any other text as it stands.
std::wstring DisplayText(std::wstring_view value, const DisplayRule& rule);

} // namespace orv
