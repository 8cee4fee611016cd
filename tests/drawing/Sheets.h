#pragma once

#include "drawing/DisplayList.h"
#include "drawing/Sheet.h"

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace drawingtest {

/// Each character is half as wide as its font is high.
double EvenWidth(std::string_view text, drawing::Font font);

drawing::Pin OpenPin(const std::string& name, const std::string& type = "95 switch",
                     const std::string& address = "1");
drawing::Pin WiredPin(const std::string& name, const std::string& wiredTo);

/// Three inputs, the second of them wired, and two outputs, the first of them wired.
drawing::Sheet SmallSheet();
/// A module with the channels AI1 (Out), AO1 (In1, In2, Out), DO1 (In1, Out), each
/// of whose points the module has an item for.
drawing::Sheet SheetWithChannels();

/// The shapes of one kind that have a paint, in the order of painting.
template <class Shape>
std::vector<Shape> ShapesOf(const drawing::Drawing& drawing, drawing::Paint paint) {
    std::vector<Shape> shapes;
    for (const drawing::Item& item : drawing.items) {
        const auto* const shape = std::get_if<Shape>(&item.shape);
        if (shape != nullptr && item.paint == paint) {
            shapes.push_back(*shape);
        }
    }
    return shapes;
}

/// The texts that have a paint.
std::vector<std::string> TextsOf(const drawing::Drawing& drawing, drawing::Paint paint);
/// The texts that belong to a pin.
std::vector<std::string> TextsOf(const drawing::Drawing& drawing, const drawing::PinId& pin);

/// The corners of everything that is drawn; of a text, its anchor.
std::vector<drawing::Point> CornersOf(const drawing::Drawing& drawing);

} // namespace drawingtest
