#pragma once

#include "com/Conversion.h"
#include "com/Ref.h"

#include <windows.h>

#include <oaidl.h>

#include <span>
#include <string>

namespace com {

// Members by name. Arguments stand in their natural order. A failure of the
// member is thrown with the member's own error text.

Variant CallMember(IDispatch& object, const std::wstring& name, std::span<VARIANT> arguments);
Variant GetMember(IDispatch& object, const std::wstring& name);
void PutMember(IDispatch& object, const std::wstring& name, const VARIANT& value);

/// An argument that the callee may change: a text by reference.
VARIANT ByReference(Bstr& text) noexcept;

} // namespace com
