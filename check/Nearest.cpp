#include "check/Nearest.h"

#include "check/Utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace check {

namespace {

/// Longer words are not compared: no name is that long.
constexpr std::size_t kLongest = 64;

/// A third of a word may differ, up to three letters.
std::size_t Tolerance(std::size_t length) {
    return std::min<std::size_t>(3, std::max<std::size_t>(1, length / 3));
}

} // namespace

std::size_t Distance(std::string_view a, std::string_view b, std::size_t limit) {
    const std::size_t apart = a.size() > b.size() ? a.size() - b.size() : b.size() - a.size();
    if (apart > limit || a.size() > kLongest || b.size() > kLongest) {
        return limit + 1;
    }
    // Every unknown name is compared with all that there are: nothing is allocated here.
    using Row = std::array<std::uint8_t, kLongest + 1>;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): each is written before it is read
    std::array<Row, 3> rows;
    Row* beforeLast = rows.data();
    Row* last = beforeLast + 1;
    Row* row = last + 1;
    for (std::size_t j = 0; j <= b.size(); ++j) {
        (*last)[j] = static_cast<std::uint8_t>(j);
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        const char x = UpperLetter(a[i - 1]);
        std::size_t least = (*row)[0] = static_cast<std::uint8_t>(i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const char y = UpperLetter(b[j - 1]);
            auto cost = std::min<std::size_t>(
                {(*last)[j] + 1U, (*row)[j - 1] + 1U, (*last)[j - 1] + (x == y ? 0U : 1U)});
            if (i > 1 && j > 1 && x == UpperLetter(b[j - 2]) && UpperLetter(a[i - 2]) == y) {
                cost = std::min<std::size_t>(cost, (*beforeLast)[j - 2] + 1U);
            }
            (*row)[j] = static_cast<std::uint8_t>(cost);
            least = std::min(least, cost);
        }
        if (least > limit + 1) { // an exchange of two letters looks back two rows
            return limit + 1;
        }
        Row* const spare = std::exchange(beforeLast, last);
        last = std::exchange(row, spare);
    }
    return std::min<std::size_t>((*last)[b.size()], limit + 1);
}

namespace {

/// The only one that goes on where the word ends, at most as long again; empty when there is none.
std::string_view Continued(std::string_view word, std::span<const std::string_view> words) {
    constexpr std::size_t kLeast = 4;
    std::string_view whole;
    for (const std::string_view candidate : words) {
        if (word.size() < kLeast || candidate.size() > 2 * word.size() || candidate == whole ||
            !EqualKeyword(candidate.substr(0, word.size()), word)) {
            continue;
        }
        if (!whole.empty()) {
            return {};
        }
        whole = candidate;
    }
    return whole;
}

} // namespace

std::string_view Nearest(std::string_view word, std::span<const std::string_view> words) {
    std::string_view nearest;
    std::size_t best = Tolerance(word.size()) + 1;
    bool isNear = false;
    bool isAlone = false;
    for (const std::string_view candidate : words) {
        const std::size_t limit = std::min(Tolerance(word.size()), Tolerance(candidate.size()));
        const std::size_t distance = Distance(word, candidate, limit);
        if (distance > limit || distance > best || (distance == best && candidate == nearest)) {
            continue;
        }
        isAlone = distance < best;
        isNear = true;
        best = distance;
        nearest = candidate;
    }
    return isAlone ? nearest : isNear ? std::string_view() : Continued(word, words);
}

} // namespace check
