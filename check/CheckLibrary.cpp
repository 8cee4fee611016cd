#include "check/Checkers.h"
#include "check/Nearest.h"
#include "check/Utf8.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace check {

namespace {

constexpr std::string_view kModule = "o_tam_id";
/// Compared in small letters.
constexpr std::string_view kObjects[] = {"o_tam_ai_id", "o_tam_ao_id",  "o_tam_di_id",
                                         "o_tam_do_id", "o_inpcntx_id", "o_tam_id"};

/// What a version holds; another name is that of a version.
bool IsOfVersion(std::string_view name) {
    return name == "Objects" || name == "Library";
}

void CheckVersion(Document& document, XmlTree::Index version) {
    constexpr std::string_view kParts[] = {"Objects"};
    constexpr std::string_view kLists[] = {"Library"};
    const XmlTree& tree = document.Tree();
    const Span span = tree.NameSpan(version);
    XmlTree::Index library = XmlTree::kNone;
    document.CheckPlainContainer(version, Tagged(tree.Piece(span)));
    tree.ForEachElement(version, [&](XmlTree::Index objects) {
        if (tree.Name(objects) != kParts[0]) {
            if (tree.IsUnclosed(version)) {
                return; // one of the versions that follow
            }
            return document.ReportUnknown(objects, kParts, {}, Tagged(tree.Piece(span)), false);
        }
        document.CheckPlainContainer(objects, "<Objects>");
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
    document.CheckPlainContainer(library, "<Library>");
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

/// The text of a part that is to have one; without the blanks around it.
std::string CheckText(Document& document, XmlTree::Index part) {
    const Leaf leaf = document.ReadLeaf(part);
    std::string text(Trim(leaf.text));
    if (text.empty()) {
        document.Report(RuleId::ElementEmpty, leaf.span,
                        Tagged(document.Tree().Piece(leaf.name)) + " is empty", "a text");
    }
    return text;
}

/// What the versions offer is the library; with the others it is a whole device.
constexpr std::string_view kDeviceParts[] = {"Stream", "Firmware", "Channels", "FWVersion"};

bool IsDevicePart(std::string_view name) {
    return std::find(std::begin(kDeviceParts), std::end(kDeviceParts), name) != std::end(kDeviceParts);
}

void CheckChannels(Document& document, XmlTree::Index section) {
    constexpr std::string_view kElement[] = {"Channel"};
    constexpr std::string_view kAttributes[] = {"key", "kind", "terminal", "setup"};
    const XmlTree& tree = document.Tree();
    std::set<std::string> keys;
    document.CheckPlainContainer(section, "<Channels>");
    tree.ForEachElement(section, [&](XmlTree::Index channel) {
        if (tree.IsUnclosed(section) && IsDevicePart(tree.Name(channel))) {
            return; // one of those that follow
        }
        if (tree.Name(channel) != kElement[0]) {
            return document.ReportUnknown(channel, kElement, {}, "<Channels>", false);
        }
        document.CheckAttributes(channel, kAttributes, "a channel");
        for (const std::string_view needed : {kAttributes[0], kAttributes[1]}) {
            const auto attribute = tree.FindAttribute(channel, needed);
            if (!attribute || attribute->value.size == 0) {
                document.Report(RuleId::AttributeMissing,
                                attribute ? attribute->name : tree.NameSpan(channel),
                                "a channel has no " + std::string(needed),
                                std::string(needed) + (needed == "key" ? "=\"AI1\"" : "=\"ai\""));
            }
        }
        const auto key = tree.FindAttribute(channel, kAttributes[0]);
        if (key && !keys.insert(Upper(tree.ValueOf(*key))).second) {
            document.Report(RuleId::ProjectKey, key->value,
                            "the channel " + Quoted(tree.ValueOf(*key)) + " is there twice",
                            "a key of its own");
        }
    });
}

} // namespace

void CheckLibrary(Document& document) {
    const XmlTree& tree = document.Tree();
    const XmlTree::Index root = tree.Root();
    if (tree.Name(root) != "Device") {
        document.Report(RuleId::RootName, tree.NameSpan(root),
                        "the document element is " + Tagged(tree.Name(root)) + ", and nothing in it is found",
                        "<Device>", "Device");
    }
    document.CheckPlainContainer(root, "<Device>");
    std::set<std::string_view> parts;
    std::set<std::string> versions;
    Leaf firmware;
    const std::function<void(XmlTree::Index)> check = [&](XmlTree::Index child) {
        const std::string_view name = tree.Name(child);
        if (!IsDevicePart(name)) {
            return document.ReportUnknown(child, kDeviceParts, {}, "<Device>", false);
        }
        const bool isNew = parts.insert(name).second;
        if (!isNew && name != "FWVersion") {
            document.Report(RuleId::ElementRepeated, tree.NameSpan(child),
                            Tagged(name) + " stands twice: only the first one is read",
                            "one " + Tagged(name));
        }
        if (name == "Stream") {
            CheckText(document, child);
        } else if (name == "Firmware") {
            firmware = isNew ? document.ReadLeaf(child) : firmware;
        } else if (name == "Channels") {
            CheckChannels(document, child);
        } else {
            document.CheckPlainContainer(child, "<FWVersion>");
            const auto follows = [&](XmlTree::Index element) {
                return tree.IsUnclosed(child) && IsDevicePart(tree.Name(element));
            };
            const std::function<void(XmlTree::Index)> checkVersion = [&](XmlTree::Index version) {
                if (follows(version)) {
                    return; // checked below, as a part of the device
                }
                if (!versions.insert(std::string(tree.Name(version))).second) {
                    document.Report(RuleId::ElementRepeated, tree.NameSpan(version),
                                    Tagged(tree.Name(version)) + " stands twice", "one of each");
                }
                CheckVersion(document, version);
                if (tree.IsUnclosed(version)) {
                    // Those that follow.
                    tree.ForEachElement(version, [&](XmlTree::Index inner) {
                        if (follows(inner)) {
                            check(inner);
                        } else if (!IsOfVersion(tree.Name(inner))) {
                            checkVersion(inner);
                        }
                    });
                }
            };
            tree.ForEachElement(child, checkVersion);
        }
        if (tree.IsUnclosed(child)) {
            tree.ForEachElement(child, [&](XmlTree::Index inner) {
                if (IsDevicePart(tree.Name(inner))) {
                    check(inner);
                }
            });
        }
    };
    tree.ForEachElement(root, check);
    const bool isDevice =
        parts.contains("Stream") || parts.contains("Channels") || parts.contains("Firmware");
    if (isDevice && !parts.contains("Stream")) {
        document.Report(RuleId::ElementMissing, tree.NameSpan(root), "<Device> has no <Stream>", "<Stream>");
    }
    if (!isDevice && !parts.contains("FWVersion")) {
        document.Report(RuleId::ElementMissing, tree.NameSpan(root), "<Device> has no <FWVersion>",
                        "<FWVersion>");
    }
    const std::string current(Trim(firmware.text));
    if (parts.contains("FWVersion") && !current.empty() && !versions.contains(current)) {
        const std::vector<std::string_view> words(versions.begin(), versions.end());
        document.Report(RuleId::LibraryMissing, firmware.span,
                        "there is no version " + Quoted(current) + ": asking for a channel object fails", "",
                        std::string(Nearest(current, words)));
    }
}

} // namespace check
