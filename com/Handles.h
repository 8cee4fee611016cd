#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

namespace com {

struct HandleCloser {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
/// An open file; closes itself. Empty, not INVALID_HANDLE_VALUE, when there is none.
using FileHandle = std::unique_ptr<HANDLE, HandleCloser>;

/// What CreateFileW answered.
inline FileHandle OwnFile(HANDLE opened) noexcept {
    return FileHandle(opened == INVALID_HANDLE_VALUE ? nullptr : opened);
}

struct ModuleCloser {
    void operator()(HMODULE module) const noexcept { FreeLibrary(module); }
};
/// A loaded module; unloads itself.
using ModuleHandle = std::unique_ptr<std::remove_pointer_t<HMODULE>, ModuleCloser>;

} // namespace com
