#pragma once

#include <windows.h>

#include <string>

namespace view {

/// Has a person choose a file that is there. The texts are resources; empty when it was
/// cancelled.
std::wstring ChooseFile(HWND owner, UINT title, UINT filter);
/// Has a person choose a name to save under; one that is there is asked about unless it
/// is to be added to.
std::wstring ChooseName(HWND owner, UINT title, UINT filter, const wchar_t* ending,
                        const std::wstring& suggested, bool replaces);

} // namespace view
