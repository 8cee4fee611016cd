#pragma once

#include <windows.h>

#include <string>

namespace tam {

/// A read-only text box of several lines that shows a text of any length at
/// once, with a line break for each CR or LF and a blank for each NUL. It draws the text with soft breaks
/// in its long lines; who reads the box gets the text as it was given, and who
/// copies from it gets it without them. It lives as long as its dialog shows.
class LongTextBox {
  public:
    LongTextBox() = default;
    LongTextBox(const LongTextBox&) = delete;
    LongTextBox& operator=(const LongTextBox&) = delete;

    /// Shows a text, which must live as long as the box.
    void Show(HWND edit, const std::wstring& text);

  private:
    static LRESULT CALLBACK Procedure(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    LRESULT Handle(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) const;
    LRESULT Plain(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) const;
    /// Puts the selection on the clipboard.
    void Copy(HWND edit) const;

    const std::wstring* text_ = nullptr;
    WNDPROC plain_ = nullptr;
};

} // namespace tam
