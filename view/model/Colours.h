#pragma once

#include "view/model/FindingRow.h"

#include "drawing/Palette.h"

#include <optional>

namespace view {

/// Whether dark letters are read on it.
bool IsLight(drawing::Colour background) noexcept;

/// The letters of a finding on a background; none for the letters of all others.
std::optional<drawing::Colour> ColourOf(Weight weight, drawing::Colour background) noexcept;

} // namespace view
