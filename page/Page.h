#pragma once

#include "drawing/Sheet.h"

#include <cstddef>
#include <string>
#include <vector>

namespace page {

// What a device sheet says. All texts are UTF-8 as a reader is to see them; those of
// documents may hold anything.

struct Fact {
    std::string name;
    std::string value;
};

struct Facts {
    std::string title;
    std::vector<Fact> facts;
};

struct Column {
    std::string title;
    /// Its cells stand at the right, as numbers do.
    bool isNumber = false;
};

struct Cell {
    std::string text;
    /// A smaller line below the text.
    std::string note = {};
};

/// A table whose first column names the rows.
struct Table {
    std::string title;
    /// What the rows are, in a sentence.
    std::string description;
    /// Said when there are no rows.
    std::string whenEmpty;
    std::vector<Column> columns;
    std::vector<std::vector<Cell>> rows;
};

struct Label {
    std::string value;
    std::string text;
};

struct Enumeration {
    std::string title;
    /// The points that have it.
    std::string users;
    std::vector<Label> labels;
};

enum class Severity { Error, Warning, Note };

struct Finding {
    Severity severity;
    /// Identifier of the rule.
    std::string rule;
    std::size_t line = 0;
    std::size_t column = 0;
    std::string message;
    /// What was probably meant; may be empty.
    std::string suggestion = {};
};

struct Page {
    /// The module's name.
    std::string title;
    std::string subtitle;
    /// The block, and its icon as the bytes of a PNG; no icon when empty.
    drawing::Sheet sheet;
    std::string icon;
    std::vector<Facts> identity;
    std::vector<Table> points;
    std::vector<Enumeration> enumerations;
    /// Whether the document was checked, and what that found.
    bool isChecked = false;
    std::vector<Finding> findings;
    /// The last line: who made the page of what.
    std::string origin;
};

/// The page as one file that needs no other: no scripts, no links to elsewhere.
std::string Html(const Page& page);

/// The block alone, as an SVG document.
std::string Svg(const Page& page);

} // namespace page
