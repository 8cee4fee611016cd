#pragma once

#include "core/GeneralType.h"

#include <vector>

namespace tam {

/// The forms that edit a value.
enum class EditorKind { None, Numeric, Text, Enumeration, Structure, BitField };

/// The editor that fits a general type.
EditorKind EditorFor(GeneralType type) noexcept;

/// The widths of a list's columns in the room that there is. Each has the width
/// that it wants while they all fit, and the last one what is left over; where
/// they do not fit, the widest are narrowed to one width.
std::vector<int> ColumnWidths(const std::vector<int>& wanted, int room);

/// How much of a list's height shows a row cut through.
int CutRowHeight(int heightOfRows, int rowHeight) noexcept;

// What the structure editor says of a field that no editor fits.
inline constexpr const wchar_t* kNoEditorText = L"Unknown or Not modificable Attribute";
inline constexpr const wchar_t* kNoEditorCaption = L"Edit Value";

} // namespace tam
