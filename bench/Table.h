#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace bench {

/// Rows of UTF-8 cells, printed in columns that fit a width: where the cells
/// need more, the widest columns are cut and cut cells end with "…".
class Table {
  public:
    /// A heading that starts with ">" has its column aligned to the right.
    explicit Table(std::vector<std::string> headings);
    void Add(std::vector<std::string> cells);
    /// Each line indented by two blanks and closed by a line feed.
    std::string Print(std::size_t width) const;

  private:
    std::vector<std::size_t> Widths(std::size_t width) const;

    std::vector<std::vector<std::string>> rows_;
    std::vector<bool> right_;
};

/// Names and values in two columns. Nothing is cut: a long value goes on in
/// the next line.
class Fields {
  public:
    void Add(std::string name, const std::string& value);
    bool IsEmpty() const noexcept { return fields_.empty(); }
    std::string Print(std::size_t width) const;

  private:
    std::vector<std::pair<std::string, std::string>> fields_;
};

/// Places that a text takes in a terminal: one per character.
std::size_t Width(std::string_view text);
/// The text on one line, without control characters.
std::string OneLine(std::string_view text);
/// The text cut to a width, with "…" as the sign of it.
std::string Cut(std::string_view text, std::size_t width);
/// The text broken at blanks into lines of at most a width.
std::vector<std::string> Wrap(std::string_view text, std::size_t width);
/// The lines of a text; those that are wider than a width are broken at blanks and go on
/// below their first word.
std::vector<std::string> Fitted(std::string_view text, std::size_t width);

} // namespace bench
