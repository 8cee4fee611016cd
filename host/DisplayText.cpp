#include "host/DisplayText.h"

#include "host/NumberText.h"
#include "host/UserMarks.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace orv {

namespace {

/// Stored numbers have "." and no groups, whoever wrote them.
const NumberMarks kStored{L".", L""};

std::wstring LabelOf(std::wstring_view value, std::wstring_view entries) {
    while (!entries.empty()) {
        const std::wstring_view entry = entries.substr(0, entries.find(L';'));
        const std::size_t comma = entry.find(L',');
        if (comma != std::wstring_view::npos && entry.substr(0, comma) == value) {
            return std::wstring(entry.substr(comma + 1));
        }
        entries.remove_prefix(std::min(entries.size(), entry.size() + 1));
    }
    return std::wstring(value);
}

std::wstring LocalForm(std::wstring_view number) {
    std::wstring text(number);
    const std::size_t mark = text.find(L'.');
    if (mark != std::wstring::npos) {
        text.replace(mark, 1, UserMarks().decimal);
    }
    return text;
}

} // namespace

std::wstring DisplayText(std::wstring_view value, const DisplayRule& rule) {
    if (!rule.enumDesc.empty()) {
        return LabelOf(value, rule.enumDesc);
    }
    const auto number = ParseNumber(value, kStored);
    if (!number) {
        return std::wstring(value);
    }
    const auto type = FindType(rule.type);
    const UnitRule unit = type ? UnitRuleOf(*type) : UnitRule();
    std::wstring text = LocalForm(value);
    if (rule.system == UnitSystem::US && unit.ChangesValues()) {
        const double offset = rule.isDifference ? 0 : unit.offset;
        const double scaled = *number * unit.factor;
        text = FormatNumber(RoundNumber(scaled + offset, std::max(std::abs(scaled), std::abs(offset))),
                            UserMarks());
    }
    const std::wstring_view label = unit.Label(rule.system);
    return label.empty() ? text : text.append(L" ").append(label);
}

} // namespace orv
