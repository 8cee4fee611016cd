#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <utility>

// Windows of a host, which do something when the component lets its messages be
// handled.

namespace support {

/// Asks again and again until it holds. A failed test when it does not within a minute.
template <class F>
void Await(const char* what, F&& holds) {
    constexpr ULONGLONG kMinute = 60'000;
    const ULONGLONG begin = GetTickCount64();
    while (!holds()) {
        if (GetTickCount64() - begin > kMinute) {
            ADD_FAILURE() << "no " << what << " within a minute";
            return;
        }
        Sleep(1);
    }
}

/// Until a timer of the window has expired and its message waits. Who makes it a message
/// may need longer than the timer.
inline void AwaitTimer(HWND window) {
    Await("timer", [window] {
        MSG message;
        return PeekMessageW(&message, window, WM_TIMER, WM_TIMER, PM_NOREMOVE) != FALSE;
    });
}

/// Until keys go to a window of this thread.
inline void AwaitFront(HWND window) {
    Await("window in front", [window] {
        SetForegroundWindow(window);
        SetFocus(window);
        return GetForegroundWindow() == window && GetFocus() == window;
    });
}

/// A window with a procedure of its own.
class HostWindow {
  public:
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;
    HWND Window() const noexcept { return window_; }
    /// How many of its messages it has handled.
    int Handled() const noexcept { return handled_; }

  protected:
    explicit HostWindow(DWORD style = 0, HWND parent = HWND_MESSAGE)
        : window_(CreateWindowExW(WS_EX_TOOLWINDOW, L"STATIC", L"", style, 0, 0, 50, 50, parent, nullptr,
                                  nullptr, nullptr)) {
        SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&HostWindow::Procedure));
    }
    virtual ~HostWindow() { DestroyWindow(window_); }
    /// The message that it is about, counted already.
    virtual void Handle() = 0;
    virtual UINT Message() const { return WM_APP + 1; }

  private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* self = reinterpret_cast<HostWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (self != nullptr && message == self->Message()) {
            ++self->handled_;
            self->Handle();
            return 0;
        }
        return DefWindowProcW(window, message, wParam, lParam);
    }

    HWND window_;
    int handled_ = 0;
};

/// Calls something whenever a message that was posted to it is handled.
class Listener : public HostWindow {
  public:
    explicit Listener(std::function<void()> heard) : heard_(std::move(heard)) {}
    void Post() const { PostMessageW(Window(), WM_APP + 1, 0, 0); }

  private:
    void Handle() override { heard_(); }
    std::function<void()> heard_;
};

/// A listener with one message posted: it acts at the next turn that the thread's
/// message loop is given.
class OnYield final : public Listener {
  public:
    explicit OnYield(std::function<void()> action) : Listener(std::move(action)) { Post(); }
    bool Ran() const noexcept { return Handled() != 0; }
};

// Those that follow always have a message waiting. So that a loop which waits for
// an end of them fails its test instead of hanging, each gives up.

/// Posts its message to itself again whenever it handles it.
class Reposter final : public HostWindow {
  public:
    static constexpr int kGivesUp = 1000;

    /// Calls `each` with the count of its messages, after the posting.
    explicit Reposter(std::function<void(int)> each = {}) : each_(std::move(each)) { Post(); }

  private:
    void Post() const { PostMessageW(Window(), WM_APP + 1, 0, 0); }
    void Handle() override {
        if (Handled() < kGivesUp) {
            Post();
        }
        if (each_) {
            each_(Handled());
        }
    }
    std::function<void(int)> each_;
};

/// A timer of 10 ms whose handler takes 20. It has expired when it is made.
class SlowTimer final : public HostWindow {
  public:
    static constexpr int kGivesUp = 50;

    SlowTimer() {
        SetTimer(Window(), 1, 10, nullptr);
        AwaitTimer(Window());
    }

  private:
    UINT Message() const override { return WM_TIMER; }
    void Handle() override {
        Sleep(20);
        if (Handled() == kGivesUp) {
            KillTimer(Window(), 1);
        }
    }
};

/// A visible window that does not validate what it is asked to paint, before the
/// message of this count.
class Unpainted final : public HostWindow {
  public:
    explicit Unpainted(int validates = 1000, HWND parent = nullptr)
        : HostWindow((parent == nullptr ? WS_POPUP : WS_CHILD) | WS_VISIBLE, parent), validates_(validates) {
        InvalidateRect(Window(), nullptr, FALSE);
    }

  private:
    UINT Message() const override { return WM_PAINT; }
    void Handle() override {
        if (Handled() == validates_) {
            ValidateRect(Window(), nullptr);
        }
    }
    int validates_;
};

} // namespace support
