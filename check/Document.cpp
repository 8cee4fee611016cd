#include "check/Document.h"

#include "check/Decimal.h"
#include "check/Nearest.h"
#include "check/Surroundings.h"
#include "check/Utf8.h"

#include <algorithm>

namespace check {

std::string Tagged(std::string_view name) {
    std::string tag = "<";
    tag += name;
    tag += '>';
    return tag;
}

std::string Listed(std::span<const std::string_view> words) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        text += i == 0 ? "" : i + 1 == words.size() ? " or " : ", ";
        text += words[i];
    }
    return text;
}

const Catalogue& Document::Types() const {
    return surroundings_.Types();
}

Leaf Document::ReadLeaf(Index element) {
    Leaf leaf;
    leaf.node = element;
    leaf.name = leaf.span = tree_.NameSpan(element);
    const std::string_view name = tree_.Piece(leaf.name);
    CheckAttributes(element, {}, Tagged(name));
    bool hasText = false;
    tree_.ForEachChild(element, [&](Index child) {
        const Span begin{tree_.OffsetOf(child), 1};
        switch (tree_.KindOf(child)) {
        case XmlTree::Kind::Text:
        case XmlTree::Kind::CData: {
            const Span raw = tree_.ContentSpan(child);
            const std::string_view trimmed = Trim(tree_.Piece(raw));
            const Span span{trimmed.empty() ? raw.at
                                            : static_cast<std::size_t>(trimmed.data() - tree_.Text().data()),
                            trimmed.size()};
            if (hasText) {
                Report(RuleId::TextSplit, span.size > 0 ? span : begin,
                       "the text of " + Tagged(name) + " is in two pieces", "one text");
            } else {
                leaf.span = span.size > 0 ? span : leaf.name;
                leaf.raw = raw;
            }
            hasText = true;
            leaf.text += tree_.Content(child);
            break;
        }
        case XmlTree::Kind::Comment:
            Report(RuleId::TextSplit, begin, "a comment inside " + Tagged(name),
                   "the comment beside the element");
            break;
        case XmlTree::Kind::Instruction:
            Report(RuleId::InstructionInside, tree_.NameSpan(child), "an instruction inside " + Tagged(name));
            break;
        case XmlTree::Kind::Element:
            if (!tree_.IsUnclosed(element)) {
                Report(RuleId::ElementInText, tree_.NameSpan(child),
                       Tagged(tree_.Name(child)) + " inside " + Tagged(name) + ", which holds a text alone");
            }
            break;
        }
    });
    if (tree_.IsUnclosed(element)) {
        // The line end after it belongs to what follows.
        leaf.text = std::string(Trim(leaf.text));
        leaf.raw = leaf.HasText() ? leaf.span : leaf.raw;
    }
    return leaf;
}

void Document::CheckContainer(Index element, std::string_view where) {
    tree_.ForEachChild(element, [&](Index child) {
        const XmlTree::Kind kind = tree_.KindOf(child);
        if (kind == XmlTree::Kind::Text || kind == XmlTree::Kind::CData) {
            const std::string_view trimmed = Trim(tree_.Piece(tree_.ContentSpan(child)));
            const Span span{trimmed.empty() ? tree_.OffsetOf(child)
                                            : static_cast<std::size_t>(trimmed.data() - tree_.Text().data()),
                            trimmed.size()};
            Report(RuleId::TextStray, span, "the text " + Quoted(trimmed) + " in " + std::string(where),
                   "elements alone");
        } else if (kind == XmlTree::Kind::Instruction) {
            Report(RuleId::InstructionInside, tree_.NameSpan(child),
                   "an instruction in " + std::string(where));
        }
    });
}

