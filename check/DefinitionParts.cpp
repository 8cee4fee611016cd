#include "check/DefinitionParts.h"

#include "check/Decimal.h"
#include "check/Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string>
#include <utility>

namespace check {

namespace {

constexpr std::string_view kRowAttributes[] = {"Name", "CDB_Size", "Size_area_1", "Size_area_2"};
constexpr std::size_t kRows = 6;

/// A part of a definition, of a module or a channel.
bool IsPart(std::string_view name) {
    return IsOneOf(name, kModuleParts) || IsOneOf(name, kChannelParts);
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
        std::size_t afterFirst = 0;
        NextCharacter(name, afterFirst);
        const std::string_view number = name.substr(afterFirst);
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

} // namespace

bool IsOneOf(std::string_view name, std::span<const std::string_view> words) {
    return std::any_of(words.begin(), words.end(),
                       [&](std::string_view word) { return EqualKeyword(word, name); });
}

void CheckDataSizes(Document& document, XmlTree::Index table) {
    DataSizes(document).Check(table);
}

bool IsPartAfter(std::string_view part, std::string_view name) {
    const bool hasSections = part == "Tam" || part == "TAMConfig";
    return IsPart(name) && !(hasSections && IsOneOf(name, kSections));
}

void ForEachPartInside(const XmlTree& tree, XmlTree::Index part,
                       const std::function<void(XmlTree::Index)>& check) {
    if (tree.IsUnclosed(part)) {
        tree.ForEachElement(part, [&](XmlTree::Index child) {
            if (IsPartAfter(tree.Name(part), tree.Name(child))) {
                check(child);
            }
        });
    }
}

void ReportDefinitionRoot(Document& document) {
    const XmlTree& tree = document.Tree();
    const Span span = tree.NameSpan(tree.Root());
    document.Report(RuleId::RootName, span, "there is no <AppObject> in the document", "<AppObject>",
                    "AppObject");
}

} // namespace check
