#include "check/Kinds.h"

#include "check/Nearest.h"
#include "check/Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <span>
#include <string>

namespace check {

namespace {

/// What tells a kind of document from the others.
struct Signs {
    Kind kind;
    std::string_view root;
    /// Names of the root's children or attributes; letter case does not count.
    std::span<const std::string_view> parts;
};

constexpr std::string_view kStreamParts[] = {"DevKey", "IsLastOnDev",  "TamObjID",     "CDB",
                                             "DDB",    "InReferences", "OutReferences"};
constexpr std::string_view kModuleParts[] = {"DataSizes", "DESCRIPTION", "CATEGORY", "ID", "Tam"};
constexpr std::string_view kChannelParts[] = {"TAMConfig",  "InReferences", "OutReferences",
                                              "Attributes", "DESCRIPTION",  "CATEGORY"};
constexpr std::string_view kLibraryParts[] = {"FWVersion", "Firmware", "Channels", "Stream"};
constexpr std::string_view kProjectParts[] = {"X_Position",    "Y_Position", "TamObjID",    "DevKey",
                                              "OutReferences", "UserName",   "TamObjectKey"};
constexpr std::string_view kInteropParts[] = {"Key", "UserName", "Inputs", "Outputs", "Attributes"};
constexpr std::string_view kExportParts[] = {"DevAddr", "AppID",   "TamObjectID", "IsLastOnDev",
                                             "Inputs",  "Outputs", "Attributes"};

constexpr Signs kSigns[] = {
    {Kind::DeviceStream, "Tam", kStreamParts},
    {Kind::ModuleDefinition, "AppObject", kModuleParts},
    {Kind::ChannelDefinition, "AppObject", kChannelParts},
    {Kind::DeviceLibrary, "Device", kLibraryParts},
    {Kind::Project, "Project", kProjectParts},
    {Kind::Project, "O_Tam_id", kProjectParts},
    {Kind::Interoperability, "O_Tam_id", kInteropParts},
    {Kind::ExportDocument, "O_Tam_id", kExportParts},
};

/// More children are not looked at.
constexpr int kMostLookedAt = 500;
constexpr int kRootCounts = 3;

bool Fits(std::string_view name, std::string_view part) {
    return EqualKeyword(name, part) || (part.size() > 3 && Distance(name, part, 1) <= 1);
}

template <class F>
void ForEachPart(const XmlTree& tree, F&& visit) {
    for (const XmlTree::Attribute& attribute : tree.Attributes(tree.Root())) {
        visit(tree.Piece(attribute.name));
    }
    int looked = 0;
    for (auto child = tree.FirstChild(tree.Root()); child != XmlTree::kNone && looked < kMostLookedAt;
         child = tree.Next(child, tree.Root())) {
        if (tree.IsElement(child)) {
            ++looked;
            visit(tree.Name(child));
        }
    }
}

bool IsCatalogue(const XmlTree& tree) {
    int entries = 0;
    int others = 0;
    ForEachPart(tree, [&](std::string_view name) {
        const bool isEntry = name.size() > 5 && Distance(name.substr(0, 5), "SNVT_", 1) <= 1;
        entries += isEntry ? 1 : 0;
        others += isEntry ? 0 : 1;
    });
    return entries > others || Fits(tree.Name(tree.Root()), "SNVTCatalogue");
}

/// Whether a block of a project, or the module's definition, lies one level down.
Kind KindOfChildren(const XmlTree& tree) {
    Kind kind = Kind::Unknown;
    ForEachPart(tree, [&](std::string_view name) {
        if (EqualKeyword(name, "AppObject") && kind == Kind::Unknown) {
            kind = Kind::ModuleDefinition;
        } else if (EqualKeyword(name, "O_Tam_id") && kind == Kind::Unknown) {
            kind = Kind::Project;
        }
    });
    return kind;
}

/// Of the same signs: what only channels' definitions have.
bool HasPoints(const XmlTree& tree) {
    bool has = false;
    ForEachPart(tree, [&](std::string_view name) {
        has = has || Fits(name, "TAMConfig") || Fits(name, "InReferences") || Fits(name, "OutReferences");
    });
    return has;
}

} // namespace

Kind Recognise(const XmlTree& tree) {
    if (tree.Root() == XmlTree::kNone) {
        return Kind::Unknown;
    }
    if (IsCatalogue(tree)) {
        return Kind::Catalogue;
    }
    const std::string_view root = tree.Name(tree.Root());
    if (root == "Project") {
        return Kind::Project;
    }
    std::array<int, std::size(kSigns)> scores{};
    for (std::size_t i = 0; i < scores.size(); ++i) {
        scores[i] =
            EqualKeyword(root, kSigns[i].root) || (root.size() > 2 && Distance(root, kSigns[i].root, 1) <= 1)
                ? kRootCounts
                : 0;
        ForEachPart(tree, [&](std::string_view name) {
            const auto& parts = kSigns[i].parts;
            scores[i] += std::any_of(parts.begin(), parts.end(),
                                     [&](std::string_view part) { return Fits(name, part); })
                             ? 1
                             : 0;
        });
    }
    const auto best = std::max_element(scores.begin(), scores.end());
    if (*best < 2) {
        return KindOfChildren(tree);
    }
    const Kind kind = kSigns[best - scores.begin()].kind;
    if (kind == Kind::ModuleDefinition || kind == Kind::ChannelDefinition) {
        return HasPoints(tree) ? Kind::ChannelDefinition : Kind::ModuleDefinition;
    }
    return kind;
}

std::string_view NameOf(Kind kind) {
    switch (kind) {
    case Kind::DeviceStream:
        return "device stream";
    case Kind::ModuleDefinition:
        return "module definition";
    case Kind::ChannelDefinition:
        return "channel definition";
    case Kind::DeviceLibrary:
        return "device library";
    case Kind::Catalogue:
        return "catalogue";
    case Kind::Project:
        return "project element";
    case Kind::Interoperability:
        return "interoperability element";
    case Kind::ExportDocument:
        return "export document";
    case Kind::Unknown:
        break;
    }
    return "unknown";
}

} // namespace check
