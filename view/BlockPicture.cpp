#include "view/BlockPicture.h"

#include "view/Painter.h"
#include "view/resource.h"
#include "view/Window.h"

#include "bench/Text.h"

#include "page/Icon.h"

#include <cmath>
#include <cstddef>
#include <utility>

namespace view {

namespace {

constexpr double kScale = 2;
/// Larger pictures are of no use to anybody, and some programs open none.
constexpr double kMostPixels = 120e6;

} // namespace

std::string PngOf(const drawing::Drawing& drawing, HICON icon) {
    if (drawing.width * drawing.height * kScale * kScale > kMostPixels) {
        throw bench::BenchError(E_INVALIDARG, bench::Utf8(Text(IDS_TOO_LARGE)));
    }
    const Bitmap bitmap(static_cast<int>(std::ceil(drawing.width * kScale)),
                        static_cast<int>(std::ceil(drawing.height * kScale)));
    View view;
    view.scale = kScale;
    view.icon = icon;
    PaintDrawing(bitmap, drawing, view);
    page::Pixels pixels{
        static_cast<std::size_t>(bitmap.Width()), static_cast<std::size_t>(bitmap.Height()), {}};
    pixels.bytes.reserve(pixels.width * pixels.height * 4);
    for (int y = 0; y < bitmap.Height(); ++y) {
        for (const Pixel pixel : bitmap.Pixels().Row(y)) {
            for (const unsigned shift : {16U, 8U, 0U}) {
                pixels.bytes += static_cast<char>(pixel >> shift & 0xFFU);
            }
            pixels.bytes += '\xFF';
        }
    }
    return page::Png(pixels);
}

} // namespace view