void Document::CheckAttributes(Index element, std::span<const std::string_view> known, std::string_view where,
                               bool isCaseFree) {
    for (const XmlTree::Attribute& attribute : tree_.Attributes(element)) {
        const std::string_view name = tree_.Piece(attribute.name);
        // What names a schema for an editor, and what is reported as XML.
        if (name.find(':') != std::string_view::npos || name == "xmlns" ||
            std::any_of(known.begin(), known.end(), [&](std::string_view word) {
                return isCaseFree ? EqualKeyword(word, name) : word == name;
            })) {
            continue;
        }
        const std::string_view near = Nearest(name, known);
        if (near.empty()) {
            Report(RuleId::AttributeUnknown, attribute.name,
                   "the attribute " + Quoted(name) + " means nothing in " + std::string(where),
                   known.empty() ? "no attribute" : Listed(known));
        } else {
            Report(RuleId::AttributeMisspelt, attribute.name,
                   "the attribute " + Quoted(name) + " means nothing in " + std::string(where), Listed(known),
                   std::string(near));
        }
    }
}

void Document::ReportUnknown(Index element, std::span<const std::string_view> known,
                             std::span<const std::string_view> elsewhere, std::string_view where,
                             bool isCaseFree) {
    const Span span = tree_.NameSpan(element);
    const std::string_view name = tree_.Piece(span);
    const std::string place(where);
    const bool isElsewhere = std::any_of(elsewhere.begin(), elsewhere.end(), [&](std::string_view other) {
        return isCaseFree ? EqualKeyword(other, name) : other == name;
    });
    if (isElsewhere) {
        Report(RuleId::ElementMisplaced, span, Tagged(name) + " has no place in " + place, Listed(known));
        return;
    }
    const std::string_view near = Nearest(name, known);
    if (!near.empty()) {
        Report(RuleId::ElementMisspelt, span,
               Tagged(name) + " means nothing in " + place + ": it is passed over", Listed(known),
               std::string(near));
        return;
    }
    Report(RuleId::ElementUnknown, span, Tagged(name) + " means nothing in " + place + ": it is passed over",
           Listed(known));
    // Sections are looked for at any depth.
    tree_.ForEachBelow(element, [&](Index inner) {
        if (tree_.IsElement(inner) && tree_.Name(inner) == "Tam") {
            Report(RuleId::ElementMisplaced, tree_.NameSpan(inner), "<Tam> inside of " + Tagged(name),
                   "<Tam> as the document element alone");
        }
    });
}

void Document::ReportBlanks(const Leaf& leaf) {
    if (leaf.HasText() && Trim(leaf.text).size() != leaf.text.size()) {
        Report(RuleId::BlankAround, leaf.span,
               "blanks around the text of " + Tagged(tree_.Piece(leaf.name)) + " belong to it",
               Quoted(Trim(leaf.text)));
    }
}

bool Document::CheckWhole(std::string_view text, Span span, std::string_view what, long long least,
                          long long most) {
    const std::string range = "a whole number from " + std::to_string(least) + " to " + std::to_string(most);
    const auto number = ReadWhole(text);
    if (!number || text.starts_with('+')) {
        const bool isLong =
            text.size() > 18 && text.find_first_not_of("-0123456789") == std::string_view::npos;
        const std::string leading = LeadingNumber(text);
        const bool isMeant = ReadWhole(leading).has_value() && leading != text;
        Report(isLong ? RuleId::NumberRange : RuleId::NumberForm, span,
               std::string(what) + " is " + Quoted(text), range, isMeant ? leading : std::string());
        return false;
    }
    if (*number < least || *number > most) {
        Report(RuleId::NumberRange, span, std::string(what) + " is " + std::string(text), range);
        return false;
    }
    return true;
}

bool Document::CheckFlag(std::string_view text, Span span, std::string_view what) {
    if (text == "0" || text == "1") {
        return true;
    }
    const bool isYes = EqualKeyword(text, "true") || EqualKeyword(text, "yes") || EqualKeyword(text, "on") ||
                       Trim(text) == "1" || text == "1.0";
    const bool isNo = EqualKeyword(text, "false") || EqualKeyword(text, "no") || EqualKeyword(text, "off") ||
                      Trim(text) == "0";
    Report(RuleId::FlagValue, span, std::string(what) + " is " + Quoted(text), "0 or 1",
           isYes  ? "1"
           : isNo ? "0"
                  : "");
    return false;
}

} // namespace check
