#include "check/XmlTree.h"

#include "check/Utf8.h"

#include <algorithm>

namespace check {

XmlTree::Kind XmlTree::KindOf(Index node) const noexcept {
    return static_cast<Kind>(nodes_[node].place >> kKindShift);
}

std::size_t XmlTree::OffsetOf(Index node) const noexcept {
    return nodes_[node].place & kPlaceMask;
}

XmlTree::Index XmlTree::FirstChild(Index node) const noexcept {
    return nodes_[node].next > node + 1 ? node + 1 : kNone;
}

XmlTree::Index XmlTree::Next(Index node, Index parent) const noexcept {
    const Index next = nodes_[node].next;
    return next < nodes_[parent].next ? next : kNone;
}

XmlTree::Index XmlTree::Find(std::string_view name) const {
    for (Index node = 0; node < nodes_.size(); ++node) {
        if (IsElement(node) && Name(node) == name) {
            return node;
        }
    }
    return kNone;
}

XmlTree::Index XmlTree::Child(Index parent, std::string_view name) const {
    for (Index child = FirstChild(parent); child != kNone; child = Next(child, parent)) {
        if (IsElement(child) && Name(child) == name) {
            return child;
        }
    }
    return kNone;
}

Span XmlTree::NameSpan(Index node) const {
    XmlLexer lexer(text_, nullptr, OffsetOf(node));
    return KindOf(node) == Kind::Instruction ? lexer.Instruction() : lexer.TagName();
}

std::vector<XmlTree::Attribute> XmlTree::Attributes(Index element) const {
    std::vector<Attribute> attributes;
    XmlLexer lexer(text_, nullptr, OffsetOf(element));
    lexer.TagName();
    while (const auto attribute = lexer.NextAttribute()) {
        attributes.push_back({attribute->name, attribute->value});
    }
    return attributes;
}

std::optional<XmlTree::Attribute> XmlTree::FindAttribute(Index element, std::string_view name) const {
    for (const Attribute& attribute : Attributes(element)) {
        if (Piece(attribute.name) == name) {
            return attribute;
        }
    }
    return std::nullopt;
}

Span XmlTree::ContentSpan(Index node) const {
    XmlLexer lexer(text_, nullptr, OffsetOf(node));
    switch (KindOf(node)) {
    case Kind::Text:
        return lexer.Text();
    case Kind::CData:
        return lexer.CData();
    case Kind::Comment:
        return lexer.Comment();
    default:
        return {};
    }
}

std::string XmlTree::OwnText(Index element) const {
    std::string text;
    ForEachChild(element, [&](Index child) {
        if (KindOf(child) == Kind::Text || KindOf(child) == Kind::CData) {
            text += Content(child);
        }
    });
    return text;
}

std::string XmlTree::Content(Index node) const {
    const std::string_view raw = Piece(ContentSpan(node));
    if (KindOf(node) == Kind::Text) {
        return Decoded(raw, false);
    }
    return std::string(raw);
}

bool XmlTree::IsUnclosed(Index element) const {
    return std::binary_search(unclosed_.begin(), unclosed_.end(), element);
}

} // namespace check
