#pragma once

#include "drawing/DisplayList.h"
#include "drawing/Palette.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace view {

/// 0xAARRGGBB, as a bitmap of Windows has it; the opacity is that of the whole picture
/// and always full.
using Pixel = std::uint32_t;

/// A picture in memory that somebody else owns.
struct Surface {
    Pixel* pixels = nullptr;
    int width = 0;
    int height = 0;

    std::span<Pixel> Row(int y) const noexcept {
        return {pixels + static_cast<std::ptrdiff_t>(y) * width, static_cast<std::size_t>(width)};
    }
};

/// Fills areas with smooth edges: the graphics of the system have none on every machine
/// that this runs on. A point (x, y) is the upper left corner of a pixel.
class Raster {
  public:
    explicit Raster(const Surface& surface) : surface_(surface) {}

    // NOLINTNEXTLINE(readability-make-member-function-const): the pixels are the picture
    void Clear(drawing::Colour colour) noexcept;
    /// The inside of a closed polygon, by the winding of its edges.
    void Fill(std::span<const drawing::Point> polygon, drawing::Colour colour, double opacity = 1);

  private:
    struct Edge {
        drawing::Point from;
        drawing::Point to;
        int winding;
    };
    void FillRow(int y, const std::vector<Edge>& edges, drawing::Colour colour, double opacity);
    void AddSpan(double from, double to, double part);

    Surface surface_;
    /// How much of each pixel of a row is covered.
    std::vector<float> covered_;
};

/// The outline of a rectangle with round corners.
std::vector<drawing::Point> OutlineOf(const drawing::Rectangle& rectangle);
/// A straight piece of a line of some width as a polygon.
std::vector<drawing::Point> PieceOf(const drawing::Point& from, const drawing::Point& to, double width);

} // namespace view
