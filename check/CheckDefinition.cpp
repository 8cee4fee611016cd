// The two kinds of definition. A module's has the table of database sizes and the defaults
// of its attributes; a channel's has points like a stream's, and TAMConfig, which names them.

#include "check/Checkers.h"
#include "check/Decimal.h"
#include "check/Nearest.h"
#include "check/Points.h"
#include "check/Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace check {

namespace {

constexpr std::string_view kRoot = "AppObject";
constexpr std::string_view kIdentity[] = {"NAME", "ID", "DESCRIPTION", "CATEGORY", "DATASIZES", "TAM"};
constexpr std::string_view kChannelParts[] = {"NAME",          "ID",         "DESCRIPTION",
                                              "CATEGORY",      "DATASIZES",  "InReferences",
                                              "OutReferences", "Attributes", "TAMConfig"};
/// What hosts read of a block beside.
constexpr std::string_view kBlockNumbers[] = {"COLOR",        "EXECTIME",     "MAXINSTANCES", "CDBDIMENSION",
                                              "DDBDIMENSION", "SDBDIMENSION", "WIDTH",        "INPUTWIDTH"};
constexpr std::string_view kBlockFlags[] = {"DEVICEDEPENDENT", "USESDEVICECLOCK"};
constexpr std::string_view kRowAttributes[] = {"Name", "CDB_Size", "Size_area_1", "Size_area_2"};
constexpr std::size_t kRows = 6;

bool IsOneOf(std::string_view name, std::span<const std::string_view> words) {
    return std::any_of(words.begin(), words.end(),
                       [&](std::string_view word) { return EqualKeyword(word, name); });
}

/// A part of a definition, of a module or a channel.
bool IsPart(std::string_view name) {
    return IsOneOf(name, kIdentity) || IsOneOf(name, kChannelParts);
}

/// The table of database sizes.
class DataSizes {
  public:
    explicit DataSizes(Document& document) : document_(document) {}

    void Check(XmlTree::Index table) {
        const XmlTree& tree = document_.Tree();
        document_.CheckAttributes(table, {}, "DataSizes");
        const bool isUnclosed = tree.IsUnclosed(table);
        const XmlTree::Index end = isUnclosed ? EndOfRows(table) : XmlTree::kNone;
        tree.ForEachChild(table, [&](XmlTree::Index child) {
            if (child >= end) {
                return;
            }
            if (tree.IsElement(child)) {
                CheckRow(child);
                return;
            }
            const bool isComment = tree.KindOf(child) == XmlTree::Kind::Comment;
            document_.Report(RuleId::RowStray, {tree.OffsetOf(child), 1},
                             std::string(isComment ? "a comment" : "a text") +
                                 " among the rows: it is taken for a row, which ends the reading",
                             "rows alone");
        });
    }

  private:
    /// Where the end tag of the table is missing, what follows it lies inside.
    XmlTree::Index EndOfRows(XmlTree::Index table) const {
        const XmlTree& tree = document_.Tree();
        XmlTree::Index end = table + 1;
        bool isOver = false;
        tree.ForEachElement(table, [&](XmlTree::Index child) {
            isOver = isOver || IsPart(tree.Name(child));
            end = isOver ? end : child + 1;
        });
        return end;
    }

