// A device stream: the parts of the module, then three sections of points (Points.h). What
// other documents of the run refer to goes into its summary.

#include "check/Checkers.h"
#include "check/Decimal.h"
#include "check/Nearest.h"
#include "check/Points.h"
#include "check/Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace check {

namespace {

constexpr std::string_view kRoot = "Tam";
// In the document's order.
constexpr std::string_view kParts[] = {"Name", "DevKey",       "IsLastOnDev",   "TamObjID",  "CDB",
                                       "DDB",  "InReferences", "OutReferences", "Attributes"};
constexpr std::size_t kFirstSection = 6;
constexpr std::size_t kRequired = 4;
// What stands inside of points.
constexpr std::string_view kOfPoints[] = {
    "MANDATORY",         "VISIBLE",  "LOGICALADDRESS", "ISPERMANENT", "SNVTCOMPATIBILITYLIST",
    "PROTOCOLREFERENCE", "SNVTTYPE", "ISMAPASOO",      "OBJOFFSET",   "ABSOLUTEOBJECTINDEX",
    "ISWRITABLE",        "VALUE",    "AppObject",      "Tam"};

class Stream {
  public:
    explicit Stream(Document& document) : document_(document), points_(document, true) {}

    void Check(StreamSummary* summary) {
        const XmlTree& tree = document_.Tree();
        const XmlTree::Index root = tree.Root();
        const Span name = tree.NameSpan(root);
        if (tree.Piece(name) != kRoot) {
            document_.Report(RuleId::RootName, name,
                             "the document element is " + Tagged(tree.Piece(name)) +
                                 ", and nothing in it is found",
                             "<Tam>", "Tam");
        }
        document_.CheckAttributes(root, {}, "<Tam>");
        document_.CheckContainer(root, "<Tam>");
        CheckChildren(root);
        for (std::size_t i = 0; i < kRequired; ++i) {
            if (seen_[i] == XmlTree::kNone) {
                document_.Report(RuleId::ElementMissing, name, "<Tam> has no " + Tagged(kParts[i]),
                                 Tagged(kParts[i]));
            }
        }
        points_.Finish();
        if (summary != nullptr) {
            points_.FillSummary(*summary);
        }
    }

    void FillHeader(StreamSummary& summary) const {
        constexpr std::size_t kObjectId = 3;
        if (const XmlTree::Index part = seen_[kObjectId]; part != XmlTree::kNone) {
            summary.objectId = Trim(document_.Tree().OwnText(part));
        }
    }
    XmlTree::Index Attributes() const { return seen_[kFirstSection + 2]; }

  private:
    void CheckChildren(XmlTree::Index parent) {
        const XmlTree& tree = document_.Tree();
        tree.ForEachElement(parent, [&](XmlTree::Index child) {
            const Span span = tree.NameSpan(child);
            const std::string_view name = tree.Piece(span);
            const auto* known = std::find(std::begin(kParts), std::end(kParts), name);
            if (known == std::end(kParts)) {
                document_.ReportUnknown(child, kParts, kOfPoints, "<Tam>", false);
                known = Meant(child, name);
                if (known == std::end(kParts)) {
                    return;
                }
            } else {
                CheckOrder(child, span, known);
            }
            CheckPart(child, static_cast<std::size_t>(known - std::begin(kParts)));
        });
    }

    /// A section whose name is misspelt: what is in it is looked at all the same.
    const std::string_view* Meant(XmlTree::Index child, std::string_view name) const {
        const bool isSection = document_.Tree().FirstChild(child) != XmlTree::kNone &&
                               document_.Tree().IsElement(document_.Tree().FirstChild(child));
        const std::string_view near = isSection ? Nearest(name, kParts) : std::string_view();
        const auto* const known = std::find(std::begin(kParts), std::end(kParts), near);
        return known - std::begin(kParts) >= static_cast<std::ptrdiff_t>(kFirstSection) ? known
                                                                                        : std::end(kParts);
    }

