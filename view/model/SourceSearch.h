#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace view {

/// A stretch of a text as it is shown, in UTF-16 units.
struct TextRange {
    std::size_t begin = 0;
    std::size_t end = 0;
    bool operator==(const TextRange&) const = default;
};

struct TextMatch {
    TextRange range;
    /// It was found around an end of the text.
    bool isAround = false;
    bool operator==(const TextMatch&) const = default;
};

/// The next place of the words after what is selected, or the one before it, in any letter
/// case; around the end when there is no other. None when they are nowhere, and for no words.
std::optional<TextMatch> FindInText(std::u16string_view text, std::u16string_view words, TextRange selected,
                                    bool isForward);

} // namespace view
