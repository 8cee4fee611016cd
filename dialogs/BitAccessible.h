#pragma once

#include <windows.h>

#include <cstddef>

namespace tam {

/// Answers WM_GETOBJECT for the label of a bit, whose text is a bare "0" or
/// "1": to a screen reader it is a check box "Bit 3" with that value. 0 when
/// the window's own answer will do.
LRESULT AnswerGetObject(HWND label, std::size_t bit, WPARAM wParam, LPARAM lParam);

} // namespace tam
