#pragma once

#include "tests/fuzz/Random.h"

#include <string>

namespace component_fuzz {

/// A document's text with one to three changes as a person makes them: a letter or a
/// digit in place of another, a blank or a comment put in, a line taken out, put in twice
/// or exchanged with the next, a name in the other letter case, a character reference.
std::wstring WithSmallChanges(std::wstring text, Random& random);

} // namespace component_fuzz
