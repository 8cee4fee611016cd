#include "view/model/Viewport.h"

#include "drawing/TextWidth.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <type_traits>
#include <variant>
#include <vector>

namespace view {

namespace {

constexpr std::array kUsualZooms = {0.05, 0.1, 0.25, 0.33, 0.5, 0.67, 0.75, 0.9, 1.0, 1.1,
                                    1.25, 1.5, 1.75, 2.0,  2.5, 3.0,  4.0,  5.0, 6.0, 8.0};
/// A zoom that is so near to a usual one is that one.
constexpr double kSameZoom = 0.001;
/// Around what is brought into sight, in pixels.
constexpr double kAround = 12;

drawing::Rectangle Around(const std::vector<drawing::Point>& points) {
    if (points.empty()) {
        return {};
    }
    const auto [left, right] = std::minmax_element(points.begin(), points.end(),
                                                   [](const auto& a, const auto& b) { return a.x < b.x; });
    const auto [top, bottom] = std::minmax_element(points.begin(), points.end(),
                                                   [](const auto& a, const auto& b) { return a.y < b.y; });
    return {left->x, top->y, right->x - left->x, bottom->y - top->y};
}

drawing::Rectangle Around(const drawing::Text& text) {
    const double width = drawing::WidthByTable(text.text, text.font);
    const double height = drawing::ShapeOf(text.font).size;
    const double left = text.anchor == drawing::Anchor::Start    ? text.at.x
                        : text.anchor == drawing::Anchor::Middle ? text.at.x - width / 2
                                                                 : text.at.x - width;
    // Letters reach below the base line by less than a third of their height.
    return {left, text.at.y - height, width, height * 4 / 3};
}

/// How far a span is to be moved so that it lies between two limits; one that is too long
/// has its beginning there.
double Shift(double begin, double size, double least, double most) noexcept {
    if (begin < least || size > most - least) {
        return least - begin;
    }
    return std::min(most - (begin + size), 0.0);
}

} // namespace

void Viewport::SetSheet(const Size& sheet) {
    sheet_ = sheet;
    Fit();
}

void Viewport::SetSheetSize(const Size& sheet) noexcept {
    const bool isSame = sheet.width == sheet_.width && sheet.height == sheet_.height;
    sheet_ = sheet;
    if (isFitted_ && !isSame) {
        Fit();
    } else {
        KeepInSight();
    }
}

void Viewport::SetWindow(const Size& window) {
    const drawing::Point before = Middle();
    window_ = window;
    if (isFitted_) {
        Fit();
        return;
    }
    origin_.x += Middle().x - before.x;
    origin_.y += Middle().y - before.y;
    KeepInSight();
}

void Viewport::SetDpi(double dpi) {
    const drawing::Point middle = ToSheet(Middle());
    dpi_ = dpi;
    if (isFitted_) {
        Fit();
        return;
    }
    origin_ = {Middle().x - middle.x * Scale(), Middle().y - middle.y * Scale()};
    KeepInSight();
}

drawing::Point Viewport::ToScreen(const drawing::Point& place) const noexcept {
    return {origin_.x + place.x * Scale(), origin_.y + place.y * Scale()};
}

drawing::Point Viewport::ToSheet(const drawing::Point& pixel) const noexcept {
    return {(pixel.x - origin_.x) / Scale(), (pixel.y - origin_.y) / Scale()};
}

drawing::Rectangle Viewport::ToScreen(const drawing::Rectangle& area) const noexcept {
    const drawing::Point corner = ToScreen(drawing::Point{area.x, area.y});
    return {corner.x, corner.y, area.width * Scale(), area.height * Scale(), area.radius * Scale()};
}

drawing::Rectangle Viewport::Seen() const noexcept {
    const drawing::Point corner = ToSheet({0, 0});
    return {corner.x, corner.y, window_.width / Scale(), window_.height / Scale()};
}

void Viewport::ZoomAbout(const drawing::Point& pixel, double times) noexcept {
    SetZoom(pixel, zoom_ * times);
}

void Viewport::ZoomIn() noexcept {
    ZoomStep(Middle(), true);
}

void Viewport::ZoomOut() noexcept {
    ZoomStep(Middle(), false);
}

void Viewport::ZoomStep(const drawing::Point& pixel, bool isLarger) noexcept {
    if (isLarger) {
        const auto* next = std::upper_bound(kUsualZooms.begin(), kUsualZooms.end(), zoom_ + kSameZoom);
        SetZoom(pixel, next != kUsualZooms.end() ? *next : kMost);
    } else {
        const auto* next = std::lower_bound(kUsualZooms.begin(), kUsualZooms.end(), zoom_ - kSameZoom);
        SetZoom(pixel, next != kUsualZooms.begin() ? *std::prev(next) : kLeast);
    }
}

void Viewport::ZoomToNatural() noexcept {
    SetZoom(Middle(), 1);
}

void Viewport::Fit() noexcept {
    isFitted_ = true;
    zoom_ = 1;
    const double room = 2 * kMargin * dpi_ / kUnscaledDpi;
    if (sheet_.width > 0 && sheet_.height > 0) {
        const double across = (window_.width - room) / (sheet_.width * dpi_ / kUnscaledDpi);
        const double down = (window_.height - room) / (sheet_.height * dpi_ / kUnscaledDpi);
        zoom_ = std::clamp(std::min(across, down), kLeast, 1.0);
    }
    // A sheet that does not fit even so shows its beginning.
    origin_ = {std::max((window_.width - sheet_.width * Scale()) / 2, room / 2),
               std::max((window_.height - sheet_.height * Scale()) / 2, room / 2)};
}

void Viewport::Drag(double x, double y) noexcept {
    origin_.x += x;
    origin_.y += y;
    isFitted_ = false;
    KeepInSight();
}

void Viewport::Reveal(const drawing::Rectangle& area) noexcept {
    const drawing::Rectangle seen = ToScreen(area);
    const double x = Shift(seen.x, seen.width, kAround, window_.width - kAround);
    const double y = Shift(seen.y, seen.height, kAround, window_.height - kAround);
    if (x != 0 || y != 0) {
        Drag(x, y);
    }
}

std::optional<drawing::PinId> Viewport::PinAt(const drawing::Drawing& sheet,
                                              const drawing::Point& pixel) const noexcept {
    return drawing::PinAt(sheet, ToSheet(pixel));
}

void Viewport::SetZoom(const drawing::Point& pixel, double zoom) noexcept {
    const drawing::Point place = ToSheet(pixel);
    zoom_ = std::clamp(zoom, kLeast, kMost);
    isFitted_ = false;
    origin_ = {pixel.x - place.x * Scale(), pixel.y - place.y * Scale()};
    KeepInSight();
}

void Viewport::KeepInSight() noexcept {
    const auto keep = [](double origin, double size, double window) {
        const double part = std::min({kInSight, size, window});
        return std::clamp(origin, part - size, window - part);
    };
    origin_.x = keep(origin_.x, sheet_.width * Scale(), window_.width);
    origin_.y = keep(origin_.y, sheet_.height * Scale(), window_.height);
}

drawing::Rectangle BoundsOf(const drawing::Item& item) {
    return std::visit(
        [](const auto& shape) -> drawing::Rectangle {
            using Shape = std::decay_t<decltype(shape)>;
            if constexpr (std::is_same_v<Shape, drawing::Rectangle>) {
                return shape;
            } else if constexpr (std::is_same_v<Shape, drawing::Picture>) {
                return shape.area;
            } else if constexpr (std::is_same_v<Shape, drawing::Text>) {
                return Around(shape);
            } else {
                return Around(shape.points);
            }
        },
        item.shape);
}

bool Overlap(const drawing::Rectangle& left, const drawing::Rectangle& right) noexcept {
    // A level line has no height, and is seen all the same.
    return left.x <= right.x + right.width && right.x <= left.x + left.width &&
           left.y <= right.y + right.height && right.y <= left.y + left.height;
}

} // namespace view
