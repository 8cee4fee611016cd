#include "view/Splitter.h"

#include "view/resource.h"

#include <windowsx.h>

#include <utility>

namespace view {

Splitter::Splitter(HWND parent, int id, bool isUpright, Moved moved)
    : isUpright_(isUpright), moved_(std::move(moved)) {
    Shape shape{.className = VIEW_SPLITTER_CLASS};
    shape.style = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS;
    shape.parent = parent;
    shape.id = id;
    Create(shape);
}

int Splitter::PlaceOf(LPARAM lParam) const noexcept {
    return isUpright_ ? GET_X_LPARAM(lParam) : GET_Y_LPARAM(lParam);
}

LRESULT Splitter::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_SETCURSOR:
        SetCursor(LoadCursorW(nullptr, isUpright_ ? IDC_SIZEWE : IDC_SIZENS));
        return TRUE;
    case WM_ERASEBKGND: {
        RECT area{};
        GetClientRect(Handle(), &area);
        FillRect(reinterpret_cast<HDC>(wParam), &area, GetSysColorBrush(COLOR_BTNFACE));
        return 1;
    }
    case WM_LBUTTONDOWN:
        isDragged_ = true;
        start_ = PlaceOf(lParam);
        SetCapture(Handle());
        return 0;
    case WM_MOUSEMOVE:
        if (isDragged_ && PlaceOf(lParam) != start_) {
            moved_(PlaceOf(lParam) - start_); // moves this window, so the place in it stays
        }
        return 0;
    case WM_LBUTTONUP:
        ReleaseCapture();
        return 0;
    case WM_CAPTURECHANGED:
        isDragged_ = false;
        return 0;
    default:
        return Window::OnMessage(message, wParam, lParam);
    }
}

} // namespace view
