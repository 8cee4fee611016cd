#pragma once

#include "com/Conversion.h"

#include <windows.h>

#include <oaidl.h>

namespace com {

/// True for a reference without a place, and for a variable that holds one:
/// the platform's conversions would follow it.
bool LeadsNowhere(const VARIANT& value) noexcept;

/// A copy of what a value holds or refers to. RunTime::TypeMismatch where it
/// leads nowhere; throws CallError.
Variant CopyOf(const VARIANT& value);

} // namespace com
