#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace drawing {

/// The kinds of lettering on a sheet.
enum class Font { Title, Subtitle, Name, Note, Address, Tag };

struct FontShape {
    /// Height of the letters in units of the sheet.
    double size;
    bool isBold;
};
FontShape ShapeOf(Font font) noexcept;

/// How wide a UTF-8 text is in a font, in units of the sheet.
using Measure = std::function<double(std::string_view text, Font font)>;

/// By a table of letters, for those who cannot ask a font. The table has some
/// room, since nobody knows which sans-serif font a reader's machine has.
double WidthByTable(std::string_view text, Font font) noexcept;

/// The text when it fits, else its beginning with an ellipsis.
std::string Shortened(const std::string& text, Font font, double width, const Measure& measure);

/// The code point at a place of a UTF-8 text, and the place after it. A byte that
/// starts no character is U+FFFD.
char32_t NextCharacter(std::string_view text, std::size_t& at) noexcept;

} // namespace drawing
