#pragma once

#include <string_view>

namespace tam {

/// The forms that edit a value.
enum class EditorKind { None, Numeric, Text, Enumeration, Structure, BitField };

/// The editor that fits a general type; the comparison is exact.
EditorKind EditorFor(std::wstring_view generalType) noexcept;

// What the structure editor says of a field that no editor fits.
inline constexpr const wchar_t* kNoEditorText = L"Unknown or Not modificable Attribute";
inline constexpr const wchar_t* kNoEditorCaption = L"Edit Value";

} // namespace tam
