#include "tests/fuzz/SmallChanges.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace component_fuzz {

namespace {

/// Where a line begins and ends, its end of line included.
std::pair<std::size_t, std::size_t> LineAt(const std::wstring& text, std::size_t at) {
    const std::size_t before = text.rfind(L'\n', at == 0 ? 0 : at - 1);
    const std::size_t begin = before == std::wstring::npos ? 0 : before + 1;
    const std::size_t end = text.find(L'\n', begin);
    return {begin, end == std::wstring::npos ? text.size() : end + 1};
}

/// After a tag, or before one.
std::size_t BesideATag(const std::wstring& text, Random& random) {
    const bool isBehind = random.OneIn(2);
    const std::size_t at = text.find(isBehind ? L'>' : L'<', random.Below(text.size()));
    return at == std::wstring::npos ? text.size() : at + (isBehind ? 1 : 0);
}

void ChangeOne(std::wstring& text, Random& random) {
    static const std::vector<std::wstring> kPieces = {L" ",
                                                      L"\n",
                                                      L"\t",
                                                      L"<!-- note -->",
                                                      L"0",
                                                      L"1",
                                                      L"7",
                                                      L",",
                                                      L".",
                                                      L"-",
                                                      L"A",
                                                      L"_",
                                                      L"&amp;",
                                                      L"&#32;",
                                                      L"&#49;",
                                                      L"<?note?>",
                                                      L"<![CDATA[1]]>",
                                                      L"<X_Y/>",
                                                      L"&",
                                                      L"<",
                                                      L"x",
                                                      L"99999999999"};
    const std::size_t at = random.Below(text.size());
    switch (random.Below(9)) {
    case 0:
        text.insert(BesideATag(text, random), random.Of(kPieces));
        return;
    case 1:
        text.insert(at, random.Of(kPieces));
        return;
    case 2:
        text.erase(at, 1);
        return;
    case 3: { // a digit for a digit
        const std::size_t digit = text.find_first_of(L"0123456789", at);
        if (digit != std::wstring::npos) {
            text[digit] = static_cast<wchar_t>(L'0' + random.Below(10));
        }
        return;
    }
    case 4: { // a letter in the other case
        const std::size_t letter =
            text.find_first_of(L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz", at);
        if (letter != std::wstring::npos) {
            text[letter] = static_cast<wchar_t>(text[letter] ^ 0x20);
        }
        return;
    }
    case 5: { // a line twice
        const auto [begin, end] = LineAt(text, at);
        text.insert(end, text.substr(begin, end - begin));
        return;
    }
    case 6: {
        const auto [begin, end] = LineAt(text, at);
        text.erase(begin, end - begin);
        return;
    }
    case 7: { // a line after the next one
        const auto [begin, end] = LineAt(text, at);
        const std::wstring line = text.substr(begin, end - begin);
        text.erase(begin, end - begin);
        text.insert(LineAt(text, std::min(begin + 1, text.size())).second, line);
        return;
    }
    default: { // the text of one element for that of another
        const std::size_t value = text.find(L'>', at);
        const std::size_t other = text.find(L'>', random.Below(text.size()));
        if (value == std::wstring::npos || other == std::wstring::npos) {
            return;
        }
        const std::size_t size = text.find(L'<', value) - value - 1;
        const std::wstring replacement = text.substr(other + 1, text.find(L'<', other) - other - 1);
        text.replace(value + 1, size, replacement);
    }
    }
}

} // namespace

std::wstring WithSmallChanges(std::wstring text, Random& random) {
    for (std::size_t changes = 1 + random.Below(3); changes > 0 && !text.empty(); --changes) {
        ChangeOne(text, random);
    }
    return text;
}

} // namespace component_fuzz
