#include "bench/Answer.h"

#include "bench/Text.h"
#include "core/Trimmed.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace bench {

namespace {

/// What every error report of the component begins with.
constexpr std::wstring_view kErrorReport = L"has reported the following error";

std::string KindOf(const Box& box) {
    if (box.isMessageBox) {
        return "message";
    }
    return IsErrorReport(box) ? "error report" : "dialog";
}

std::string IconName(UINT icon) {
    switch (icon) {
    case MB_ICONSTOP:
        return "stop";
    case MB_ICONEXCLAMATION:
        return "exclamation";
    case MB_ICONINFORMATION:
        return "information";
    case MB_ICONQUESTION:
        return "question";
    default:
        return "";
    }
}

Json Texts(const std::vector<std::wstring>& texts) {
    Json array = Json::array();
    for (const std::wstring& text : texts) {
        array.push_back(Utf8(text));
    }
    return array;
}

/// The lines of a text that are not blank, trimmed.
std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::string line(tam::Trimmed(OneLine(text.substr(at, end - at))));
        if (!line.empty()) {
            lines.push_back(line);
        }
        at = end + 1;
    }
    return lines;
}

void AddIndented(std::string& out, const std::string& text, std::size_t width) {
    constexpr std::size_t kIndent = 5;
    for (const std::string& line : Lines(text)) {
        for (const std::string& part : Wrap(line, width - kIndent)) {
            out += std::string(kIndent, ' ') + part + "\n";
        }
    }
}

/// More kinds of boxes than these are counted by their captions only.
constexpr std::size_t kListed = 10;

struct Group {
    /// The number of the first one, from 0.
    std::size_t first = 0;
    std::size_t times = 0;
};

/// Boxes that show the same, in the order of the first ones.
std::vector<Group> Grouped(const Json& boxes) {
    std::vector<Group> groups;
    std::unordered_map<std::string, std::size_t> known;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const auto [entry, isNew] = known.emplace(boxes[i].dump(), groups.size());
        if (isNew) {
            groups.push_back({i, 0});
        }
        ++groups[entry->second].times;
    }
    return groups;
}

std::string Times(std::size_t times) {
    return times == 1 ? "" : " (" + std::to_string(times) + " times)";
}

/// 'message box "Warning", sign: stop, during LoadFromXmlStream'
std::string TitleOf(const Json& box) {
    const std::string icon = box["icon"];
    return (box["kind"] == "message" ? "message box" : box["kind"].get<std::string>()) + " \"" +
           OneLine(box["caption"].get<std::string>()) + "\"" + (icon.empty() ? "" : ", sign: " + icon) +
           ", during " + box["during"].get<std::string>();
}

} // namespace

std::string LineOf(const Json& finding) {
    const auto part = [&](const char* name) { return finding[name].get<std::string>(); };
    const std::string suggestion = part("suggestion");
    return part("file") + ":" + finding["line"].dump() + ":" + finding["column"].dump() + ": " +
           part("severity") + ": " + part("message") +
           (part("expected").empty() ? "" : "; expected: " + part("expected")) +
           (suggestion.empty() ? "" : "; did you mean " + suggestion + "?") + " [" + part("rule") + "]";
}

bool IsErrorReport(const Box& box) {
    return !box.isMessageBox && box.text.find(kErrorReport) != std::wstring::npos;
}

void Answer::AddBox(const std::string& step, const Box& box, const std::string& answeredBy, bool isExpected) {
    const std::string kind = KindOf(box);
    const bool isErrorReport = kind == "error report";
    const bool isFault = isErrorReport || (box.isMessageBox && !isExpected);
    errorReports_ += isErrorReport ? 1U : 0U;
    faults_ += isFault ? 1U : 0U;
    boxes_.push_back({{"during", step},
                      {"kind", kind},
                      {"fault", isFault},
                      {"icon", IconName(box.icon)},
                      {"caption", Utf8(box.caption)},
                      {"text", Utf8(box.text)},
                      {"fields", Texts(box.fields)},
                      {"buttons", Texts(box.buttons)},
                      {"answeredBy", answeredBy}});
}

void Answer::ForgetBoxes(std::size_t from) {
    if (from < boxes_.size()) {
        boxes_.erase(boxes_.begin() + static_cast<std::ptrdiff_t>(from), boxes_.end());
    }
}

void Answer::Heading(const std::string& text) {
    text_ += text_.empty() ? "" : "\n";
    for (const std::string& line : Wrap(text, Width())) {
        text_ += Painted(line, Ink::Heading) + "\n";
    }
}

void Answer::Line(const std::string& text) {
    for (const std::string& line : Fitted(text, Width())) {
        text_ += line + "\n";
    }
}

void Answer::Document(const std::string& text) {
    bool isCut = false;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::string shown = Cut(line, Width());
        isCut = isCut || shown != line;
        text_ += shown + "\n";
    }
    if (isCut) {
        Line("\n(Lines that end with \"…\" were cut; -o FILE writes and --json prints the whole document.)");
    }
}

std::string Answer::FindingsText(const Json& box, std::size_t indent) const {
    constexpr std::size_t kShown = 5;
    std::string text;
    std::size_t count = 0;
    for (const Json& finding : findings_) {
        const Json& boxes = finding["boxes"];
        const bool isMeant =
            box.is_null() ? boxes.empty() : std::find(boxes.begin(), boxes.end(), box) != boxes.end();
        if (isMeant && ++count <= kShown) {
            for (const std::string& line : Wrap(LineOf(finding), Width() - indent)) {
                text += std::string(indent, ' ') + Painted(line, Ink::Note) + "\n";
            }
        }
    }
    if (count > kShown) {
        text += std::string(indent, ' ') + "and " + std::to_string(count - kShown) +
                " more (tambench check tells all)\n";
    }
    return text;
}

std::string Answer::BoxText(std::size_t number, std::size_t times) const {
    constexpr std::size_t kIndent = 7;
    const Json& box = boxes_[number];
    std::string text =
        (box["fault"] == true ? Painted(TitleOf(box), Ink::Fault) : TitleOf(box)) + Times(times) + "\n";
    AddIndented(text, box["text"], Width());
    for (const Json& field : box["fields"]) {
        AddIndented(text, field, Width());
    }
    return text + FindingsText(number, kIndent);
}

std::string Answer::BoxesText() const {
    std::string text;
    if (boxes_.empty()) {
        text = "\nThe component showed no boxes.\n";
    } else {
        const std::string count = boxes_.size() == 1 ? "one box" : std::to_string(boxes_.size()) + " boxes";
        text = "\nThe component showed " + count + ":\n";
    }
    std::map<std::string, std::size_t> others;
    std::size_t number = 0;
    for (const Group& group : Grouped(boxes_)) {
        if (++number <= kListed) {
            text += "  " + std::to_string(number) + ". " + BoxText(group.first, group.times);
        } else {
            others[TitleOf(boxes_[group.first])] += group.times;
        }
    }
    for (const auto& [title, times] : others) {
        text += "  and with other texts: " + title + Times(times) + "\n";
    }
    if (!others.empty()) {
        text += "  (--json tells each of them)\n";
    }
    const std::string unexplained = FindingsText(nullptr, 2);
    const std::string heading = boxes_.empty() ? "What check finds:" : "What check finds beside that:";
    return unexplained.empty() ? text : text + "\n" + heading + "\n" + unexplained;
}

std::string Answer::Text() const {
    return text_ + BoxesText();
}

} // namespace bench
