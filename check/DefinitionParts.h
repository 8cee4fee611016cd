#pragma once

#include "check/Document.h"

#include <functional>
#include <span>
#include <string_view>

namespace check {

// What the definitions of modules and of channels have alike.

inline constexpr std::string_view kDefinitionRoot = "AppObject";
/// The first four are texts.
inline constexpr std::string_view kModuleParts[] = {"NAME",     "ID",        "DESCRIPTION",
                                                    "CATEGORY", "DATASIZES", "TAM"};
inline constexpr std::string_view kChannelParts[] = {"NAME",          "ID",         "DESCRIPTION",
                                                     "CATEGORY",      "DATASIZES",  "InReferences",
                                                     "OutReferences", "Attributes", "TAMConfig"};

bool IsOneOf(std::string_view name, std::span<const std::string_view> words);

/// The table of database sizes.
void CheckDataSizes(Document& document, XmlTree::Index table);

/// What TAMConfig and the points have.
inline constexpr std::string_view kSections[] = {"InReferences", "OutReferences", "Attributes"};

/// Whether an element inside an unclosed part is one of the parts that follow it. Sections have
/// names of parts; in <Tam> and <TAMConfig> they are its own.
bool IsPartAfter(std::string_view part, std::string_view name);

/// Where the end tag of a part is missing, the parts that follow lie inside.
void ForEachPartInside(const XmlTree& tree, XmlTree::Index part,
                       const std::function<void(XmlTree::Index)>& check);

/// A finding: the document has another root.
void ReportDefinitionRoot(Document& document);

} // namespace check
