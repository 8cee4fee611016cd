#include "tests/fuzz/ExpectedSaved.h"

#include "core/Case.h"

#include <algorithm>
#include <optional>

namespace component_fuzz {

namespace {

using Node = com::Ref<IXMLDOMNode>;
using tam::dom::BaseName;
using tam::dom::TextOf;

std::vector<Node> Children(const Node& node, bool elementsOnly) {
    std::vector<Node> children;
    tam::dom::ForEachChildButComments(node, [&](const Node& child) {
        if (!elementsOnly || tam::dom::IsElement(child)) {
            children.push_back(child);
        }
    });
    return children;
}

std::vector<std::wstring>::iterator Find(std::vector<std::wstring>& names, const Node& node) {
    return std::find_if(names.begin(), names.end(), [name = BaseName(node)](const std::wstring& known) {
        return tam::EqualIgnoringCase(known, name);
    });
}

/// A flag in the platform's words; nothing for a text that it refuses.
std::optional<bool> FlagIn(const std::wstring& text) {
    VARIANT_BOOL flag = VARIANT_FALSE;
    const bool isWhole = text.find(L'\0') == std::wstring::npos;
    if (isWhole && SUCCEEDED(VarBoolFromStr(com::Bstr(text).Get(), LOCALE_USER_DEFAULT, 0, &flag))) {
        return flag != VARIANT_FALSE;
    }
    return std::nullopt;
}

/// False at the first flag that is none.
bool ReadOutput(const Node& saved, const std::wstring& output, std::set<std::wstring>& displayed) {
    for (const Node& child : Children(saved, false)) {
        const bool isDisplayable = tam::EqualIgnoringCase(BaseName(child), L"IsDisplayable");
        if (!isDisplayable && !tam::EqualIgnoringCase(BaseName(child), L"IsConnected")) {
            continue;
        }
        const std::optional<bool> flag = FlagIn(TextOf(child));
        if (!flag) {
            return false;
        }
        if (isDisplayable && *flag) {
            displayed.insert(output);
        } else if (isDisplayable) {
            displayed.erase(output);
        }
    }
    return true;
}

} // namespace

void ExpectedSaved::ReadInputs(const Node& section) {
    std::size_t position = 0;
    for (const Node& child : Children(section, true)) {
        const auto found = Find(inputs, child);
        if (found == inputs.end()) {
            ++reports;
            return;
        }
        if (position < inputs.size()) {
            const std::wstring name = *found;
            inputs.erase(found);
            inputs.insert(inputs.begin() + static_cast<std::ptrdiff_t>(position), name);
        }
        ++position;
    }
}

void ExpectedSaved::ReadOutputs(const Node& section) {
    for (const Node& child : Children(section, true)) {
        const auto found = Find(outputs, child);
        if (found == outputs.end()) {
            ++reports;
            return;
        }
        // A fault in one output is reported by it; the walk goes on.
        reports += ReadOutput(child, *found, displayed) ? 0u : 1u;
    }
}

void ExpectedSaved::ReadAttributes(const Node& section) {
    for (const Node& child : Children(section, true)) {
        if (Find(attributes, child) == attributes.end()) {
            ++reports;
            return;
        }
    }
}

} // namespace component_fuzz
