#pragma once

#include "tests/fault/Slots.h"

namespace fault {

/// Puts every DOM method that the component uses under the injection, for all
/// documents, nodes, lists and maps of the parser.
void ReplaceDom(Slots& slots);

} // namespace fault
