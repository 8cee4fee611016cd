#include "tests/package/MemoryRegistry.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace package {

namespace {

constexpr const wchar_t* kClasses = L"Software\\Classes";

MemoryRegistry* current = nullptr;

template <class F>
support::ImportPatch Patch(HMODULE dll, const char* name, F* function) {
    return support::ImportPatch(dll, name, reinterpret_cast<const void*>(function));
}

/// Hands a value's bytes over as the system does: the size alone when there is
/// no place for them.
LSTATUS Give(const Value& value, DWORD* type, void* data, DWORD* size) {
    if (type != nullptr) {
        *type = value.type;
    }
    const DWORD room = *size;
    *size = static_cast<DWORD>(value.data.size());
    if (data == nullptr) {
        return ERROR_SUCCESS;
    }
    if (room < *size) {
        return ERROR_MORE_DATA;
    }
    std::copy(value.data.begin(), value.data.end(), static_cast<BYTE*>(data));
    return ERROR_SUCCESS;
}

LSTATUS GiveName(const std::wstring& text, LPWSTR name, DWORD* length) {
    if (*length <= text.size()) {
        return ERROR_MORE_DATA;
    }
    std::copy_n(text.c_str(), text.size() + 1, name);
    *length = static_cast<DWORD>(text.size());
    return ERROR_SUCCESS;
}

} // namespace

MemoryRegistry::MemoryRegistry(HMODULE dll, Scope scope)
    : scope_(scope)
    , patches_{Patch(dll, "RegOpenKeyExW", &OpenKey),       Patch(dll, "RegCreateKeyExW", &CreateKey),
               Patch(dll, "RegCloseKey", &CloseKey),        Patch(dll, "RegSetValueExW", &SetValue),
               Patch(dll, "RegQueryValueExW", &QueryValue), Patch(dll, "RegGetValueW", &GetValue),
               Patch(dll, "RegEnumKeyExW", &EnumKey),       Patch(dll, "RegEnumValueW", &EnumValue),
               Patch(dll, "RegDeleteTreeW", &DeleteTree),   Patch(dll, "RegDeleteKeyW", &DeleteKey)} {
    for (const Key& key : ReadKeys(scope)) {
        const std::wstring path = key.path.empty() ? kClasses : kClasses + (L'\\' + key.path);
        Make(path);
        for (const Value& value : key.values) {
            keys_[path][value.name] = value;
        }
    }
    current = this;
}

MemoryRegistry::~MemoryRegistry() {
    current = nullptr;
}

bool MemoryRegistry::IsComplete() const {
    return std::all_of(patches_.begin(), patches_.end(),
                       [](const support::ImportPatch& patch) { return patch.IsImported(); });
}

Lines MemoryRegistry::LinesOf(const Keys& content) const {
    const std::wstring classes = kClasses;
    std::vector<Key> keys;
    for (const auto& [path, values] : content) {
        if (path.size() < classes.size()) {
            continue; // what the place lies in
        }
        Key key{path == classes ? std::wstring() : path.substr(classes.size() + 1), {}};
        std::ranges::transform(values, std::back_inserter(key.values),
                               [](const auto& entry) { return entry.second; });
        keys.push_back(std::move(key));
    }
    return package::LinesOf(scope_, keys);
}

std::wstring MemoryRegistry::Path(HKEY key, LPCWSTR below) const {
    const std::wstring base = key == Root(scope_) ? std::wstring() : open_.at(key);
    const std::wstring name = below == nullptr ? L"" : below;
    return base.empty() || name.empty() ? base + name : base + L'\\' + name;
}

void MemoryRegistry::Make(const std::wstring& path) {
    for (auto end = path.find(L'\\'); end != std::wstring::npos; end = path.find(L'\\', end + 1)) {
        keys_[path.substr(0, end)];
    }
    keys_[path];
}

HKEY MemoryRegistry::Open(const std::wstring& path) {
    const auto key = reinterpret_cast<HKEY>(++lastNumber_);
    open_[key] = path;
    return key;
}

std::pair<MemoryRegistry::Keys::iterator, MemoryRegistry::Keys::iterator>
MemoryRegistry::Below(const std::wstring& path) {
    // "]" is the character after the backslash.
    return {keys_.lower_bound(path + L'\\'), keys_.lower_bound(path + L']')};
}

std::vector<std::wstring> MemoryRegistry::Children(const std::wstring& path) {
    std::vector<std::wstring> names;
    const auto [begin, end] = Below(path);
    for (auto key = begin; key != end; ++key) {
        const std::wstring name = key->first.substr(path.size() + 1);
        if (name.find(L'\\') == std::wstring::npos) {
            names.push_back(name);
        }
    }
    return names;
}

