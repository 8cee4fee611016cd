#include "diff/Json.h"

#include "check/Json.h"
#include "diff/Text.h"

#include <cstddef>
#include <string_view>

namespace diff {

namespace {

void AddText(check::JsonWriter& json, std::string_view name, const std::string& value) {
    if (value.empty()) {
        json.Null(name);
    } else {
        json.Text(name, value);
    }
}

void AddLine(check::JsonWriter& json, std::string_view name, std::size_t line) {
    if (line == 0) {
        json.Null(name);
    } else {
        json.Number(name, line);
    }
}

void AddChange(check::JsonWriter& json, const Change& change) {
    json.BeginObject();
    json.Text("change", WordOf(change.what));
    AddText(json, "kind", change.noun);
    AddText(json, "name", change.name);
    AddText(json, "field", change.field);
    json.Text("before", change.before);
    json.Text("after", change.after);
    AddLine(json, "lineBefore", change.lineBefore);
    AddLine(json, "lineAfter", change.lineAfter);
    json.EndObject();
}

} // namespace

std::string Json(const Answer& answer) {
    const bool isCompared = answer.problems.empty();
    check::JsonWriter json;
    json.BeginObject();
    json.Text("command", "diff");
    AddText(json, "kind", answer.kind);
    json.Text("before", answer.before);
    json.Text("after", answer.after);
    if (isCompared) {
        json.Flag("same", answer.changes.empty());
    } else {
        json.Null("same");
    }
    json.BeginArray("changes");
    for (const Change& change : answer.changes) {
        AddChange(json, change);
    }
    json.EndArray();
    json.BeginArray("problems");
    for (const std::string& problem : answer.problems) {
        json.Item(problem);
    }
    json.EndArray();
    json.Number("status", static_cast<std::size_t>(answer.status));
    json.EndObject();
    return json.Take();
}

} // namespace diff
