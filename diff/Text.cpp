#include "diff/Text.h"

#include "check/Utf8.h"

#include <algorithm>
#include <cstddef>

namespace diff {

namespace {

constexpr std::string_view kGreen = "\x1B[32m";
constexpr std::string_view kRed = "\x1B[31m";
constexpr std::string_view kYellow = "\x1B[33m";
constexpr std::string_view kCyan = "\x1B[36m";
constexpr std::string_view kBold = "\x1B[1m";
constexpr std::string_view kPlain = "\x1B[0m";

struct Look {
    char sign;
    std::string_view colour;
};

Look LookOf(What what) {
    switch (what) {
    case What::Added:
        return {'+', kGreen};
    case What::Removed:
        return {'-', kRed};
    case What::Renamed:
    case What::Moved:
        return {'>', kCyan};
    case What::Changed:
        break;
    }
    return {'~', kYellow};
}

/// In quotation marks; a word for an empty text.
std::string Shown(const std::string& text) {
    return text.empty() ? "nothing" : '"' + check::Clean(text) + '"';
}

std::string Sentence(const Change& change) {
    const std::string name = check::Clean(change.name);
    switch (change.what) {
    case What::Added:
        return name + (change.after.empty() ? "" : "  (" + check::Clean(change.after) + ")");
    case What::Removed:
        return name + (change.before.empty() ? "" : "  (" + check::Clean(change.before) + ")");
    case What::Renamed:
        return name + ": was named " + Shown(change.before);
    case What::Moved:
        return name + ": moved from place " + change.before + " to " + change.after;
    case What::Changed:
        break;
    }
    return (change.name.empty() ? "" : name + ", ") + check::Clean(change.field) + ": " +
           Shown(change.before) + " -> " + Shown(change.after);
}

std::string Lines(const Change& change) {
    const auto line = [](std::size_t number) { return number == 0 ? "" : std::to_string(number); };
    if (change.lineBefore == 0 || change.lineAfter == 0) {
        return "  [line " + line(std::max(change.lineBefore, change.lineAfter)) + "]";
    }
    return "  [line " + line(change.lineBefore) + ", now " + line(change.lineAfter) + "]";
}

std::string TitleOf(const std::string& noun, const Model& model) {
    for (const Group& group : model.groups) {
        if (group.noun == noun) {
            return group.title;
        }
    }
    return "The document itself";
}

} // namespace

std::string_view WordOf(What what) {
    switch (what) {
    case What::Added:
        return "added";
    case What::Removed:
        return "removed";
    case What::Renamed:
        return "renamed";
    case What::Moved:
        return "moved";
    case What::Changed:
        break;
    }
    return "changed";
}

std::string Text(const std::vector<Change>& changes, const Model& model, bool isColoured) {
    if (changes.empty()) {
        return "No change in meaning.\n";
    }
    const auto painted = [isColoured](std::string_view colour, const std::string& text) {
        return isColoured ? std::string(colour) + text + std::string(kPlain) : text;
    };
    std::string text;
    const std::string* group = nullptr;
    for (const Change& change : changes) {
        if (group == nullptr || *group != change.noun) {
            text += painted(kBold, TitleOf(change.noun, model)) + "\n";
            group = &change.noun;
        }
        const Look look = LookOf(change.what);
        text += painted(look.colour, std::string("  ") + look.sign + " " + Sentence(change)) + Lines(change) +
                "\n";
    }
    text += "\n" + std::to_string(changes.size()) + (changes.size() == 1 ? " change:" : " changes:");
    std::string separator = " ";
    for (const What what : {What::Added, What::Removed, What::Renamed, What::Moved, What::Changed}) {
        const auto count = std::count_if(changes.begin(), changes.end(),
                                         [what](const Change& change) { return change.what == what; });
        if (count > 0) {
            text += separator + std::to_string(count) + " " + std::string(WordOf(what));
            separator = ", ";
        }
    }
    return text + ".\n";
}

} // namespace diff
