#pragma once

#include "view/Window.h"

#include <functional>
#include <string>

namespace view {

/// A bar between two parts of a window that gives one of them more room: dragged, or moved
/// by the arrows while it has the focus.
class Splitter : public Window {
  public:
    struct Events {
        /// Gets how many pixels it is to move, to the right or down.
        std::function<void(int distance)> moved;
        /// Thousandths of the room that one part has.
        std::function<int()> share;
        /// The keyboard is to go where it came from.
        std::function<void()> left;
    };

    /// `name` is what a screen reader says.
    Splitter(HWND parent, int id, bool isUpright, const std::wstring& name, Events events);
    static constexpr int kWidth = 5;

    bool IsUpright() const noexcept { return isUpright_; }
    int Share() const { return events_.share(); }

  private:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    bool OnKey(WPARAM key);
    void Move(int distance);
    int PlaceOf(LPARAM lParam) const noexcept;

    bool isUpright_;
    Events events_;
    bool isDragged_ = false;
    int start_ = 0;
};

} // namespace view
