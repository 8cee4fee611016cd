#include "bench/Report.h"

#include "bench/Text.h"

#include <algorithm>
#include <string_view>
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
        std::string line = OneLine(text.substr(at, end - at));
        line.erase(0, std::min(line.find_first_not_of(' '), line.size()));
        line.erase(line.find_last_not_of(' ') + 1);
        if (!line.empty()) {
            lines.push_back(line);
        }
        at = end + 1;
    }
    return lines;
}

void AddIndented(std::string& out, const std::string& text) {
    constexpr std::size_t kIndent = 5;
    for (const std::string& line : Lines(text)) {
        for (const std::string& part : Wrap(line, Table::kWidth - kIndent)) {
            out += std::string(kIndent, ' ') + part + "\n";
        }
    }
}

} // namespace

bool IsErrorReport(const Box& box) {
    return !box.isMessageBox && box.text.find(kErrorReport) != std::wstring::npos;
}

void Report::AddBox(const std::string& step, const Box& box, const std::string& answeredBy, bool isExpected) {
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

std::string Report::BoxesText() const {
    if (boxes_.empty()) {
        return "\nThe component showed no boxes.\n";
    }
    const std::string count = boxes_.size() == 1 ? "one box" : std::to_string(boxes_.size()) + " boxes";
    std::string text = "\nThe component showed " + count + ":\n";
    std::size_t number = 0;
    for (const Json& box : boxes_) {
        const std::string icon = box["icon"];
        text += "  " + std::to_string(++number) + ". " +
                (box["kind"] == "message" ? "message box" : box["kind"].get<std::string>()) + " \"" +
                box["caption"].get<std::string>() + "\"" + (icon.empty() ? "" : ", sign: " + icon) +
                ", during " + box["during"].get<std::string>() + "\n";
        AddIndented(text, box["text"]);
        for (const Json& field : box["fields"]) {
            AddIndented(text, field);
        }
    }
    return text;
}

std::string Report::Text() const {
    return text_ + BoxesText();
}

} // namespace bench
