#pragma once

#include <windows.h>

#include <string>

namespace com {

// 64-bit Windows keeps the classes and interfaces of 32-bit and of 64-bit
// processes apart: each kind of process has a view of the registry. Names of
// programs (ProgIDs) and type libraries are there once, for both; a type library
// has a file for each kind.

/// The kind of this process, and the other one, as a type library's keys name them.
inline constexpr const wchar_t* kThisKind = sizeof(void*) == 8 ? L"win64" : L"win32";
inline constexpr const wchar_t* kOtherKind = sizeof(void*) == 8 ? L"win32" : L"win64";

/// The access flag that opens a key in the view of the other kind of process; 0
/// on a 32-bit system, which has one view.
REGSAM OtherView() noexcept;

/// How this process reaches a file that one of the other kind has registered: the
/// system's folder has the same name for both kinds and is another for each.
std::wstring PathOfOtherKind(const std::wstring& path);

} // namespace com
