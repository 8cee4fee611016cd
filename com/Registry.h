#pragma once

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

namespace com {

/// An open registry key; closes itself. Move-only.
class RegistryKey {
  public:
    RegistryKey() noexcept = default;
    explicit RegistryKey(HKEY key) noexcept : key_(key) {}
    RegistryKey(RegistryKey&& other) noexcept : key_(std::exchange(other.key_, nullptr)) {}
    RegistryKey& operator=(RegistryKey&& other) noexcept {
        std::swap(key_, other.key_);
        return *this;
    }
    ~RegistryKey() {
        if (key_ != nullptr) {
            RegCloseKey(key_);
        }
    }
    HKEY Get() const noexcept { return key_; }
    explicit operator bool() const noexcept { return key_ != nullptr; }

  private:
    HKEY key_ = nullptr;
};

/// The content of a key and everything below it.
struct RegistryTree {
    struct Value {
        std::wstring name;
        DWORD type = REG_SZ;
        std::vector<BYTE> data;

        bool operator==(const Value&) const = default;
    };
    std::wstring name;
    std::vector<Value> values;
    std::vector<RegistryTree> keys;
};

/// Equal but for letter case, as the registry's names and paths are compared.
bool SameText(const std::wstring& left, const std::wstring& right);
/// The key right below; nothing when there is none.
const RegistryTree* Child(const RegistryTree& tree, const std::wstring& name);

// All functions throw CallError with the HRESULT of the Win32 error. Those that
// write take no memory: what was begun must be taken back where there is none.

/// Opens a key for reading; empty when there is none. The view is an access flag:
/// 0 for this process's own.
RegistryKey OpenKey(HKEY root, const wchar_t* path, REGSAM view = 0);
/// The text of a value, of the default value unless one is named; empty when the key has none.
std::wstring ReadText(const RegistryKey& key, const wchar_t* value = nullptr);
/// The names of the keys right below a key.
std::vector<std::wstring> SubkeyNames(const RegistryKey& key);
/// A text value; an empty name is the default value.
RegistryTree::Value TextValue(const std::wstring& name, const std::wstring& text);
/// Reads a key and all below it. The key must exist.
RegistryTree ReadTree(HKEY root, const std::wstring& path);
/// Writes a value, making the key.
void WriteValue(HKEY root, const wchar_t* path, const RegistryTree::Value& value);
/// Writes a key and all below it.
void WriteTree(HKEY root, const wchar_t* path, const RegistryTree& tree);
/// Deletes a key and all below it; none there is no error.
void DeleteTree(HKEY root, const wchar_t* path);
/// Deletes a key that holds neither keys nor values.
void DeleteIfEmpty(HKEY root, const wchar_t* path);

} // namespace com
