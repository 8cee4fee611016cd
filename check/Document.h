#pragma once

#include "check/Catalogue.h"
#include "check/Findings.h"
#include "check/XmlTree.h"

#include <cstddef>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace check {

class Surroundings;

/// What an element holds that is to hold a text alone.
struct Leaf {
    XmlTree::Index node = XmlTree::kNone;
    Span name;
    /// As it stands, references replaced.
    std::string text;
    /// Of the text without the blanks around it; of the name when there is none.
    Span span;
    /// Of the text with the blanks around it.
    Span raw;
    bool HasText() const noexcept { return !text.empty(); }
};

/// A document on its way through the rules: its tree, where findings go, and the
/// words that all kinds of documents use to say what is wrong.
class Document {
  public:
    using Index = XmlTree::Index;

    Document(const XmlTree& tree, Findings& findings, const Surroundings& surroundings)
        : tree_(tree), findings_(findings), surroundings_(surroundings) {}

    const XmlTree& Tree() const noexcept { return tree_; }
    const Surroundings& Others() const noexcept { return surroundings_; }
    const Catalogue& Types() const;
    std::size_t Errors() const noexcept { return findings_.Errors(); }
    /// Whether it is worth while to look for what was meant: a thousand times in one document.
    bool MaySuggest() noexcept { return suggestions_++ < kMostSuggestions; }
    void Report(RuleId rule, Span span, std::string message, std::string expected = {},
                std::string suggestion = {}) {
        findings_.Add(rule, span, std::move(message), std::move(expected), std::move(suggestion));
    }

    /// Reads an element that holds a text, and reports what else it holds or has.
    Leaf ReadLeaf(Index element);
    /// Reports texts and instructions between the elements of a container.
    void CheckContainer(Index element, std::string_view where);
    /// The same of a container that has no attributes.
    void CheckPlainContainer(Index element, std::string_view where) {
        CheckContainer(element, where);
        CheckAttributes(element, {}, where);
    }
    /// Reports attributes that are none of these. `isCaseFree`: letter case does not count.
    void CheckAttributes(Index element, std::span<const std::string_view> known, std::string_view where,
                         bool isCaseFree = false);
    /// An element whose name is none of `known`. `elsewhere` are the names that mean
    /// something in another place. `isCaseFree`: letter case does not count in names.
    void ReportUnknown(Index element, std::span<const std::string_view> known,
                       std::span<const std::string_view> elsewhere, std::string_view where, bool isCaseFree);
    void ReportBlanks(const Leaf& leaf);
    /// Whether it is a whole number from least to most; reports when not.
    bool CheckWhole(std::string_view text, Span span, std::string_view what, long long least, long long most);
    /// True the first time that a note is made under this word.
    bool IsFirst(std::string word) { return said_.insert(std::move(word)).second; }
    bool CheckFlag(std::string_view text, Span span, std::string_view what);

  private:
    const XmlTree& tree_;
    Findings& findings_;
    const Surroundings& surroundings_;
    std::set<std::string> said_;
    static constexpr std::size_t kMostSuggestions = 1000;
    std::size_t suggestions_ = 0;
};

/// "<NAME>".
std::string Tagged(std::string_view name);
/// "A, B or C".
std::string Listed(std::span<const std::string_view> words);

} // namespace check
