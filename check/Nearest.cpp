#include "check/Nearest.h"

#include "check/Utf8.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

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
    const std::string x = Upper(a);
    const std::string y = Upper(b);
    std::vector<std::size_t> beforeLast(y.size() + 1);
    std::vector<std::size_t> last(y.size() + 1);
    std::vector<std::size_t> row(y.size() + 1);
    for (std::size_t j = 0; j <= y.size(); ++j) {
        last[j] = j;
    }
    for (std::size_t i = 1; i <= x.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= y.size(); ++j) {
            const std::size_t change = last[j - 1] + (x[i - 1] == y[j - 1] ? 0U : 1U);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, change});
            if (i > 1 && j > 1 && x[i - 1] == y[j - 2] && x[i - 2] == y[j - 1]) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
        std::swap(beforeLast, last);
        std::swap(last, row);
    }
    return std::min(last[y.size()], limit + 1);
}

std::string_view Nearest(std::string_view word, std::span<const std::string_view> words) {
    std::string_view nearest;
    std::size_t best = Tolerance(word.size()) + 1;
    bool isAlone = false;
    for (const std::string_view candidate : words) {
        const std::size_t limit = std::min(Tolerance(word.size()), Tolerance(candidate.size()));
        const std::size_t distance = Distance(word, candidate, limit);
        if (distance > limit || distance > best || (distance == best && candidate == nearest)) {
            continue;
        }
        isAlone = distance < best;
        best = distance;
        nearest = candidate;
    }
    return isAlone ? nearest : std::string_view();
}

} // namespace check
