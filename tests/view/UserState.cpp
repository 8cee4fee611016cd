#include "tests/view/UserState.h"

#include <cstddef>
#include <string>
#include <vector>

namespace viewtest {

namespace {

constexpr const wchar_t* kKey = L"Software\\O_Tam_id\\View";
constexpr const wchar_t* kFolder = L"LOCALAPPDATA";
/// What the user had is kept here while a test runs.
constexpr const wchar_t* kKept = L"Software\\O_Tam_id view tests";
constexpr const wchar_t* kKeptKey = L"Software\\O_Tam_id view tests\\View";
constexpr const wchar_t* kKeptNumbers = L"Software\\O_Tam_id view tests\\Numbers";
/// The system's colours by their numbers.
constexpr const wchar_t* kKeptColours = L"Software\\O_Tam_id view tests\\Colours";
/// Set when the copy is whole.
constexpr const wchar_t* kIsWhole = L"IsWhole";
/// Between the key and the name of a number that is kept; neither has one.
constexpr wchar_t kBetween = L'|';

std::wstring Variable(const wchar_t* name) {
    std::wstring text(GetEnvironmentVariableW(name, nullptr, 0), L'\0');
    text.resize(GetEnvironmentVariableW(name, text.data(), static_cast<DWORD>(text.size())));
    return text;
}

bool ReadNumber(const wchar_t* key, const wchar_t* name, DWORD& number) {
    DWORD size = sizeof number;
    return RegGetValueW(HKEY_CURRENT_USER, key, name, RRF_RT_REG_DWORD, nullptr, &number, &size) ==
           ERROR_SUCCESS;
}

/// The names of a key's values; none of a key that is not there.
std::vector<std::wstring> ValuesOf(const wchar_t* path) {
    std::vector<std::wstring> names;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_READ, &key) != ERROR_SUCCESS) {
        return names;
    }
    constexpr DWORD kLongestName = 256;
    wchar_t name[kLongestName] = {};
    DWORD length = kLongestName;
    for (DWORD i = 0;
         RegEnumValueW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS; ++i) {
        names.emplace_back(name, length);
        length = kLongestName;
    }
    RegCloseKey(key);
    return names;
}

/// A key without values is left out.
void Copy(const wchar_t* from, const wchar_t* to) {
    HKEY source = nullptr;
    HKEY target = nullptr;
    if (!ValuesOf(from).empty() &&
        RegOpenKeyExW(HKEY_CURRENT_USER, from, 0, KEY_READ, &source) == ERROR_SUCCESS &&
        RegCreateKeyExW(HKEY_CURRENT_USER, to, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &target, nullptr) ==
            ERROR_SUCCESS) {
        RegCopyTreeW(source, nullptr, target);
    }
    RegCloseKey(source);
    RegCloseKey(target);
}

bool IsKept() {
    DWORD number = 0;
    return ReadNumber(kKept, kIsWhole, number);
}

/// Sets a number to what was kept of it: nothing, or four bytes.
void GiveBack(const std::wstring& key, const std::wstring& name) {
    DWORD before = 0;
    const std::wstring kept = key + kBetween + name;
    if (ReadNumber(kKeptNumbers, kept.c_str(), before)) {
        RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), name.c_str(), REG_DWORD, &before, sizeof before);
    } else {
        RegDeleteKeyValueW(HKEY_CURRENT_USER, key.c_str(), name.c_str());
    }
    RegDeleteKeyValueW(HKEY_CURRENT_USER, kKeptNumbers, kept.c_str());
}

void SetColour(int number, COLORREF colour) {
    SetSysColors(1, &number, &colour);
}

void GiveBackColours() {
    for (const std::wstring& name : ValuesOf(kKeptColours)) {
        DWORD before = 0;
        if (ReadNumber(kKeptColours, name.c_str(), before)) {
            SetColour(std::stoi(name), before);
        }
        RegDeleteKeyValueW(HKEY_CURRENT_USER, kKeptColours, name.c_str());
    }
}

} // namespace

UserState::UserState(const std::wstring& folder) : folder_(Variable(kFolder)) {
    GiveBackColours();
    for (const std::wstring& kept : ValuesOf(kKeptNumbers)) {
        const std::size_t between = kept.find(kBetween);
        GiveBack(kept.substr(0, between), kept.substr(between + 1));
    }
    if (!IsKept()) {
        RegDeleteTreeW(HKEY_CURRENT_USER, kKeptKey);
        Copy(kKey, kKeptKey);
        constexpr DWORD kYes = 1;
        RegSetKeyValueW(HKEY_CURRENT_USER, kKept, kIsWhole, REG_DWORD, &kYes, sizeof kYes);
    }
    RegDeleteTreeW(HKEY_CURRENT_USER, kKey);
    // Programs that are started from here on inherit it.
    SetEnvironmentVariableW(kFolder, (folder + L"local").c_str());
    CreateDirectoryW((folder + L"local").c_str(), nullptr);
}

UserState::~UserState() {
    SetEnvironmentVariableW(kFolder, folder_.c_str());
    if (IsKept()) {
        RegDeleteTreeW(HKEY_CURRENT_USER, kKey);
        Copy(kKeptKey, kKey);
        RegDeleteTreeW(HKEY_CURRENT_USER, kKept);
    }
}

UserNumber::UserNumber(const wchar_t* key, const wchar_t* name) : key_(key), name_(name) {
    const std::wstring kept = key_ + kBetween + name_;
    DWORD before = 0;
    const bool hadOne = ReadNumber(key, name, before);
    RegSetKeyValueW(HKEY_CURRENT_USER, kKeptNumbers, kept.c_str(),
                    static_cast<DWORD>(hadOne ? REG_DWORD : REG_NONE), &before,
                    static_cast<DWORD>(hadOne ? sizeof before : 0));
}

UserNumber::~UserNumber() {
    GiveBack(key_, name_);
}

UserColours::UserColours(const std::vector<std::pair<int, COLORREF>>& colours) {
    for (const auto& [number, colour] : colours) {
        const DWORD before = GetSysColor(number);
        RegSetKeyValueW(HKEY_CURRENT_USER, kKeptColours, std::to_wstring(number).c_str(), REG_DWORD, &before,
                        sizeof before);
        SetColour(number, colour);
    }
}

UserColours::~UserColours() {
    GiveBackColours();
}

void UserNumber::Set(DWORD number) const {
    RegSetKeyValueW(HKEY_CURRENT_USER, key_.c_str(), name_.c_str(), REG_DWORD, &number, sizeof number);
}

} // namespace viewtest
