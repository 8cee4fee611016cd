// A catalogue of types. Its entries are checked and read in one go: for all other kinds of
// documents this is also what reads the catalogue (`types`).

#include "check/Checkers.h"
#include "check/Decimal.h"
#include "check/Nearest.h"
#include "check/Utf8.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace check {

namespace {

constexpr std::string_view kPrefix = "SNVT_";
bool IsEntry(std::string_view name) {
    return name.starts_with(kPrefix) && name.size() > kPrefix.size();
}

constexpr std::string_view kFields[] = {"NAME",   "TYPE",   "UNIT",         "BACNETUNIT",
                                        "MIN",    "MAX",    "LENGTH",       "A_COEF",
                                        "B_COEF", "C_COEF", "INVALIDVALUE", "ENUMDESC"};
constexpr std::string_view kAttributes[] = {"FACTOR", "Z3REGION"};
constexpr std::string_view kGeneralTypes[] = {"SignedNumeric", "UnsignedNumeric", "Float", "Bitfield",
                                              "Enum",          "Textual",         "Struct"};

struct Field {
    std::string_view keyword;
    Leaf leaf;
};

/// One entry: what its fields say.
class Entry {
  public:
    Entry(Document& document, XmlTree::Index element)
        : document_(document)
        , element_(element)
        , name_(document.Tree().NameSpan(element))
        , errors_(document.Errors()) {}

    TypeInfo Read() {
        CheckAttributes();
        ReadFields();
        info_.name = TextOf("NAME");
        info_.unit = TextOf("UNIT");
        CheckGeneralType();
        CheckLength();
        CheckCoefficients();
        CheckLimits();
        CheckLabels();
        info_.isFaulty = document_.Errors() > errors_;
        return std::move(info_);
    }

  private:
    std::string Tag() const { return Tagged(document_.Tree().Piece(name_)); }

    void CheckAttributes() {
        const XmlTree& tree = document_.Tree();
        for (const XmlTree::Attribute& attribute : tree.Attributes(element_)) {
            const std::string_view name = tree.Piece(attribute.name);
            const bool isKnown =
                std::any_of(std::begin(kAttributes), std::end(kAttributes),
                            [&](std::string_view known) { return EqualKeyword(known, name); });
            if (isKnown) {
                document_.CheckWhole(tree.ValueOf(attribute), attribute.value, Quoted(name), INT32_MIN,
                                     INT32_MAX);
            } else if (name.find(':') == std::string_view::npos && name != "xmlns") {
                const std::string_view near = Nearest(name, kAttributes);
                document_.Report(
                    near.empty() ? RuleId::AttributeUnknown : RuleId::AttributeMisspelt, attribute.name,
                    "the attribute " + Quoted(name) + " means nothing in an entry", "Factor or Z3Region",
                    near == "FACTOR" ? "Factor"
                    : near.empty()   ? ""
                                     : "Z3Region");
            }
        }
    }

    void ReadFields() {
        const XmlTree& tree = document_.Tree();
        document_.CheckContainer(element_, Tag());
        const std::function<void(XmlTree::Index)> read = [&](XmlTree::Index child) {
            const Span span = tree.NameSpan(child);
            const std::string_view name = tree.Piece(span);
            if (tree.IsUnclosed(element_) && IsEntry(name)) {
                return; // one of those that follow
            }
            const auto* const known =
                std::find_if(std::begin(kFields), std::end(kFields),
                             [&](std::string_view field) { return EqualKeyword(field, name); });
            if (known == std::end(kFields)) {
                document_.ReportUnknown(child, kFields, {}, Tag(), true);
                return;
            }
            if (Find(*known) != nullptr) {
                document_.Report(RuleId::ElementRepeated, span, Tagged(name) + " stands twice in " + Tag(),
                                 "one " + Tagged(name));
            }
            fields_.push_back({*known, document_.ReadLeaf(child)});
            if (tree.IsUnclosed(child)) {
                tree.ForEachElement(child, read);
            }
        };
        tree.ForEachElement(element_, read);
    }

