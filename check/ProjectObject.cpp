#include "check/ProjectObject.h"

#include "check/Decimal.h"
#include "check/Utf8.h"

#include <algorithm>
#include <cmath>

namespace check {

bool IsPartOf(std::span<const std::string_view> parts, std::string_view name) {
    return std::any_of(parts.begin(), parts.end(),
                       [&](std::string_view part) { return EqualKeyword(part, name); });
}

void ProjectObject::ForEachPartInside(XmlTree::Index part,
                                      const std::function<void(XmlTree::Index)>& check) const {
    const XmlTree& tree = document_.Tree();
    if (!tree.IsUnclosed(part)) {
        return;
    }
    tree.ForEachElement(part, [&](XmlTree::Index child) {
        if (IsPartOf(parts_, tree.Name(child))) {
            check(child);
        }
    });
}

void ProjectObject::ForEachOfSection(XmlTree::Index section,
                                     const std::function<void(XmlTree::Index)>& check) const {
    const XmlTree& tree = document_.Tree();
    tree.ForEachElement(section, [&](XmlTree::Index child) {
        if (!tree.IsUnclosed(section) || !IsPartOf(parts_, tree.Name(child))) {
            check(child);
        }
    });
}

Leaf ProjectObject::Required(XmlTree::Index element) {
    Leaf leaf = document_.ReadLeaf(element);
    if (!leaf.HasText()) {
        document_.Report(RuleId::ElementEmpty, leaf.span,
                         Tagged(document_.Tree().Piece(leaf.name)) + " is empty: reading ends here",
                         "a text");
    }
    return leaf;
}

void ProjectObject::CheckPosition(const Leaf& leaf) {
    const std::string_view text = Trim(leaf.text);
    if (text.empty()) {
        return;
    }
    const std::string what = Tagged(document_.Tree().Piece(leaf.name));
    const auto number = ReadDecimal(text);
    if (number && std::isfinite(number->value)) {
        return;
    }
    if (number) {
        document_.Report(RuleId::NumberRange, leaf.span, what + " is too large", "a position on the sheet");
    } else if (const auto withPoint = WithPoint(text)) {
        document_.Report(RuleId::ValueDecimalMark, leaf.span,
                         what + " is " + Quoted(text) + ": it is read up to the comma",
                         "\".\" as the decimal mark", *withPoint);
    } else {
        document_.Report(RuleId::NumberForm, leaf.span, what + " is " + Quoted(text), "a number",
                         LeadingNumber(text));
    }
}

void ProjectObject::CheckTwin(std::set<std::string>& seen, XmlTree::Index child, std::string_view object) {
    const XmlTree& tree = document_.Tree();
    if (!seen.insert(Upper(tree.Name(child))).second) {
        document_.Report(RuleId::ElementRepeated, tree.NameSpan(child),
                         Tagged(tree.Name(child)) + " stands twice in " + Tagged(object) +
                             ": the last one counts",
                         "one of each");
    }
}

} // namespace check
