#include "page/Html.h"

#include "drawing/Svg.h"

#include <cstddef>
#include <vector>

namespace page {

using drawing::Escaped;

namespace {

/// What stands in a cell that has nothing to say: a dash, which is read as such.
constexpr const char* kNothing = "<span class=\"none\">\u2013</span>";

std::string Content(const Cell& cell) {
    if (cell.text.empty() && cell.note.empty()) {
        return kNothing;
    }
    return (cell.text.empty() ? "" : "<span>" + Escaped(cell.text) + "</span>") +
           (cell.note.empty() ? "" : "<span class=\"cell-note\">" + Escaped(cell.note) + "</span>");
}

std::string Row(const std::vector<Column>& columns, const std::vector<Cell>& cells) {
    std::string html = "<tr>";
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const Cell cell = i < cells.size() ? cells[i] : Cell{};
        html += i == 0 ? "<th scope=\"row\">" + Content(cell) + "</th>"
                       : "<td" + std::string(columns[i].isNumber ? " class=\"number\"" : "") +
                             " data-label=\"" + Escaped(columns[i].title) + "\">" + Content(cell) + "</td>";
    }
    return html + "</tr>\n";
}

struct SeverityWords {
    const char* style;
    const char* word;
};

SeverityWords WordsOf(Severity severity) noexcept {
    switch (severity) {
    case Severity::Error:
        return {"error", "Error"};
    case Severity::Warning:
        return {"warning", "Warning"};
    case Severity::Note:
        break;
    }
    return {"note", "Note"};
}

} // namespace

std::string HeadingHtml(std::string_view title, std::size_t count) {
    return Escaped(title) + " <span class=\"count\">(" + std::to_string(count) + ")</span>";
}

std::string FactsHtml(const Facts& facts) {
    std::string html = "<div><h3>" + Escaped(facts.title) + "</h3>\n<dl>";
    for (const Fact& fact : facts.facts) {
        html += "<dt>" + Escaped(fact.name) + "</dt><dd>" +
                (fact.value.empty() ? std::string(kNothing) : Escaped(fact.value)) + "</dd>\n";
    }
    return html + "</dl></div>\n";
}

std::string TableHtml(const Table& table, std::string_view id) {
    const std::string identifier(id);
    std::string html = "<section aria-labelledby=\"" + identifier + "\">\n<h2 id=\"" + identifier + "\">" +
                       HeadingHtml(table.title, table.rows.size()) + "</h2>\n";
    if (table.rows.empty()) {
        return html + "<p class=\"about\">" + Escaped(table.whenEmpty) + "</p>\n</section>\n";
    }
    html += "<table class=\"points\"><caption>" + Escaped(table.description) + "</caption>\n<thead><tr>";
    for (const Column& column : table.columns) {
        html += "<th scope=\"col\"" + std::string(column.isNumber ? " class=\"number\"" : "") + ">" +
                Escaped(column.title) + "</th>";
    }
    html += "</tr></thead>\n<tbody>\n";
    for (const std::vector<Cell>& row : table.rows) {
        html += Row(table.columns, row);
    }
    return html + "</tbody></table>\n</section>\n";
}

std::string EnumerationHtml(const Enumeration& enumeration) {
    std::string html = "<div><table><caption><h3>" + Escaped(enumeration.title) + "</h3>";
    if (!enumeration.users.empty()) {
        html += "<p>" + Escaped(enumeration.users) + "</p>";
    }
    html += "</caption>\n<thead><tr><th scope=\"col\">Value</th><th "
            "scope=\"col\">Label</th></tr></thead>\n<tbody>";
    for (const Label& label : enumeration.labels) {
        html += "<tr><th scope=\"row\">" + Escaped(label.value) + "</th><td>" + Escaped(label.text) +
                "</td></tr>\n";
    }
    return html + "</tbody></table></div>\n";
}

std::string FindingHtml(const Finding& finding) {
    const SeverityWords words = WordsOf(finding.severity);
    std::string html = "<li class=\"" + std::string(words.style) + "\"><span class=\"severity\">" +
                       words.word + "</span> <span class=\"place\">";
    if (finding.line > 0) {
        html += "line " + std::to_string(finding.line) + ", column " + std::to_string(finding.column) + " ";
    }
    html += "<code>" + Escaped(finding.rule) + "</code></span>\n<p class=\"message\">" +
            Escaped(finding.message) + "</p>";
    if (!finding.suggestion.empty()) {
        html += "<p class=\"message\">" + Escaped(finding.suggestion) + "</p>";
    }
    return html + "</li>\n";
}

} // namespace page
