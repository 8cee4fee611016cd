#pragma once

#include "drawing/DisplayList.h"

#include <windows.h>

#include <string>

namespace view {

/// The drawing as a PNG file, in twice its natural size.
std::string PngOf(const drawing::Drawing& drawing, HICON icon);

} // namespace view
