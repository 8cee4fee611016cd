#include "host/Library.h"

#include "com/Dll.h"
#include "com/Environment.h"
#include "core/RunTimeError.h"
#include "host/Folders.h"
#include "host/XmlDocument.h"

#include <OrvHost.h>

#include <windows.h>

namespace orv {

namespace {

constexpr const wchar_t* kVariable = L"ORV_LIBRARY";
constexpr const wchar_t* kBesideDll = L"channels";
constexpr const wchar_t* kRoot = L"AppObject";
constexpr std::wstring_view kForbidden = L"\\/:*?\"<>|";

/// What was set; empty while the default counts.
std::wstring& SetFolder() noexcept {
    static std::wstring folder;
    return folder;
}

std::wstring FullFolder(std::wstring_view folder) {
    std::wstring full = FullPath(std::wstring(folder));
    if (!full.empty() && full.back() != L'\\') {
        full += L'\\';
    }
    return full;
}

[[noreturn]] void Throw(BlockError code, const std::wstring& text) {
    throw tam::RunTimeError(static_cast<HRESULT>(code), {}, text);
}

/// An identifier is a file's base name and nothing that leads elsewhere.
bool IsFileName(std::wstring_view identifier) noexcept {
    return !identifier.empty() && identifier.find_first_of(kForbidden) == std::wstring_view::npos &&
           identifier.find(L'\0') == std::wstring_view::npos;
}

bool IsFile(const std::wstring& path) noexcept {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

} // namespace

std::wstring LibraryFolder() {
    if (!SetFolder().empty()) {
        return SetFolder();
    }
    const std::wstring given = com::EnvironmentText(kVariable);
    return FullFolder(given.empty() ? com::ThisDll().Folder() + kBesideDll : given);
}

void SetLibraryFolder(std::wstring_view folder) {
    std::wstring full = folder.empty() ? std::wstring() : FullFolder(folder);
    if (!folder.empty() && (full.empty() || !IsFolder(full))) {
        Throw(errLibraryFolder, L"The library folder \"" + std::wstring(folder) + L"\" is not there");
    }
    SetFolder().swap(full);
}

tam::dom::Document LoadDefinition(std::wstring_view identifier) {
    const std::wstring path = LibraryFolder() + std::wstring(identifier) + L".xml";
    if (!IsFileName(identifier) || !IsFile(path)) {
        Throw(errNoDefinition,
              L"The library has no definition of \"" + std::wstring(identifier) + L"\" (" + path + L")");
    }
    tam::dom::Document document = LoadXmlFile(path, errNotADefinition);
    if (RootName(document) != kRoot) {
        Throw(errNotADefinition, L"\"" + path + L"\" is no definition: its document element is \"" +
                                     RootName(document) + L"\", not \"" + kRoot + L"\"");
    }
    return document;
}

} // namespace orv
