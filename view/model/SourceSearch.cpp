#include "view/model/SourceSearch.h"

#include "core/Case.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace view {

namespace {

wchar_t Folded(char16_t unit) {
    return tam::UpperCase(static_cast<wchar_t>(unit));
}

} // namespace

std::optional<TextMatch> FindInText(std::u16string_view text, std::u16string_view words, TextRange selected,
                                    bool isForward) {
    std::wstring folded;
    std::transform(words.begin(), words.end(), std::back_inserter(folded), Folded);
    const auto isSame = [](char16_t unit, wchar_t word) { return Folded(unit) == word; };
    const auto firstIn = [&](std::size_t from) -> std::optional<TextRange> {
        const auto begin = text.begin() + static_cast<std::ptrdiff_t>(from);
        const auto found = std::search(begin, text.end(), folded.begin(), folded.end(), isSame);
        if (found == text.end()) {
            return std::nullopt;
        }
        const auto at = static_cast<std::size_t>(found - text.begin());
        return TextRange{at, at + folded.size()};
    };
    const auto lastIn = [&](std::size_t to) -> std::optional<TextRange> {
        const auto end = text.begin() + static_cast<std::ptrdiff_t>(to);
        const auto found = std::find_end(text.begin(), end, folded.begin(), folded.end(), isSame);
        if (found == end) {
            return std::nullopt;
        }
        const auto at = static_cast<std::size_t>(found - text.begin());
        return TextRange{at, at + folded.size()};
    };
    if (folded.empty()) {
        return std::nullopt;
    }
    if (const auto next = isForward ? firstIn(std::min(selected.end, text.size()))
                                    : lastIn(std::min(selected.begin, text.size()))) {
        return TextMatch{*next, false};
    }
    const auto around = isForward ? firstIn(0) : lastIn(text.size());
    return around ? std::optional(TextMatch{*around, true}) : std::nullopt;
}

} // namespace view
