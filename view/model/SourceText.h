#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace view {

/// A place in a text, from 1. Columns are characters; a tab is one.
struct SourcePlace {
    std::size_t line = 1;
    std::size_t column = 1;
    bool operator==(const SourcePlace&) const = default;
};

/// A UTF-8 text by lines. A line ends with CR LF, LF or CR, as the checks count them.
/// Past its end a place is the end: of its line, or of the text.
class SourceText {
  public:
    SourceText() : SourceText(std::string()) {}
    explicit SourceText(std::string text);

    const std::string& Text() const noexcept { return text_; }
    /// At least 1.
    std::size_t Lines() const noexcept { return starts_.size(); }
    /// A line without its end, from 1; empty past the last one.
    std::string_view Line(std::size_t line) const noexcept;

    /// The byte at which a place is, and the place of a byte. A byte within a line's end
    /// is at the end of the line.
    std::size_t OffsetOf(SourcePlace place) const noexcept;
    SourcePlace PlaceOf(std::size_t offset) const noexcept;

    /// The text as a control takes it, in UTF-16 with this end at each line, and how far in
    /// there a place is.
    std::u16string Shown(std::u16string_view lineEnd) const;
    std::size_t ShownOffsetOf(SourcePlace place, std::size_t lineEndSize) const noexcept;
    /// The place of what is so far in there. Within a line's end it is the end of the line,
    /// between the halves of a character that character.
    SourcePlace PlaceOfShown(std::size_t offset, std::size_t lineEndSize) const noexcept;
    /// In a line: how many UTF-16 units are before a column.
    std::size_t UnitsBefore(SourcePlace place) const noexcept;

  private:
    std::string text_;
    /// Of each line its first byte, and how many UTF-16 units the lines before it have
    /// without their ends.
    std::vector<std::size_t> starts_;
    std::vector<std::size_t> units_;
};

} // namespace view
