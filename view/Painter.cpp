#include "view/Painter.h"

#include "view/Window.h"

#include "bench/Text.h"
#include "com/Boundary.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

namespace view {

namespace {

using drawing::Colour;
using drawing::Paint;
using drawing::Point;

constexpr Colour kPicked = 0xFFD24A;
constexpr double kPickedOpacity = 0.38;
/// Smaller letters cannot be read: a bar stands for the text.
constexpr double kLeastLetters = 4.5;
constexpr double kDash = 4;

struct DeleteFont {
    void operator()(HFONT font) const noexcept { DeleteObject(font); }
};
using Font = std::unique_ptr<std::remove_pointer_t<HFONT>, DeleteFont>;

COLORREF ToSystem(Colour colour) noexcept {
    return RGB(colour >> 16U & 0xFFU, colour >> 8U & 0xFFU, colour & 0xFFU);
}

Font MakeFont(drawing::Font font, double scale) {
    const drawing::FontShape shape = drawing::ShapeOf(font);
    LOGFONTW request{};
    request.lfHeight = -static_cast<LONG>(std::lround(shape.size * scale));
    request.lfWeight = shape.isBold ? FW_BOLD : FW_NORMAL;
    request.lfCharSet = DEFAULT_CHARSET;
    request.lfQuality = ANTIALIASED_QUALITY;
    lstrcpynW(request.lfFaceName, L"Segoe UI", LF_FACESIZE);
    return Font(CreateFontIndirectW(&request));
}

/// What is painted lies in these pixels.
struct Bounds {
    double left;
    double top;
    double right;
    double bottom;
};

class Painting {
  public:
    Painting(const Bitmap& bitmap, const drawing::Drawing& drawing, const View& view)
        : bitmap_(bitmap), drawing_(drawing), view_(view), raster_(bitmap.Pixels()) {}

    void Do() {
        raster_.Clear(view_.system ? view_.system->window : drawing::Background(view_.scheme));
        bool isPickPainted = !view_.picked;
        // The block of a pin comes before its words: the mark lies between the two.
        for (const drawing::Item& item : drawing_.items) {
            if (!isPickPainted && item.pin && item.pin->block == view_.picked->block) {
                PaintPick();
                isPickPainted = true;
            }
            std::visit([&](const auto& shape) { PaintShape(shape, item); }, item.shape);
        }
        GdiFlush();
        SetBkMode(bitmap_.Context(), TRANSPARENT);
        const HGDIOBJ former = GetCurrentObject(bitmap_.Context(), OBJ_FONT);
        for (const drawing::Item& item : drawing_.items) {
            if (const auto* const text = std::get_if<drawing::Text>(&item.shape)) {
                PaintText(*text, item);
            } else if (const auto* const picture = std::get_if<drawing::Picture>(&item.shape)) {
                PaintPicture(*picture);
            }
        }
        SelectObject(bitmap_.Context(), former);
        GdiFlush();
    }

  private:
    Point Place(const Point& point) const noexcept {
        return {view_.at.x + point.x * view_.scale, view_.at.y + point.y * view_.scale};
    }
    /// On the edge of pixels, so that upright and level edges are sharp.
    Point Snapped(const Point& point) const noexcept {
        const Point place = Place(point);
        return {std::round(place.x), std::round(place.y)};
    }
    bool IsSeen(const Bounds& bounds) const noexcept {
        return bounds.right >= 0 && bounds.bottom >= 0 && bounds.left <= bitmap_.Width() &&
               bounds.top <= bitmap_.Height();
    }
    double Stroke(double width) const noexcept { return std::max(1.0, std::round(width * view_.scale)); }

    drawing::Look LookAs(const drawing::Item& item) const noexcept {
        drawing::Look look = drawing::LookOf(item.paint, view_.scheme);
        if (!view_.system) {
            return look;
        }
        const bool isPicked = item.pin && item.pin == view_.picked;
        const bool isText = std::holds_alternative<drawing::Text>(item.shape);
        const Colour ink = isPicked && isText ? view_.system->pickedText : view_.system->text;
        const bool isArea = item.paint == Paint::Body || item.paint == Paint::Head ||
                            item.paint == Paint::Tag || item.paint == Paint::OpenPin;
        if (look.fill) {
            look.fill = isArea && !isText ? view_.system->window : ink;
        }
        if (look.stroke || (isArea && !isText)) {
            look.stroke = ink;
        }
        return look;
    }

