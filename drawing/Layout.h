#pragma once

#include "drawing/DisplayList.h"
#include "drawing/Sheet.h"
#include "drawing/TextWidth.h"

namespace drawing {

/// A wide drawing has inputs and outputs side by side, a narrow one below each other.
enum class Format { Wide, Narrow };

/// Draws the module as a host shows it: inputs left, outputs right, each with its
/// type and address, wired ones with what they are wired to; its channels beside
/// it, each joined to the module's items that have the same values. Names that are
/// too long are shortened.
/// A module with channels is always wide.
Drawing Draw(const Sheet& sheet, const Measure& measure = WidthByTable, Format format = Format::Wide);

} // namespace drawing
