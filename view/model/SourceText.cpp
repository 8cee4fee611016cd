#include "view/model/SourceText.h"

#include "check/Utf8.h"

#include <algorithm>
#include <utility>

namespace view {

namespace {

constexpr char32_t kFirstPair = 0x10000;

constexpr std::size_t UnitsOf(char32_t c) noexcept {
    return c >= kFirstPair ? 2 : 1;
}

/// Bytes after the first one of a character. The checks count the others, so that a byte
/// that belongs to no character is one.
constexpr bool IsInside(char c) noexcept {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

} // namespace

SourceText::SourceText(std::string text) : text_(std::move(text)), starts_{0}, units_{0} {
    std::size_t units = 0;
    for (std::size_t at = 0; at < text_.size();) {
        const char c = text_[at];
        if (c != '\r' && c != '\n') {
            units += UnitsOf(check::NextCharacter(text_, at));
            continue;
        }
        at += c == '\r' && at + 1 < text_.size() && text_[at + 1] == '\n' ? 2U : 1U;
        starts_.push_back(at);
        units_.push_back(units);
    }
}

std::string_view SourceText::Line(std::size_t line) const noexcept {
    if (line == 0 || line > starts_.size()) {
        return {};
    }
    const std::size_t begin = starts_[line - 1];
    std::size_t end = line < starts_.size() ? starts_[line] : text_.size();
    if (line < starts_.size()) { // CR LF, LF or CR
        end -= end - begin >= 2 && text_[end - 1] == '\n' && text_[end - 2] == '\r' ? 2U : 1U;
    }
    return std::string_view(text_).substr(begin, end - begin);
}

std::size_t SourceText::OffsetOf(SourcePlace place) const noexcept {
    if (place.line > starts_.size()) {
        return text_.size();
    }
    const std::size_t line = std::max<std::size_t>(place.line, 1);
    const std::string_view text = Line(line);
    std::size_t at = 0;
    for (std::size_t column = 1; column < place.column && at < text.size(); ++column) {
        do {
            ++at;
        } while (at < text.size() && IsInside(text[at]));
    }
    return starts_[line - 1] + at;
}

SourcePlace SourceText::PlaceOf(std::size_t offset) const noexcept {
    const auto next = std::upper_bound(starts_.begin(), starts_.end(), offset);
    const auto line = static_cast<std::size_t>(next - starts_.begin());
    const std::string_view text = Line(line).substr(0, offset - starts_[line - 1]);
    const auto characters = std::count_if(text.begin(), text.end(), [](char c) { return !IsInside(c); });
    return {line, static_cast<std::size_t>(characters) + 1};
}

std::u16string SourceText::Shown(std::u16string_view lineEnd) const {
    std::u16string shown;
    shown.reserve(text_.size() + starts_.size() * lineEnd.size());
    for (std::size_t line = 1; line <= starts_.size(); ++line) {
        const std::string_view text = Line(line);
        for (std::size_t at = 0; at < text.size();) {
            const char32_t c = check::NextCharacter(text, at);
            if (c < kFirstPair) {
                shown += static_cast<char16_t>(c);
            } else {
                shown += static_cast<char16_t>(0xD800U + ((c - kFirstPair) >> 10U));
                shown += static_cast<char16_t>(0xDC00U + ((c - kFirstPair) & 0x3FFU));
            }
        }
        if (line < starts_.size()) {
            shown += lineEnd;
        }
    }
    return shown;
}

std::size_t SourceText::UnitsBefore(SourcePlace place) const noexcept {
    const std::string_view line = Line(place.line);
    std::size_t units = 0;
    std::size_t at = 0;
    for (std::size_t column = 1; column < place.column && at < line.size(); ++column) {
        units += UnitsOf(check::NextCharacter(line, at));
    }
    return units;
}

std::size_t SourceText::ShownOffsetOf(SourcePlace place, std::size_t lineEndSize) const noexcept {
    const bool isPast = place.line > starts_.size();
    const std::size_t line = isPast ? starts_.size() : std::max<std::size_t>(place.line, 1);
    const std::size_t column = isPast ? text_.size() + 1 : place.column;
    return units_[line - 1] + (line - 1) * lineEndSize + UnitsBefore({line, column});
}

SourcePlace SourceText::PlaceOfShown(std::size_t offset, std::size_t lineEndSize) const noexcept {
    std::size_t first = 0;
    for (std::size_t past = units_.size(); past - first > 1;) { // the last line that begins there or before
        const std::size_t middle = first + (past - first) / 2;
        (units_[middle] + middle * lineEndSize <= offset ? first : past) = middle;
    }
    const std::string_view line = Line(first + 1);
    const std::size_t wanted = offset - std::min(offset, units_[first] + first * lineEndSize);
    SourcePlace place{first + 1, 1};
    std::size_t units = 0;
    for (std::size_t at = 0; at < line.size(); ++place.column) {
        units += UnitsOf(check::NextCharacter(line, at));
        if (units > wanted) {
            break;
        }
    }
    return place;
}

} // namespace view
