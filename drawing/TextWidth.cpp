#include "drawing/TextWidth.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>
#include <vector>

namespace drawing {

namespace {

// Thousandths of the letter height, from the blank to the tilde, of a common
// sans-serif font.
constexpr std::array<std::uint16_t, 95> kLatin = {
    278, 278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 333,  278, 278, 556, 556, 556,
    556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584, 584, 556, 1015, 667, 667, 722, 722, 667,
    611, 778, 722, 278, 500, 667, 556, 833, 722, 778, 667, 778, 722, 667,  611, 722, 667, 944, 667,
    667, 611, 278, 278, 278, 469, 556, 333, 556, 556, 500, 556, 556, 278,  556, 556, 222, 222, 500,
    222, 833, 556, 556, 556, 556, 333, 500, 278, 556, 500, 722, 500, 500,  500, 334, 260, 334, 584};

// The widest fonts in use are about this much wider than the table.
constexpr double kRoom = 1.18;
constexpr double kBold = 1.12;

struct Range {
    char32_t first;
    char32_t last;
};
constexpr Range kMarks[] = {{0x300, 0x36F}, {0x200B, 0x200F}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}};
constexpr Range kWide[] = {{0x1100, 0x115F}, {0x2E80, 0xA4CF},   {0xAC00, 0xD7A3},
                           {0xF900, 0xFAFF}, {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},
                           {0xFFE0, 0xFFE6}, {0x1F300, 0x1FAFF}, {0x20000, 0x3FFFD}};

// Letters of the scripts that run from right to left: Hebrew, Arabic and their neighbours.
constexpr Range kRightToLeft[] = {
    {0x590, 0x8FF}, {0xFB1D, 0xFDFF}, {0xFE70, 0xFEFF}, {0x10800, 0x10FFF}, {0x1E800, 0x1EFFF}};
// What has no direction of its own: signs, digits, blanks and marks.
constexpr Range kNeutral[] = {{0, 0x40}, {0x5B, 0x60}, {0x7B, 0xBF}, {0x300, 0x36F}, {0x2000, 0x214F}};

template <std::size_t n>
bool IsIn(const Range (&ranges)[n], char32_t character) noexcept {
    return std::any_of(std::begin(ranges), std::end(ranges), [character](const Range& range) {
        return range.first <= character && character <= range.last;
    });
}

double Thousandths(char32_t character) noexcept {
    constexpr char32_t kFirst = U' ';
    if (character >= kFirst && character - kFirst < kLatin.size()) {
        return kLatin[character - kFirst];
    }
    if (IsIn(kMarks, character)) {
        return 0;
    }
    return IsIn(kWide, character) ? 1000 : 640;
}

/// True when the last letter of a text belongs to a script that runs from right to left.
bool EndsRightToLeft(std::string_view text) noexcept {
    bool result = false;
    for (std::size_t at = 0; at < text.size();) {
        const char32_t character = NextCharacter(text, at);
        if (!IsIn(kNeutral, character)) {
            result = IsIn(kRightToLeft, character);
        }
    }
    return result;
}

/// The ellipsis has no direction and would stand where the line ends, which is where such a
/// text begins. The mark behind it, which nobody sees, keeps it with the text.
std::string WithEllipsis(std::string text) {
    constexpr const char* kEllipsis = "\u2026";
    constexpr const char* kRightToLeftMark = "\u200F";
    const bool isRightToLeft = EndsRightToLeft(text);
    return std::move(text) + kEllipsis + (isRightToLeft ? kRightToLeftMark : "");
}

} // namespace

FontShape ShapeOf(Font font) noexcept {
    switch (font) {
    case Font::Title:
        return {15, true};
    case Font::Subtitle:
        return {11, false};
    case Font::Name:
        return {13, false};
    case Font::Note:
        return {10.5, false};
    case Font::Address:
        return {9.5, false};
    case Font::Tag:
        break;
    }
    return {11, false};
}

char32_t NextCharacter(std::string_view text, std::size_t& at) noexcept {
    constexpr char32_t kReplacement = 0xFFFD;
    const auto byte = [text](std::size_t place) { return static_cast<unsigned char>(text[place]); };
    const unsigned char first = byte(at++);
    if (first < 0x80) {
        return first;
    }
    const std::size_t more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
    if (first < 0xC2 || first > 0xF4 || text.size() - at < more) {
        return kReplacement;
    }
    char32_t character = first & (0x3FU >> more);
    for (std::size_t i = 0; i < more; ++i) {
        if ((byte(at + i) & 0xC0U) != 0x80U) {
            return kReplacement;
        }
        character = character << 6U | (byte(at + i) & 0x3FU);
    }
    constexpr std::array<char32_t, 4> kLeast = {0, 0x80, 0x800, 0x10000};
    if (character < kLeast[more] || character > 0x10FFFF || (character >= 0xD800 && character < 0xE000)) {
        return kReplacement;
    }
    at += more;
    return character;
}

double WidthByTable(std::string_view text, Font font) noexcept {
    double thousandths = 0;
    for (std::size_t at = 0; at < text.size();) {
        thousandths += Thousandths(NextCharacter(text, at));
    }
    const FontShape shape = ShapeOf(font);
    return thousandths / 1000 * shape.size * kRoom * (shape.isBold ? kBold : 1);
}

std::string Shortened(const std::string& text, Font font, double width, const Measure& measure) {
    if (measure(text, font) <= width) {
        return text;
    }
    std::vector<std::size_t> ends;
    for (std::size_t at = 0; at < text.size();) {
        ends.push_back(at);
        NextCharacter(text, at);
    }
    // The longest beginning that fits: widths grow with the text.
    const auto fits = [&](std::size_t end) {
        return measure(WithEllipsis(text.substr(0, end)), font) <= width;
    };
    const auto first = std::partition_point(ends.begin(), ends.end(), fits);
    return WithEllipsis(first == ends.begin() ? std::string() : text.substr(0, *(first - 1)));
}

} // namespace drawing
