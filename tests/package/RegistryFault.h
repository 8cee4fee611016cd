#pragma once

#include "tests/support/ImportPatch.h"

#include <windows.h>

#include <string>

namespace package {

/// Lets one write of a DLL to the registry fail with "access denied": making a
/// key, writing a value, deleting a key or a tree. Or every one from there on. Or every
/// one at a key that is protected from changes.
/// Writes that do not fail go where they went before: to the system, or to a
/// MemoryRegistry.
class RegistryFault {
  public:
    enum class Kind { Once, ForEver };

    /// The first write is number 1; none fails when `number` is 0.
    RegistryFault(HMODULE dll, int number, Kind kind = Kind::Once);
    /// The key's path has this text in it.
    RegistryFault(HMODULE dll, std::wstring protectedKey);
    ~RegistryFault();
    RegistryFault(const RegistryFault&) = delete;
    RegistryFault& operator=(const RegistryFault&) = delete;

    /// Writes that were asked for so far.
    int Writes() const noexcept { return writes_; }
    /// True when the DLL imports all that it could write with.
    bool IsComplete() const noexcept;

  private:
    bool Fails(LPCWSTR path = nullptr) noexcept;

    static LSTATUS WINAPI CreateKey(HKEY key, LPCWSTR path, DWORD reserved, LPWSTR type, DWORD options,
                                    REGSAM access, SECURITY_ATTRIBUTES* security, HKEY* result,
                                    DWORD* disposition);
    static LSTATUS WINAPI SetValue(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data,
                                   DWORD size);
    static LSTATUS WINAPI DeleteTree(HKEY key, LPCWSTR path);
    static LSTATUS WINAPI DeleteKey(HKEY key, LPCWSTR path);

    int number_;
    Kind kind_;
    std::wstring protectedKey_;
    int writes_ = 0;
    support::ImportPatch createKey_;
    support::ImportPatch setValue_;
    support::ImportPatch deleteTree_;
    support::ImportPatch deleteKey_;
};

} // namespace package