    void CheckRow(XmlTree::Index row) {
        const XmlTree& tree = document_.Tree();
        const Span span = tree.NameSpan(row);
        const std::string_view name = tree.Piece(span);
        std::size_t behindFirst = 0;
        NextCharacter(name, behindFirst);
        const std::string_view number = name.substr(behindFirst);
        const bool isRow = number.size() == 1 && number[0] >= '0' && number[0] <= '5';
        if (!isRow) {
            document_.Report(RuleId::RowName, span, Tagged(name) + " is no row of the table",
                             "a letter and the number of the row, 0 to 5");
        } else if (std::exchange(seen_.at(static_cast<std::size_t>(number[0] - '0')), true)) {
            document_.Report(RuleId::RowTwice, span,
                             "row " + std::string(number) + " stands twice: the last one counts",
                             "one row of each number");
        }
        document_.CheckAttributes(row, kRowAttributes, "a row");
        for (const XmlTree::Attribute& attribute : tree.Attributes(row)) {
            const std::string_view word = tree.Piece(attribute.name);
            if (word == "Name" || std::find(std::begin(kRowAttributes), std::end(kRowAttributes), word) ==
                                      std::end(kRowAttributes)) {
                continue;
            }
            const std::string text = tree.ValueOf(attribute);
            const auto size = ReadWhole(text);
            if (!size || *size < 0 || *size > 255 || text.find_first_of("+-") != std::string::npos) {
                document_.Report(RuleId::SizeRange,
                                 attribute.value.size > 0 ? attribute.value : attribute.name,
                                 std::string(word) + " is " + Quoted(text), "a whole number from 0 to 255");
            }
        }
        const bool isUnclosed = tree.IsUnclosed(row);
        tree.ForEachElement(row, [&](XmlTree::Index child) {
            if (isUnclosed) {
                CheckRow(child); // one of those that follow
            } else {
                document_.ReportUnknown(child, {}, {}, "a row", true);
            }
        });
    }

    Document& document_;
    std::array<bool, kRows> seen_{};
};

/// The defaults of numeric attributes.
class Defaults {
  public:
    explicit Defaults(Document& document) : document_(document) {}

    void Check(XmlTree::Index tam) {
        const XmlTree& tree = document_.Tree();
        constexpr std::string_view kSections[] = {"Attributes"};
        document_.CheckContainer(tam, "<Tam>");
        tree.ForEachElement(tam, [&](XmlTree::Index section) {
            if (tree.Name(section) != kSections[0]) {
                return document_.ReportUnknown(section, kSections, {}, "<Tam>", false);
            }
            document_.CheckContainer(section, "<Attributes>");
            tree.ForEachElement(section, [&](XmlTree::Index attribute) { ReadAttribute(attribute); });
        });
    }

  private:
    void ReadAttribute(XmlTree::Index attribute) {
        constexpr std::string_view kValue[] = {"DefaultValue"};
        const XmlTree& tree = document_.Tree();
        bool hasDefault = false;
        document_.CheckContainer(attribute, Tagged(tree.Name(attribute)));
        tree.ForEachElement(attribute, [&](XmlTree::Index child) {
            const XmlTree::Index first = tree.FirstChild(child);
            if (tree.Name(child) == kValue[0]) {
                hasDefault = true;
                CheckDefault(child);
            } else if (tree.IsUnclosed(attribute) && first != XmlTree::kNone && tree.IsElement(first)) {
                ReadAttribute(child); // one of those that follow
            } else {
                document_.ReportUnknown(child, kValue, {}, Tagged(tree.Name(attribute)), false);
            }
        });
        if (hasDefault) {
            CheckAttribute(attribute);
        }
    }

    void CheckDefault(XmlTree::Index element) {
        const Leaf leaf = document_.ReadLeaf(element);
        document_.ReportBlanks(leaf);
        const std::string_view text = Trim(leaf.text);
        if (ReadDecimal(text)) {
            return;
        }
        document_.Report(RuleId::DefaultNotNumber, leaf.span, "the default is " + Quoted(text),
                         "a number with \".\" as its decimal mark",
                         WithPoint(text).value_or(LeadingNumber(text)));
    }

    void CheckAttribute(XmlTree::Index attribute) {
        const XmlTree& tree = document_.Tree();
        const Span span = tree.NameSpan(attribute);
        const std::string name(tree.Piece(span));
        if (!seen_.insert(name).second) {
            document_.Report(RuleId::ElementRepeated, span,
                             Tagged(name) + " has two defaults: only the first one is read", "one default");
        }
        for (const StreamSummary& stream : document_.Others().Streams()) {
            const auto found = stream.attributes.find(name);
            if (found != stream.attributes.end()) {
                const bool isNumber = found->second == "Float" || found->second == "SignedNumeric" ||
                                      found->second == "UnsignedNumeric";
                if (!isNumber && !found->second.empty()) {
                    document_.Report(RuleId::DefaultNotTaken, span,
                                     Tagged(name) + " is an attribute of the general type " + found->second +
                                         " in " + stream.file + ", which takes no default",
                                     "a numeric type or no default");
                }
                return;
            }
        }
        const std::string other = document_.Others().AttributeLike(name);
        if (!other.empty()) {
            document_.Report(RuleId::ElementMisspelt, span,
                             "no attribute is called " + Tagged(name) + ": letter case counts here",
                             Tagged(other), other);
        }
    }

