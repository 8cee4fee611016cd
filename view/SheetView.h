#pragma once

#include "view/model/Viewport.h"
#include "view/Painter.h"
#include "view/Window.h"

#include "drawing/DisplayList.h"
#include "drawing/Sheet.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>

namespace view {

/// The sheet: a module as a block with its channels. Zoomed by Ctrl and wheel or by keys,
/// dragged with the mouse or moved by wheel; a pin is picked by a click or by the arrows.
/// Its window text is what a screen reader says: the picked pin in words, or the module.
class SheetView : public Window {
  public:
    struct Events {
        std::function<void(const drawing::PinId&)> picked;
        /// A double click or Enter on a pin.
        std::function<void(const drawing::PinId&)> opened;
        std::function<void()> zoomed;
        /// The words of what went wrong in one of these.
        std::function<void(const std::wstring&)> failed;
    };

    SheetView(HWND parent, int id, Events events);

    /// Another module; it is fitted in.
    void Show(drawing::Sheet sheet, const std::string& icon);
    /// The same module with other values: place and zoom stay.
    void Refresh(drawing::Sheet sheet);
    void Clear();
    const drawing::Sheet& Sheet() const noexcept { return sheet_; }
    const drawing::Drawing& Drawing() const noexcept { return drawing_; }
    HICON Icon() const noexcept { return icon_.get(); }

    /// Marks a pin and brings it into sight; none takes the mark away.
    void Pick(std::optional<drawing::PinId> pin);
    /// The same as a click on the pin does: the lists follow.
    void PickByHand(const drawing::PinId& pin);
    const std::optional<drawing::PinId>& Picked() const noexcept { return picked_; }

    // The pins one after the other, for screen readers: a spot is one of the drawing's.

    std::wstring WordsOf(std::size_t spot) const;
    const std::optional<std::size_t>& PickedSpot() const noexcept { return pickedSpot_; }
    std::optional<std::size_t> SpotAt(POINT onScreen) const;
    /// On the screen.
    RECT AreaOfSpot(std::size_t spot) const;

    void SetScaling(Scaling scaling);
    void ZoomIn();
    void ZoomOut();
    void Fit();
    void ZoomToNatural();
    double Zoom() const noexcept { return viewport_.Zoom(); }

  private:
    struct DestroyTheIcon {
        void operator()(HICON icon) const noexcept { DestroyIcon(icon); }
    };

    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnProblem(const std::wstring& words) override;
    void Paint();
    void OnWheel(WPARAM wParam, LPARAM lParam, bool isLevel);
    void OnButtonDown(LPARAM lParam);
    void OnMove(WPARAM keys, LPARAM lParam);
    bool OnKey(WPARAM key);
    void PickNext(WPARAM key);
    void Repaint();
    void ShowTop();
    void TellZoom();
    void TellName();
    std::wstring WordsOf(const drawing::PinId& id) const;

    Events events_;
    drawing::Sheet sheet_;
    drawing::Drawing drawing_;
    Viewport viewport_;
    std::optional<drawing::PinId> picked_;
    std::optional<std::size_t> pickedSpot_;
    std::unique_ptr<std::remove_pointer_t<HICON>, DestroyTheIcon> icon_;
    std::unique_ptr<Bitmap> bitmap_;
    std::optional<POINT> dragged_;
    int wheel_ = 0;
    bool isShown_ = false;
};

} // namespace view
