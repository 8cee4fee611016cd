#include "host/Folders.h"

#include "com/Boundary.h"
#include "com/Environment.h"
#include "core/RunTimeError.h"

#include <OrvHost.h>

#include <windows.h>

#include <cstddef>

namespace orv {

namespace {

constexpr const wchar_t* kVariable = L"ORV_DBPATH";
constexpr const wchar_t* kBelowTemp = L"OrvHost\\Database";

[[noreturn]] void ThrowFolderError(const std::wstring& path, DWORD error) {
    com::Failure failure;
    failure.code = HRESULT_FROM_WIN32(error);
    throw tam::RunTimeError(static_cast<HRESULT>(errDatabaseFolder), {},
                            L"The database folder \"" + path + L"\" cannot be made: " +
                                failure.Description());
}

std::wstring TempFolder() {
    wchar_t path[MAX_PATH + 1] = {};
    return {path, GetTempPathW(MAX_PATH + 1, path)};
}

std::wstring FullFolder(const std::wstring& path) {
    std::wstring full = FullPath(path);
    if (full.empty()) {
        ThrowFolderError(path, GetLastError());
    }
    // The root of a drive keeps its backslash: "C:" alone is something else.
    if (full.size() > 3 && full.back() == L'\\') {
        full.pop_back();
    }
    return full;
}

void MakeFolder(const std::wstring& path) {
    if (IsFolder(path) || CreateDirectoryW(path.c_str(), nullptr) != FALSE) {
        return;
    }
    const DWORD error = GetLastError();
    const std::size_t end = path.find_last_of(L'\\');
    if (error != ERROR_PATH_NOT_FOUND || end == std::wstring::npos) {
        ThrowFolderError(path, error);
    }
    MakeFolder(path.substr(0, end));
    if (CreateDirectoryW(path.c_str(), nullptr) == FALSE) {
        ThrowFolderError(path, GetLastError());
    }
}

} // namespace

bool IsFolder(const std::wstring& path) noexcept {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::wstring FullPath(const std::wstring& path) {
    std::wstring full(path.size() + MAX_PATH, L'\0');
    DWORD size = GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    if (size >= full.size()) {
        full.resize(size);
        size = GetFullPathNameW(path.c_str(), size, full.data(), nullptr);
    }
    full.resize(size);
    return full;
}

std::wstring DatabaseFolder() {
    const std::wstring given = com::EnvironmentText(kVariable);
    std::wstring folder = FullFolder(given.empty() ? TempFolder() + kBelowTemp : given);
    MakeFolder(folder);
    return folder;
}

} // namespace orv
