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

/// What the two dialogs have in common; the flags come on top.
struct Request {
    HWND owner;
    UINT title;
    UINT filter;
    DWORD flags;
    const wchar_t* ending = nullptr;
    std::wstring suggested = {};
};

std::wstring Choose(const Request& request, BOOL(WINAPI* show)(OPENFILENAMEW*)) {
    const std::wstring words = Text(request.title);
    const std::wstring filters = FilterOf(request.filter);
    std::array<wchar_t, kLongestPath> path{};
    lstrcpynW(path.data(), request.suggested.c_str(), static_cast<int>(path.size()));
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = request.owner;
    dialog.lpstrTitle = words.c_str();
    dialog.lpstrFilter = filters.c_str();
    dialog.lpstrDefExt = request.ending;
    dialog.lpstrFile = path.data();
    dialog.nMaxFile = static_cast<DWORD>(path.size());
    dialog.Flags = request.flags | OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST;
    return show(&dialog) != FALSE ? std::wstring(path.data()) : std::wstring();
}

} // namespace

std::wstring ChooseFile(HWND owner, UINT title, UINT filter) {
    return Choose({owner, title, filter, OFN_FILEMUSTEXIST}, GetOpenFileNameW);
}

std::wstring ChooseName(HWND owner, UINT title, UINT filter, const wchar_t* ending,
                        const std::wstring& suggested, bool replaces) {
    const DWORD flags = replaces ? OFN_OVERWRITEPROMPT : 0;
    return Choose({owner, title, filter, flags, ending, suggested}, GetSaveFileNameW);
}

} // namespace view
