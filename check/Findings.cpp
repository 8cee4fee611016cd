#include "check/Findings.h"

#include "check/Utf8.h"

#include <algorithm>
#include <utility>

namespace check {

namespace {

/// Walks a text forwards and knows the line and column where it is.
class Places {
  public:
    explicit Places(std::string_view text) : text_(text) {}

    void GoTo(std::size_t offset) {
        const std::size_t end = std::min(offset, text_.size());
        while (at_ < end) {
            const char c = text_[at_++];
            const bool isPair = c == '\r' && at_ < text_.size() && text_[at_] == '\n';
            if (c == '\n' || (c == '\r' && !isPair)) {
                ++line_;
                column_ = 1;
            } else if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) {
                ++column_;
            }
        }
    }
    std::size_t Line() const noexcept { return line_; }
    std::size_t Column() const noexcept { return column_; }

  private:
    std::string_view text_;
    std::size_t at_ = 0;
    std::size_t line_ = 1;
    std::size_t column_ = 1;
};

} // namespace

void Findings::Add(RuleId rule, Span span, std::string message, std::string expected,
                   std::string suggestion) {
    errors_ += RuleOf(rule).severity == Severity::Error ? 1U : 0U;
    if (found_.size() == kMost) {
        ++dropped_;
        return;
    }
    found_.push_back({rule, span, std::move(message), std::move(expected), std::move(suggestion)});
}

std::vector<Finding> Findings::Place(std::string_view text) && {
    std::stable_sort(found_.begin(), found_.end(), [](const Finding& a, const Finding& b) {
        return a.span.at != b.span.at ? a.span.at < b.span.at : a.rule < b.rule;
    });
    Places begin(text);
    for (Finding& finding : found_) {
        begin.GoTo(finding.span.at);
        finding.line = begin.Line();
        finding.column = begin.Column();
        // Names and values are short: the walk over them is, too.
        Places end = begin;
        end.GoTo(finding.span.at + finding.span.size);
        finding.endLine = end.Line();
        finding.endColumn = end.Column();
    }
    if (dropped_ > 0) {
        begin.GoTo(text.size());
        Finding rest{RuleId::TooManyFindings,
                     {text.size(), 0},
                     std::to_string(dropped_) + " more findings are not listed",
                     {},
                     {}};
        rest.line = rest.endLine = begin.Line();
        rest.column = rest.endColumn = begin.Column();
        found_.push_back(std::move(rest));
    }
    return std::move(found_);
}

} // namespace check
