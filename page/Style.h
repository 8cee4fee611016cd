#pragma once

#include <string>

namespace page {

/// The style of the whole page, that of the drawing with it.
std::string Style();

} // namespace page
