#pragma once

#include <windows.h>

namespace view {

class SheetView;

/// Answers WM_GETOBJECT for the sheet: to a screen reader it is a diagram whose children
/// are the pins. 0 when the window's own answer will do.
LRESULT AnswerGetObject(SheetView& sheet, WPARAM wParam, LPARAM lParam);

} // namespace view