    const Leaf* Find(std::string_view keyword) const {
        const auto found = std::find_if(fields_.rbegin(), fields_.rend(),
                                        [&](const Field& field) { return field.keyword == keyword; });
        return found != fields_.rend() ? &found->leaf : nullptr;
    }
    std::string TextOf(std::string_view keyword) const {
        const Leaf* leaf = Find(keyword);
        return leaf != nullptr ? std::string(Trim(leaf->text)) : std::string();
    }

    void CheckGeneralType() {
        const Leaf* leaf = Find("TYPE");
        if (leaf == nullptr) {
            document_.Report(RuleId::EntryUntyped, name_, Tag() + " has no general type",
                             Listed(kGeneralTypes));
            return;
        }
        info_.general = TextOf("TYPE");
        isTypeFaulty_ = std::find(std::begin(kGeneralTypes), std::end(kGeneralTypes), info_.general) ==
                        std::end(kGeneralTypes);
        if (isTypeFaulty_) {
            document_.Report(RuleId::EntryType, leaf->span, Quoted(info_.general) + " is no general type",
                             Listed(kGeneralTypes), std::string(Nearest(info_.general, kGeneralTypes)));
        }
    }

    /// Limits under a general type that is none were meant as limits: one fault does not hide another.
    bool HasLimits() const { return info_.IsNumber() || info_.general == "Bitfield" || isTypeFaulty_; }

    void CheckLength() {
        const Leaf* leaf = Find("LENGTH");
        const std::string text = TextOf("LENGTH");
        if (leaf == nullptr) {
            if (!info_.general.empty()) {
                document_.Report(RuleId::EntryLength, name_, Tag() + " has no length",
                                 "the bytes of a value");
            }
            return;
        }
        const auto number = ReadWhole(text);
        constexpr long long kMost = 65535;
        if (!number || *number < 1 || *number > kMost || text.starts_with('+')) {
            document_.Report(RuleId::EntryLength, leaf->span, "the length is " + Quoted(text),
                             "a whole number from 1");
            return;
        }
        info_.length = static_cast<long>(*number);
    }

    void CheckCoefficients() {
        for (const std::string_view keyword : {"A_COEF", "B_COEF", "C_COEF"}) {
            const Leaf* leaf = Find(keyword);
            if (leaf == nullptr) {
                continue;
            }
            const std::string text = TextOf(keyword);
            const auto number = ReadWhole(text);
            constexpr long long kMostPower = 38;
            const bool isA = keyword.front() == 'A';
            const bool isPower = keyword.front() == 'B';
            if (!number || *number < INT32_MIN || *number > INT32_MAX || text.starts_with('+') ||
                (isA && *number == 0) || (isPower && (*number < -kMostPower || *number > kMostPower))) {
                document_.Report(RuleId::EntryCoefficient, leaf->span,
                                 Tagged(document_.Tree().Piece(leaf->name)) + " is " + Quoted(text),
                                 isA ? "a whole number other than 0" : "a whole number");
            } else if (isA) {
                info_.a = static_cast<long>(*number);
            } else if (isPower) {
                info_.b = static_cast<long>(*number);
            }
        }
    }

    std::optional<double> Limit(std::string_view keyword, std::string& kept) {
        const Leaf* leaf = Find(keyword);
        if (leaf == nullptr || !HasLimits()) {
            return std::nullopt;
        }
        kept = TextOf(keyword);
        if (kept.empty()) {
            return std::nullopt;
        }
        const auto number = ReadDecimal(kept);
        if (!number) {
            document_.Report(RuleId::EntryLimitForm, leaf->span,
                             Tagged(document_.Tree().Piece(leaf->name)) + " is " + Quoted(kept),
                             "a number with \".\" as its decimal mark",
                             WithPoint(kept).value_or(LeadingNumber(kept)));
            return std::nullopt;
        }
        return number->value;
    }

