#include "common/Unattended.h"

#include "com/Boundary.h"
#include "com/Environment.h"

#include <windows.h>

#include <array>
#include <cstddef>
#include <cwchar>
#include <string>

namespace tam {

namespace {

/// In UTC, to the millisecond.
std::wstring Now() {
    SYSTEMTIME now{};
    GetSystemTime(&now);
    std::array<wchar_t, 32> text{};
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg, cert-err33-c): numbers of 16 bits fit
    std::swprintf(text.data(), text.size(), L"%04u-%02u-%02uT%02u:%02u:%02u.%03uZ", now.wYear, now.wMonth,
                  now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds);
    return text.data();
}

std::string Utf8(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

/// With one write, so that the lines of processes that share a file stay whole.
void Append(const std::wstring& path, const std::string& bytes) {
    const HANDLE file = CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        DWORD written = 0;
        WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
        CloseHandle(file);
    }
}

} // namespace

bool IsUnattended() noexcept {
    // "0" fits; any longer value is a file's name.
    std::array<wchar_t, 2> start{};
    const DWORD length = GetEnvironmentVariableW(kUnattendedVariable, start.data(), start.size());
    return length >= start.size() || IsUnattendedBy({start.data(), length});
}

void WriteUnshown(const Unshown& unshown) noexcept {
    com::Attempt([&] {
        const std::wstring line = JsonLine(unshown, Now()) + L"\n";
        OutputDebugStringW(line.c_str());
        const std::wstring value = com::EnvironmentText(kUnattendedVariable);
        const std::wstring file(UnattendedFile(value));
        if (!file.empty()) {
            Append(file, Utf8(line));
        }
    });
}

} // namespace tam