    void PaintPick() {
        const drawing::Rectangle* const area = drawing::AreaOf(drawing_, *view_.picked);
        if (area == nullptr) {
            return;
        }
        const Point first = Snapped({area->x, area->y + 2});
        const Point last = Snapped({area->x + area->width, area->y + area->height - 2});
        const drawing::Rectangle mark{first.x, first.y, last.x - first.x, last.y - first.y, 4 * view_.scale};
        raster_.Fill(OutlineOf(mark), view_.system ? view_.system->picked : kPicked,
                     view_.system ? 1 : kPickedOpacity);
        if (view_.hasFocus) {
            StrokeRectangle(mark, view_.system ? view_.system->text : 0xB8860B, 1);
        }
    }

    void StrokeRectangle(const drawing::Rectangle& area, Colour colour, double width) {
        // A ring: the outer edge one way round, the inner one the other.
        std::vector<Point> ring = OutlineOf(area);
        ring.push_back(ring.front());
        const drawing::Rectangle inner{area.x + width, area.y + width, area.width - 2 * width,
                                       area.height - 2 * width, std::max(0.0, area.radius - width)};
        if (inner.width <= 0 || inner.height <= 0) {
            raster_.Fill(ring, colour);
            return;
        }
        std::vector<Point> hole = OutlineOf(inner);
        hole.push_back(hole.front());
        ring.insert(ring.end(), hole.rbegin(), hole.rend());
        raster_.Fill(ring, colour);
    }

    void PaintShape(const drawing::Rectangle& shape, const drawing::Item& item) {
        const Point first = Snapped({shape.x, shape.y});
        const Point last = Snapped({shape.x + shape.width, shape.y + shape.height});
        if (!IsSeen({first.x, first.y, last.x, last.y})) {
            return;
        }
        const drawing::Look look = LookAs(item);
        const drawing::Rectangle area{first.x, first.y, last.x - first.x, last.y - first.y,
                                      shape.radius * view_.scale};
        if (look.fill) {
            raster_.Fill(OutlineOf(area), *look.fill);
        }
        if (look.stroke) {
            StrokeRectangle(area, *look.stroke, Stroke(look.strokeWidth));
        }
    }

    void PaintShape(const drawing::Line& shape, const drawing::Item& item) {
        const drawing::Look look = LookAs(item);
        if (!look.stroke) {
            return;
        }
        const double width = Stroke(look.strokeWidth);
        for (std::size_t i = 0; i + 1 < shape.points.size(); ++i) {
            PaintPiece(shape.points[i], shape.points[i + 1], width, *look.stroke, look.isDashed);
        }
    }

    void PaintPiece(const Point& from, const Point& to, double width, Colour colour, bool isDashed) {
        Point first = Snapped(from);
        Point last = Snapped(to);
        if (!IsSeen({std::min(first.x, last.x) - width, std::min(first.y, last.y) - width,
                     std::max(first.x, last.x) + width, std::max(first.y, last.y) + width})) {
            return;
        }
        // A line of an odd width has its middle in the middle of pixels.
        const double half = std::fmod(width, 2) == 0 ? 0 : 0.5;
        const bool isLevel = first.y == last.y;
        const bool isUpright = first.x == last.x;
        if (isLevel || isUpright) {
            first = {first.x + (isUpright ? half : 0), first.y + (isLevel ? half : 0)};
            last = {last.x + (isUpright ? half : 0), last.y + (isLevel ? half : 0)};
            // Corners are filled.
            const double reach = width / 2;
            (isLevel ? (first.x < last.x ? last.x : first.x) : (first.y < last.y ? last.y : first.y)) +=
                reach;
        }
        if (!isDashed) {
            raster_.Fill(PieceOf(first, last, width), colour);
            return;
        }
        const double length = std::hypot(last.x - first.x, last.y - first.y);
        const double dash = std::max(2.0, std::round(kDash * view_.scale));
        const auto dashes = static_cast<int>(std::ceil(length / (2 * dash)));
        for (int i = 0; i < dashes; ++i) {
            const double at = 2 * dash * i;
            const double end = std::min(length, at + dash);
            const auto on = [&](double distance) {
                return Point{first.x + (last.x - first.x) * distance / length,
                             first.y + (last.y - first.y) * distance / length};
            };
            raster_.Fill(PieceOf(on(at), on(end), width), colour);
        }
    }

    void PaintShape(const drawing::Polygon& shape, const drawing::Item& item) {
        std::vector<Point> points;
        Bounds bounds{1e9, 1e9, -1e9, -1e9};
        for (const Point& point : shape.points) {
            const Point place = Place(point);
            points.push_back(place);
            bounds = {std::min(bounds.left, place.x), std::min(bounds.top, place.y),
                      std::max(bounds.right, place.x), std::max(bounds.bottom, place.y)};
        }
        if (points.empty() || !IsSeen(bounds)) {
            return;
        }
        const drawing::Look look = LookAs(item);
        if (look.fill) {
            raster_.Fill(points, *look.fill);
        }
        for (std::size_t i = 0; look.stroke && i < points.size(); ++i) {
            raster_.Fill(PieceOf(points[i], points[(i + 1) % points.size()],
                                 std::max(1.0, look.strokeWidth * view_.scale)),
                         *look.stroke);
        }
    }

