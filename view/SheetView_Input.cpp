#include "view/model/PinWalk.h"
#include "view/SheetAccessible.h"
#include "view/SheetView.h"

#include <windowsx.h>

#include <cstdlib>

namespace view {

namespace {

using drawing::PinId;

/// Pixels, at 96 dots to the inch, that a notch of the wheel or an arrow moves the sheet.
constexpr int kStep = 48;

drawing::Point PointOf(LPARAM lParam) noexcept {
    return {static_cast<double>(GET_X_LPARAM(lParam)), static_cast<double>(GET_Y_LPARAM(lParam))};
}

} // namespace

LRESULT SheetView::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_SIZE:
        viewport_.SetWindow(
            {static_cast<double>(GET_X_LPARAM(lParam)), static_cast<double>(GET_Y_LPARAM(lParam))});
        bitmap_.reset();
        TellZoom();
        return 0;
    case WM_GETOBJECT:
        if (const LRESULT answer = AnswerGetObject(*this, wParam, lParam)) {
            return answer;
        }
        break;
    case WM_ERASEBKGND:
        return 1;
    case WM_PAINT:
        Paint();
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        Repaint();
        return 0;
    case WM_LBUTTONDOWN:
        OnButtonDown(lParam);
        return 0;
    case WM_LBUTTONDBLCLK:
        if (const auto pin = viewport_.PinAt(drawing_, PointOf(lParam)); pin && events_.opened) {
            events_.opened(*pin);
        }
        return 0;
    case WM_MOUSEMOVE:
        OnMove(wParam, lParam);
        return 0;
    case WM_LBUTTONUP:
        if (dragged_) {
            ReleaseCapture();
        }
        return 0;
    case WM_CAPTURECHANGED:
        dragged_.reset();
        return 0;
    case WM_MOUSEWHEEL:
    case WM_MOUSEHWHEEL:
        OnWheel(wParam, lParam, message == WM_MOUSEHWHEEL);
        return 0;
    case WM_KEYDOWN:
        if (OnKey(wParam)) {
            return 0;
        }
        break;
    default:
        break;
    }
    return Window::OnMessage(message, wParam, lParam);
}

void SheetView::OnWheel(WPARAM wParam, LPARAM lParam, bool isLevel) {
    const int delta = GET_WHEEL_DELTA_WPARAM(wParam);
    if ((GET_KEYSTATE_WPARAM(wParam) & MK_CONTROL) != 0 && !isLevel) {
        // A fine wheel turns by less than a notch at a time.
        wheel_ += delta;
        POINT place{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
        ScreenToClient(Handle(), &place);
        const drawing::Point pixel{static_cast<double>(place.x), static_cast<double>(place.y)};
        for (; std::abs(wheel_) >= WHEEL_DELTA; wheel_ -= wheel_ > 0 ? WHEEL_DELTA : -WHEEL_DELTA) {
            viewport_.ZoomStep(pixel, wheel_ > 0);
        }
        TellZoom();
        return;
    }
    const double distance = double(Scaling::Of(Handle())(kStep)) * delta / WHEEL_DELTA;
    const bool isSideways = isLevel || (GET_KEYSTATE_WPARAM(wParam) & MK_SHIFT) != 0;
    viewport_.Drag(isSideways ? (isLevel ? -distance : distance) : 0, isSideways ? 0 : distance);
    Repaint();
}

void SheetView::OnButtonDown(LPARAM lParam) {
    SetFocus(Handle());
    if (const auto pin = viewport_.PinAt(drawing_, PointOf(lParam))) {
        PickByHand(*pin);
    }
    dragged_ = POINT{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    SetCapture(Handle());
}

void SheetView::OnMove(WPARAM keys, LPARAM lParam) {
    if (!dragged_) {
        return;
    }
    if ((keys & MK_LBUTTON) == 0) {
        ReleaseCapture(); // the button came up where nobody told this window
        return;
    }
    const POINT place{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    viewport_.Drag(place.x - dragged_->x, place.y - dragged_->y);
    dragged_ = place;
    Repaint();
}

bool SheetView::OnKey(WPARAM key) {
    const bool isMoving = GetKeyState(VK_CONTROL) < 0;
    const double step = Scaling::Of(Handle())(kStep);
    switch (key) {
    case VK_LEFT:
    case VK_RIGHT:
    case VK_UP:
    case VK_DOWN:
        if (isMoving) {
            viewport_.Drag(key == VK_LEFT    ? step
                           : key == VK_RIGHT ? -step
                                             : 0,
                           key == VK_UP     ? step
                           : key == VK_DOWN ? -step
                                            : 0);
            Repaint();
        } else {
            PickNext(key);
        }
        return true;
    case VK_RETURN:
        if (picked_ && events_.opened) {
            events_.opened(*picked_);
        }
        return true;
    case VK_ADD:
    case VK_OEM_PLUS:
        ZoomIn();
        return true;
    case VK_SUBTRACT:
    case VK_OEM_MINUS:
        ZoomOut();
        return true;
    case VK_HOME:
        Fit();
        return true;
    default:
        return false;
    }
}

void SheetView::PickNext(WPARAM key) {
    const Direction direction = key == VK_LEFT    ? Direction::Left
                                : key == VK_RIGHT ? Direction::Right
                                : key == VK_UP    ? Direction::Up
                                                  : Direction::Down;
    if (const auto next = NextPin(sheet_, drawing_, picked_, direction)) {
        PickByHand(*next);
    }
}

void SheetView::PickByHand(const PinId& pin) {
    Pick(pin);
    if (events_.picked) {
        events_.picked(pin);
    }
}

} // namespace view
