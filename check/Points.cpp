#include "check/Points.h"

#include "check/Decimal.h"
#include "check/Utf8.h"
#include "check/Values.h"

#include <algorithm>
#include <functional>
#include <string>

namespace check {

namespace {

constexpr long long kMostAddress = 65535;

/// What follows a section in a document.
bool IsAfterSections(std::string_view name) {
    return name == "InReferences" || name == "OutReferences" || name == "Attributes" || name == "TAMConfig";
}

} // namespace

struct Points::Field {
    std::string_view keyword;
    Leaf leaf;
};

void Points::CheckSection(XmlTree::Index section, const PointWords& words) {
    const XmlTree& tree = document_.Tree();
    document_.CheckContainer(section, Tagged(tree.Name(section)));
    document_.CheckAttributes(section, {}, Tagged(tree.Name(section)));
    const bool isUnclosed = tree.IsUnclosed(section);
    tree.ForEachElement(section, [&](XmlTree::Index child) {
        // Where the end tag is missing, what follows the section lies inside.
        if (!isUnclosed || !IsAfterSections(tree.Name(child))) {
            CheckPoint(child, words);
        }
    });
}

void Points::CheckPoint(XmlTree::Index element, const PointWords& words) {
    const XmlTree& tree = document_.Tree();
    const Span name = tree.NameSpan(element);
    const std::string_view text = tree.Piece(name);
    NamesOf(words.kind).push_back({ShortHash(text), static_cast<std::uint32_t>(name.at)});
    CheckName(name);
    document_.CheckAttributes(element, words.attributes, words.what, true);
    document_.CheckContainer(element, Tagged(text));
    std::vector<Field> fields;
    const bool isUnclosed = tree.IsUnclosed(element);
    const std::function<void(XmlTree::Index)> read = [&](XmlTree::Index child) {
        const Span span = tree.NameSpan(child);
        const std::string_view word = tree.Piece(span);
        // Where an end tag is missing, the points that follow lie inside, whatever their names.
        const XmlTree::Index first = tree.FirstChild(child);
        if (isUnclosed && !tree.IsUnclosed(child) && first != XmlTree::kNone && tree.IsElement(first)) {
            return CheckPoint(child, words);
        }
        const auto known =
            std::find_if(words.keywords.begin(), words.keywords.end(),
                         [&](std::string_view keyword) { return EqualKeyword(keyword, word); });
        if (known == words.keywords.end()) {
            if (isUnclosed && first != XmlTree::kNone && tree.IsElement(first)) {
                return CheckPoint(child, words);
            }
            return document_.ReportUnknown(child, words.keywords, words.elsewhere, words.what, true);
        }
        const bool isTwin = std::any_of(fields.begin(), fields.end(),
                                        [&](const Field& field) { return field.keyword == *known; });
        if (isTwin) {
            document_.Report(RuleId::ElementRepeated, span,
                             Tagged(word) + " stands twice in " + Tagged(text) + ": the last one counts",
                             "one " + Tagged(word));
        }
        fields.push_back({*known, document_.ReadLeaf(child)});
        if (tree.IsUnclosed(child)) {
            tree.ForEachElement(child, read);
        }
    };
    tree.ForEachElement(element, read);
    CheckFields(fields, name, words);
}

void Points::CheckFields(const std::vector<Field>& fields, Span point, const PointWords& words) {
    for (const Field& field : fields) {
        CheckField(field, point, words);
    }
    const auto has = [&](std::string_view keyword) {
        return std::any_of(fields.begin(), fields.end(),
                           [&](const Field& field) { return field.keyword == keyword; });
    };
    const std::string name = Tagged(document_.Tree().Piece(point));
    if (isModule_ && !has("LOGICALADDRESS")) {
        document_.Report(RuleId::AddressMissing, point, name + " has no logical address", "LOGICALADDRESS");
    }
    const TypeInfo* type = CheckPointType(fields, point, words);
    if (words.kind == PointKind::Attribute) {
        CheckPointValue(fields, point, type);
    }
    if (words.kind != PointKind::Input) {
        return;
    }
    std::string_view ownType;
    for (const Field& field : fields) {
        ownType = field.keyword == "SNVTTYPE" ? Trim(field.leaf.text) : ownType;
    }
    for (const Field& field : fields) {
        if (field.keyword == "SNVTCOMPATIBILITYLIST") {
            CheckList(field.leaf, ownType);
        }
    }
    if (!has("SNVTCOMPATIBILITYLIST")) {
        document_.Report(RuleId::ListMissing, point,
                         name + " has no list of compatible types: it accepts none", "SNVTCOMPATIBILITYLIST");
    }
}

void Points::CheckField(const Field& field, Span point, const PointWords& words) {
    const std::string_view keyword = field.keyword;
    const Leaf& leaf = field.leaf;
    const std::string what = Tagged(document_.Tree().Piece(leaf.name));
    const bool isFlag = keyword == "ISPERMANENT" || keyword == "ISMAPASOO" || keyword == "ISWRITABLE" ||
                        keyword == "UNITDEPENDENT" || keyword == "DIFFERENTIAL" || keyword == "ISTRENDABLE";
    if (isFlag) {
        document_.CheckFlag(leaf.text, leaf.span, what);
    } else if (keyword == "VISIBLE" || keyword == "MANDATORY") {
        if (isModule_) {
            CheckPresence(leaf, keyword);
        } else if (leaf.HasText()) {
            document_.CheckFlag(leaf.text, leaf.span, what);
        }
    } else if (keyword == "LOGICALADDRESS" && isModule_) {
        CheckAddress(leaf, point);
    } else if (keyword == "OBJOFFSET" || keyword == "ABSOLUTEOBJECTINDEX") {
        document_.ReportBlanks(leaf);
        document_.CheckWhole(Trim(leaf.text), leaf.span, what, 0, kMostAddress);
    } else if (keyword == "CDBPOSITION" || keyword == "DIVIDEDBY") {
        document_.CheckWhole(Trim(leaf.text), leaf.span, what, INT32_MIN, INT32_MAX);
    } else if (keyword == "PROTOCOLREFERENCE" && leaf.HasText() && words.kind == PointKind::Input &&
               isModule_) {
        document_.ReportBlanks(leaf);
        references_.push_back(leaf.span);
    }
}

void Points::CheckPresence(const Leaf& leaf, std::string_view keyword) {
    const std::string what = Tagged(document_.Tree().Piece(leaf.name));
    const bool clears = keyword == "MANDATORY";
    if (leaf.text == "0") {
        document_.Report(RuleId::FlagPresence, leaf.span,
                         what + " is 0, but the element counts, whatever it holds",
                         clears ? "<MANDATORY/>, which makes the input optional, or no such element"
                                : "<VISIBLE>1</VISIBLE> or no such element");
    } else if (leaf.HasText()) {
        document_.CheckFlag(leaf.text, leaf.span, what);
    }
}

void Points::CheckAddress(const Leaf& leaf, Span point) {
    document_.ReportBlanks(leaf);
    const std::string_view text = Trim(leaf.text);
    if (text.empty()) {
        document_.Report(RuleId::AddressMissing, leaf.span,
                         Tagged(document_.Tree().Piece(point)) + " has no logical address", "0 to 65535");
    } else if (document_.CheckWhole(text, leaf.span, "the logical address", 0, kMostAddress)) {
        addresses_.push_back({static_cast<std::uint32_t>(*ReadWhole(text)),
                              static_cast<std::uint32_t>(leaf.span.at),
                              static_cast<std::uint32_t>(point.at)});
    }
}

const TypeInfo* Points::CheckPointType(const std::vector<Field>& fields, Span point,
                                       const PointWords& words) {
    const TypeInfo* type = nullptr;
    bool hasType = false;
    for (const Field& field : fields) {
        if (field.keyword != "SNVTTYPE") {
            continue;
        }
        hasType = true;
        if (Trim(field.leaf.text).empty()) {
            document_.Report(RuleId::TypeEmpty, field.leaf.span,
                             Tagged(document_.Tree().Piece(point)) + " names no type");
            continue;
        }
        const bool isRaw = words.kind == PointKind::Attribute;
        type = CheckType(document_, field.leaf.text, field.leaf.span, isRaw);
        if (!isRaw) {
            document_.ReportBlanks(field.leaf);
        }
    }
    if (!hasType) {
        document_.Report(words.kind == PointKind::Input ? RuleId::InputUntyped : RuleId::TypeMissing, point,
                         Tagged(document_.Tree().Piece(point)) + " has no type", "SNVTTYPE");
    }
    return type;
}

void Points::CheckPointValue(const std::vector<Field>& fields, Span point, const TypeInfo* type) {
    bool hasValue = false;
    for (const Field& field : fields) {
        if (field.keyword != "VALUE") {
            continue;
        }
        hasValue = true;
        if (!field.leaf.HasText()) {
            const bool mayBeEmpty = type != nullptr && type->general == "Textual";
            if (!mayBeEmpty) {
                document_.Report(RuleId::ValueMissing, field.leaf.span,
                                 Tagged(document_.Tree().Piece(point)) + " has no value");
            }
        } else if (type != nullptr) {
            CheckValue(document_, *type, field.leaf);
        }
    }
    if (!hasValue) {
        document_.Report(RuleId::ValueMissing, point, Tagged(document_.Tree().Piece(point)) + " has no value",
                         "VALUE");
    }
}

void Points::CheckListEntry(std::string_view entry, Span span) {
    if (document_.Others().HasTypes() && document_.Types().Find(entry) == nullptr) {
        document_.Report(RuleId::ListEntryUnknown, span, "the catalogue has no type " + Quoted(entry), "",
                         document_.MaySuggest() ? document_.Types().Suggest(entry) : std::string());
    }
}

void Points::CheckList(const Leaf& leaf, std::string_view ownType) {
    const std::string_view raw = document_.Tree().Piece(leaf.raw);
    if (leaf.text.empty() || leaf.text.front() == ',') {
        document_.Report(RuleId::ListEmpty, leaf.span, "the list of compatible types is empty",
                         "identifiers of types with commas between them");
        if (leaf.text.size() < 2) {
            return;
        }
    }
    // A reference has no comma; "&#44;" is one, and then positions inside are not known.
    const bool isPlaced =
        std::count(raw.begin(), raw.end(), ',') == std::count(leaf.text.begin(), leaf.text.end(), ',');
    std::vector<std::string_view> entries;
    const std::string_view text = leaf.text;
    bool saidEnd = text.starts_with(',');
    bool hasOwn = ownType.empty();
    std::size_t rawBegin = 0;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        const std::string_view entry = text.substr(begin, end - begin);
        const std::size_t rawEnd = std::min(raw.find(',', rawBegin), raw.size());
        const Span span =
            isPlaced ? Span{leaf.raw.at + rawBegin, std::max<std::size_t>(rawEnd - rawBegin, 1)} : leaf.span;
        rawBegin = std::min(rawEnd + 1, raw.size());
        if (entry.empty()) {
            if (end < text.size() && !saidEnd && text.find_first_not_of(',', end) != std::string_view::npos) {
                document_.Report(RuleId::ListEndsEarly, span,
                                 "an empty entry ends the list here: what follows is lost", "one comma");
                saidEnd = true;
            }
        } else if (std::find(entries.begin(), entries.end(), entry) != entries.end()) {
            document_.Report(RuleId::ListEntryTwice, span,
                             "the type " + Quoted(entry) + " is in the list twice");
        } else {
            CheckListEntry(entry, span);
            entries.push_back(entry);
            hasOwn = hasOwn || entry == ownType;
        }
        begin = end + 1;
        constexpr std::size_t kMostCompared = 1000; // a catalogue has some hundreds of types
        if (entries.size() > kMostCompared) {
            entries.clear();
        }
    }
    if (!hasOwn && !entries.empty()) {
        document_.Report(RuleId::ListOwnType, leaf.span,
                         "the list does not hold the point's own type " + std::string(ownType),
                         Quoted(ownType) + " in the list");
    }
}

} // namespace check
