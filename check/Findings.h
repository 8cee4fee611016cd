#pragma once

#include "check/Rules.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace check {

/// A piece of a document's text.
struct Span {
    std::size_t at = 0;
    std::size_t size = 0;
};

struct Finding {
    RuleId rule;
    Span span;
    /// What is there.
    std::string message;
    /// What is expected; empty where the message says it.
    std::string expected;
    /// What was probably meant; empty when nothing is near.
    std::string suggestion;
    /// From 1, in characters; the end is the column after the last character.
    std::size_t line = 0;
    std::size_t column = 0;
    std::size_t endLine = 0;
    std::size_t endColumn = 0;

    Severity Level() const { return RuleOf(rule).severity; }
};

/// What is found in one document, without positions until it is placed.
class Findings {
  public:
    /// More than these of one document are counted, not listed; errors are listed first.
    static constexpr std::size_t kMost = 10000;
    /// How many there are of each severity, in its order.
    using Counts = std::array<std::size_t, 3>;

    void Add(RuleId rule, Span span, std::string message, std::string expected = {},
             std::string suggestion = {});
    /// How many errors so far, those past the limit included.
    std::size_t Errors() const noexcept { return counts_[0]; }
    std::size_t Total() const noexcept { return counts_[0] + counts_[1] + counts_[2]; }
    const Counts& CountsOfAll() const noexcept { return counts_; }
    /// Puts the findings into the document's order and gives them lines and columns. A note
    /// at the end tells how many are not listed.
    std::vector<Finding> Place(std::string_view text) &&;

  private:
    void Sort();
    void DropMost();

    /// At most kMost errors, and not many more in all.
    std::vector<Finding> found_;
    std::size_t others_ = 0;
    Counts counts_{};
};

} // namespace check
