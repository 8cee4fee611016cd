#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>

namespace tam {

// Questions to the unit converter: through its interface, or by name when it
// offers none, as a converter written in a script does. Its failures reach the
// caller as it raised them.

/// A value, in the user's decimal form, converted for a unit.
std::wstring ConvertedValue(IDispatch& converter, const std::wstring& value, const std::wstring& unit);
/// The unit's label.
std::wstring UnitLabel(IDispatch& converter, const std::wstring& unit);

} // namespace tam
