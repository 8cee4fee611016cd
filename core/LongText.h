#pragma once

#include <string>
#include <string_view>

namespace tam {

// Texts of any length and content in a text box of several lines.

/// The text with each of its line breaks as CR LF, the only one that every text
/// box knows: a CR or an LF alone becomes one. A NUL, which ends a text there,
/// becomes a blank.
std::wstring WithLineBreaks(std::wstring_view text);

/// A line break that belongs to the display and not to the text, as text boxes
/// make them themselves where a line is too wide. No text of WithLineBreaks
/// contains it.
inline constexpr std::wstring_view kSoftBreak = L"\r\r\n";

/// The text with soft breaks in its long lines, after a blank where there is
/// one. A text box measures a line whole for each row that it cuts off, which
/// takes minutes for a line of a megabyte.
std::wstring WithSoftBreaks(std::wstring_view text);
std::wstring WithoutSoftBreaks(std::wstring_view text);

} // namespace tam
