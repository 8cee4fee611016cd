#include "com/RegistryView.h"

namespace com {

REGSAM OtherView() noexcept {
    if constexpr (sizeof(void*) == 8) {
        return KEY_WOW64_32KEY;
    }
    BOOL isOn64Bit = FALSE;
    return IsWow64Process(GetCurrentProcess(), &isOn64Bit) != FALSE && isOn64Bit != FALSE ? KEY_WOW64_64KEY
                                                                                          : 0;
}

std::wstring PathOfOtherKind(const std::wstring& path) {
    wchar_t windows[MAX_PATH] = {};
    const UINT length = GetSystemWindowsDirectoryW(windows, MAX_PATH);
    const std::wstring system = std::wstring(windows, length < MAX_PATH ? length : 0) + L"\\System32\\";
    const auto size = static_cast<int>(system.size());
    if (path.size() > system.size() &&
        CompareStringOrdinal(path.c_str(), size, system.c_str(), size, TRUE) == CSTR_EQUAL) {
        const wchar_t* const theirs = sizeof(void*) == 8 ? L"\\SysWOW64\\" : L"\\Sysnative\\";
        return windows + (theirs + path.substr(system.size()));
    }
    return path;
}

} // namespace com
