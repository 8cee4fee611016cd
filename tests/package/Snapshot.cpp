#include "tests/package/Snapshot.h"

#include <cstdio>
#include <stdexcept>
#include <vector>

namespace package {

namespace {

constexpr DWORD kMaxKeyName = 256;
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

void Read(HKEY key, const std::string& path, Lines& lines) {
    std::vector<wchar_t> name(kMaxValueName);
    std::vector<BYTE> data(4096);
    for (DWORD index = 0;;) {
        DWORD length = kMaxValueName;
        DWORD type = 0;
        auto size = static_cast<DWORD>(data.size());
        const LSTATUS status =
            RegEnumValueW(key, index, name.data(), &length, nullptr, &type, data.data(), &size);
        if (status == ERROR_MORE_DATA) {
            data.resize(data.size() * 4);
            continue;
        }
        if (status != ERROR_SUCCESS) {
            break;
        }
        const std::vector<BYTE> content(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(size));
        lines[path + " : " + Utf8(name.data(), length)] = DataText(type, content);
        ++index;
    }
    for (DWORD index = 0;; ++index) {
        DWORD length = kMaxKeyName;
        if (RegEnumKeyExW(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS) {
            return;
        }
        const bool isTop = path.back() == ' ';
        const std::string below = path + (isTop ? "" : "\\") + Utf8(name.data(), length);
        lines[below];
        HKEY child = nullptr;
        if (RegOpenKeyExW(key, name.data(), 0, KEY_READ, &child) != ERROR_SUCCESS) {
            throw std::runtime_error("cannot read " + below);
        }
        Read(child, below, lines);
        RegCloseKey(child);
    }
}

} // namespace

HKEY Root(Scope scope) {
    return scope == Scope::Machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

std::string Prefix(Scope scope) {
    return scope == Scope::Machine ? "HKLM " : "HKCU ";
}

Lines Snapshot(Scope scope) {
    Lines lines;
    HKEY key = nullptr;
    if (RegOpenKeyExW(Root(scope), L"Software\\Classes", 0, KEY_READ, &key) == ERROR_SUCCESS) {
        Read(key, Prefix(scope), lines);
        RegCloseKey(key);
    }
    return lines;
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
