#pragma once

#include "tests/fuzz/Random.h"

#include <windows.h>

#include <oaidl.h>

namespace component_fuzz {

/// A text, at times null.
VARIANT TextValue(Random& random);
/// A number of any type that scripts and their hosts have, often at an edge.
VARIANT NumberValue(Random& random);
/// A reference to no place.
VARIANT NowhereValue(Random& random);

} // namespace component_fuzz
