#include "tests/view/UserState.h"

#include <utility>

namespace viewtest {

namespace {

constexpr const wchar_t* kKey = L"Software\\O_Tam_id\\View";
constexpr const wchar_t* kFolder = L"LOCALAPPDATA";

std::wstring Variable(const wchar_t* name) {
    std::wstring text(GetEnvironmentVariableW(name, nullptr, 0), L'\0');
    text.resize(GetEnvironmentVariableW(name, text.data(), static_cast<DWORD>(text.size())));
    return text;
}

} // namespace

UserState::UserState(const std::wstring& folder) : folder_(Variable(kFolder)) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, kKey, 0, KEY_READ, &key) == ERROR_SUCCESS) {
        constexpr DWORD kLongestName = 256;
        wchar_t name[kLongestName] = {};
        for (DWORD i = 0;; ++i) {
            DWORD length = kLongestName;
            DWORD size = 0;
            if (RegEnumValueW(key, i, name, &length, nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS) {
                break;
            }
            Value value{name, 0, std::vector<BYTE>(size)};
            if (RegQueryValueExW(key, name, nullptr, &value.kind, value.bytes.data(), &size) ==
                ERROR_SUCCESS) {
                values_.push_back(std::move(value));
            }
        }
        RegCloseKey(key);
    }
    RegDeleteTreeW(HKEY_CURRENT_USER, kKey);
    // Programs that are started from here on inherit it.
    SetEnvironmentVariableW(kFolder, (folder + L"local").c_str());
    CreateDirectoryW((folder + L"local").c_str(), nullptr);
}

UserState::~UserState() {
    SetEnvironmentVariableW(kFolder, folder_.c_str());
    RegDeleteTreeW(HKEY_CURRENT_USER, kKey);
    HKEY key = nullptr;
    if (values_.empty() || RegCreateKeyExW(HKEY_CURRENT_USER, kKey, 0, nullptr, 0, KEY_WRITE, nullptr, &key,
                                           nullptr) != ERROR_SUCCESS) {
        return;
    }
    for (const Value& value : values_) {
        RegSetValueExW(key, value.name.c_str(), 0, value.kind, value.bytes.data(),
                       static_cast<DWORD>(value.bytes.size()));
    }
    RegCloseKey(key);
}

} // namespace viewtest
