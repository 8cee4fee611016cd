#include "view/Glyphs.h"

#include "view/Painter.h"
#include "view/Raster.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <vector>

namespace view {

namespace {

using drawing::Point;
using Stroke = std::vector<Point>;

/// Glyphs are drawn on a square of so many units.
constexpr double kSide = 16;
constexpr double kWidth = 1.4;

Stroke Arc(const Point& centre, double radius, double from, double to) {
    Stroke stroke;
    constexpr int kSteps = 24;
    for (int i = 0; i <= kSteps; ++i) {
        const double angle = (from + (to - from) * i / kSteps) * std::numbers::pi;
        stroke.push_back({centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)});
    }
    return stroke;
}

std::vector<Stroke> Lens() {
    return {Arc({6.8, 6.8}, 4.8, 0, 2), {{10.4, 10.4}, {14.2, 14.2}}};
}

std::vector<Stroke> Mirrored(std::vector<Stroke> strokes) {
    for (Stroke& stroke : strokes) {
        for (Point& point : stroke) {
            point.x = kSide - point.x;
        }
    }
    return strokes;
}

std::vector<Stroke> Undo() {
    Stroke bow = {{2.2, 6}};
    for (const Point& point : Arc({9.6, 9.8}, 3.8, -0.5, 0.5)) {
        bow.push_back(point);
    }
    bow.push_back({6, 13.6});
    return {{{5.8, 2.4}, {2.2, 6}, {5.8, 9.6}}, bow};
}

/// Letters of the unit systems, from this place on.
Stroke LetterS(double left) {
    return {{left + 5.4, 4.2},  {left + 4, 3},     {left + 1.6, 3},   {left + 0.4, 4.2},
            {left + 0.4, 6.4},  {left + 1.6, 7.6}, {left + 4.2, 8.4}, {left + 5.4, 9.6},
            {left + 5.4, 11.8}, {left + 4.2, 13},  {left + 1.6, 13},  {left + 0.2, 11.8}};
}

Stroke LetterU(double left) {
    return {{left, 3},        {left, 10.6},       {left + 0.8, 12.2}, {left + 2.4, 13},
            {left + 3.6, 13}, {left + 5.2, 12.2}, {left + 6, 10.6},   {left + 6, 3}};
}

std::vector<Stroke> StrokesOf(Glyph glyph) {
    switch (glyph) {
    case Glyph::Open:
        return {{{1.5, 13}, {1.5, 3.2}, {6.2, 3.2}, {7.8, 5.4}, {14.5, 5.4}, {14.5, 13}, {1.5, 13}},
                {{1.5, 8}, {14.5, 8}}};
    case Glyph::Save:
        return {{{2, 2}, {11.6, 2}, {14, 4.4}, {14, 14}, {2, 14}, {2, 2}},
                {{5, 2}, {5, 5.8}, {10.6, 5.8}, {10.6, 2}},
                {{4.6, 14}, {4.6, 9.2}, {11.4, 9.2}, {11.4, 14}}};
    case Glyph::Undo:
        return Undo();
    case Glyph::Redo:
        return Mirrored(Undo());
    case Glyph::Edit:
        return {{{2.4, 13.6}, {3.4, 9.8}, {11, 2.2}, {13.8, 5}, {6.2, 12.6}, {2.4, 13.6}},
                {{9.3, 3.9}, {12.1, 6.7}}};
    case Glyph::ZoomIn: {
        std::vector<Stroke> strokes = Lens();
        strokes.push_back({{4.6, 6.8}, {9, 6.8}});
        strokes.push_back({{6.8, 4.6}, {6.8, 9}});
        return strokes;
    }
    case Glyph::ZoomOut: {
        std::vector<Stroke> strokes = Lens();
        strokes.push_back({{4.6, 6.8}, {9, 6.8}});
        return strokes;
    }
    case Glyph::Fit:
        return {{{2, 5.5}, {2, 2}, {5.5, 2}},
                {{10.5, 2}, {14, 2}, {14, 5.5}},
                {{14, 10.5}, {14, 14}, {10.5, 14}},
                {{5.5, 14}, {2, 14}, {2, 10.5}},
                {{5.5, 6}, {10.5, 6}, {10.5, 10}, {5.5, 10}, {5.5, 6}}};
    case Glyph::Si:
        return {LetterS(1.6), {{12, 3}, {12, 13}}, {{10, 3}, {14, 3}}, {{10, 13}, {14, 13}}};
    case Glyph::Us:
        return {LetterU(1.2), LetterS(9.4)};
    case Glyph::Findings:
        return {{{8, 2}, {14.6, 13.8}, {1.4, 13.8}, {8, 2}}, {{8, 6.4}, {8, 10}}, {{8, 11.4}, {8, 12.4}}};
    case Glyph::Source:
        return {
            {{5.4, 4}, {1.8, 8}, {5.4, 12}}, {{10.6, 4}, {14.2, 8}, {10.6, 12}}, {{9.2, 2.8}, {6.8, 13.2}}};
    }
    return {};
}

/// The colour with the opacity of the white that was painted, as image lists have it.
Pixel Coloured(Pixel painted, drawing::Colour colour) noexcept {
    const std::uint32_t opacity = painted & 0xFFU;
    const auto part = [&](unsigned shift) { return (colour >> shift & 0xFFU) * opacity / 255 << shift; };
    return opacity << 24U | part(16) | part(8) | part(0);
}

} // namespace

Images MakeGlyphs(Scaling scaling, drawing::Colour colour) {
    const int side = scaling(static_cast<int>(kSide));
    const double scale = side / kSide;
    Images images(ImageList_Create(side, side, ILC_COLOR32, kGlyphs, 0));
    for (int i = 0; i < kGlyphs; ++i) {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = side;
        info.bmiHeader.biHeight = -side;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* pixels = nullptr;
        HBITMAP const bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
        if (bitmap == nullptr) {
            break;
        }
        const Surface surface{static_cast<Pixel*>(pixels), side, side};
        Raster raster(surface);
        raster.Clear(0);
        for (const Stroke& stroke : StrokesOf(static_cast<Glyph>(i))) {
            for (std::size_t at = 0; at + 1 < stroke.size(); ++at) {
                const Point from{stroke[at].x * scale, stroke[at].y * scale};
                const Point to{stroke[at + 1].x * scale, stroke[at + 1].y * scale};
                raster.Fill(PieceOf(from, to, kWidth * scale), 0xFFFFFF);
                // Round joints.
                const double half = kWidth * scale / 2;
                raster.Fill(OutlineOf({to.x - half, to.y - half, 2 * half, 2 * half, half}), 0xFFFFFF);
            }
        }
        for (int y = 0; y < side; ++y) {
            for (Pixel& pixel : surface.Row(y)) {
                pixel = Coloured(pixel, colour);
            }
        }
        ImageList_Add(images.get(), bitmap, nullptr);
        DeleteObject(bitmap);
    }
    return images;
}

} // namespace view
