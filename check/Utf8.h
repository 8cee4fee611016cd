#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Texts are UTF-8 here, one char a byte. A character is a code point.

namespace check {

/// The character that begins at a position, which moves after it. A byte that
/// begins none is U+FFFD.
char32_t NextCharacter(std::string_view text, std::size_t& at);
void AppendCharacter(std::string& text, char32_t c);
std::size_t CountCharacters(std::string_view text);
/// UTF-16 code units, which is what the component counts.
std::size_t CountCodeUnits(std::string_view text);

/// XML's blanks: space, tab and both ends of line.
inline constexpr std::string_view kBlanks = " \t\r\n";
constexpr bool IsBlank(char c) noexcept {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}
bool IsAllBlank(std::string_view text);
/// The text without XML's blanks around it; of blanks alone the empty end of them.
std::string_view Trim(std::string_view text);

/// Of ASCII letters alone: keywords have no others.
constexpr char UpperLetter(char c) noexcept {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
std::string Upper(std::string_view text);
bool EqualKeyword(std::string_view a, std::string_view b);

/// As the component compares the names of points: letter case does not count.
bool EqualName(std::string_view a, std::string_view b);
std::uint64_t HashOfName(std::string_view name);

/// On one line, without what a terminal would obey: control characters become blanks, those
/// of the second set (U+0080 to U+009F) too.
std::string Clean(std::string_view text);

/// In quotation marks, shortened in the middle of nothing: what a message shows of a text.
/// Clean.
std::string Quoted(std::string_view text);

/// In the system's own letters: a character past the first 65,536 is two where these have
/// 16 bits.
std::wstring Wide(std::string_view text);

} // namespace check
