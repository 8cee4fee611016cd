#pragma once

#include "tests/support/Read.h"

#include <string>
#include <utility>
#include <vector>

namespace component_fuzz {

/// A document's node outside of any DOM, so that it can also hold what no DOM
/// would take.
struct Tree {
    enum class Kind { Element, Text, CData, Comment, Instruction };
    Kind kind = Kind::Element;
    std::wstring name;
    /// Of all kinds but an element.
    std::wstring text;
    std::vector<std::pair<std::wstring, std::wstring>> attributes;
    std::vector<Tree> children;

    static Tree Element(std::wstring name) { return {Kind::Element, std::move(name), {}, {}, {}}; }
    static Tree Leaf(Kind kind, std::wstring text) { return {kind, {}, std::move(text), {}, {}}; }
};

/// The tree below a node of a DOM.
Tree TreeOf(const com::Ref<IXMLDOMNode>& node);
/// The text form. What XML cannot hold is written as it stands.
std::wstring TextOf(const Tree& tree);
/// The same tree in a DOM, by its own members. What the DOM refuses is left
/// out. Empty when it refuses the first element.
com::Ref<IXMLDOMElement> Build(const support::Document& document, const Tree& tree);

/// The elements of a tree, itself first.
std::vector<Tree*> Elements(Tree& tree);

} // namespace component_fuzz
