#include "check/Checkers.h"
#include "check/Nearest.h"
#include "check/Utf8.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <string_view>

namespace check {

namespace {

constexpr std::string_view kModule = "o_tam_id";
/// Compared in small letters.
constexpr std::string_view kObjects[] = {"o_tam_ai_id", "o_tam_ao_id",  "o_tam_di_id",
                                         "o_tam_do_id", "o_inpcntx_id", "o_tam_id"};

void CheckVersion(Document& document, XmlTree::Index version) {
    constexpr std::string_view kParts[] = {"Objects"};
    constexpr std::string_view kLists[] = {"Library"};
    const XmlTree& tree = document.Tree();
    const Span span = tree.NameSpan(version);
    XmlTree::Index library = XmlTree::kNone;
    document.CheckContainer(version, Tagged(tree.Piece(span)));
    tree.ForEachElement(version, [&](XmlTree::Index objects) {
        if (tree.Name(objects) != kParts[0]) {
            return document.ReportUnknown(objects, kParts, {}, Tagged(tree.Piece(span)), false);
        }
        document.CheckContainer(objects, "<Objects>");
        tree.ForEachElement(objects, [&](XmlTree::Index child) {
            if (tree.Name(child) != kLists[0]) {
                return document.ReportUnknown(child, kLists, {}, "<Objects>", false);
            }
            if (library != XmlTree::kNone) {
                document.Report(RuleId::ElementRepeated, tree.NameSpan(child),
                                "<Library> stands twice: only the first one is read", "one <Library>");
                return;
            }
            library = child;
        });
    });
    if (library == XmlTree::kNone) {
        document.Report(RuleId::LibraryMissing, span,
                        "the version " + std::string(tree.Piece(span)) +
                            " has no library: asking for a channel object fails",
                        "<Objects><Library>");
        return;
    }
    bool hasModule = false;
    std::set<std::string> seen;
    document.CheckContainer(library, "<Library>");
    tree.ForEachElement(library, [&](XmlTree::Index object) {
        const Span name = tree.NameSpan(object);
        const std::string_view text = tree.Piece(name);
        hasModule = hasModule || EqualKeyword(text, kModule);
        if (!seen.insert(Upper(text)).second) {
            document.Report(RuleId::ElementRepeated, name, Tagged(text) + " stands twice", "one of each");
        }
        const bool isKnown = std::any_of(std::begin(kObjects), std::end(kObjects),
                                         [&](std::string_view known) { return EqualKeyword(known, text); });
        if (!isKnown) {
            document.Report(RuleId::LibraryObject, name, Tagged(text) + " is no object of this component",
                            Listed(kObjects), std::string(Nearest(text, kObjects)));
        }
    });
    if (!hasModule) {
        document.Report(RuleId::LibraryNoModule, tree.NameSpan(library),
                        "the library of " + std::string(tree.Piece(span)) +
                            " lacks the module: no channel object can be made",
                        "<o_tam_id/>");
    }
}

} // namespace

void CheckLibrary(Document& document) {
    constexpr std::string_view kParts[] = {"FWVersion"};
    const XmlTree& tree = document.Tree();
    const XmlTree::Index root = tree.Root();
    if (tree.Name(root) != "Device") {
        document.Report(RuleId::RootName, tree.NameSpan(root),
                        "the document element is " + Tagged(tree.Name(root)) + ", and nothing in it is found",
                        "<Device>", "Device");
    }
    document.CheckContainer(root, "<Device>");
    bool hasVersions = false;
    tree.ForEachElement(root, [&](XmlTree::Index child) {
        if (tree.Name(child) != kParts[0]) {
            return document.ReportUnknown(child, kParts, {}, "<Device>", false);
        }
        hasVersions = true;
        document.CheckContainer(child, "<FWVersion>");
        std::set<std::string> seen;
        tree.ForEachElement(child, [&](XmlTree::Index version) {
            if (!seen.insert(std::string(tree.Name(version))).second) {
                document.Report(RuleId::ElementRepeated, tree.NameSpan(version),
                                Tagged(tree.Name(version)) + " stands twice", "one of each");
            }
            CheckVersion(document, version);
        });
    });
    if (!hasVersions) {
        document.Report(RuleId::ElementMissing, tree.NameSpan(root), "<Device> has no <FWVersion>",
                        "<FWVersion>");
    }
}

} // namespace check
