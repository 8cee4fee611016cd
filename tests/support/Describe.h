#pragma once

#include "com/Ref.h"
#include "tests/support/TypeLibrary.h"

#include <string>
#include <vector>

namespace support {

/// The class of an object; CLSID_NULL when it does not tell.
CLSID ClassOf(IUnknown* object);

/// Where the classes of objects are looked up.
using Libraries = std::vector<const TypeLibrary*>;

/// All that an object and the points of its collections say of themselves:
/// every property that is read without arguments, a line each. An object of a
/// class that none of the libraries has says nothing.
std::wstring Describe(const Libraries& libraries, IUnknown* object);

} // namespace support
