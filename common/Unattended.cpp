#include "common/Unattended.h"

#include "com/Boundary.h"
#include "com/Environment.h"
#include "com/Handles.h"

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

/// Empty when it cannot be opened.
com::Handle OpenToAppend(const std::wstring& path, DWORD access) {
    return com::OwnFile(CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
}

/// Keeps others that write down from a file for as long as it lives. The lock lies on a byte
/// far behind the end, where it hinders nobody who reads. Somebody may hold it for ever;
/// then there is no lock after a while, for the host must go on.
class Turn {
  public:
    explicit Turn(HANDLE file) : file_(file) {
        const ULONGLONG end = GetTickCount64() + kLongest;
        while (!TryLock() && GetLastError() == ERROR_LOCK_VIOLATION && GetTickCount64() < end) {
            Sleep(1);
        }
    }
    ~Turn() {
        if (isLocked_) {
            OVERLAPPED place = Place();
            UnlockFileEx(file_, 0, 1, 0, &place);
        }
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

  private:
    static constexpr ULONGLONG kLongest = 200; ///< milliseconds

    static OVERLAPPED Place() {
        OVERLAPPED place{};
        place.OffsetHigh = 0x7FFFFFFF;
        return place;
    }
    bool TryLock() {
        OVERLAPPED place = Place();
        isLocked_ =
            LockFileEx(file_, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) != FALSE;
        return isLocked_;
    }

    HANDLE file_;
    bool isLocked_ = false;
};

/// Somebody's line may have been cut off, by a full disk or by the end of the program. It keeps
/// to itself.
bool EndsInsideALine(HANDLE file) {
    LARGE_INTEGER last{};
    last.QuadPart = -1;
    char letter = '\n';
    DWORD read = 0;
    return SetFilePointerEx(file, last, nullptr, FILE_END) != FALSE &&
           ReadFile(file, &letter, 1, &read, nullptr) != FALSE && letter != '\n';
}

/// With one write, so that the lines of processes that share a file stay whole. Not every
/// system appends a write as one step, so they take turns, where the file lets itself be
/// locked: that takes the right to read it.
void Append(const std::wstring& path, const std::wstring& line) {
    // The first byte is for the end of somebody's line.
    const std::string bytes = Utf8(L"\n" + line);
    com::Handle file = OpenToAppend(path, FILE_APPEND_DATA | FILE_READ_DATA);
    if (!file) {
        file = OpenToAppend(path, FILE_APPEND_DATA);
    }
    if (file) {
        const Turn turn(file.get());
        const std::size_t begin = EndsInsideALine(file.get()) ? 0 : 1;
        DWORD written = 0;
        WriteFile(file.get(), bytes.data() + begin, static_cast<DWORD>(bytes.size() - begin), &written,
                  nullptr);
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
            Append(file, line);
        }
    });
}

} // namespace tam
