#include "check/Output.h"

#include "check/Json.h"
#include "check/Utf8.h"

namespace check {

namespace {

std::string Counted(std::size_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string_view ColourOf(Severity severity) {
    return severity == Severity::Error     ? "\x1b[1;31m"
           : severity == Severity::Warning ? "\x1b[1;35m"
                                           : "\x1b[1;36m";
}

std::string Sentence(const Finding& finding) {
    std::string text = finding.message;
    if (!finding.expected.empty()) {
        text += "; expected: " + finding.expected;
    }
    if (!finding.suggestion.empty()) {
        text += "; did you mean " + finding.suggestion + "?";
    }
    return Clean(text);
}

std::string UriOf(std::string_view file) {
    constexpr std::string_view kPlain = "-._~/:";
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string uri;
    const bool hasDrive = file.size() > 2 && file[1] == ':';
    if (file.starts_with('/')) {
        uri = "file://";
    } else if (hasDrive) {
        uri = "file:///";
    }
    for (const char given : file) {
        const char c = given == '\\' ? '/' : given;
        const bool isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                             (kPlain.find(c) != std::string_view::npos && (c != ':' || hasDrive));
        if (isPlain) {
            uri += c;
        } else {
            const auto code = static_cast<unsigned char>(c);
            uri += '%';
            uri += kDigits[code >> 4U];
            uri += kDigits[code & 0xFU];
        }
    }
    return uri;
}

void WriteFinding(JsonWriter& json, const Finding& finding) {
    json.BeginObject();
    json.Number("line", finding.line);
    json.Number("column", finding.column);
    json.Number("endLine", finding.endLine);
    json.Number("endColumn", finding.endColumn);
    json.Text("severity", NameOf(finding.Level()));
    json.Text("rule", RuleOf(finding.rule).name);
    json.Text("message", finding.message);
    json.Text("expected", finding.expected);
    json.Text("suggestion", finding.suggestion);
    json.EndObject();
}

void WriteLocation(JsonWriter& json, const std::string& file, const Finding* finding) {
    json.BeginArray("locations");
    json.BeginObject();
    json.BeginObject("physicalLocation");
    json.BeginObject("artifactLocation");
    json.Text("uri", UriOf(file));
    json.EndObject();
    if (finding != nullptr) {
        json.BeginObject("region");
        json.Number("startLine", finding->line);
        json.Number("startColumn", finding->column);
        json.Number("endLine", finding->endLine);
        json.Number("endColumn", finding->endColumn);
        json.EndObject();
    }
    json.EndObject();
    json.EndObject();
    json.EndArray();
}

void WriteMessage(JsonWriter& json, std::string_view name, std::string_view text) {
    json.BeginObject(name);
    json.Text("text", text);
    json.EndObject();
}

void WriteDriver(JsonWriter& json, std::string_view program) {
    json.BeginObject("tool");
    json.BeginObject("driver");
    json.Text("name", program);
    json.BeginArray("rules");
    for (const Rule& rule : AllRules()) {
        json.BeginObject();
        json.Text("id", rule.name);
        WriteMessage(json, "shortDescription", rule.title);
        WriteMessage(json, "fullDescription", rule.explanation);
        json.BeginObject("defaultConfiguration");
        json.Text("level", NameOf(rule.severity));
        json.EndObject();
        json.EndObject();
    }
    json.EndArray();
    json.EndObject();
    json.EndObject();
}

/// A cell of a Markdown table: a bar would end it, and what reads as a tag or a reference
/// would not be shown.
std::string Cell(std::string_view text) {
    std::string cell;
    for (const char c : text) {
        cell += c == '|' ? "\\|" : c == '&' ? "&amp;" : c == '<' ? "&lt;" : std::string(1, c);
    }
    return cell;
}

/// The same as code, where only the bar counts.
std::string CodeCell(std::string_view text) {
    std::string cell;
    for (const char c : text) {
        cell += c == '|' ? "\\|" : std::string(1, c);
    }
    return "`" + cell + "`";
}

std::string Summary(const Totals& totals) {
    std::string text = Counted(totals.files, "file") + ": ";
    const std::string unread = totals.unreadable > 0 ? std::to_string(totals.unreadable) + " not read" : "";
    if (totals.errors + totals.warnings + totals.notes > 0) {
        text += Counted(totals.errors, "error") + ", " + Counted(totals.warnings, "warning") + ", " +
                Counted(totals.notes, "note");
    } else if (totals.unreadable < totals.files) {
        text += "nothing found";
    } else {
        return text + unread + "\n";
    }
    return text + (unread.empty() ? "" : ", " + unread) + "\n";
}

} // namespace

Totals TotalsOf(std::span<const FileResult> results) {
    Totals totals;
    totals.files = results.size();
    for (const FileResult& result : results) {
        totals.unreadable += result.problem.empty() ? 0U : 1U;
        totals.errors += result.result.Count(Severity::Error);
        totals.warnings += result.result.Count(Severity::Warning);
        totals.notes += result.result.Count(Severity::Note);
    }
    return totals;
}

void PrintText(std::span<const FileResult> results, bool hasColour, const Print& print) {
    std::string text;
    for (const FileResult& result : results) {
        for (const Finding& finding : result.result.findings) {
            const std::string place = Clean(result.file) + ":" + std::to_string(finding.line) + ":" +
                                      std::to_string(finding.column) + ": ";
            const std::string level = std::string(NameOf(finding.Level())) + ":";
            if (hasColour) {
                text.append("\x1b[1m").append(place).append("\x1b[0m").append(ColourOf(finding.Level()));
                text.append(level).append("\x1b[0m");
            } else {
                text.append(place).append(level);
            }
            text += " " + Sentence(finding) + " [" + std::string(RuleOf(finding.rule).name) + "]\n";
            if (text.size() >= kPiece) {
                print(text);
                text.clear();
            }
        }
    }
    print(text + Summary(TotalsOf(results)));
}

void PrintJson(std::span<const FileResult> results, std::string_view program, int status,
               const Print& print) {
    JsonWriter json(print);
    json.BeginObject();
    json.Text("command", "check");
    json.Text("program", program);
    json.BeginArray("files");
    for (const FileResult& result : results) {
        json.BeginObject();
        json.Text("file", result.file);
        json.Text("kind", NameOf(result.result.kind));
        if (result.problem.empty()) {
            json.Null("problem");
        } else {
            json.Text("problem", result.problem);
        }
        json.BeginArray("findings");
        for (const Finding& finding : result.result.findings) {
            WriteFinding(json, finding);
        }
        json.EndArray();
        json.EndObject();
    }
    json.EndArray();
    const Totals totals = TotalsOf(results);
    json.BeginObject("summary");
    json.Number("files", totals.files);
    json.Number("unreadable", totals.unreadable);
    json.Number("errors", totals.errors);
    json.Number("warnings", totals.warnings);
    json.Number("notes", totals.notes);
    json.EndObject();
    json.Number("status", static_cast<std::size_t>(status));
    json.EndObject();
    json.Finish();
}

void PrintSarif(std::span<const FileResult> results, std::string_view program, const Print& print) {
    JsonWriter json(print);
    json.BeginObject();
    json.Text("$schema", "https://json.schemastore.org/sarif-2.1.0.json");
    json.Text("version", "2.1.0");
    json.BeginArray("runs");
    json.BeginObject();
    WriteDriver(json, program);
    json.Text("columnKind", "unicodeCodePoints");
    json.BeginArray("invocations");
    json.BeginObject();
    json.Flag("executionSuccessful", TotalsOf(results).unreadable == 0);
    json.BeginArray("toolExecutionNotifications");
    for (const FileResult& result : results) {
        if (!result.problem.empty()) {
            json.BeginObject();
            json.Text("level", "error");
            WriteMessage(json, "message", result.problem);
            WriteLocation(json, result.file, nullptr);
            json.EndObject();
        }
    }
    json.EndArray();
    json.EndObject();
    json.EndArray();
    json.BeginArray("results");
    for (const FileResult& result : results) {
        for (const Finding& finding : result.result.findings) {
            json.BeginObject();
            json.Text("ruleId", RuleOf(finding.rule).name);
            json.Number("ruleIndex", static_cast<std::size_t>(finding.rule));
            json.Text("level", NameOf(finding.Level()));
            WriteMessage(json, "message", Sentence(finding));
            WriteLocation(json, result.file, &finding);
            json.EndObject();
        }
    }
    json.EndArray();
    json.EndObject();
    json.EndArray();
    json.EndObject();
    json.Finish();
}

std::string RulesText() {
    std::string text;
    for (const Rule& rule : AllRules()) {
        text += std::string(rule.name) + " (" + std::string(NameOf(rule.severity)) + ")\n  " +
                std::string(rule.title) + ".\n  " + std::string(rule.explanation) + "\n";
        text += rule.example.empty() ? "\n" : "  Example: " + std::string(rule.example) + "\n\n";
    }
    return text + std::to_string(AllRules().size()) + " rules\n";
}

std::string RulesJson() {
    JsonWriter json;
    json.BeginObject();
    json.Text("command", "check rules");
    json.BeginArray("rules");
    for (const Rule& rule : AllRules()) {
        json.BeginObject();
        json.Text("rule", rule.name);
        json.Text("severity", NameOf(rule.severity));
        json.Text("title", rule.title);
        json.Text("explanation", rule.explanation);
        json.Text("example", rule.example);
        json.EndObject();
    }
    json.EndArray();
    json.Number("status", 0);
    json.EndObject();
    return json.Take();
}

std::string RulesMarkdown() {
    std::string text =
        "# Rules of `check`\n\n"
        "<!-- Written by tamcheck --rules --format markdown from the table in check/Rules.cpp. -->\n\n"
        "An error is a fault: a box or a failing call at load, or data that is lost or wrong without a\n"
        "word. A warning is doubtful, a note good to know; notes do not change the exit status.\n\n"
        "| rule | severity | what it finds | example |\n| --- | --- | --- | --- |\n";
    for (const Rule& rule : AllRules()) {
        text += "| `" + std::string(rule.name) + "` | " + std::string(NameOf(rule.severity)) + " | " +
                Cell(rule.title) + ". " + Cell(rule.explanation) + " | " +
                (rule.example.empty() ? std::string() : CodeCell(rule.example)) + " |\n";
    }
    return text;
}

} // namespace check
