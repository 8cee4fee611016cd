#include "tests/package/Snapshot.h"

#include <cstddef>
#include <cstdio>
#include <cwchar>
#include <iterator>
#include <stdexcept>
#include <utility>
#include <vector>

namespace package {

namespace {

constexpr DWORD kMaxKeyName = 256;
/// Leads to the type libraries of the system: they are there once.
constexpr const wchar_t* kSharedLibraries = L"Wow6432Node\\TypeLib";
/// A 32-bit program is shown its own part of the registry in place of the whole; here it is again.
constexpr const wchar_t* kOwnPart = L"Wow6432Node";
/// The script host's own library, which Wine's registers whenever it starts.
constexpr const wchar_t* kScriptHost = L"TypeLib\\{60254CA0-953B-11CF-8C96-00AA00B8708C}";

bool IsPassedOver(const wchar_t* path) {
    return _wcsicmp(path, kSharedLibraries) == 0 || _wcsicmp(path, kScriptHost) == 0 ||
           (sizeof(void*) == 4 && _wcsicmp(path, kOwnPart) == 0);
}
constexpr DWORD kMaxValueName = 16384;

std::string Utf8(const wchar_t* text, std::size_t length) {
    std::string bytes(length * 3, '\0');
    bytes.resize(
        static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(length), bytes.data(),
                                                     static_cast<int>(bytes.size()), nullptr, nullptr)));
    return bytes;
}

/// A text as text when it is well formed, everything else as its bytes.
std::string DataText(DWORD type, const std::vector<BYTE>& data) {
    std::string text = std::to_string(type) + " ";
    const std::size_t length = data.size() / sizeof(wchar_t);
    if (type == REG_SZ && length > 0 && data.size() % sizeof(wchar_t) == 0) {
        std::wstring wide(length, L'\0');
        CopyMemory(wide.data(), data.data(), data.size());
        if (wide.find(L'\0') == length - 1) {
            return text + Utf8(wide.data(), length - 1);
        }
    }
    text += "bytes";
    for (const BYTE byte : data) {
        char digits[8];
        std::snprintf(digits, sizeof digits, " %02X", byte);
        text += digits;
    }
    return text;
}

/// Reads keys with one pair of buffers for all of them.
class Reader {
  public:
    void Read(HKEY key, const std::wstring& path) {
        keys_.push_back({path, Values(key)});
        for (DWORD index = 0;; ++index) {
            DWORD length = kMaxKeyName;
            if (RegEnumKeyExW(key, index, name_.data(), &length, nullptr, nullptr, nullptr, nullptr) !=
                ERROR_SUCCESS) {
                return;
            }
            const std::wstring name(name_.data(), length);
            const std::wstring below = path.empty() ? name : path + L'\\' + name;
            if (IsPassedOver(below.c_str())) {
                continue;
            }
            HKEY child = nullptr;
            if (RegOpenKeyExW(key, name.c_str(), 0, KEY_READ, &child) != ERROR_SUCCESS) {
                throw std::runtime_error("cannot read " + Utf8(below.data(), below.size()));
            }
            Read(child, below);
            RegCloseKey(child);
        }
    }
    std::vector<Key> Take() { return std::move(keys_); }

  private:
    std::vector<Value> Values(HKEY key) {
        std::vector<Value> values;
        for (DWORD index = 0;;) {
            DWORD length = kMaxValueName;
            DWORD type = 0;
            auto size = static_cast<DWORD>(data_.size());
            const LSTATUS status =
                RegEnumValueW(key, index, name_.data(), &length, nullptr, &type, data_.data(), &size);
            if (status == ERROR_MORE_DATA) {
                data_.resize(data_.size() * 4);
                continue;
            }
            if (status != ERROR_SUCCESS) {
                return values;
            }
            values.push_back(
                {std::wstring(name_.data(), length), type,
                 std::vector<BYTE>(data_.begin(),
                                   std::next(data_.begin(), static_cast<std::ptrdiff_t>(size)))});
            ++index;
        }
    }

    std::vector<wchar_t> name_ = std::vector<wchar_t>(kMaxValueName);
    std::vector<BYTE> data_ = std::vector<BYTE>(4096);
    std::vector<Key> keys_;
};

} // namespace

HKEY Root(Scope scope) {
    return scope == Scope::Machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

std::string Prefix(Scope scope) {
    return scope == Scope::Machine ? "HKLM " : "HKCU ";
}

std::vector<Key> ReadKeys(Scope scope) {
    Reader reader;
    HKEY classes = nullptr;
    if (RegOpenKeyExW(Root(scope), L"Software\\Classes", 0, KEY_READ, &classes) == ERROR_SUCCESS) {
        reader.Read(classes, L"");
        RegCloseKey(classes);
        return reader.Take();
    }
    return {Key{}}; // a user's is made by the first who writes into it
}

Lines LinesOf(Scope scope, const std::vector<Key>& keys) {
    Lines lines;
    for (const Key& key : keys) {
        const std::string path = Prefix(scope) + Utf8(key.path.data(), key.path.size());
        if (!key.path.empty()) {
            lines[path];
        }
        for (const Value& value : key.values) {
            lines[path + " : " + Utf8(value.name.data(), value.name.size())] =
                DataText(value.type, value.data);
        }
    }
    return lines;
}

Lines Snapshot(Scope scope) {
    return LinesOf(scope, ReadKeys(scope));
}

Lines Snapshot() {
    Lines lines = Snapshot(Scope::Machine);
    lines.merge(Snapshot(Scope::User));
    return lines;
}

std::string Difference(const Lines& before, const Lines& after) {
    std::string text;
    for (const auto& [name, data] : before) {
        const auto found = after.find(name);
        if (found == after.end() || found->second != data) {
            text += "- " + name + " = " + data + "\n";
        }
    }
    for (const auto& [name, data] : Added(before, after)) {
        text += "+ " + name + " = " + data + "\n";
    }
    return text;
}

Lines Added(const Lines& before, const Lines& after) {
    Lines added;
    for (const auto& [name, data] : after) {
        const auto found = before.find(name);
        if (found == before.end() || found->second != data) {
            added[name] = data;
        }
    }
    return added;
}

} // namespace package
