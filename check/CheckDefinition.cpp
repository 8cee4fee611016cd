// The definition of a module: what names it, the table of database sizes and the defaults of
// its attributes.

#include "check/Checkers.h"
#include "check/Decimal.h"
#include "check/DefinitionParts.h"
#include "check/Nearest.h"
#include "check/Points.h"
#include "check/Utf8.h"

#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace check {

namespace {

/// The defaults of numeric attributes.
class Defaults {
  public:
    explicit Defaults(Document& document) : document_(document) {}

    void Check(XmlTree::Index tam) {
        const XmlTree& tree = document_.Tree();
        constexpr std::string_view kSection[] = {"Attributes"};
        document_.CheckPlainContainer(tam, "<Tam>");
        tree.ForEachElement(tam, [&](XmlTree::Index section) {
            if (tree.Name(section) == kSection[0]) {
                document_.CheckPlainContainer(section, "<Attributes>");
                tree.ForEachElement(section, [&](XmlTree::Index attribute) { ReadAttribute(attribute); });
            } else if (!tree.IsUnclosed(tam) || !IsPartAfter("Tam", tree.Name(section))) {
                document_.ReportUnknown(section, kSection, {}, "<Tam>", false);
            }
        });
    }

  private:
    void ReadAttribute(XmlTree::Index attribute) {
        constexpr std::string_view kValue[] = {"DefaultValue"};
        const XmlTree& tree = document_.Tree();
        bool hasDefault = false;
        document_.CheckPlainContainer(attribute, Tagged(tree.Name(attribute)));
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

} // namespace

void CheckModuleDefinition(Document& document) {
    const XmlTree& tree = document.Tree();
    XmlTree::Index object = tree.Find(kDefinitionRoot);
    if (object == XmlTree::kNone) {
        ReportDefinitionRoot(document);
        object = tree.Root();
    }
    document.CheckPlainContainer(object, "<AppObject>");
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
        if (!IsOneOf(name, kModuleParts) || (EqualKeyword(name, "TAM") && name != "Tam")) {
            constexpr std::string_view kWords[] = {"NAME",     "ID",        "DESCRIPTION",
                                                   "CATEGORY", "DataSizes", "Tam"};
            return document.ReportUnknown(child, kWords, {}, "<AppObject>", false);
        }
        if (!seen.insert(Upper(name)).second && name != "Tam") {
            document.Report(RuleId::ElementRepeated, span,
                            Tagged(name) + " stands twice: the last one counts", "one " + Tagged(name));
        }
        if (EqualKeyword(name, "DATASIZES")) {
            CheckDataSizes(document, child);
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

} // namespace check