    Document& document_;
    std::set<std::string> seen_;
};

/// Where the end tag of a part is missing, the parts that follow lie inside.
void ForEachPartInside(const XmlTree& tree, XmlTree::Index part,
                       const std::function<void(XmlTree::Index)>& check) {
    if (tree.IsUnclosed(part)) {
        tree.ForEachElement(part, [&](XmlTree::Index child) {
            if (IsPart(tree.Name(child))) {
                check(child);
            }
        });
    }
}

class ChannelDefinition {
  public:
    explicit ChannelDefinition(Document& document) : document_(document), points_(document, false) {}

    void Check(XmlTree::Index root) {
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
                const Side side = name.front() == 'I'   ? Side::Input
                                  : name.front() == 'O' ? Side::Output
                                                        : Side::Attribute;
                points_.CheckSection(child, ChannelWords(side));
                has_[static_cast<std::size_t>(side)] = true;
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
    }

  private:
    void CheckText(XmlTree::Index child, std::string_view name) {
        if (IsOneOf(name, kBlockNumbers)) {
            const Leaf leaf = document_.ReadLeaf(child);
            document_.CheckWhole(Trim(leaf.text), leaf.span, Tagged(name), INT32_MIN, INT32_MAX);
        } else if (IsOneOf(name, kBlockFlags)) {
            const Leaf leaf = document_.ReadLeaf(child);
            document_.CheckFlag(leaf.text, leaf.span, Tagged(name));
        } else if (IsOneOf(name, std::span(kIdentity).first(4))) {
            document_.ReadLeaf(child);
        } else if (EqualKeyword(name, "DATASIZES")) {
            DataSizes(document_).Check(child);
        } else {
            document_.ReportUnknown(child, kChannelParts, {}, "<AppObject>", false);
        }
    }

    void CheckConfiguration(XmlTree::Index configuration) {
        constexpr std::string_view kSections[] = {"InReferences", "OutReferences", "Attributes"};
        constexpr std::string_view kItems[] = {"InReference", "OutReference", "Attrib"};
        const XmlTree& tree = document_.Tree();
        document_.CheckContainer(configuration, "<TAMConfig>");
        tree.ForEachElement(configuration, [&](XmlTree::Index section) {
            const auto* const known =
                std::find(std::begin(kSections), std::end(kSections), tree.Name(section));
            if (known == std::end(kSections)) {
                return document_.ReportUnknown(section, kSections, {}, "<TAMConfig>", false);
            }
            const auto side = static_cast<std::size_t>(known - std::begin(kSections));
            const std::span item = std::span(kItems).subspan(side, 1);
            document_.CheckContainer(section, Tagged(*known));
            tree.ForEachElement(section, [&](XmlTree::Index child) {
                if (tree.Name(child) != item[0]) {
                    return document_.ReportUnknown(child, item, kItems, Tagged(*known), false);
                }
                CheckItem(child, static_cast<Side>(side));
            });
        });
    }

    void CheckItem(XmlTree::Index item, Side side) {
        constexpr std::string_view kAttributes[] = {"Name", "Visible", "UnitDependent", "Differential"};
        const std::span known = std::span(kAttributes).first(side == Side::Attribute ? 4 : 2);
        const XmlTree& tree = document_.Tree();
        document_.CheckAttributes(item, known, Tagged(tree.Name(item)));
        bool hasName = false;
        for (const XmlTree::Attribute& attribute : tree.Attributes(item)) {
            const std::string_view word = tree.Piece(attribute.name);
            const std::string text = tree.ValueOf(attribute);
            const Span span = attribute.value.size > 0 ? attribute.value : attribute.name;
            if (word == "Name") {
                hasName = true;
                CheckItemName(text, span, side);
            } else if (std::find(known.begin(), known.end(), word) != known.end()) {
                document_.CheckFlag(text, span, std::string(word));
            }
        }
        if (!hasName) {
            document_.Report(RuleId::AttributeMissing, tree.NameSpan(item),
                             Tagged(tree.Name(item)) + " has no Name", "Name=\"...\"");
        }
    }

