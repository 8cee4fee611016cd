#pragma once

#include <windows.h>

#include <string>

namespace view {

/// Gives the clipboard a text; false when another program holds it.
bool PutOnClipboard(HWND owner, const std::wstring& text);

} // namespace view
