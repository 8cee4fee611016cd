#pragma once

#include "drawing/DisplayList.h"

#include <optional>

namespace view {

/// Which part of the sheet a window shows, and how large. Screen units are the window's
/// pixels from its upper left corner.
class Viewport {
  public:
    /// A sheet's unit is so many pixels at least and at most, at 96 dots to the inch.
    static constexpr double kLeast = 0.05;
    static constexpr double kMost = 8;
    /// Of the sheet stays in sight, or as much as it has.
    static constexpr double kInSight = 48;
    /// Around a sheet that fits.
    static constexpr double kMargin = 16;

    struct Size {
        double width = 0;
        double height = 0;
    };

    /// Another sheet; it is fitted in.
    void SetSheet(const Size& sheet);
    /// The same sheet has another size. Zoom and place stay; one that was fitted in is fitted
    /// in again.
    void SetSheetSize(const Size& sheet) noexcept;
    /// The window has another size. What was in its middle stays there; a sheet that was
    /// fitted in is fitted in again.
    void SetWindow(const Size& window);
    /// The monitor has so many dots to an inch, 96 without scaling. What was in the middle
    /// stays there, and has the same size to the eye.
    void SetDpi(double dpi);

    /// Pixels for a unit of the sheet.
    double Scale() const noexcept { return zoom_ * dpi_ / kUnscaledDpi; }
    /// 1 is the natural size, whatever the monitor.
    double Zoom() const noexcept { return zoom_; }
    bool IsFitted() const noexcept { return isFitted_; }

    drawing::Point ToScreen(const drawing::Point& place) const noexcept;
    drawing::Point ToSheet(const drawing::Point& pixel) const noexcept;
    drawing::Rectangle ToScreen(const drawing::Rectangle& area) const noexcept;
    /// The part of the sheet's plane that the window shows.
    drawing::Rectangle Seen() const noexcept;

    /// So many times as large; what lies under the pixel stays there.
    void ZoomAbout(const drawing::Point& pixel, double times) noexcept;
    /// The next larger or smaller of the usual sizes, about the middle of the window.
    void ZoomIn() noexcept;
    void ZoomOut() noexcept;
    /// Of the usual sizes, about a pixel: what a turn of the wheel does.
    void ZoomStep(const drawing::Point& pixel, bool isLarger) noexcept;
    /// The natural size, about the middle of the window.
    void ZoomToNatural() noexcept;
    /// The whole sheet in the middle, in its natural size at most.
    void Fit() noexcept;
    /// Moves the sheet by so many pixels.
    void Drag(double x, double y) noexcept;
    /// Moves the sheet as little as shows this part of it, with a margin.
    void Reveal(const drawing::Rectangle& area) noexcept;

    std::optional<drawing::PinId> PinAt(const drawing::Drawing& sheet,
                                        const drawing::Point& pixel) const noexcept;

  private:
    static constexpr double kUnscaledDpi = 96;

    drawing::Point Middle() const noexcept { return {window_.width / 2, window_.height / 2}; }
    void SetZoom(const drawing::Point& pixel, double zoom) noexcept;
    void KeepInSight() noexcept;

    Size sheet_;
    Size window_;
    double dpi_ = kUnscaledDpi;
    double zoom_ = 1;
    /// The pixel of the sheet's upper left corner.
    drawing::Point origin_{};
    bool isFitted_ = true;
};

/// What an item covers, roughly for a text; a painter leaves out what it does not see.
drawing::Rectangle BoundsOf(const drawing::Item& item);
bool Overlap(const drawing::Rectangle& left, const drawing::Rectangle& right) noexcept;

} // namespace view
