#pragma once

#include "drawing/DisplayList.h"

#include <cstdint>
#include <optional>

namespace drawing {

enum class Scheme { Light, Dark };

/// 0xRRGGBB
using Colour = std::uint32_t;

/// How a thing is painted. Texts have a fill only.
struct Look {
    std::optional<Colour> fill = std::nullopt;
    std::optional<Colour> stroke = std::nullopt;
    double strokeWidth = 1;
    bool isDashed = false;
};

Look LookOf(Paint paint, Scheme scheme) noexcept;
/// What lies behind everything.
Colour Background(Scheme scheme) noexcept;
/// What a paint lies on.
Colour GroundOf(Paint paint, Scheme scheme) noexcept;
/// The ratio of two colours' luminances, from 1 to 21.
double Contrast(Colour first, Colour second) noexcept;

} // namespace drawing
