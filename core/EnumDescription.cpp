#include "core/EnumDescription.h"

#include "core/FieldParser.h"
#include "core/Numbers.h"
#include "core/RunTimeError.h"

#include <cstddef>

namespace tam {

std::wstring EnumLabel(std::wstring_view value, std::wstring_view description) {
    constexpr auto kAbsent = std::wstring_view::npos;
    if (value.empty()) {
        return {};
    }
    std::size_t comma = description.find(L',');
    std::size_t begin = 0;
    while (begin < description.size() && comma != kAbsent) {
        const std::size_t semicolon = description.find(L';', begin);
        if (description.substr(begin, comma - begin) == value) {
            if (semicolon == kAbsent || semicolon < comma) {
                throw RunTimeError(RunTime::InvalidCall);
            }
            return std::wstring(description.substr(comma + 1, semicolon - comma - 1));
        }
        if (semicolon == kAbsent) {
            break;
        }
        begin = semicolon + 1;
        // An entry without a comma leaves the next one's comma to be found
        // again; it is not searched for again, which would be quadratic.
        if (comma < begin) {
            comma = description.find(L',', begin);
        }
    }
    return {};
}

std::vector<EnumEntry> EnumEntries(std::wstring_view description) {
    std::vector<EnumEntry> entries;
    FieldWalker walker(description, L";");
    for (auto entry = walker.Next(); entry && !entry->empty(); entry = walker.Next()) {
        entries.push_back({ToInt16(Val(ParseString(*entry, 0, L","))), ParseString(*entry, 1, L",")});
    }
    return entries;
}

std::wstring FirstEnumValue(std::wstring_view description) {
    const std::wstring entry = ParseString(description, 0, L";");
    if (entry.empty()) {
        throw RunTimeError(RunTime::Subscript);
    }
    return ParseString(entry, 0, L",");
}

} // namespace tam
