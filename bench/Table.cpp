#include "bench/Table.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace bench {

namespace {

constexpr std::string_view kIndent = "  ";
constexpr std::string_view kGap = "  ";

bool StartsCharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
}

std::string Pad(const std::string& text, std::size_t width, bool right) {
    const std::string blanks(width - std::min(width, Width(text)), ' ');
    return right ? blanks + text : text + blanks;
}

void TrimEnd(std::string& line) {
    line.erase(line.find_last_not_of(' ') + 1);
}

} // namespace

std::size_t Width(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), StartsCharacter));
}

std::string OneLine(std::string_view text) {
    std::string line(text);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    return line;
}

std::string Cut(std::string_view text, std::size_t width) {
    if (Width(text) <= width) {
        return std::string(text);
    }
    std::size_t end = 0;
    for (std::size_t seen = 0; end < text.size(); ++end) {
        if (StartsCharacter(text[end]) && ++seen == width) {
            break;
        }
    }
    return std::string(text.substr(0, end)) + "…";
}

std::vector<std::string> Wrap(std::string_view text, std::size_t width) {
    std::vector<std::string> lines(1);
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        const std::string_view word = text.substr(at, end - at);
        if (!lines.back().empty() && Width(lines.back()) + 1 + Width(word) > width) {
            lines.emplace_back();
        }
        lines.back() += (lines.back().empty() ? "" : " ") + std::string(word);
        at = end + 1;
    }
    return lines;
}

std::vector<std::string> Fitted(std::string_view text, std::size_t width) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::string_view line = text.substr(at, end - at);
        const std::size_t indent = std::min(line.find_first_not_of(' '), line.size());
        if (Width(line) <= width || indent >= width) {
            lines.emplace_back(line);
        } else {
            for (const std::string& part : Wrap(line.substr(indent), width - indent)) {
                lines.push_back(std::string(indent, ' ') + part);
            }
        }
        at = end + 1;
    }
    return lines;
}

Table::Table(std::vector<std::string> headings) {
    for (std::string& heading : headings) {
        right_.push_back(heading.starts_with('>'));
        heading.erase(0, right_.back() ? 1 : 0);
    }
    rows_.push_back(std::move(headings));
}

void Table::Add(std::vector<std::string> cells) {
    cells.resize(rows_.front().size());
    std::transform(cells.begin(), cells.end(), cells.begin(),
                   [](const std::string& cell) { return OneLine(cell); });
    rows_.push_back(std::move(cells));
}

std::vector<std::size_t> Table::Widths(std::size_t width) const {
    std::vector<std::size_t> widths(rows_.front().size());
    for (const auto& row : rows_) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], Width(row[column]));
        }
    }
    const std::size_t taken = kIndent.size() + kGap.size() * (widths.size() - 1);
    const std::size_t room = std::max(width, taken + widths.size()) - taken;
    while (std::accumulate(widths.begin(), widths.end(), std::size_t{0}) > room) {
        --*std::max_element(widths.begin(), widths.end());
    }
    return widths;
}

std::string Table::Print(std::size_t width) const {
    const std::vector<std::size_t> widths = Widths(width);
    std::string text;
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        std::string line(kIndent);
        for (std::size_t column = 0; column < widths.size(); ++column) {
            line += (column == 0 ? "" : std::string(kGap)) +
                    Pad(Cut(rows_[row][column], widths[column]), widths[column], right_[column]);
        }
        TrimEnd(line);
        text += line + "\n";
        if (row == 0) {
            std::string rule(kIndent);
            for (std::size_t column = 0; column < widths.size(); ++column) {
                rule += (column == 0 ? "" : std::string(kGap)) + std::string(widths[column], '-');
            }
            text += rule + "\n";
        }
    }
    return text;
}

void Fields::Add(std::string name, const std::string& value) {
    fields_.emplace_back(std::move(name), OneLine(value));
}

std::string Fields::Print(std::size_t width) const {
    constexpr std::size_t kNarrowest = 20;
    std::size_t names = 0;
    for (const auto& field : fields_) {
        names = std::max(names, Width(field.first));
    }
    const std::size_t start = kIndent.size() + names + kGap.size();
    const std::size_t room = std::max(width, start + kNarrowest) - start;
    std::string text;
    for (const auto& [name, value] : fields_) {
        std::string line = std::string(kIndent) + Pad(name, names, false) + std::string(kGap);
        for (const std::string& part : Wrap(value, room)) {
            line += part;
            TrimEnd(line);
            text += line + "\n";
            line = std::string(start, ' ');
        }
    }
    return text;
}

} // namespace bench
