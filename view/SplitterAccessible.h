#pragma once

#include <windows.h>

namespace view {

class Splitter;

/// The answer to WM_GETOBJECT that tells a screen reader what a splitter is, and how much
/// room it gives; 0 for an object that the system is to answer for.
LRESULT AnswerGetObject(const Splitter& splitter, WPARAM wParam, LPARAM lParam);

} // namespace view
