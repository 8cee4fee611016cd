#include "view/model/FindingRow.h"

#include "view/model/SourcePoints.h"

#include <algorithm>
#include <tuple>

namespace view {

namespace {

Weight WeightOf(check::Severity severity) noexcept {
    switch (severity) {
    case check::Severity::Error:
        return Weight::Error;
    case check::Severity::Warning:
        return Weight::Warning;
    case check::Severity::Note:
        break;
    }
    return Weight::Note;
}

std::string MessageOf(const check::Finding& finding) {
    std::string message = finding.message;
    if (!finding.expected.empty()) {
        message += "; expected: " + finding.expected;
    }
    if (!finding.suggestion.empty()) {
        message += ". Did you mean " + finding.suggestion + "?";
    }
    return message;
}

} // namespace

std::vector<FindingRow> RowsOf(const std::vector<check::Finding>& findings, const std::string& text) {
    const SourcePoints points(text);
    std::vector<FindingRow> rows;
    rows.reserve(findings.size());
    for (const check::Finding& finding : findings) {
        rows.push_back({WeightOf(finding.Level()), finding.line, finding.column, finding.endLine,
                        finding.endColumn, std::string(check::RuleOf(finding.rule).name), MessageOf(finding),
                        points.At(finding.span.at)});
    }
    return rows;
}

void SortByWeight(std::vector<FindingRow>& rows) {
    std::stable_sort(rows.begin(), rows.end(), [](const FindingRow& left, const FindingRow& right) {
        return std::tie(left.weight, left.line, left.column) <
               std::tie(right.weight, right.line, right.column);
    });
}

void SortByPlace(std::vector<FindingRow>& rows) {
    std::stable_sort(rows.begin(), rows.end(), [](const FindingRow& left, const FindingRow& right) {
        return std::tie(left.line, left.column) < std::tie(right.line, right.column);
    });
}

} // namespace view
