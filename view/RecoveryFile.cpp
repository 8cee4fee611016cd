#include "view/RecoveryFile.h"

#include "bench/Text.h"
#include "bench/TextFile.h"
#include "bench/WholeFile.h"
#include "com/Boundary.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace view {

namespace {

constexpr std::wstring_view kStart = L"unsaved-";
constexpr std::wstring_view kEnd = L".txt";

/// A name that only a running program holds. The folder is the user's, and so the name is
/// known in all sessions of the user.
std::wstring AliveName(const std::wstring& program) {
    return L"Global\\O_Tam_id.View." + program;
}

/// What no other program is called: the system gives the number of one that ended to the next.
std::wstring OwnName() {
    FILETIME start{};
    FILETIME end{};
    FILETIME inSystem{};
    FILETIME inProgram{};
    GetProcessTimes(GetCurrentProcess(), &start, &end, &inSystem, &inProgram);
    return std::to_wstring(GetCurrentProcessId()) + L"-" +
           std::to_wstring(std::uint64_t{start.dwHighDateTime} << 32U | start.dwLowDateTime);
}

/// With the closing backslash; made when it is not there.
std::wstring Folder() {
    std::wstring folder(MAX_PATH, L'\0');
    const DWORD length = GetEnvironmentVariableW(L"LOCALAPPDATA", folder.data(), MAX_PATH);
    if (length == 0 || length >= MAX_PATH) {
        return {};
    }
    folder.resize(length);
    for (const wchar_t* const part : {L"\\O_Tam_id", L"\\View"}) {
        folder += part;
        CreateDirectoryW(folder.c_str(), nullptr);
    }
    return folder + L"\\";
}

bool IsAlive(const std::wstring& program) noexcept {
    const HANDLE mutex = OpenMutexW(SYNCHRONIZE, FALSE, AliveName(program).c_str());
    if (mutex == nullptr) {
        return GetLastError() == ERROR_ACCESS_DENIED; // it runs with other rights
    }
    CloseHandle(mutex);
    return true;
}

} // namespace

FileStamp StampOf(const std::wstring& file) noexcept {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data) == FALSE) {
        return {};
    }
    const auto joined = [](DWORD high, DWORD low) { return std::uint64_t{high} << 32U | low; };
    return {joined(data.nFileSizeHigh, data.nFileSizeLow),
            joined(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime)};
}

RecoveryFile::RecoveryFile() {
    const std::wstring name = OwnName();
    alive_ = CreateMutexW(nullptr, FALSE, AliveName(name).c_str());
    const std::wstring folder = Folder();
    if (!folder.empty()) {
        path_ = folder + std::wstring(kStart) + name + std::wstring(kEnd);
    }
}

RecoveryFile::~RecoveryFile() {
    if (alive_ != nullptr) {
        CloseHandle(alive_);
    }
}

bool RecoveryFile::Keep(const Recovery& recovery) noexcept {
    return !path_.empty() &&
           !com::Attempt([&] { bench::WriteWholeFile(path_, bench::Utf8(TextOf(recovery))); });
}

void RecoveryFile::Remove() noexcept {
    if (!path_.empty()) {
        DeleteFileW(path_.c_str());
    }
}

std::vector<RecoveryFile::Left> RecoveryFile::FindLeft() {
    std::vector<Left> left;
    const std::wstring folder = Folder();
    WIN32_FIND_DATAW found{};
    const HANDLE search =
        folder.empty()
            ? INVALID_HANDLE_VALUE
            : FindFirstFileW((folder + std::wstring(kStart) + L"*" + std::wstring(kEnd)).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return left;
    }
    std::vector<std::wstring> names;
    do {
        names.emplace_back(found.cFileName);
    } while (FindNextFileW(search, &found) != FALSE);
    FindClose(search);
    for (const std::wstring& name : names) {
        if (IsAlive(name.substr(kStart.size(), name.size() - kStart.size() - kEnd.size()))) {
            continue;
        }
        std::optional<Recovery> recovery;
        bool isDamaged = false;
        com::Attempt([&] {
            const std::wstring text = bench::ReadTextFile(folder + name);
            recovery = ReadRecovery(text);
            isDamaged = !recovery && IsOfThisVersion(text);
        });
        if (recovery) {
            left.push_back({folder + name, std::move(*recovery)});
        } else if (isDamaged) { // what cannot be read now, or is another version's, stays
            DeleteFileW((folder + name).c_str());
        }
    }
    return left;
}

} // namespace view
