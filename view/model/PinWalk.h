#pragma once

#include "drawing/DisplayList.h"
#include "drawing/Sheet.h"

#include <optional>

namespace view {

enum class Direction { Left, Right, Up, Down };

/// The pin to which an arrow goes from a pin, or from none; none when there is no pin in
/// that direction. Up and down follow a column of pins, from block to block. Left and right
/// go to the other side of a block, and from there on to its neighbours.
std::optional<drawing::PinId> NextPin(const drawing::Sheet& sheet, const drawing::Drawing& drawing,
                                      const std::optional<drawing::PinId>& from, Direction direction);

} // namespace view
