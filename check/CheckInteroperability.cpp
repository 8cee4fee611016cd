#include "check/Checkers.h"
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
#include <vector>

namespace check {

namespace {

constexpr std::string_view kParts[] = {"UserName", "Key", "Inputs", "Outputs", "Attributes"};
constexpr std::string_view kInput[] = {"Reference", "LogicalAddress", "isPermanent", "SNVTType"};
constexpr std::string_view kOutput[] = {"SNVT_Type", "LogicalAddress"};
constexpr std::string_view kAttribute[] = {"Value"};
constexpr std::string_view kDisplayable[] = {"IsDisplayable"};

class Interoperability {
  public:
    explicit Interoperability(Document& document) : document_(document) {}

    void Check() {
        const XmlTree& tree = document_.Tree();
        const XmlTree::Index root = tree.Root();
        const std::string what = Tagged(tree.Name(root));
        document_.CheckPlainContainer(root, what);
        std::set<std::string> seen;
        std::size_t last = 0;
        tree.ForEachElement(root, [&](XmlTree::Index child) {
            const Span span = tree.NameSpan(child);
            const auto* const known = std::find(std::begin(kParts), std::end(kParts), tree.Piece(span));
            if (known == std::end(kParts)) {
                return document_.ReportUnknown(child, kParts, {}, what, false);
            }
            if (!seen.insert(std::string(*known)).second) {
                document_.Report(RuleId::ElementRepeated, span, Tagged(*known) + " stands twice",
                                 "one of each");
            }
            const auto rank = static_cast<std::size_t>(known - std::begin(kParts));
            if (rank < last) {
                document_.Report(RuleId::SectionOrder, span,
                                 Tagged(*known) + " stands after " + Tagged(kParts[last]),
                                 Tagged(*known) + " before it");
            }
            last = std::max(last, rank);
            if (rank < 2) {
                document_.ReadLeaf(child);
            } else {
                CheckSection(child, rank);
            }
        });
        for (const std::string_view part : std::span(kParts).first(2)) {
            if (!seen.contains(std::string(part))) {
                document_.Report(RuleId::ElementMissing, tree.NameSpan(root),
                                 what + " has no " + Tagged(part), Tagged(part));
            }
        }
    }

  private:
    void CheckSection(XmlTree::Index section, std::size_t rank) {
        const XmlTree& tree = document_.Tree();
        const std::span<const std::string_view> parts = rank == 2 ? std::span<const std::string_view>(kInput)
                                                        : rank == 3
                                                            ? std::span<const std::string_view>(kOutput)
                                                            : std::span<const std::string_view>(kAttribute);
        document_.CheckPlainContainer(section, Tagged(tree.Name(section)));
        std::set<std::string> names;
        tree.ForEachElement(section, [&](XmlTree::Index point) {
            const Span span = tree.NameSpan(point);
            if (!names.insert(Upper(tree.Piece(span))).second) {
                document_.Report(RuleId::PointTwice, span,
                                 Tagged(tree.Piece(span)) + " stands twice; letter case does not count",
                                 "names that differ");
            }
            CheckPoint(point, parts, rank);
        });
    }

    void CheckPoint(XmlTree::Index point, std::span<const std::string_view> parts, std::size_t rank) {
        const XmlTree& tree = document_.Tree();
        const std::string what = Tagged(tree.Name(point));
        document_.CheckContainer(point, what);
        document_.CheckAttributes(point,
                                  rank == 3 ? std::span<const std::string_view>(kDisplayable)
                                            : std::span<const std::string_view>(),
                                  what);
        if (const auto flag = tree.FindAttribute(point, kDisplayable[0])) {
            document_.CheckFlag(tree.ValueOf(*flag), flag->value, kDisplayable[0]);
        }
        std::set<std::string> seen;
        tree.ForEachElement(point, [&](XmlTree::Index child) {
            const Span span = tree.NameSpan(child);
            const std::string_view name = tree.Piece(span);
            if (std::find(parts.begin(), parts.end(), name) == parts.end()) {
                return document_.ReportUnknown(child, parts, {}, what, false);
            }
            if (!seen.insert(std::string(name)).second) {
                document_.Report(RuleId::ElementRepeated, span, Tagged(name) + " stands twice in " + what,
                                 "one of each");
            }
            CheckPart(document_.ReadLeaf(child), name);
        });
        for (const std::string_view part : parts) {
            if (!seen.contains(std::string(part))) {
                document_.Report(RuleId::ElementMissing, tree.NameSpan(point),
                                 what + " has no " + Tagged(part), Tagged(part));
            }
        }
    }

    void CheckPart(const Leaf& leaf, std::string_view name) {
        if (!leaf.HasText()) {
            return;
        }
        if (name == "LogicalAddress") {
            document_.CheckWhole(Trim(leaf.text), leaf.span, "the logical address", 0, UINT16_MAX);
        } else if (name == "isPermanent" && leaf.text != "True" && leaf.text != "False") {
            document_.CheckFlag(leaf.text, leaf.span, Tagged(name));
        } else if (name == "SNVTType" || name == "SNVT_Type") {
            CheckType(document_, leaf.text, leaf.span, false);
        }
    }

    Document& document_;
};

} // namespace

void CheckInteroperability(Document& document) {
    Interoperability(document).Check();
}

} // namespace check