    void PaintShape(const drawing::Text& shape, const drawing::Item& item) {
        const double letters = drawing::ShapeOf(shape.font).size * view_.scale;
        if (letters >= kLeastLetters) {
            return; // painted above everything
        }
        const double width = drawing::WidthByTable(shape.text, shape.font) * view_.scale * 0.8;
        const Point place = Place(shape.at);
        const double left = shape.anchor == drawing::Anchor::Start    ? place.x
                            : shape.anchor == drawing::Anchor::Middle ? place.x - width / 2
                                                                      : place.x - width;
        const drawing::Look look = LookAs(item);
        const drawing::Rectangle bar{left, place.y - letters * 0.6, width, std::max(1.0, letters * 0.5)};
        if (look.fill && IsSeen({left, bar.y, left + width, place.y})) {
            raster_.Fill(OutlineOf(bar), *look.fill, 0.4);
        }
    }

    void PaintShape(const drawing::Picture&, const drawing::Item&) {}

    void PaintText(const drawing::Text& text, const drawing::Item& item) {
        const double letters = drawing::ShapeOf(text.font).size * view_.scale;
        const Point place = Place(text.at);
        if (letters < kLeastLetters || place.y < -letters || place.y - 2 * letters > bitmap_.Height()) {
            return;
        }
        const drawing::Look look = LookAs(item);
        Font& font = fonts_.at(static_cast<std::size_t>(text.font));
        if (!font) {
            font = MakeFont(text.font, view_.scale);
        }
        const HDC context = bitmap_.Context();
        SelectObject(context, font.get());
        SetTextColor(context, ToSystem(look.fill.value_or(0)));
        SetTextAlign(context, TA_BASELINE | (text.anchor == drawing::Anchor::Start    ? TA_LEFT
                                             : text.anchor == drawing::Anchor::Middle ? TA_CENTER
                                                                                      : TA_RIGHT));
        const std::wstring letter = bench::Wide(text.text);
        ExtTextOutW(context, static_cast<int>(std::lround(place.x)), static_cast<int>(std::lround(place.y)),
                    0, nullptr, letter.c_str(), static_cast<UINT>(letter.size()), nullptr);
    }

    void PaintPicture(const drawing::Picture& picture) {
        const Point first = Snapped({picture.area.x, picture.area.y});
        const Point last =
            Snapped({picture.area.x + picture.area.width, picture.area.y + picture.area.height});
        if (view_.icon != nullptr && IsSeen({first.x, first.y, last.x, last.y})) {
            DrawIconEx(bitmap_.Context(), static_cast<int>(first.x), static_cast<int>(first.y), view_.icon,
                       static_cast<int>(last.x - first.x), static_cast<int>(last.y - first.y), 0, nullptr,
                       DI_NORMAL);
        }
    }

    const Bitmap& bitmap_;
    const drawing::Drawing& drawing_;
    const View& view_;
    Raster raster_;
    std::array<Font, 6> fonts_;
};

} // namespace

Bitmap::Bitmap(int width, int height) : context_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = std::max(1, width);
    info.bmiHeader.biHeight = -std::max(1, height); // from the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* pixels = nullptr;
    bitmap_ = CreateDIBSection(context_, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
    if (bitmap_ == nullptr || pixels == nullptr) {
        DeleteDC(context_);
        throw com::CallError(E_OUTOFMEMORY);
    }
    former_ = SelectObject(context_, bitmap_);
    surface_ = {static_cast<Pixel*>(pixels), std::max(1, width), std::max(1, height)};
}

Bitmap::~Bitmap() {
    SelectObject(context_, former_);
    DeleteObject(bitmap_);
    DeleteDC(context_);
}

SystemColours SystemColours::Now() noexcept {
    return {ColourOfSystem(COLOR_WINDOW), ColourOfSystem(COLOR_WINDOWTEXT), ColourOfSystem(COLOR_HIGHLIGHT),
            ColourOfSystem(COLOR_HIGHLIGHTTEXT)};
}

void PaintDrawing(const Bitmap& bitmap, const drawing::Drawing& drawing, const View& view) {
    Painting(bitmap, drawing, view).Do();
}

} // namespace view
