#pragma once

#include <windows.h>

#include <functional>
#include <utility>

namespace points {

/// A window that calls something when its message is dispatched.
class Listener {
  public:
    explicit Listener(std::function<void()> heard) : heard_(std::move(heard)) {
        window_ = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Listener::Procedure));
    }
    ~Listener() { DestroyWindow(window_); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    void Post() const { PostMessageW(window_, kMessage, 0, 0); }

  private:
    static constexpr UINT kMessage = WM_APP + 1;
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == kMessage) {
            reinterpret_cast<Listener*>(GetWindowLongPtrW(window, GWLP_USERDATA))->heard_();
            return 0;
        }
        return DefWindowProcW(window, message, wParam, lParam);
    }
    std::function<void()> heard_;
    HWND window_ = nullptr;
};

} // namespace points