const Value* MemoryRegistry::Find(HKEY key, LPCWSTR name) const {
    const auto values = keys_.find(Path(key, nullptr));
    if (values == keys_.end()) {
        return nullptr;
    }
    const auto value = values->second.find(name == nullptr ? L"" : name);
    return value == values->second.end() ? nullptr : &value->second;
}

LSTATUS WINAPI MemoryRegistry::OpenKey(HKEY key, LPCWSTR path, DWORD, REGSAM, HKEY* result) {
    if (key != Root(current->scope_) && !current->open_.contains(key)) {
        return ERROR_FILE_NOT_FOUND; // the other scope's, which has nothing
    }
    const std::wstring full = current->Path(key, path);
    if (!current->keys_.contains(full)) {
        return ERROR_FILE_NOT_FOUND;
    }
    *result = current->Open(full);
    return ERROR_SUCCESS;
}

LSTATUS WINAPI MemoryRegistry::CreateKey(HKEY key, LPCWSTR path, DWORD, LPWSTR, DWORD, REGSAM,
                                         SECURITY_ATTRIBUTES*, HKEY* result, DWORD*) {
    const std::wstring full = current->Path(key, path);
    current->Make(full);
    *result = current->Open(full);
    return ERROR_SUCCESS;
}

LSTATUS WINAPI MemoryRegistry::CloseKey(HKEY key) {
    return current->open_.erase(key) == 1 ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

LSTATUS WINAPI MemoryRegistry::SetValue(HKEY key, LPCWSTR name, DWORD, DWORD type, const BYTE* data,
                                        DWORD size) {
    const auto values = current->keys_.find(current->Path(key, nullptr));
    if (values == current->keys_.end()) {
        return ERROR_KEY_DELETED;
    }
    const std::wstring text = name == nullptr ? L"" : name;
    values->second[text] = {text, type, std::vector<BYTE>(data, data + size)};
    return ERROR_SUCCESS;
}

LSTATUS WINAPI MemoryRegistry::QueryValue(HKEY key, LPCWSTR name, DWORD*, DWORD* type, BYTE* data,
                                          DWORD* size) {
    const Value* const value = current->Find(key, name);
    return value == nullptr ? ERROR_FILE_NOT_FOUND : Give(*value, type, data, size);
}

LSTATUS WINAPI MemoryRegistry::GetValue(HKEY key, LPCWSTR path, LPCWSTR name, DWORD flags, DWORD* type,
                                        void* data, DWORD* size) {
    if (path != nullptr || flags != RRF_RT_REG_SZ) {
        return ERROR_CALL_NOT_IMPLEMENTED; // asked of no key of this DLL
    }
    const Value* const value = current->Find(key, name);
    if (value == nullptr) {
        return ERROR_FILE_NOT_FOUND;
    }
    return value->type == REG_SZ ? Give(*value, type, data, size) : ERROR_UNSUPPORTED_TYPE;
}

LSTATUS WINAPI MemoryRegistry::EnumKey(HKEY key, DWORD index, LPWSTR name, DWORD* length, DWORD*, LPWSTR,
                                       DWORD*, FILETIME*) {
    const std::wstring path = current->Path(key, nullptr);
    if (index == 0 || path != current->enumeratedPath_) {
        current->enumerated_ = current->Children(path);
        current->enumeratedPath_ = path;
    }
    const auto& names = current->enumerated_;
    return index < names.size() ? GiveName(names.at(index), name, length) : ERROR_NO_MORE_ITEMS;
}

LSTATUS WINAPI MemoryRegistry::EnumValue(HKEY key, DWORD index, LPWSTR name, DWORD* length, DWORD*,
                                         DWORD* type, BYTE* data, DWORD* size) {
    const auto values = current->keys_.find(current->Path(key, nullptr));
    if (values == current->keys_.end() || index >= values->second.size()) {
        return ERROR_NO_MORE_ITEMS;
    }
    const Value& value = std::next(values->second.begin(), static_cast<std::ptrdiff_t>(index))->second;
    const LSTATUS status = GiveName(value.name, name, length);
    return status == ERROR_SUCCESS ? Give(value, type, data, size) : status;
}

LSTATUS WINAPI MemoryRegistry::DeleteTree(HKEY key, LPCWSTR path) {
    const std::wstring full = current->Path(key, path);
    const auto [begin, end] = current->Below(full);
    current->keys_.erase(begin, end);
    return current->keys_.erase(full) == 1 ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
}

LSTATUS WINAPI MemoryRegistry::DeleteKey(HKEY key, LPCWSTR path) {
    const std::wstring full = current->Path(key, path);
    const auto [begin, end] = current->Below(full);
    if (begin != end) {
        return ERROR_ACCESS_DENIED; // so the system, too
    }
    return current->keys_.erase(full) == 1 ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
}

} // namespace package
