#pragma once

#include "com/Ref.h"
#include "tests/com/TypeLibrary.h"

#include <string>

namespace component_fuzz {

/// The class of an object; CLSID_NULL when it does not tell.
CLSID ClassOf(IUnknown* object);

/// All that an object and the points of its collections say of themselves:
/// every property that is read without arguments, a line each.
std::wstring Describe(const contract::TypeLibrary& library, IUnknown* object);

} // namespace component_fuzz
