#pragma once

#include "check/Findings.h"
#include "check/XmlLexer.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace check {

/// The elements of a document, its texts, comments and instructions, as the DOM
/// has them: blanks between elements are no nodes. A node is eight bytes, where
/// it begins and which one is next; all else is read from the text when it is
/// asked for. So a tree takes less room than its text, nearly always.
///
/// A text that is not well-formed gives a tree too: what is wrong is reported,
/// and the walk goes on after it.
class XmlTree {
  public:
    /// Longer texts are not read.
    static constexpr std::size_t kLongestText = std::size_t{1} << 29U;
    /// The DOM's parsers refuse elements that are deeper.
    static constexpr std::size_t kDeepest = 256;

    enum class Kind : std::uint8_t { Element, Text, CData, Comment, Instruction };
    using Index = std::uint32_t;
    static constexpr Index kNone = 0xFFFFFFFF;

    struct Attribute {
        Span name;
        Span value;
    };

    XmlTree(std::string text, Findings& findings);

    std::string_view Text() const noexcept { return text_; }
    std::string_view Piece(Span span) const { return std::string_view(text_).substr(span.at, span.size); }

    /// The document element; kNone when there is none.
    Index Root() const noexcept { return root_; }
    Kind KindOf(Index node) const noexcept;
    bool IsElement(Index node) const noexcept { return KindOf(node) == Kind::Element; }
    std::size_t OffsetOf(Index node) const noexcept;
    Index FirstChild(Index node) const noexcept;
    /// The next one below the same parent.
    Index Next(Index node, Index parent) const noexcept;
    template <class F>
    void ForEachChild(Index parent, F&& visit) const {
        for (Index child = FirstChild(parent); child != kNone; child = Next(child, parent)) {
            visit(child);
        }
    }
    template <class F>
    void ForEachElement(Index parent, F&& visit) const {
        ForEachChild(parent, [&](Index child) {
            if (IsElement(child)) {
                visit(child);
            }
        });
    }

    template <class F>
    void ForEachBelow(Index node, F&& visit) const {
        for (Index inner = node + 1; inner < nodes_[node].next; ++inner) {
            visit(inner);
        }
    }

    /// The first element of the name, at any depth.
    Index Find(std::string_view name) const;
    /// The first child element of the name; letter case counts.
    Index Child(Index parent, std::string_view name) const;

    /// Of an element its name, of an instruction its target.
    Span NameSpan(Index node) const;
    std::string_view Name(Index node) const { return Piece(NameSpan(node)); }
    std::vector<Attribute> Attributes(Index element) const;
    std::optional<Attribute> FindAttribute(Index element, std::string_view name) const;
    /// As the DOM gives it, references replaced.
    std::string ValueOf(const Attribute& attribute) const { return Decoded(Piece(attribute.value), true); }
    /// The raw content of a text, a CDATA section or a comment.
    Span ContentSpan(Index node) const;
    std::string Content(Index node) const;
    /// The contents of an element's own texts and CDATA sections, in their order.
    std::string OwnText(Index element) const;
    /// Whether the element lacks its end tag: what follows may have slipped into it.
    bool IsUnclosed(Index element) const;

  private:
    class Builder;
    /// The kind is above the place.
    static constexpr unsigned kKindShift = 29;
    static constexpr std::uint32_t kPlaceMask = (std::uint32_t{1} << kKindShift) - 1;
    struct Node {
        std::uint32_t place;
        Index next;
    };

    std::string text_;
    std::deque<Node> nodes_;
    std::vector<Index> unclosed_;
    Index root_ = kNone;
};

} // namespace check
