#include "bench/Explanations.h"

#include "bench/Text.h"
#include "bench/TextFile.h"
#include "check/Check.h"
#include "check/Encoding.h"
#include "check/XmlTree.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace bench {

namespace {

bool IsWordCharacter(char c) {
    return c == '_' || c == '-' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
           (c >= 'a' && c <= 'z') || static_cast<unsigned char>(c) >= 0x80;
}

/// True when a text has the word with nothing around it that would belong to it.
bool HasWord(std::string_view text, std::string_view word) {
    for (std::size_t at = text.find(word); at != std::string_view::npos; at = text.find(word, at + 1)) {
        const std::size_t end = at + word.size();
        if ((at == 0 || !IsWordCharacter(text[at - 1])) &&
            (end == text.size() || !IsWordCharacter(text[end]))) {
            return true;
        }
    }
    return false;
}

/// What a finding names in quotation marks: points, types, values.
std::vector<std::string> NamedIn(std::string_view message) {
    std::vector<std::string> names;
    for (std::size_t at = message.find('"'); at != std::string_view::npos; at = message.find('"', at + 1)) {
        const std::size_t end = message.find('"', at + 1);
        if (end == std::string_view::npos) {
            break;
        }
        if (end > at + 1) {
            names.emplace_back(message.substr(at + 1, end - at - 1));
        }
        at = end;
    }
    return names;
}

/// The last child element that begins at or before a place of the text; kNone when there is none.
check::XmlTree::Index ChildAt(const check::XmlTree& tree, check::XmlTree::Index parent, std::size_t at) {
    auto found = check::XmlTree::kNone;
    tree.ForEachElement(parent, [&](check::XmlTree::Index child) {
        if (tree.OffsetOf(child) <= at) {
            found = child;
        }
    });
    return found;
}

/// The point that a place of a device stream belongs to, below root and section; empty for another place.
std::string PointAt(const check::XmlTree& tree, std::size_t at) {
    const auto section = tree.Root() == check::XmlTree::kNone ? tree.Root() : ChildAt(tree, tree.Root(), at);
    const auto point = section == check::XmlTree::kNone ? section : ChildAt(tree, section, at);
    return point == check::XmlTree::kNone ? "" : std::string(tree.Name(point));
}

/// The numbers of the boxes, from 0, whose text names the finding's point, or what it names itself.
Json BoxesOf(const check::Finding& finding, const std::string& point, const Json& boxes) {
    Json numbers = Json::array();
    std::vector<std::string> names = NamedIn(finding.message);
    if (!point.empty()) {
        names.push_back(point);
    }
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const std::string text = boxes[i]["text"];
        if (boxes[i]["fault"] == true &&
            std::any_of(names.begin(), names.end(),
                        [&](const std::string& name) { return HasWord(text, name); })) {
            numbers.push_back(i);
        }
    }
    return numbers;
}

std::string SeverityName(check::Severity severity) {
    switch (severity) {
    case check::Severity::Error:
        return "error";
    case check::Severity::Warning:
        return "warning";
    default:
        return "note";
    }
}

Json FindingOf(const std::string& file, const check::Finding& finding, const std::string& point,
               const Json& boxes) {
    return {{"file", file},
            {"line", finding.line},
            {"column", finding.column},
            {"severity", SeverityName(finding.Level())},
            {"rule", std::string(check::RuleOf(finding.rule).name)},
            {"message", finding.message},
            {"expected", finding.expected},
            {"suggestion", finding.suggestion},
            {"boxes", BoxesOf(finding, point, boxes)}};
}

} // namespace

void Explain(Answer& answer) {
    constexpr std::size_t kMost = 1000; // each is compared with every box
    const std::vector<Answer::Source> sources = answer.Sources();
    if (sources.empty()) {
        return;
    }
    const check::Catalogue catalogue = check::ReadCatalogue(ReadBytes(answer.Catalogue()));
    check::Surroundings surroundings(&catalogue);
    for (const Answer::Source& source : sources) {
        check::StreamSummary summary;
        check::Findings ignored; // they are in the result
        const check::XmlTree tree(check::Decode(source.bytes, ignored), ignored);
        const check::Result result = check::CheckBytes(source.bytes, surroundings, &summary);
        const bool hasPoints =
            result.kind != check::Kind::Catalogue && result.kind != check::Kind::ModuleDefinition;
        for (const check::Finding& finding : result.findings) {
            if (finding.Level() == check::Severity::Error && answer.Findings().size() < kMost) {
                answer.AddFinding(FindingOf(source.file, finding,
                                            hasPoints ? PointAt(tree, finding.span.at) : std::string(),
                                            answer.Boxes()));
            }
        }
        if (result.kind == check::Kind::DeviceStream) {
            surroundings.Add(std::move(summary)); // a project refers to it
        }
    }
}

void AddSource(const std::wstring& file, Answer& answer) {
    if (IsFile(file)) {
        answer.AddSource(Utf8(file), ReadBytes(file));
    }
}

void AddGround(const std::wstring& file, Answer& answer) {
    if (IsFile(file)) {
        answer.AddGround(Utf8(file), ReadBytes(file));
    }
}

} // namespace bench
