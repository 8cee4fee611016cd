#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace check {

/// How many letters must be put in, left out, changed or exchanged with their
/// neighbour to come from one word to the other; letter case does not count.
/// `limit` + 1 when it is more than the limit.
std::size_t Distance(std::string_view a, std::string_view b, std::size_t limit);

/// The word that was probably meant: one that is near enough for its length, and
/// the only one that near; else the only one of which it is the first half or more.
/// Empty when there is none.
std::string_view Nearest(std::string_view word, std::span<const std::string_view> words);

} // namespace check
