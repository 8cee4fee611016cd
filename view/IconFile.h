#pragma once

#include <windows.h>

#include <string>

namespace view {

/// The picture of an icon file that is nearest to a size in pixels; null when there is
/// none that can be read. The caller destroys it.
HICON IconOfFile(const std::string& bytes, int size) noexcept;

} // namespace view