    void CheckOrder(XmlTree::Index child, Span span, const std::string_view* known) {
        const auto rank = static_cast<std::size_t>(known - std::begin(kParts));
        if (seen_[rank] != XmlTree::kNone) {
            document_.Report(RuleId::ElementRepeated, span,
                             Tagged(*known) + " stands twice in <Tam>: only the first one is read",
                             "one " + Tagged(*known));
        } else {
            seen_[rank] = child;
            const bool isSection = rank >= kFirstSection;
            if (rank < last_ && (isSection || last_ >= kFirstSection)) {
                document_.Report(RuleId::SectionOrder, span,
                                 Tagged(*known) + " stands after " + Tagged(kParts[last_]),
                                 Tagged(*known) + " before it");
            }
            last_ = std::max(last_, rank);
        }
    }

    void CheckPart(XmlTree::Index element, std::size_t part) {
        if (part >= kFirstSection) {
            points_.CheckSection(element, StreamWords(static_cast<PointKind>(part - kFirstSection)));
            return CheckInside(element);
        }
        const Leaf leaf = document_.ReadLeaf(element);
        const std::string what = Tagged(kParts[part]);
        const std::string_view text = Trim(leaf.text);
        if (text.empty()) {
            document_.Report(RuleId::ElementEmpty, leaf.span, what + " is empty", "a text");
        } else if (part == 2) {
            document_.CheckFlag(text, leaf.span, what);
        } else if (part == 3) {
            document_.CheckWhole(text, leaf.span, what, std::numeric_limits<std::int16_t>::min(),
                                 std::numeric_limits<std::int16_t>::max());
        } else if (part > 3) {
            document_.CheckWhole(text, leaf.span, what, 0, std::numeric_limits<std::int32_t>::max());
        }
        CheckInside(element);
    }

    /// Where the end tag of a part is missing, the parts that follow lie inside.
    void CheckInside(XmlTree::Index part) {
        const XmlTree& tree = document_.Tree();
        if (!tree.IsUnclosed(part)) {
            return;
        }
        tree.ForEachElement(part, [&](XmlTree::Index child) {
            const Span span = tree.NameSpan(child);
            const auto* const known = std::find(std::begin(kParts), std::end(kParts), tree.Piece(span));
            if (known != std::end(kParts)) {
                CheckOrder(child, span, known);
                CheckPart(child, static_cast<std::size_t>(known - std::begin(kParts)));
            }
        });
    }

    Document& document_;
    Points points_;
    std::array<XmlTree::Index, std::size(kParts)> seen_ = [] {
        std::array<XmlTree::Index, std::size(kParts)> none{};
        none.fill(XmlTree::kNone);
        return none;
    }();
    std::size_t last_ = 0;
};

/// The general types of the attributes, for the definition that has their defaults.
void FillTypes(const Document& document, XmlTree::Index section, StreamSummary& summary) {
    const XmlTree& tree = document.Tree();
    if (section == XmlTree::kNone) {
        return;
    }
    tree.ForEachElement(section, [&](XmlTree::Index attribute) {
        std::string general;
        tree.ForEachElement(attribute, [&](XmlTree::Index child) {
            if (EqualKeyword(tree.Name(child), "SNVTTYPE") && tree.FirstChild(child) != XmlTree::kNone) {
                const TypeInfo* type = document.Types().Find(tree.Content(tree.FirstChild(child)));
                general = type != nullptr ? type->general : std::string();
            }
        });
        summary.attributes.emplace(tree.Name(attribute), general);
    });
}

} // namespace

void CheckStream(Document& document, StreamSummary* summary) {
    Stream stream(document);
    stream.Check(summary);
    if (summary != nullptr) {
        stream.FillHeader(*summary);
        FillTypes(document, stream.Attributes(), *summary);
    }
}

} // namespace check
