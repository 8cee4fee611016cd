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
    const Severity severity = RuleOf(rule).severity;
    const bool isError = severity == Severity::Error;
    const std::size_t kept = isError ? Errors() : others_;
    ++counts_[static_cast<std::size_t>(severity)];
    // Where there are that many errors, nothing else is listed.
    if (kept >= kMost || (!isError && Errors() >= kMost)) {
        return;
    }
    if (found_.size() >= kMost + kMost / 4) {
        Sort();
        DropMost();
    }
    others_ += isError ? 0U : 1U;
    found_.push_back({rule, span, std::move(message), std::move(expected), std::move(suggestion)});
}

void Findings::Sort() {
    std::stable_sort(found_.begin(), found_.end(), [](const Finding& a, const Finding& b) {
        return a.span.at != b.span.at ? a.span.at < b.span.at : a.rule < b.rule;
    });
}

/// Leaves kMost: all errors, and of the others those that stand first.
void Findings::DropMost() {
    if (found_.size() <= kMost) {
        return;
    }
    std::size_t room = kMost - (found_.size() - others_);
    others_ = room;
    std::erase_if(found_, [&room](const Finding& finding) {
        const bool isDropped = finding.Level() != Severity::Error && room == 0;
        room -= finding.Level() != Severity::Error && !isDropped ? 1U : 0U;
        return isDropped;
    });
}

std::vector<Finding> Findings::Place(std::string_view text) && {
    Sort();
    DropMost();
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
    const std::size_t unlisted = Total() - found_.size();
    if (unlisted > 0) {
        begin.GoTo(text.size());
        const std::size_t errors = Errors() > kMost ? Errors() - kMost : 0;
        Finding rest{RuleId::TooManyFindings,
                     {text.size(), 0},
                     std::to_string(unlisted) +
                         (unlisted == 1 ? " more finding is not listed" : " more findings are not listed") +
                         (errors == 0 ? "" : "; errors among them: " + std::to_string(errors)),
                     {},
                     {}};
        rest.line = rest.endLine = begin.Line();
        rest.column = rest.endColumn = begin.Column();
        found_.push_back(std::move(rest));
    }
    return std::move(found_);
}

} // namespace check
