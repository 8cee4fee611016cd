#include "view/Settings.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>

namespace view {

namespace {

constexpr const wchar_t* kKey = L"Software\\O_Tam_id\\View";
constexpr const wchar_t* kPlacement = L"Placement";
constexpr const wchar_t* kSplits = L"Splits";
constexpr const wchar_t* kFindings = L"ShowsFindings";
constexpr const wchar_t* kSource = L"ShowsSource";
constexpr const wchar_t* kUsUnits = L"UsUnits";
constexpr const wchar_t* kRecent = L"RecentFiles";

struct CloseKey {
    void operator()(HKEY key) const noexcept { RegCloseKey(key); }
};
using Key = std::unique_ptr<std::remove_pointer_t<HKEY>, CloseKey>;

Key OpenKey(REGSAM rights) noexcept {
    HKEY key = nullptr;
    if (rights == KEY_READ) {
        RegOpenKeyExW(HKEY_CURRENT_USER, kKey, 0, rights, &key);
    } else {
        RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, rights, nullptr, &key, nullptr);
    }
    return Key(key);
}

std::vector<std::byte> ReadBytes(const wchar_t* name, DWORD kind) {
    const Key key = OpenKey(KEY_READ);
    DWORD size = 0;
    if (!key || RegGetValueW(key.get(), nullptr, name, kind, nullptr, nullptr, &size) != ERROR_SUCCESS) {
        return {};
    }
    std::vector<std::byte> bytes(size);
    if (RegGetValueW(key.get(), nullptr, name, kind, nullptr, bytes.data(), &size) != ERROR_SUCCESS) {
        return {};
    }
    bytes.resize(size);
    return bytes;
}

std::wstring ReadText(const wchar_t* name, DWORD kind) {
    const std::vector<std::byte> bytes = ReadBytes(name, kind);
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    std::copy_n(bytes.data(), text.size() * sizeof(wchar_t), reinterpret_cast<std::byte*>(text.data()));
    return text;
}

std::vector<int> ReadNumbers(const wchar_t* name) {
    const std::vector<std::byte> bytes = ReadBytes(name, RRF_RT_REG_BINARY);
    std::vector<int> numbers(bytes.size() / sizeof(int));
    std::copy_n(bytes.data(), numbers.size() * sizeof(int), reinterpret_cast<std::byte*>(numbers.data()));
    return numbers;
}

bool ReadFlag(const wchar_t* name, bool otherwise) {
    const Key key = OpenKey(KEY_READ);
    DWORD value = 0;
    DWORD size = sizeof value;
    return key && RegGetValueW(key.get(), nullptr, name, RRF_RT_REG_DWORD, nullptr, &value, &size) ==
                       ERROR_SUCCESS
               ? value != 0
               : otherwise;
}

void Write(const wchar_t* name, DWORD kind, const void* bytes, std::size_t size) noexcept {
    if (const Key key = OpenKey(KEY_WRITE)) {
        RegSetValueExW(key.get(), name, 0, kind, static_cast<const BYTE*>(bytes), static_cast<DWORD>(size));
    }
}

void WriteFlag(const wchar_t* name, bool flag) noexcept {
    const DWORD value = flag ? 1 : 0;
    Write(name, REG_DWORD, &value, sizeof value);
}

void WriteNumbers(const wchar_t* name, const std::vector<int>& numbers) noexcept {
    Write(name, REG_BINARY, numbers.data(), numbers.size() * sizeof(int));
}

std::wstring NameOfWidths(const wchar_t* list) {
    return std::wstring(L"Columns.") + list;
}

} // namespace

Settings::Settings() {
    const std::vector<std::byte> place = ReadBytes(kPlacement, RRF_RT_REG_BINARY);
    if (place.size() == sizeof placement) {
        std::copy(place.begin(), place.end(), reinterpret_cast<std::byte*>(&placement));
    }
    const std::vector<int> known = ReadNumbers(kSplits);
    if (known.size() == splits.size()) {
        std::transform(known.begin(), known.end(), splits.begin(),
                       [](int part) { return std::clamp(part, 100, 900); });
    }
    showsFindings = ReadFlag(kFindings, showsFindings);
    showsSource = ReadFlag(kSource, showsSource);
    usUnits = ReadFlag(kUsUnits, usUnits);
    ReadRecent();
}

void Settings::ReadRecent() {
    recent_ = RecentFiles(ReadText(kRecent, RRF_RT_REG_MULTI_SZ));
}

void Settings::WriteRecent() const {
    const std::wstring files = recent_.Text();
    Write(kRecent, REG_MULTI_SZ, files.data(), files.size() * sizeof(wchar_t));
}

void Settings::AddRecent(const std::wstring& file) {
    ReadRecent();
    recent_.Add(file);
    WriteRecent();
}

void Settings::RemoveRecent(const std::wstring& file) {
    ReadRecent();
    recent_.Remove(file);
    WriteRecent();
}

// The widths are kept in the registry alone, list by list: a list reads its own when it is made.
// NOLINTBEGIN(readability-convert-member-functions-to-static)
std::vector<int> Settings::WidthsOf(const wchar_t* list) const {
    return ReadNumbers(NameOfWidths(list).c_str());
}

void Settings::SetWidths(const wchar_t* list, const std::vector<int>& widths) const {
    WriteNumbers(NameOfWidths(list).c_str(), widths);
}
// NOLINTEND(readability-convert-member-functions-to-static)

void Settings::Save() const {
    Write(kPlacement, REG_BINARY, &placement, sizeof placement);
    WriteNumbers(kSplits, splits);
    WriteFlag(kFindings, showsFindings);
    WriteFlag(kSource, showsSource);
    WriteFlag(kUsUnits, usUnits);
}

} // namespace view