    void CheckItemName(const std::string& name, Span span, Side side) {
        // A definition that leaves its points to the host says nothing of them.
        if (!has_[static_cast<std::size_t>(side)]) {
            return;
        }
        if (!points_.Has(side, name)) {
            document_.Report(RuleId::ConfigNothing, span, "this definition has no point " + Quoted(name), "",
                             std::string(points_.NearestName(side, name)));
        } else if (!seen_[static_cast<std::size_t>(side)].insert(Upper(name)).second) {
            document_.Report(RuleId::ElementRepeated, span, Quoted(name) + " is configured twice",
                             "one entry");
        }
    }

    Document& document_;
    Points points_;
    std::set<std::string> seen_[3];
    bool has_[3] = {};
};

void ReportRoot(Document& document) {
    const XmlTree& tree = document.Tree();
    const Span span = tree.NameSpan(tree.Root());
    document.Report(RuleId::RootName, span, "there is no <AppObject> in the document", "<AppObject>",
                    "AppObject");
}

} // namespace

void CheckModuleDefinition(Document& document) {
    const XmlTree& tree = document.Tree();
    XmlTree::Index object = tree.Find(kRoot);
    if (object == XmlTree::kNone) {
        ReportRoot(document);
        object = tree.Root();
    }
    document.CheckContainer(object, "<AppObject>");
    document.CheckAttributes(object, {}, "<AppObject>");
    bool hasName = false;
    std::set<std::string> seen;
    Defaults defaults(document);
    if (object != tree.Root()) {
        tree.ForEachElement(tree.Root(), [&](XmlTree::Index child) {
            if (tree.Name(child) == "Tam") {
                defaults.Check(child);
            }
        });
    }
    const std::function<void(XmlTree::Index)> check = [&](XmlTree::Index child) {
        const Span span = tree.NameSpan(child);
        const std::string_view name = tree.Piece(span);
        if (!IsOneOf(name, kIdentity) || (EqualKeyword(name, "TAM") && name != "Tam")) {
            constexpr std::string_view kWords[] = {"NAME",     "ID",        "DESCRIPTION",
                                                   "CATEGORY", "DataSizes", "Tam"};
            return document.ReportUnknown(child, kWords, {}, "<AppObject>", false);
        }
        if (!seen.insert(Upper(name)).second && name != "Tam") {
            document.Report(RuleId::ElementRepeated, span,
                            Tagged(name) + " stands twice: the last one counts", "one " + Tagged(name));
        }
        if (EqualKeyword(name, "DATASIZES")) {
            DataSizes(document).Check(child);
        } else if (name == "Tam") {
            defaults.Check(child);
        } else {
            hasName = hasName || EqualKeyword(name, "NAME");
            const Leaf leaf = document.ReadLeaf(child);
            if (Trim(leaf.text).empty() && EqualKeyword(name, "NAME")) {
                document.Report(RuleId::ElementEmpty, leaf.span, "the module has no name", "a text");
            }
        }
        ForEachPartInside(tree, child, check);
    };
    tree.ForEachElement(object, check);
    if (!hasName) {
        document.Report(RuleId::ElementMissing, tree.NameSpan(object), "the module has no name", "<NAME>");
    }
}

void CheckChannelDefinition(Document& document) {
    const XmlTree& tree = document.Tree();
    if (tree.Name(tree.Root()) != kRoot) {
        ReportRoot(document);
    }
    document.CheckContainer(tree.Root(), "<AppObject>");
    ChannelDefinition(document).Check(tree.Root());
}

} // namespace check
