#pragma once

#include <windows.h>

// The clipboard is the desktop's. Whenever it changes, other programs open it for a moment,
// such as the one that hands it on to another display.

namespace support {

/// Opens it for a window, as soon as nobody else has it open. False after a minute, and
/// when it is not to be waited for.
template <class F>
bool OpenClipboardOf(HWND window, F&& isVain) {
    constexpr ULONGLONG kMinute = 60'000;
    const ULONGLONG begin = GetTickCount64();
    while (OpenClipboard(window) == FALSE) {
        if (isVain() || GetTickCount64() - begin > kMinute) {
            return false;
        }
        Sleep(5);
    }
    return true;
}

/// The clipboard, open for a window until this object is gone: no other window can read it
/// meanwhile.
class OpenedClipboard {
  public:
    explicit OpenedClipboard(HWND window) : isOpen_(OpenClipboardOf(window, [] { return false; })) {}
    ~OpenedClipboard() {
        if (isOpen_) {
            CloseClipboard();
        }
    }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;
    explicit operator bool() const noexcept { return isOpen_; }

  private:
    bool isOpen_;
};

} // namespace support
