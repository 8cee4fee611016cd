#pragma once

#include "tests/package/Snapshot.h"
#include "tests/support/ImportPatch.h"

#include <array>
#include <cwchar>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace package {

struct TextLess {
    bool operator()(const std::wstring& left, const std::wstring& right) const noexcept {
        return _wcsicmp(left.c_str(), right.c_str()) < 0;
    }
};

/// A registry in memory that one DLL works on in place of the system's, with
/// what the system's has below Software\Classes of one scope at the start. A
/// call of the system's goes to another process; one of these takes a
/// thousandth of the time, so that each write of hundreds can fail in its turn.
class MemoryRegistry {
  public:
    using Values = std::map<std::wstring, Value, TextLess>;
    /// By their paths below the scope's root, all with their parents.
    using Keys = std::map<std::wstring, Values, TextLess>;

    MemoryRegistry(HMODULE dll, Scope scope);
    ~MemoryRegistry();
    MemoryRegistry(const MemoryRegistry&) = delete;
    MemoryRegistry& operator=(const MemoryRegistry&) = delete;

    /// True when the DLL reaches the registry by these functions alone.
    bool IsComplete() const;
    /// The keys as they are, to be compared.
    const Keys& Content() const noexcept { return keys_; }
    /// What a snapshot would have.
    Lines LinesOf(const Keys& keys) const;
    /// Keys that the DLL has opened and not closed.
    std::size_t OpenKeys() const noexcept { return open_.size(); }

  private:
    /// The path of a key: below one that is open, or below the root.
    std::wstring Path(HKEY key, LPCWSTR below) const;
    void Make(const std::wstring& path);
    HKEY Open(const std::wstring& path);
    /// What lies below a key, however deep.
    std::pair<Keys::iterator, Keys::iterator> Below(const std::wstring& path);
    /// Names of the keys right below one.
    std::vector<std::wstring> Children(const std::wstring& path);
    const Value* Find(HKEY key, LPCWSTR name) const;

    static LSTATUS WINAPI OpenKey(HKEY key, LPCWSTR path, DWORD options, REGSAM access, HKEY* result);
    static LSTATUS WINAPI CreateKey(HKEY key, LPCWSTR path, DWORD reserved, LPWSTR type, DWORD options,
                                    REGSAM access, SECURITY_ATTRIBUTES* security, HKEY* result,
                                    DWORD* disposition);
    static LSTATUS WINAPI CloseKey(HKEY key);
    static LSTATUS WINAPI SetValue(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data,
                                   DWORD size);
    static LSTATUS WINAPI QueryValue(HKEY key, LPCWSTR name, DWORD* reserved, DWORD* type, BYTE* data,
                                     DWORD* size);
    static LSTATUS WINAPI GetValue(HKEY key, LPCWSTR path, LPCWSTR name, DWORD flags, DWORD* type, void* data,
                                   DWORD* size);
    static LSTATUS WINAPI EnumKey(HKEY key, DWORD index, LPWSTR name, DWORD* length, DWORD* reserved,
                                  LPWSTR type, DWORD* typeLength, FILETIME* written);
    static LSTATUS WINAPI EnumValue(HKEY key, DWORD index, LPWSTR name, DWORD* length, DWORD* reserved,
                                    DWORD* type, BYTE* data, DWORD* size);
    static LSTATUS WINAPI DeleteTree(HKEY key, LPCWSTR path);
    static LSTATUS WINAPI DeleteKey(HKEY key, LPCWSTR path);

    Scope scope_;
    Keys keys_;
    std::map<HKEY, std::wstring> open_;
    /// Of the key whose names are being asked for, one after the other.
    std::wstring enumeratedPath_;
    std::vector<std::wstring> enumerated_;
    ULONG_PTR lastNumber_ = 0;
    std::array<support::ImportPatch, 10> patches_;
};

} // namespace package
