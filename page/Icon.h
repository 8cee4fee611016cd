#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace page {

/// Pixels from the upper left corner, row by row, four bytes each: red, green, blue,
/// opacity.
struct Pixels {
    std::size_t width = 0;
    std::size_t height = 0;
    std::string bytes;
};

/// The picture as a PNG file, not compressed.
std::string Png(const Pixels& pixels);

/// The largest picture of an icon file as a PNG file; empty when there is none that
/// can be read.
std::string PngOfIcon(std::string_view icon);

} // namespace page
