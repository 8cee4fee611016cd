#pragma once

#include "drawing/Sheet.h"
#include "drawing/TextWidth.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace drawing {

/// What a thing on the sheet is. A painter has a colour for each (see Palette.h).
enum class Paint {
    Body,
    Head,
    Outline,
    Title,
    Subtitle,
    Name,
    HiddenName,
    Note,
    Address,
    OpenLead,
    WiredLead,
    HiddenLead,
    OpenPin,
    WiredPin,
    Tag,
    TagText,
    Mirror,
    MirrorPort
};

struct Point {
    double x;
    double y;
    bool operator==(const Point&) const = default;
};

struct Rectangle {
    double x;
    double y;
    double width;
    double height;
    /// Of its corners.
    double radius = 0;

    bool Holds(const Point& point) const noexcept {
        return point.x >= x && point.x < x + width && point.y >= y && point.y < y + height;
    }
};

/// Straight pieces from point to point, open at the ends.
struct Line {
    std::vector<Point> points;
};

struct Polygon {
    std::vector<Point> points;
};

enum class Anchor { Start, Middle, End };

/// The point lies on the base line of the letters.
struct Text {
    Point at;
    std::string text;
    Font font;
    Anchor anchor = Anchor::Start;
};

/// The module's icon.
struct Picture {
    Rectangle area;
};

struct Item {
    Paint paint;
    std::variant<Rectangle, Line, Polygon, Text, Picture> shape;
    /// The pin that it belongs to.
    std::optional<PinId> pin = std::nullopt;
};

/// The area in which a click means this pin.
struct Spot {
    Rectangle area;
    PinId pin;
};

/// In the order of painting: what comes later lies above.
struct Drawing {
    double width = 0;
    double height = 0;
    std::vector<Item> items;
    std::vector<Spot> spots;
};

/// The pin at a place of the drawing.
std::optional<PinId> PinAt(const Drawing& drawing, const Point& place) noexcept;
/// Where a pin is; null when it was not drawn.
const Rectangle* AreaOf(const Drawing& drawing, const PinId& pin) noexcept;

} // namespace drawing
