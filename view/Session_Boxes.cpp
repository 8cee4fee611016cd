#include "view/Session.h"
#include "view/SessionDocuments.h"

#include "bench/Text.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace view {

namespace {

/// A box's text in one line.
std::string OneLine(std::string text) {
    for (std::size_t at = 0; (at = text.find_first_of("\r\n", at)) != std::string::npos;) {
        const std::size_t end = std::min(text.find_first_not_of("\r\n", at), text.size());
        text.replace(at, end - at, " ");
    }
    return text;
}

} // namespace

std::vector<FindingRow> Session::TakeBoxes() {
    std::vector<FindingRow> rows;
    const bench::Json boxes = answer_.TakeBoxes();
    for (const bench::Json& box : boxes) {
        if (!box["fault"].get<bool>()) {
            continue;
        }
        FindingRow row;
        row.weight = Weight::Box;
        row.rule = box["caption"].get<std::string>();
        row.message = OneLine(box["text"].get<std::string>());
        if (const auto* const place = PlaceOfBox(row.message)) {
            row.point = place->point;
            const SourcePlace first = source_.PlaceOf(streamBegin_ + place->begin);
            row.line = first.line;
            row.column = first.column;
            row.endLine = first.line;
            row.endColumn = first.column + place->point.name.size() + 1;
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

const SourcePoints::Place* Session::PlaceOfBox(const std::string& message) {
    constexpr std::string_view kUnknownType = "Can't find the node related to SNVT ID ";
    if (message.starts_with(kUnknownType)) {
        const std::wstring type = bench::Wide(message.substr(kUnknownType.size()));
        return documents_->PlaceOfType(type, unknownTypes_[type]++);
    }
    return documents_->PlaceNamedIn(message);
}

} // namespace view
