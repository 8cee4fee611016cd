#include "com/Registry.h"

#include "com/Boundary.h"

#include <algorithm>
#include <cstring>

namespace com {

namespace {

/// The longest name of a registry key and of a value, with the closing NUL.
constexpr DWORD kMaxKeyName = 256;
constexpr DWORD kMaxValueName = 16384;

void CheckWin32(LSTATUS status) {
    Check(HRESULT_FROM_WIN32(static_cast<DWORD>(status)));
}

RegistryKey CreateKey(HKEY root, const wchar_t* path) {
    HKEY key = nullptr;
    CheckWin32(RegCreateKeyExW(root, path, 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &key, nullptr));
    return RegistryKey(key);
}

void DeleteKey(HKEY root, const wchar_t* path) {
    const LSTATUS status = RegDeleteKeyW(root, path);
    if (status != ERROR_FILE_NOT_FOUND) {
        CheckWin32(status);
    }
}

void Write(const RegistryKey& key, const RegistryTree::Value& value) {
    CheckWin32(RegSetValueExW(key.Get(), value.name.empty() ? nullptr : value.name.c_str(), 0, value.type,
                              value.data.data(), static_cast<DWORD>(value.data.size())));
}

bool HasKeys(const RegistryKey& key) {
    wchar_t name[kMaxKeyName];
    DWORD length = kMaxKeyName;
    const LSTATUS status = RegEnumKeyExW(key.Get(), 0, name, &length, nullptr, nullptr, nullptr, nullptr);
    return status != ERROR_NO_MORE_ITEMS;
}

/// The first value's name need not fit: that it is there is enough.
bool HasValues(const RegistryKey& key) {
    wchar_t name[kMaxKeyName];
    DWORD length = kMaxKeyName;
    const LSTATUS status = RegEnumValueW(key.Get(), 0, name, &length, nullptr, nullptr, nullptr, nullptr);
    return status != ERROR_NO_MORE_ITEMS;
}

std::vector<RegistryTree::Value> Values(HKEY key) {
    std::vector<RegistryTree::Value> values;
    std::wstring name(kMaxValueName, L'\0');
    for (DWORD index = 0;; ++index) {
        RegistryTree::Value value;
        DWORD length = kMaxValueName;
        DWORD size = 0;
        LSTATUS status =
            RegEnumValueW(key, index, name.data(), &length, nullptr, &value.type, nullptr, &size);
        if (status == ERROR_NO_MORE_ITEMS) {
            return values;
        }
        CheckWin32(status);
        value.name.assign(name.data(), length);
        value.data.resize(size);
        status = RegQueryValueExW(key, value.name.c_str(), nullptr, &value.type, value.data.data(), &size);
        CheckWin32(status);
        value.data.resize(size);
        values.push_back(std::move(value));
    }
}

} // namespace

RegistryKey OpenKey(HKEY root, const wchar_t* path, REGSAM view) {
    HKEY key = nullptr;
    const LSTATUS status = RegOpenKeyExW(root, path, 0, KEY_READ | view, &key);
    if (status == ERROR_FILE_NOT_FOUND) {
        return {};
    }
    CheckWin32(status);
    return RegistryKey(key);
}

std::wstring ReadText(const RegistryKey& key, const wchar_t* value) {
    DWORD size = 0;
    if (RegGetValueW(key.Get(), nullptr, value, RRF_RT_REG_SZ, nullptr, nullptr, &size) != ERROR_SUCCESS) {
        return {};
    }
    std::wstring text(size / sizeof(wchar_t), L'\0');
    CheckWin32(RegGetValueW(key.Get(), nullptr, value, RRF_RT_REG_SZ, nullptr, text.data(), &size));
    text.resize(size / sizeof(wchar_t));
    while (!text.empty() && text.back() == L'\0') {
        text.pop_back();
    }
    return text;
}

std::vector<std::wstring> SubkeyNames(const RegistryKey& key) {
    std::vector<std::wstring> names;
    for (DWORD index = 0;; ++index) {
        wchar_t name[kMaxKeyName];
        DWORD length = kMaxKeyName;
        const LSTATUS status =
            RegEnumKeyExW(key.Get(), index, name, &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) {
            return names;
        }
        CheckWin32(status);
        names.emplace_back(name, length);
    }
}

bool SameText(const std::wstring& left, const std::wstring& right) {
    return CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_EQUAL;
}

const RegistryTree* Child(const RegistryTree& tree, const std::wstring& name) {
    const auto found = std::ranges::find_if(
        tree.keys, [&](const RegistryTree& child) { return SameText(child.name, name); });
    return found == tree.keys.end() ? nullptr : &*found;
}

RegistryTree::Value TextValue(const std::wstring& name, const std::wstring& text) {
    std::vector<BYTE> data((text.size() + 1) * sizeof(wchar_t));
    std::memcpy(data.data(), text.c_str(), data.size());
    return {name, REG_SZ, std::move(data)};
}

RegistryTree ReadTree(HKEY root, const std::wstring& path) {
    const RegistryKey key = OpenKey(root, path.c_str());
    if (!key) {
        CheckWin32(ERROR_FILE_NOT_FOUND);
    }
    RegistryTree tree;
    tree.name = path.substr(path.find_last_of(L'\\') + 1);
    tree.values = Values(key.Get());
    for (const std::wstring& name : SubkeyNames(key)) {
        tree.keys.push_back(ReadTree(key.Get(), name));
    }
    return tree;
}

void WriteValue(HKEY root, const wchar_t* path, const RegistryTree::Value& value) {
    Write(CreateKey(root, path), value);
}

void WriteTree(HKEY root, const wchar_t* path, const RegistryTree& tree) {
    const RegistryKey key = CreateKey(root, path);
    for (const RegistryTree::Value& value : tree.values) {
        Write(key, value);
    }
    for (const RegistryTree& child : tree.keys) {
        WriteTree(key.Get(), child.name.c_str(), child);
    }
}

void DeleteTree(HKEY root, const wchar_t* path) {
    const LSTATUS status = RegDeleteTreeW(root, path);
    if (status == ERROR_FILE_NOT_FOUND) {
        return;
    }
    CheckWin32(status);
    // Some systems delete only what lies below the key.
    DeleteKey(root, path);
}

void DeleteIfEmpty(HKEY root, const wchar_t* path) {
    const RegistryKey key = OpenKey(root, path);
    if (key && !HasKeys(key) && !HasValues(key)) {
        DeleteKey(root, path);
    }
}

} // namespace com
