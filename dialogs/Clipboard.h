#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace tam {

/// The clipboard's text; none when it holds none, or when another program keeps
/// the clipboard open.
std::optional<std::wstring> ClipboardText(HWND window);

/// Puts a text on the clipboard; what is there stays when another program keeps
/// the clipboard open.
void CopyToClipboard(HWND window, const std::wstring& text) noexcept;

} // namespace tam
