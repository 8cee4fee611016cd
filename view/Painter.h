#pragma once

#include "view/Raster.h"

#include "drawing/DisplayList.h"
#include "drawing/Palette.h"
#include "drawing/Sheet.h"

#include <windows.h>

#include <optional>

namespace view {

/// A bitmap with a device context, for shapes of the raster and texts of the system.
class Bitmap {
  public:
    Bitmap(int width, int height);
    ~Bitmap();
    Bitmap(const Bitmap&) = delete;
    Bitmap& operator=(const Bitmap&) = delete;

    HDC Context() const noexcept { return context_; }
    const Surface& Pixels() const noexcept { return surface_; }
    int Width() const noexcept { return surface_.width; }
    int Height() const noexcept { return surface_.height; }

  private:
    HDC context_ = nullptr;
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ former_ = nullptr;
    Surface surface_;
};

/// Colours of the system in the place of the drawing's own, for those who chose high
/// contrast.
struct SystemColours {
    drawing::Colour window;
    drawing::Colour text;
    drawing::Colour picked;
    drawing::Colour pickedText;
    static SystemColours Now() noexcept;
};

/// How a drawing is shown.
struct View {
    /// Pixels of a unit of the drawing.
    double scale = 1;
    /// The pixel at which the drawing begins.
    drawing::Point at{0, 0};
    drawing::Scheme scheme = drawing::Scheme::Light;
    std::optional<SystemColours> system = std::nullopt;
    std::optional<drawing::PinId> picked = std::nullopt;
    bool hasFocus = false;
    /// The module's icon; may be null.
    HICON icon = nullptr;
};

/// Paints a drawing over the whole bitmap, its background too. What lies outside is left
/// out, so a large drawing costs no more than what is seen of it.
void PaintDrawing(const Bitmap& bitmap, const drawing::Drawing& drawing, const View& view);

} // namespace view
