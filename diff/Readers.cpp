#include "diff/Readers.h"

#include "check/Decimal.h"
#include "check/Utf8.h"

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

namespace diff {

Document::Document(const XmlTree& tree, const check::Catalogue& types) : tree_(tree), types_(types) {
    lineStarts_.push_back(0);
    const std::string_view text = tree.Text();
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '\n' || (text[at] == '\r' && text.substr(at + 1, 1) != "\n")) {
            lineStarts_.push_back(at + 1);
        }
    }
}

std::size_t Document::LineOf(XmlTree::Index node) const {
    const auto next = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), tree_.OffsetOf(node));
    return static_cast<std::size_t>(next - lineStarts_.begin());
}

std::string Document::TextOf(XmlTree::Index element) const {
    return std::string(check::Trim(WholeTextOf(element)));
}

std::string Document::WholeTextOf(XmlTree::Index element) const {
    std::string text;
    tree_.ForEachChild(element, [&](XmlTree::Index child) {
        if (tree_.IsElement(child)) {
            text += WholeTextOf(child);
        } else if (tree_.KindOf(child) == XmlTree::Kind::Text ||
                   tree_.KindOf(child) == XmlTree::Kind::CData) {
            text += tree_.Content(child);
        }
    });
    return text;
}

std::vector<XmlTree::Index> Document::Children(XmlTree::Index parent, std::string_view name) const {
    std::vector<XmlTree::Index> found;
    tree_.ForEachElement(parent, [&](XmlTree::Index child) {
        if (check::EqualKeyword(tree_.Name(child), name)) {
            found.push_back(child);
        }
    });
    return found;
}

XmlTree::Index Document::LastChild(XmlTree::Index parent, std::string_view name) const {
    const std::vector<XmlTree::Index> found = Children(parent, name);
    return found.empty() ? XmlTree::kNone : found.back();
}

XmlTree::Index Document::FindAnyCase(std::string_view name) const {
    const std::function<XmlTree::Index(XmlTree::Index)> find = [&](XmlTree::Index element) {
        if (check::EqualKeyword(tree_.Name(element), name)) {
            return element;
        }
        XmlTree::Index found = XmlTree::kNone;
        tree_.ForEachElement(element, [&](XmlTree::Index child) {
            if (found == XmlTree::kNone) {
                found = find(child);
            }
        });
        return found;
    };
    return tree_.Root() == XmlTree::kNone ? XmlTree::kNone : find(tree_.Root());
}

Field Document::TextField(std::string name, XmlTree::Index element) const {
    const std::string text = TextOf(element);
    return {std::move(name), text, text, LineOf(element)};
}

Field Document::NumberField(std::string name, XmlTree::Index element) const {
    Field field = TextField(std::move(name), element);
    field.meaning = MeaningOfNumber(field.meaning);
    return field;
}

void Document::AddAttributes(XmlTree::Index element, std::vector<Field>& fields) const {
    for (const XmlTree::Attribute& attribute : tree_.Attributes(element)) {
        const std::string name(tree_.Piece(attribute.name));
        const std::string text = tree_.ValueOf(attribute);
        fields.push_back({name, IsWords(name) ? text : MeaningOfNumber(text), text, LineOf(element)});
    }
}

std::string MeaningOfNumber(std::string_view text) {
    const auto number = check::ReadDecimal(check::Trim(text));
    if (!number) {
        return std::string(check::Trim(text));
    }
    if (number->digits.empty()) {
        return "0";
    }
    return (number->isNegative ? "-" : "") + number->digits + "e" + std::to_string(number->exponent);
}

bool IsWords(std::string_view fieldName) {
    constexpr std::array<std::string_view, 19> kWords = {
        "NAME",     "ID",         "DESCRIPTION", "CATEGORY",  "USERNAME", "KEY",          "DEVKEY",
        "UNIT",     "BACNETUNIT", "SNVTTYPE",    "SNVT_TYPE", "APPID",    "TAMOBJECTKEY", "KIND",
        "TERMINAL", "SETUP",      "ENUMDESC",    "FIRMWARE",  "STREAM"};
    return std::any_of(kWords.begin(), kWords.end(),
                       [fieldName](std::string_view word) { return check::EqualKeyword(word, fieldName); });
}

std::string ShownType(std::string_view id, const check::Catalogue& types) {
    constexpr std::string_view kPrefix = "SNVT_";
    const check::TypeInfo* const type = types.Find(id);
    std::string shown(id);
    if (type != nullptr && !type->name.empty()) {
        shown += " ";
        shown += type->name.starts_with(kPrefix) ? type->name.substr(kPrefix.size()) : type->name;
    }
    return shown;
}

std::string ShownValue(const std::string& text, std::string_view typeId, const check::Catalogue& types) {
    const check::TypeInfo* const type = types.Find(typeId);
    if (type == nullptr || text.empty()) {
        return text;
    }
    for (const check::EnumLabel& label : type->labels) {
        if (label.value == text) {
            return text + " " + label.label;
        }
    }
    return type->IsNumber() && !type->unit.empty() ? text + " " + type->unit : text;
}

std::string MeaningOfValue(const std::string& text, std::string_view typeId, const check::Catalogue& types) {
    const check::TypeInfo* const type = types.Find(typeId);
    const bool isNumber = type != nullptr && (type->IsNumber() || type->general == "Enum");
    return isNumber ? MeaningOfNumber(text) : text;
}

bool IsText(std::string_view typeId, const check::Catalogue& types) {
    const check::TypeInfo* const type = types.Find(typeId);
    return type != nullptr && type->general == "Textual";
}

} // namespace diff
