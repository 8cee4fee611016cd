// The definition of a channel object: points like a stream's, and TAMConfig, which names them.

#include "check/Checkers.h"
#include "check/DefinitionParts.h"
#include "check/Points.h"
#include "check/Utf8.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <set>
#include <span>
#include <string>
#include <string_view>

namespace check {

namespace {

/// What hosts read of a channel beside.
constexpr std::string_view kChannelNumbers[] = {"COLOR",        "EXECTIME",     "MAXINSTANCES",
                                                "CDBDIMENSION", "DDBDIMENSION", "SDBDIMENSION",
                                                "WIDTH",        "INPUTWIDTH"};
constexpr std::string_view kChannelFlags[] = {"DEVICEDEPENDENT", "USESDEVICECLOCK"};
/// Of the parts, those at the beginning that are texts.
constexpr std::size_t kTexts = 4;

class ChannelDefinition {
  public:
    explicit ChannelDefinition(Document& document) : document_(document), points_(document, false) {}

    void Check(XmlTree::Index root, StreamSummary* summary) {
        const XmlTree& tree = document_.Tree();
        XmlTree::Index configuration = XmlTree::kNone;
        std::set<std::string> seen;
        const std::function<void(XmlTree::Index)> check = [&](XmlTree::Index child) {
            const Span span = tree.NameSpan(child);
            const std::string_view name = tree.Piece(span);
            if (!seen.insert(Upper(name)).second) {
                document_.Report(RuleId::ElementRepeated, span, Tagged(name) + " stands twice",
                                 "one " + Tagged(name));
            }
            if (name == "InReferences" || name == "OutReferences" || name == "Attributes") {
                const PointKind kind = name.front() == 'I'   ? PointKind::Input
                                       : name.front() == 'O' ? PointKind::Output
                                                             : PointKind::Attribute;
                points_.CheckSection(child, ChannelWords(kind));
                has_[static_cast<std::size_t>(kind)] = true;
            } else if (name == "TAMConfig") {
                configuration = child;
            } else {
                CheckText(child, name);
            }
            ForEachPartInside(tree, child, check);
        };
        tree.ForEachElement(root, check);
        points_.Finish();
        if (configuration != XmlTree::kNone) {
            CheckConfiguration(configuration);
        }
        if (summary != nullptr) {
            points_.FillSummary(*summary);
            summary->definition = identifier_;
            std::copy(std::begin(has_), std::end(has_), summary->sections.begin());
        }
    }

  private:
    void CheckText(XmlTree::Index child, std::string_view name) {
        if (IsOneOf(name, kChannelNumbers)) {
            const Leaf leaf = document_.ReadLeaf(child);
            document_.CheckWhole(Trim(leaf.text), leaf.span, Tagged(name), INT32_MIN, INT32_MAX);
        } else if (IsOneOf(name, kChannelFlags)) {
            const Leaf leaf = document_.ReadLeaf(child);
            document_.CheckFlag(leaf.text, leaf.span, Tagged(name));
        } else if (IsOneOf(name, std::span(kModuleParts).first(kTexts))) {
            const Leaf leaf = document_.ReadLeaf(child);
            identifier_ = EqualKeyword(name, "ID") ? Upper(Trim(leaf.text)) : identifier_;
        } else if (EqualKeyword(name, "DATASIZES")) {
            CheckDataSizes(document_, child);
        } else {
            document_.ReportUnknown(child, kChannelParts, {}, "<AppObject>", false);
        }
    }

    void CheckConfiguration(XmlTree::Index configuration) {
        constexpr std::string_view kItems[] = {"InReference", "OutReference", "Attrib"};
        const XmlTree& tree = document_.Tree();
        document_.CheckPlainContainer(configuration, "<TAMConfig>");
        const std::function<void(XmlTree::Index)> check = [&](XmlTree::Index section) {
            const auto* const known =
                std::find(std::begin(kSections), std::end(kSections), tree.Name(section));
            if (known == std::end(kSections)) {
                if (!tree.IsUnclosed(configuration) || !IsPartAfter("TAMConfig", tree.Name(section))) {
                    document_.ReportUnknown(section, kSections, {}, "<TAMConfig>", false);
                }
                return;
            }
            const auto kind = static_cast<std::size_t>(known - std::begin(kSections));
            const std::span item = std::span(kItems).subspan(kind, 1);
            document_.CheckPlainContainer(section, Tagged(*known));
            tree.ForEachElement(section, [&](XmlTree::Index child) {
                if (tree.IsUnclosed(section) && IsOneOf(tree.Name(child), kSections)) {
                    return check(child); // one of those that follow
                }
                if (tree.Name(child) != item[0]) {
                    return document_.ReportUnknown(child, item, kItems, Tagged(*known), false);
                }
                CheckItem(child, static_cast<PointKind>(kind));
            });
        };
        tree.ForEachElement(configuration, check);
    }

    void CheckItem(XmlTree::Index item, PointKind kind) {
        constexpr std::string_view kAttributes[] = {"Name", "Visible", "UnitDependent", "Differential"};
        const std::span known = std::span(kAttributes).first(kind == PointKind::Attribute ? 4 : 2);
        const XmlTree& tree = document_.Tree();
        document_.CheckAttributes(item, known, Tagged(tree.Name(item)));
        bool hasName = false;
        for (const XmlTree::Attribute& attribute : tree.Attributes(item)) {
            const std::string_view word = tree.Piece(attribute.name);
            const std::string text = tree.ValueOf(attribute);
            const Span span = attribute.value.size > 0 ? attribute.value : attribute.name;
            if (word == "Name") {
                hasName = true;
                CheckItemName(text, span, kind);
            } else if (std::find(known.begin(), known.end(), word) != known.end()) {
                document_.CheckFlag(text, span, std::string(word));
            }
        }
        if (!hasName) {
            document_.Report(RuleId::AttributeMissing, tree.NameSpan(item),
                             Tagged(tree.Name(item)) + " has no Name", "Name=\"...\"");
        }
    }

    void CheckItemName(const std::string& name, Span span, PointKind kind) {
        // A definition that leaves its points to the host says nothing of them.
        if (!has_[static_cast<std::size_t>(kind)]) {
            return;
        }
        if (!points_.Has(kind, name)) {
            document_.Report(RuleId::ConfigNothing, span, "this definition has no point " + Quoted(name), "",
                             std::string(points_.NearestName(kind, name)));
        } else if (!seen_[static_cast<std::size_t>(kind)].insert(Upper(name)).second) {
            document_.Report(RuleId::ElementRepeated, span, Quoted(name) + " is configured twice",
                             "one entry");
        }
    }

    Document& document_;
    Points points_;
    std::set<std::string> seen_[3];
    bool has_[3] = {};
    /// In capitals.
    std::string identifier_;
};

} // namespace

void CheckChannelDefinition(Document& document, StreamSummary* summary) {
    const XmlTree& tree = document.Tree();
    if (tree.Name(tree.Root()) != kDefinitionRoot) {
        ReportDefinitionRoot(document);
    }
    document.CheckPlainContainer(tree.Root(), "<AppObject>");
    ChannelDefinition(document).Check(tree.Root(), summary);
}

} // namespace check
