#include "view/Clipboard.h"

#include <cstddef>
#include <cstring>

namespace view {

namespace {

/// Another program may have it for a moment.
bool OpenTheClipboard(HWND owner) noexcept {
    constexpr int kTries = 20;
    constexpr DWORD kPause = 10;
    for (int i = 0; i < kTries; ++i) {
        if (OpenClipboard(owner) != FALSE) {
            return true;
        }
        Sleep(kPause);
    }
    return false;
}

} // namespace

bool PutOnClipboard(HWND owner, const std::wstring& text) {
    const std::size_t size = (text.size() + 1) * sizeof(wchar_t);
    HGLOBAL const memory = GlobalAlloc(GMEM_MOVEABLE, size);
    if (memory == nullptr || !OpenTheClipboard(owner)) {
        GlobalFree(memory);
        return false;
    }
    std::memcpy(GlobalLock(memory), text.c_str(), size);
    GlobalUnlock(memory);
    EmptyClipboard();
    const bool isThere = SetClipboardData(CF_UNICODETEXT, memory) != nullptr;
    if (!isThere) {
        // cppcheck-suppress doubleFree ; it is the clipboard's only when that took it
        GlobalFree(memory);
    }
    CloseClipboard();
    return isThere;
}

} // namespace view
