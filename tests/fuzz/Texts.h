#pragma once

#include "tests/fuzz/Random.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace component_fuzz {

/// A text that a member or a document might stumble over: empty, blank, a
/// number at, near or past a limit, a path, a half of a surrogate pair, a NUL,
/// very long. The last kind comes seldom.
std::wstring AnyText(Random& random);
/// A name that documents of this system have, or that is none in XML.
std::wstring AnyName(Random& random);
std::wstring Repeated(std::wstring_view part, std::size_t times);

} // namespace component_fuzz
