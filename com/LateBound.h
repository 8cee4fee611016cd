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

/// False when the object says that it has no member of this name.
bool HasMember(IDispatch& object, const std::wstring& name);
// A member without arguments; an empty value when the object has no such member.
Variant MemberOrNone(IDispatch& object, const std::wstring& name);
Variant MemberOrNone(IDispatch& object, DISPID id);

/// An argument that the callee may change: a text by reference.
VARIANT ByReference(Bstr& text) noexcept;

} // namespace com
