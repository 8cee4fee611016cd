#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

namespace com {

struct HandleCloser {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
/// An object of the system; closes itself. Empty, not INVALID_HANDLE_VALUE, when there is none.
using Handle = std::unique_ptr<HANDLE, HandleCloser>;

/// What CreateFileW answered.
inline Handle OwnFile(HANDLE opened) noexcept {
    return Handle(opened == INVALID_HANDLE_VALUE ? nullptr : opened);
}

struct ModuleCloser {
    void operator()(HMODULE module) const noexcept { FreeLibrary(module); }
};
/// A loaded module; unloads itself.
using ModuleHandle = std::unique_ptr<std::remove_pointer_t<HMODULE>, ModuleCloser>;

} // namespace com
