#pragma once

#include "check/Rules.h"

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
    /// From 1, in characters; the end is the column behind the last character.
    std::size_t line = 0;
    std::size_t column = 0;
    std::size_t endLine = 0;
    std::size_t endColumn = 0;

    Severity Level() const { return RuleOf(rule).severity; }
};

/// What is found in one document, without positions until it is placed.
class Findings {
  public:
    /// More than these of one document are counted, not kept.
    static constexpr std::size_t kMost = 10000;

    void Add(RuleId rule, Span span, std::string message, std::string expected = {},
             std::string suggestion = {});
    /// How many errors so far, those past the limit included.
    std::size_t Errors() const noexcept { return errors_; }
    std::size_t Total() const noexcept { return found_.size() + dropped_; }
    /// Puts the findings into the document's order and gives them lines and columns.
    std::vector<Finding> Place(std::string_view text) &&;

  private:
    std::vector<Finding> found_;
    std::size_t errors_ = 0;
    std::size_t dropped_ = 0;
};

} // namespace check
