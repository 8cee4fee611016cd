#include "dialogs/Clipboard.h"

#include <algorithm>
#include <cwchar>
#include <memory>
#include <type_traits>

namespace tam {

namespace {

struct CloseClipboardAtEnd {
    ~CloseClipboardAtEnd() { CloseClipboard(); }
};

struct FreeMemory {
    void operator()(HGLOBAL memory) const noexcept { GlobalFree(memory); }
};
using Memory = std::unique_ptr<std::remove_pointer_t<HGLOBAL>, FreeMemory>;

/// The text as the clipboard takes it; empty when there is no memory for it.
Memory MemoryOf(const std::wstring& text) noexcept {
    const std::size_t length = text.size() + 1;
    Memory memory(GlobalAlloc(GMEM_MOVEABLE, length * sizeof(wchar_t)));
    if (auto* const place = memory ? static_cast<wchar_t*>(GlobalLock(memory.get())) : nullptr) {
        std::copy_n(text.c_str(), length, place);
        GlobalUnlock(memory.get());
    }
    return memory;
}

} // namespace

std::optional<std::wstring> ClipboardText(HWND window) {
    if (OpenClipboard(window) == FALSE) {
        return std::nullopt;
    }
    const CloseClipboardAtEnd close;
    const HANDLE data = GetClipboardData(CF_UNICODETEXT);
    const auto* text = data != nullptr ? static_cast<const wchar_t*>(GlobalLock(data)) : nullptr;
    if (text == nullptr) {
        return std::nullopt;
    }
    std::wstring copy(text, wcsnlen(text, GlobalSize(data) / sizeof(wchar_t)));
    GlobalUnlock(data);
    return copy;
}

void CopyToClipboard(HWND window, const std::wstring& text) noexcept {
    Memory memory = MemoryOf(text);
    if (!memory || OpenClipboard(window) == FALSE) {
        return;
    }
    const CloseClipboardAtEnd close;
    EmptyClipboard();
    if (SetClipboardData(CF_UNICODETEXT, memory.get()) != nullptr) {
        static_cast<void>(memory.release()); // the clipboard's own from here on
    }
}

} // namespace tam
