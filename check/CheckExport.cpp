// An export document, as the host's compiler takes it: host/ExportReader.cpp says the same and
// stops at the first fault, here all are told (tests/check/ExportAgreementTest.cpp asks both).

#include "check/Checkers.h"
#include "check/Decimal.h"
#include "check/Utf8.h"
#include "check/Values.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace check {

namespace {

enum class Form { Text, Type, Signed, Unsigned, Flag, DefinitionFlag };

struct FieldRule {
    std::string_view name;
    Form form;
    bool isOptional = false;
};

constexpr std::string_view kRoot = "O_Tam_id";
constexpr std::string_view kSections[] = {"Inputs", "Outputs", "Attributes"};
constexpr std::size_t kMostPoints = 65535;
constexpr std::size_t kLongestText = 65535;

constexpr FieldRule kRootFields[] = {{"DevAddr", Form::Signed},
                                     {"AppID", Form::Text},
                                     {"DevKey", Form::Text},
                                     {"TamObjectID", Form::Signed},
                                     {"IsLastOnDev", Form::Flag}};
constexpr FieldRule kInputFields[] = {{"LinkReference", Form::Text},
                                      {"LogicalAddress", Form::Unsigned},
                                      {"SNVTType", Form::Type},
                                      {"isPermanent", Form::Flag},
                                      {"IsConnected", Form::Flag}};
constexpr FieldRule kOutputFields[] = {
    {"LogicalAddress", Form::Unsigned},      {"SNVTType", Form::Type},
    {"isMapAsOO", Form::DefinitionFlag},     {"ObjOffset", Form::Unsigned},
    {"AbsoluteObjectIndex", Form::Unsigned}, {"IsConnected", Form::Flag},
    {"IsWritable", Form::DefinitionFlag},    {"DisplayWritable", Form::Flag, true}};
constexpr FieldRule kAttributeFields[] = {
    {"LogicalAddress", Form::Unsigned},    {"SNVTType", Form::Type},    {"Value", Form::Text},
    {"isPermanent", Form::DefinitionFlag}, {"IsConnected", Form::Flag}, {"EnumDesc", Form::Text, true}};

/// The compiler refuses a document at its first fault; all are told here.
class Export {
  public:
    explicit Export(Document& document) : document_(document) {}

    void Check() {
        const XmlTree& tree = document_.Tree();
        const XmlTree::Index root = tree.Root();
        const Span name = tree.NameSpan(root);
        if (tree.Piece(name) != kRoot) {
            document_.Report(RuleId::RootName, name, "the document element is " + Tagged(tree.Piece(name)),
                             "<O_Tam_id>", "O_Tam_id");
        }
        CheckFields(root, kRootFields);
        CheckTexts(root);
        std::size_t next = 0;
        tree.ForEachElement(root, [&](XmlTree::Index child) {
            const auto* const known = std::find(std::begin(kSections), std::end(kSections), tree.Name(child));
            if (known == std::end(kSections)) {
                document_.ReportUnknown(child, kSections, {}, "<O_Tam_id>", false);
                Refuse(tree.NameSpan(child), "<O_Tam_id> holds Inputs, Outputs and Attributes alone");
                return;
            }
            const auto rank = static_cast<std::size_t>(known - std::begin(kSections));
            if (rank < next) {
                Refuse(tree.NameSpan(child), Tagged(*known) + " stands in the wrong place or twice");
            }
            next = std::max(next, rank + 1);
            seen_.insert(std::string(*known));
            CheckSection(child, rank);
        });
        for (const std::string_view section : kSections) {
            if (!seen_.contains(std::string(section))) {
                document_.Report(RuleId::ElementMissing, name, "<O_Tam_id> has no " + Tagged(section),
                                 Tagged(section));
            }
        }
    }

  private:
    void Refuse(Span span, std::string message, std::string expected = {}) {
        document_.Report(RuleId::ExportForm, span, std::move(message), std::move(expected));
    }

    void CheckTexts(XmlTree::Index element) {
        const XmlTree& tree = document_.Tree();
        tree.ForEachChild(element, [&](XmlTree::Index child) {
            const XmlTree::Kind kind = tree.KindOf(child);
            if (kind == XmlTree::Kind::Text || kind == XmlTree::Kind::CData) {
                Refuse({tree.OffsetOf(child), 1}, "a text in " + Tagged(tree.Name(element)), "no text");
            }
        });
    }

