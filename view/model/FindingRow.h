#pragma once

#include "view/model/Row.h"

#include "check/Check.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace view {

/// How bad it is; a box is something that the component itself told.
enum class Weight { Box, Error, Warning, Note };

/// One line of the pane of findings.
struct FindingRow {
    Weight weight = Weight::Error;
    /// Of the source, from 1; 0 when it has no place there.
    std::size_t line = 0;
    std::size_t column = 0;
    /// After the last character that it means.
    std::size_t endLine = 0;
    std::size_t endColumn = 0;
    /// The rule's name; of a box its caption. UTF-8, as the message.
    std::string rule = {};
    std::string message = {};
    /// The point that it is about.
    std::optional<PointId> point = std::nullopt;
};

/// The rows of a document's findings, in the document's order. The text is the one that
/// was checked; a finding inside a point's element is about that point.
std::vector<FindingRow> RowsOf(const std::vector<check::Finding>& findings, const std::string& text);

/// The worst first; what is equally bad as it stands in the source.
void SortByWeight(std::vector<FindingRow>& rows);
/// As they stand in the source; what has no place there comes first.
void SortByPlace(std::vector<FindingRow>& rows);

} // namespace view
