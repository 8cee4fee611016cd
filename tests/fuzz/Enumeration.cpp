// Input: a value, a line feed, an enumeration description.
#include "core/EnumDescription.h"
#include "core/RunTimeError.h"
#include "Subjects.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace tam::fuzz {

namespace {

/// The label by dropping entry after entry; nothing for an error.
std::optional<std::wstring> LabelByRule(const std::wstring& value, std::wstring rest) {
    while (!value.empty() && !rest.empty()) {
        const std::size_t comma = rest.find(L',');
        const std::size_t semicolon = rest.find(L';');
        if (comma != std::wstring::npos && rest.substr(0, comma) == value) {
            if (semicolon == std::wstring::npos || semicolon < comma) {
                return std::nullopt;
            }
            return rest.substr(comma + 1, semicolon - comma - 1);
        }
        if (semicolon == std::wstring::npos) {
            break;
        }
        rest.erase(0, semicolon + 1);
    }
    return std::wstring();
}

std::optional<std::wstring> Label(const std::wstring& value, const std::wstring& description) {
    try {
        return EnumLabel(value, description);
    } catch (const RunTimeError& error) {
        Require(error.Number() == static_cast<std::int32_t>(RunTime::InvalidCall));
        return std::nullopt;
    }
}

} // namespace

void FuzzEnumeration(Input& input) {
    const std::wstring value = input.Line();
    const std::wstring description = input.Rest();
    Require(Label(value, description) == LabelByRule(value, description));
    try {
        for (const EnumEntry& entry : EnumEntries(description)) {
            Require(entry.text.find_first_of(L",;") == std::wstring::npos);
        }
    } catch (const RunTimeError& error) {
        Require(error.Number() == static_cast<std::int32_t>(RunTime::Overflow));
    }
}

} // namespace tam::fuzz
