#pragma once

#include "view/Window.h"

#include <functional>

namespace view {

/// A bar between two parts of a window, dragged to give one of them more room.
class Splitter : public Window {
  public:
    /// Gets how many pixels it was dragged; false when it does not follow.
    using Moved = std::function<void(int distance)>;

    Splitter(HWND parent, int id, bool isUpright, Moved moved);
    static constexpr int kWidth = 5;

  private:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    int PlaceOf(LPARAM lParam) const noexcept;

    bool isUpright_;
    Moved moved_;
    bool isDragged_ = false;
    int start_ = 0;
};

} // namespace view
