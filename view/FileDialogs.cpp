#include "view/FileDialogs.h"

#include "view/Window.h"

#include <commdlg.h>

#include <algorithm>
#include <array>
#include <cstddef>

namespace view {

namespace {

constexpr std::size_t kLongestPath = 4096;

/// "Words|*.xml|" with NULs, as the dialogs take it.
std::wstring FilterOf(UINT id) {
    std::wstring filter = Text(id);
    std::replace(filter.begin(), filter.end(), L'|', L'\0');
    return filter + L'\0';
}

std::wstring Choose(OPENFILENAMEW& request, const std::wstring& suggested,
                    BOOL(WINAPI* show)(OPENFILENAMEW*)) {
    std::array<wchar_t, kLongestPath> path{};
    lstrcpynW(path.data(), suggested.c_str(), static_cast<int>(path.size()));
    request.lStructSize = sizeof request;
    request.lpstrFile = path.data();
    request.nMaxFile = static_cast<DWORD>(path.size());
    request.Flags |= OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST;
    return show(&request) != FALSE ? std::wstring(path.data()) : std::wstring();
}

} // namespace

std::wstring ChooseFile(HWND owner, UINT title, UINT filter) {
    const std::wstring words = Text(title);
    const std::wstring filters = FilterOf(filter);
    OPENFILENAMEW request{};
    request.hwndOwner = owner;
    request.lpstrTitle = words.c_str();
    request.lpstrFilter = filters.c_str();
    request.Flags = OFN_FILEMUSTEXIST;
    return Choose(request, {}, GetOpenFileNameW);
}

std::wstring ChooseName(HWND owner, UINT title, UINT filter, const wchar_t* ending,
                        const std::wstring& suggested, bool replaces) {
    const std::wstring words = Text(title);
    const std::wstring filters = FilterOf(filter);
    OPENFILENAMEW request{};
    request.hwndOwner = owner;
    request.lpstrTitle = words.c_str();
    request.lpstrFilter = filters.c_str();
    request.lpstrDefExt = ending;
    request.Flags = replaces ? OFN_OVERWRITEPROMPT : 0;
    return Choose(request, suggested, GetSaveFileNameW);
}

} // namespace view
