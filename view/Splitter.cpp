#include "view/Splitter.h"

#include "view/resource.h"
#include "view/SplitterAccessible.h"

#include <windowsx.h>

#include <utility>

namespace view {

namespace {

/// Pixels, at 96 dots to the inch, that an arrow moves it.
constexpr int kStep = 16;
/// More than any window has: as far as it goes.
constexpr int kFar = 100000;

} // namespace

Splitter::Splitter(HWND parent, int id, bool isUpright, const std::wstring& name, Events events)
    : isUpright_(isUpright), events_(std::move(events)) {
    Shape shape{.className = VIEW_SPLITTER_CLASS};
    shape.title = name.c_str();
    shape.style = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS;
    shape.parent = parent;
    shape.id = id;
    Create(shape);
}

int Splitter::PlaceOf(LPARAM lParam) const noexcept {
    return isUpright_ ? GET_X_LPARAM(lParam) : GET_Y_LPARAM(lParam);
}

void Splitter::Move(int distance) {
    events_.moved(distance);
    NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, Handle(), OBJID_CLIENT, CHILDID_SELF);
}

bool Splitter::OnKey(WPARAM key) {
    const int step = Scaling::Of(Handle())(kStep);
    if (key == VK_ESCAPE || key == VK_RETURN) {
        events_.left();
    } else if (key == static_cast<WPARAM>(isUpright_ ? VK_LEFT : VK_UP)) {
        Move(-step);
    } else if (key == static_cast<WPARAM>(isUpright_ ? VK_RIGHT : VK_DOWN)) {
        Move(step);
    } else if (key == VK_HOME) {
        Move(-kFar);
    } else if (key == VK_END) {
        Move(kFar);
    } else {
        return false;
    }
    return true;
}

LRESULT Splitter::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_SETCURSOR:
        SetCursor(LoadCursorW(nullptr, isUpright_ ? IDC_SIZEWE : IDC_SIZENS));
        return TRUE;
    case WM_ERASEBKGND: {
        RECT area{};
        GetClientRect(Handle(), &area);
        FillRect(reinterpret_cast<HDC>(wParam), &area,
                 GetSysColorBrush(GetFocus() == Handle() ? COLOR_HIGHLIGHT : COLOR_BTNFACE));
        return 1;
    }
    case WM_GETOBJECT:
        if (const LRESULT answer = AnswerGetObject(*this, wParam, lParam)) {
            return answer;
        }
        break;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        InvalidateRect(Handle(), nullptr, TRUE);
        return 0;
    case WM_KEYDOWN:
        if (OnKey(wParam)) {
            return 0;
        }
        break;
    case WM_LBUTTONDOWN:
        isDragged_ = true;
        start_ = PlaceOf(lParam);
        SetCapture(Handle());
        return 0;
    case WM_MOUSEMOVE:
        if (isDragged_ && (wParam & MK_LBUTTON) == 0) {
            ReleaseCapture(); // the button came up where nobody told this window
        } else if (isDragged_ && PlaceOf(lParam) != start_) {
            Move(PlaceOf(lParam) - start_); // moves this window, so the place in it stays
        }
        return 0;
    case WM_LBUTTONUP:
        ReleaseCapture();
        return 0;
    case WM_CAPTURECHANGED:
        isDragged_ = false;
        return 0;
    default:
        break;
    }
    return Window::OnMessage(message, wParam, lParam);
}

} // namespace view
