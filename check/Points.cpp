#include "check/Points.h"

#include "check/Decimal.h"
#include "check/Nearest.h"
#include "check/Utf8.h"
#include "check/Values.h"

#include <algorithm>
#include <array>
#include <string>

namespace check {

namespace {

constexpr long long kMostAddress = 65535;
/// A reference of this text's beginning, zeros, is none.
constexpr std::string_view kNoReference = "000000";

constexpr std::string_view kInputKeywords[] = {
    "MANDATORY",         "VISIBLE", "LOGICALADDRESS", "ISPERMANENT", "SNVTCOMPATIBILITYLIST",
    "PROTOCOLREFERENCE", "SNVTTYPE"};
constexpr std::string_view kOutputKeywords[] = {
    "VISIBLE", "SNVTTYPE", "LOGICALADDRESS", "ISMAPASOO", "OBJOFFSET", "ABSOLUTEOBJECTINDEX", "ISWRITABLE"};
constexpr std::string_view kAttributeKeywords[] = {"DESCRIPTION",    "VISIBLE",     "SNVTTYPE",
                                                   "LOGICALADDRESS", "ISPERMANENT", "VALUE"};
// Those of the other two kinds, and what stands above the points.
constexpr std::string_view kNotOfInputs[] = {"ISMAPASOO",   "OBJOFFSET",  "ABSOLUTEOBJECTINDEX", "ISWRITABLE",
                                             "DESCRIPTION", "VALUE",      "DEFAULTVALUE",        "DEVKEY",
                                             "TAMOBJID",    "ISLASTONDEV"};
constexpr std::string_view kNotOfOutputs[] = {"MANDATORY",         "ISPERMANENT", "SNVTCOMPATIBILITYLIST",
                                              "PROTOCOLREFERENCE", "DESCRIPTION", "VALUE",
                                              "DEFAULTVALUE",      "DEVKEY",      "TAMOBJID",
                                              "ISLASTONDEV"};
constexpr std::string_view kNotOfAttributes[] = {"MANDATORY",
                                                 "SNVTCOMPATIBILITYLIST",
                                                 "PROTOCOLREFERENCE",
                                                 "ISMAPASOO",
                                                 "OBJOFFSET",
                                                 "ABSOLUTEOBJECTINDEX",
                                                 "ISWRITABLE",
                                                 "DEFAULTVALUE",
                                                 "DEVKEY",
                                                 "TAMOBJID",
                                                 "ISLASTONDEV"};
constexpr std::string_view kOutputAttributes[] = {"TypeDependent"};

// Hosts read more of a channel's points than a module does.
constexpr std::string_view kChannelInput[] = {
    "NAME",  "MANDATORY",   "VISIBLE",           "EXTENDED",       "SNVTCOMPATIBILITYLIST", "SNVTTYPE",
    "VALUE", "CDBPOSITION", "PROTOCOLREFERENCE", "LOGICALADDRESS", "ISPERMANENT",           "DESCRIPTION"};
constexpr std::string_view kChannelOutput[] = {"NAME",          "VISIBLE",        "SNVTTYPE",
                                               "TYPEDEPENDENT", "ISWRITABLE",     "ISTRENDABLE",
                                               "DESCRIPTION",   "LOGICALADDRESS", "CDBPOSITION"};
constexpr std::string_view kChannelAttribute[] = {
    "NAME",   "DESCRIPTION",   "VISIBLE",      "SNVTTYPE",          "VALUE",       "DEFAULTVALUE",  "MIN",
    "MAX",    "UNITDEPENDENT", "DIFFERENTIAL", "DEVICEDEPENDENT",   "DEVICEKEY",   "TOOLONLY",      "ISUNIT",
    "ISTYPE", "DIVIDEDBY",     "CDBPOSITION",  "KEEPFLOATSTANDARD", "ISPERMANENT", "LOGICALADDRESS"};

constexpr std::array<PointWords, 3> kStreamWords = {
    {{Side::Input, "an input", kInputKeywords, kNotOfInputs, {}},
     {Side::Output, "an output", kOutputKeywords, kNotOfOutputs, kOutputAttributes},
     {Side::Attribute, "an attribute", kAttributeKeywords, kNotOfAttributes, {}}}};
constexpr std::array<PointWords, 3> kChannelWords = {
    {{Side::Input, "an input", kChannelInput, {}, {}},
     {Side::Output, "an output", kChannelOutput, {}, kOutputAttributes},
     {Side::Attribute, "an attribute", kChannelAttribute, {}, {}}}};

std::uint32_t ShortHash(std::string_view name) {
    const std::uint64_t hash = HashOfName(name);
    return static_cast<std::uint32_t>(hash ^ hash >> 32U);
}

/// What stands before the first "_" behind the first character.
std::string_view PrefixOf(std::string_view name) {
    const std::size_t mark = name.find('_', 1);
    return mark == std::string_view::npos ? std::string_view() : name.substr(0, mark);
}

/// "AI" of "AI12"; empty when the text is not letters and then digits.
std::string_view StemOf(std::string_view key) {
    const std::size_t digit = key.find_first_of("0123456789");
    const bool isStem = digit != std::string_view::npos && digit > 0 &&
                        key.find_first_not_of("0123456789", digit) == std::string_view::npos;
    return isStem ? key.substr(0, digit) : std::string_view();
}

} // namespace

const PointWords& StreamWords(Side side) {
    return kStreamWords.at(static_cast<std::size_t>(side));
}
const PointWords& ChannelWords(Side side) {
    return kChannelWords.at(static_cast<std::size_t>(side));
}

struct Points::Field {
    std::string_view keyword;
    Leaf leaf;
};

std::string_view Points::NameAt(std::uint32_t at) const {
    XmlLexer lexer(document_.Tree().Text(), nullptr, at - std::size_t{1});
    return document_.Tree().Piece(lexer.TagName());
}

void Points::CheckSection(XmlTree::Index section, const PointWords& words) {
    const XmlTree& tree = document_.Tree();
    document_.CheckContainer(section, Tagged(tree.Name(section)));
    document_.CheckAttributes(section, {}, Tagged(tree.Name(section)));
    tree.ForEachElement(section, [&](XmlTree::Index child) { CheckPoint(child, words); });
}

void Points::CheckPoint(XmlTree::Index element, const PointWords& words) {
    const XmlTree& tree = document_.Tree();
    const Span name = tree.NameSpan(element);
    const std::string_view text = tree.Piece(name);
    NamesOf(words.side).push_back({ShortHash(text), static_cast<std::uint32_t>(name.at)});
    CheckName(name);
    document_.CheckAttributes(element, words.attributes, words.what, true);
    document_.CheckContainer(element, Tagged(text));
    std::vector<Field> fields;
    const bool isUnclosed = tree.IsUnclosed(element);
    tree.ForEachElement(element, [&](XmlTree::Index child) {
        const Span span = tree.NameSpan(child);
        const std::string_view word = tree.Piece(span);
        const auto known =
            std::find_if(words.keywords.begin(), words.keywords.end(),
                         [&](std::string_view keyword) { return EqualKeyword(keyword, word); });
        if (known == words.keywords.end()) {
            // Where an end tag is missing, the points that follow lie inside.
            if (isUnclosed && tree.FirstChild(child) != XmlTree::kNone &&
                tree.IsElement(tree.FirstChild(child))) {
                CheckPoint(child, words);
            } else {
                document_.ReportUnknown(child, words.keywords, words.elsewhere, words.what, true);
            }
            return;
        }
        const bool isTwin = std::any_of(fields.begin(), fields.end(),
                                        [&](const Field& field) { return field.keyword == *known; });
        if (isTwin) {
            document_.Report(RuleId::ElementRepeated, span,
                             Tagged(word) + " stands twice in " + Tagged(text) + ": the last one counts",
                             "one " + Tagged(word));
        }
        fields.push_back({*known, document_.ReadLeaf(child)});
        document_.CheckAttributes(child, {}, Tagged(word));
    });
    CheckFields(fields, name, words);
}

void Points::CheckName(Span span) {
    if (!isModule_) {
        return;
    }
    const std::string_view name = document_.Tree().Piece(span);
    const std::string_view prefix = PrefixOf(name);
    if (prefix.empty() || prefix.size() + 1 == name.size()) {
        document_.Report(RuleId::PointName, span,
                         "no channel can match " + Tagged(name) + ": it has not the form KEY_NAME",
                         "the key of a channel, \"_\" and the name of its point");
        return;
    }
    prefixes_.push_back({ShortHash(prefix), static_cast<std::uint32_t>(span.at)});
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
    if (words.side == Side::Attribute) {
        CheckPointValue(fields, point, type);
    }
    if (words.side != Side::Input) {
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
    } else if (keyword == "PROTOCOLREFERENCE" && leaf.HasText() && words.side == Side::Input && isModule_) {
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
        const bool isRaw = words.side == Side::Attribute;
        type = CheckType(document_, field.leaf.text, field.leaf.span, isRaw);
        if (!isRaw) {
            document_.ReportBlanks(field.leaf);
        }
    }
    if (!hasType) {
        document_.Report(words.side == Side::Input ? RuleId::InputUntyped : RuleId::TypeMissing, point,
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
    const bool isPlain = raw == leaf.text; // else positions inside are not known
    std::vector<std::string_view> entries;
    const std::string_view text = leaf.text;
    bool saidEnd = text.starts_with(',');
    bool hasOwn = ownType.empty();
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        const std::string_view entry = text.substr(begin, end - begin);
        const Span span =
            isPlain ? Span{leaf.raw.at + begin, std::max<std::size_t>(entry.size(), 1)} : leaf.span;
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

void Points::ReportTwins(std::vector<Name>& names, std::string_view what) {
    std::sort(names.begin(), names.end());
    for (std::size_t begin = 0; begin < names.size();) {
        std::size_t end = begin + 1;
        while (end < names.size() && names[end].hash == names[begin].hash) {
            const std::string_view name = NameAt(names[end].at);
            if (EqualName(NameAt(names[begin].at), name)) {
                const std::string_view first = NameAt(names[begin].at);
                document_.Report(RuleId::PointTwice, {names[end].at, name.size()},
                                 "there is " + std::string(what) + " " + Tagged(first) +
                                     " already; letter case does not count",
                                 "names that differ");
            }
            ++end;
        }
        begin = end;
    }
}

void Points::ReportAddressTwins() {
    std::sort(addresses_.begin(), addresses_.end(), [](const Address& a, const Address& b) {
        return a.number != b.number ? a.number < b.number : a.at < b.at;
    });
    std::size_t first = 0;
    for (std::size_t i = 1; i < addresses_.size(); ++i) {
        if (addresses_[i].number != addresses_[first].number) {
            first = i;
            continue;
        }
        const std::string number = std::to_string(addresses_[i].number);
        const std::string_view text = document_.Tree().Text().substr(addresses_[i].at);
        document_.Report(RuleId::AddressTwice,
                         {addresses_[i].at, std::min(text.find_first_not_of("0123456789"), text.size())},
                         "the logical address " + number + " is that of " +
                             Tagged(NameAt(addresses_[first].pointAt)),
                         "an address of its own");
    }
}

void Points::ReportPrefixCases() {
    std::sort(prefixes_.begin(), prefixes_.end());
    for (std::size_t begin = 0; begin < prefixes_.size();) {
        const std::string_view prefix = PrefixOf(NameAt(prefixes_[begin].at));
        std::size_t end = begin + 1;
        for (; end < prefixes_.size() && prefixes_[end].hash == prefixes_[begin].hash; ++end) {
            const std::string_view other = PrefixOf(NameAt(prefixes_[end].at));
            // Attributes of the configuration are known in any letter case.
            if (other != prefix && EqualName(other, prefix) && !EqualKeyword(prefix, "CONFIG")) {
                document_.Report(RuleId::PointNameCase, {prefixes_[end].at, other.size()},
                                 "the key " + Quoted(other) + " is written " + Quoted(prefix) +
                                     " elsewhere: to a channel they are two",
                                 Quoted(prefix), std::string(prefix));
            }
        }
        begin = end;
    }
}

bool Points::HasPrefix(std::string_view prefix) const {
    const auto found = std::lower_bound(prefixes_.begin(), prefixes_.end(), Name{ShortHash(prefix), 0});
    return found != prefixes_.end() && found->hash == ShortHash(prefix);
}

bool Points::Has(Side side, std::string_view name) const {
    const std::vector<Name>& names = NamesOf(side);
    const std::uint32_t hash = ShortHash(name);
    for (auto at = std::lower_bound(names.begin(), names.end(), Name{hash, 0});
         at != names.end() && at->hash == hash; ++at) {
        if (EqualName(NameAt(at->at), name)) {
            return true;
        }
    }
    return false;
}

std::string_view Points::NearestName(Side side, std::string_view name) {
    constexpr std::size_t kMostCompared = 2000;
    if (NamesOf(side).size() > kMostCompared || !document_.MaySuggest()) {
        return {};
    }
    std::vector<std::string_view>& words = words_.at(static_cast<std::size_t>(side));
    if (words.empty()) {
        for (const Name& known : NamesOf(side)) {
            words.push_back(NameAt(known.at));
        }
    }
    return Nearest(name, words);
}

void Points::CheckReference(std::uint32_t index) {
    const Span span = references_[index];
    const std::string_view text = document_.Tree().Piece(span);
    if (text.find_first_not_of('0') == std::string_view::npos) {
        if (text.size() > kNoReference.size()) {
            document_.Report(RuleId::ReferenceForm, span,
                             Quoted(text) + " counts as a reference: it has too many zeros", "0000 or 000000",
                             "000000");
        }
        return;
    }
    const std::size_t mark = text.rfind('_');
    if (mark == std::string_view::npos || mark == 0 || mark + 1 == text.size()) {
        document_.Report(RuleId::ReferenceForm, span, Quoted(text) + " is no reference",
                         "the key of an object, \"_\" and the name of its output, or 0000");
        return;
    }
    if (Has(Side::Output, text)) {
        return;
    }
    const std::string_view key = text.substr(0, mark);
    const std::string_view stem = StemOf(key);
    if (HasPrefix(key) || stems_.contains(stem)) {
        document_.Report(RuleId::ReferenceNothing, span, "this module has no output " + Quoted(text), "",
                         std::string(NearestName(Side::Output, text)));
    }
}

void Points::Finish() {
    ReportTwins(NamesOf(Side::Input), "an input");
    ReportTwins(NamesOf(Side::Output), "an output");
    ReportTwins(NamesOf(Side::Attribute), "an attribute");
    ReportAddressTwins();
    ReportPrefixCases();
    for (const Name& name : prefixes_) {
        stems_.insert(StemOf(PrefixOf(NameAt(name.at))));
    }
    stems_.erase(std::string_view());
    for (std::size_t i = 0; i < references_.size(); ++i) {
        CheckReference(static_cast<std::uint32_t>(i));
    }
}

void Points::FillSummary(StreamSummary& summary) const {
    for (const Name& name : NamesOf(Side::Input)) {
        summary.inputs.emplace_back(NameAt(name.at));
    }
    for (const Name& name : NamesOf(Side::Output)) {
        summary.outputs.emplace_back(NameAt(name.at));
    }
}

} // namespace check