    void CheckLimits() {
        info_.min = Limit("MIN", info_.minText);
        info_.max = Limit("MAX", info_.maxText);
        info_.invalid = Limit("INVALIDVALUE", info_.invalidText);
        if (info_.IsNumber()) {
            for (const std::string_view keyword : {"MIN", "MAX"}) {
                if (TextOf(keyword).empty()) {
                    const Leaf* leaf = Find(keyword);
                    document_.Report(RuleId::EntryLimitMissing, leaf != nullptr ? leaf->span : name_,
                                     Tag() + " has no " + Tagged(keyword), "a limit");
                }
            }
        }
        if (info_.min && info_.max && *info_.min > *info_.max) {
            document_.Report(RuleId::EntryLimitOrder, Find("MIN")->span,
                             "the least value " + info_.minText + " is above the greatest, " + info_.maxText,
                             "the limits the other way round", info_.maxText);
        }
    }

    void CheckLabels() {
        const Leaf* leaf = Find("ENUMDESC");
        if (leaf == nullptr) {
            return;
        }
        const std::string text = TextOf("ENUMDESC");
        const std::string fault = FaultOfDescription(text);
        if (!fault.empty()) {
            document_.Report(RuleId::EnumDescription, leaf->span,
                             "the description of the enumeration: " + fault, "value,label; for each entry",
                             fault.starts_with("the last") ? text + ";" : "");
        }
        info_.labels = ReadLabels(text);
        info_.hasLabels = !info_.labels.empty();
    }

    Document& document_;
    XmlTree::Index element_;
    Span name_;
    std::size_t errors_ = 0;
    bool isTypeFaulty_ = false;
    std::vector<Field> fields_;
    TypeInfo info_;
};

/// What the entries before have.
struct Seen {
    std::unordered_set<std::string> identifiers;
    /// With the element of the entry that has it.
    std::unordered_map<std::string, std::string> names;
};

void CheckOne(Document& document, XmlTree::Index entry, Seen& seen, Catalogue* types) {
    const Span span = document.Tree().NameSpan(entry);
    const std::string_view name = document.Tree().Piece(span);
    TypeInfo info = Entry(document, entry).Read();
    if (!seen.identifiers.emplace(name).second) {
        document.Report(RuleId::EntryTwice, span, Tagged(name) + " stands twice: only the first one is found",
                        "an identifier of its own");
        return;
    }
    if (!info.name.empty()) {
        const auto [first, isNew] = seen.names.emplace(info.name, name);
        if (!isNew) {
            document.Report(RuleId::EntryTwice, span,
                            Tagged(name) + " has the name of " + Tagged(first->second) + ", " + info.name,
                            "a name of its own");
        }
    }
    if (types != nullptr) {
        types->Add(std::string(name.substr(kPrefix.size())), std::move(info));
    }
}

} // namespace

void CheckCatalogue(Document& document, Catalogue* types) {
    const XmlTree& tree = document.Tree();
    document.CheckContainer(tree.Root(), Tagged(tree.Name(tree.Root())));
    document.CheckAttributes(tree.Root(), {}, Tagged(tree.Name(tree.Root())));
    Seen seen;
    const std::function<void(XmlTree::Index)> check = [&](XmlTree::Index child) {
        const Span span = tree.NameSpan(child);
        const std::string_view name = tree.Piece(span);
        if (!IsEntry(name)) {
            const bool isNear = Distance(name.substr(0, kPrefix.size()), kPrefix, 1) <= 1;
            const std::string digits(name.substr(std::min(name.find_first_of("0123456789"), name.size())));
            document.Report(RuleId::EntryName, span, Tagged(name) + " is no entry: it is never found",
                            "SNVT_ and the identifier of a type",
                            isNear && !digits.empty() ? std::string(kPrefix) + digits : std::string());
            return;
        }
        CheckOne(document, child, seen, types);
        if (tree.IsUnclosed(child)) {
            // Where the end tag of an entry is missing, those that follow lie inside.
            tree.ForEachElement(child, [&](XmlTree::Index inner) {
                if (IsEntry(tree.Name(inner))) {
                    check(inner);
                }
            });
        }
    };
    tree.ForEachElement(tree.Root(), check);
}

} // namespace check