    void CheckSection(XmlTree::Index section, std::size_t rank) {
        const XmlTree& tree = document_.Tree();
        CheckTexts(section);
        CheckFields(section, {});
        std::size_t count = 0;
        tree.ForEachElement(section, [&](XmlTree::Index point) {
            if (++count == kMostPoints + 1) {
                Refuse(tree.NameSpan(point), Tagged(tree.Name(section)) + " holds more than 65535 points");
            }
            CheckFields(point, rank == 0   ? std::span<const FieldRule>(kInputFields)
                               : rank == 1 ? std::span<const FieldRule>(kOutputFields)
                                           : std::span<const FieldRule>(kAttributeFields));
            tree.ForEachChild(point, [&](XmlTree::Index child) {
                if (tree.KindOf(child) != XmlTree::Kind::Comment &&
                    tree.KindOf(child) != XmlTree::Kind::Instruction) {
                    Refuse({tree.OffsetOf(child), 1}, Tagged(tree.Name(point)) + " must be empty");
                }
            });
            CheckConnected(point, rank);
            CheckLength(tree.NameSpan(point));
        });
    }

    void CheckLength(Span span) {
        if (span.size > kLongestText) {
            Refuse({span.at, 1}, "a text of more than 65535 bytes");
        }
    }

    void CheckFields(XmlTree::Index element, std::span<const FieldRule> rules) {
        const XmlTree& tree = document_.Tree();
        std::vector<std::string_view> names;
        std::transform(rules.begin(), rules.end(), std::back_inserter(names),
                       [](const FieldRule& rule) { return rule.name; });
        std::set<std::string_view> seen;
        const std::string what = Tagged(tree.Name(element));
        for (const XmlTree::Attribute& attribute : tree.Attributes(element)) {
            const std::string_view name = tree.Piece(attribute.name);
            const auto rule = std::find(names.begin(), names.end(), name);
            if (rule == names.end()) {
                Refuse(attribute.name, "the attribute " + Quoted(name) + " of " + what + " is refused",
                       names.empty() ? "no attribute" : Listed(names));
                continue;
            }
            seen.insert(name);
            CheckField(attribute, rules[static_cast<std::size_t>(rule - names.begin())]);
        }
        for (const FieldRule& rule : rules) {
            if (!rule.isOptional && !seen.contains(rule.name)) {
                document_.Report(RuleId::AttributeMissing, tree.NameSpan(element),
                                 what + " has no attribute " + Quoted(rule.name),
                                 std::string(rule.name) + "=\"...\"");
            }
        }
    }

    void CheckNumber(const XmlTree::Attribute& attribute, const std::string& text, long long least,
                     long long most) {
        if (!text.empty()) {
            document_.CheckWhole(text, attribute.value, document_.Tree().Piece(attribute.name), least, most);
        }
    }

    void CheckField(const XmlTree::Attribute& attribute, const FieldRule& rule) {
        const std::string text = document_.Tree().ValueOf(attribute);
        const Span span = attribute.value.size > 0 ? attribute.value : attribute.name;
        switch (rule.form) {
        case Form::Signed:
            return CheckNumber(attribute, text, INT16_MIN, INT16_MAX);
        case Form::Unsigned:
            return CheckNumber(attribute, text, 0, UINT16_MAX);
        case Form::Flag:
            document_.CheckFlag(text, span, rule.name);
            return;
        case Form::DefinitionFlag:
            if (!text.empty() && text != "True" && text != "False") {
                document_.CheckFlag(text, span, rule.name);
            }
            return;
        case Form::Type:
            if (!text.empty() && !document_.Types().HasName(text)) {
                CheckType(document_, text, span, true);
            }
            break;
        case Form::Text:
            if (rule.name == "EnumDesc" && !FaultOfDescription(text).empty()) {
                document_.Report(RuleId::EnumDescription, span,
                                 "the description of the enumeration: " + FaultOfDescription(text),
                                 "value,label; for each entry");
            }
            break;
        }
        if (text.size() > kLongestText) {
            Refuse({span.at, 1}, "a text of more than 65535 bytes");
        }
    }

    void CheckConnected(XmlTree::Index point, std::size_t rank) {
        const XmlTree& tree = document_.Tree();
        const auto link = tree.FindAttribute(point, "LinkReference");
        const auto connected = tree.FindAttribute(point, "IsConnected");
        if (rank != 0 || !link || !connected) {
            return;
        }
        const std::string reference = tree.ValueOf(*link);
        const bool isConnected = reference != std::string_view("000000").substr(0, reference.size());
        if (tree.ValueOf(*connected) == (isConnected ? "0" : "1")) {
            document_.Report(RuleId::ExportConnected, connected->value,
                             "IsConnected is " + tree.ValueOf(*connected) + ", but the reference is " +
                                 Quoted(reference),
                             isConnected ? "1" : "0", isConnected ? "1" : "0");
        }
    }

    Document& document_;
    std::set<std::string> seen_;
};

} // namespace

void CheckExport(Document& document) {
    Export(document).Check();
}

} // namespace check
