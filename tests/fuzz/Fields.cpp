// Input: a delimiter, a line feed, a text.
#include "core/FieldParser.h"
#include "Subjects.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace tam::fuzz {

namespace {

/// The field between the n-th hit and the next; a search goes on one character
/// after a hit.
std::wstring FieldByRule(const std::wstring& text, std::int32_t field, const std::wstring& delimiter) {
    if (field < 0) {
        return {};
    }
    if (delimiter.empty()) {
        return field == 0 ? text : std::wstring();
    }
    std::size_t begin = 0;
    std::size_t searchFrom = 0;
    for (std::int32_t left = field;; --left) {
        const std::size_t hit = text.find(delimiter, searchFrom);
        if (left == 0) {
            const std::size_t end = hit == std::wstring::npos ? text.size() : hit;
            return end > begin ? text.substr(begin, end - begin) : std::wstring();
        }
        if (hit == std::wstring::npos) {
            return {};
        }
        begin = hit + delimiter.size();
        searchFrom = hit + 1;
    }
}

} // namespace

void FuzzFields(Input& input) {
    const std::wstring delimiter = input.Line();
    const std::wstring text = input.Rest();
    constexpr std::int32_t kMostLookedAt = 64;

    FieldWalker walker(text, delimiter);
    std::int32_t count = 0;
    for (auto field = walker.Next(); field; field = walker.Next()) {
        if (count < kMostLookedAt) {
            Require(ParseString(text, count, delimiter) == *field);
            Require(FieldByRule(text, count, delimiter) == *field);
        }
        ++count;
    }
    Require(count >= 1);
    Require(!walker.Next());
    Require(ParseString(text, count, delimiter).empty());
    Require(ParseString(text, -1, delimiter).empty());
}

} // namespace tam::fuzz
