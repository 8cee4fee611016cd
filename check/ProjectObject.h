#pragma once

#include "check/Document.h"

#include <functional>
#include <set>
#include <span>
#include <string>
#include <string_view>

namespace check {

/// The keys of a project's objects so far: no two have the same.
using ProjectKeys = std::set<std::string>;

inline constexpr std::string_view kProjectModuleParts[] = {
    "Environment", "UserName", "X_Position", "Y_Position", "DevKey", "TamObjID", "OutReferences", "Outputs"};
inline constexpr std::string_view kProjectChannelParts[] = {"DevKey",     "TamObjectKey", "UserName",
                                                            "X_Position", "Y_Position",   "Key",
                                                            "Inputs",     "Outputs",      "Attributes"};

bool IsPartOf(std::span<const std::string_view> parts, std::string_view name);

/// What the two kinds of objects in a project have alike.
class ProjectObject {
  public:
    ProjectObject(Document& document, ProjectKeys& keys, std::span<const std::string_view> parts)
        : document_(document), keys_(keys), parts_(parts) {}

  protected:
    /// Where the end tag of a part is missing, the parts that follow lie inside.
    void ForEachPartInside(XmlTree::Index part, const std::function<void(XmlTree::Index)>& check) const;
    /// Hands over what stands in a section, without the parts that follow one whose end tag is missing.
    void ForEachOfSection(XmlTree::Index section, const std::function<void(XmlTree::Index)>& check) const;
    /// The text of an element that the component needs a text of.
    Leaf Required(XmlTree::Index element);
    void CheckPosition(const Leaf& leaf);
    /// A finding where `seen` has the child's name already.
    void CheckTwin(std::set<std::string>& seen, XmlTree::Index child, std::string_view object);

    // NOLINTBEGIN(cppcoreguidelines-avoid-const-or-ref-data-members): it lives while its document is checked
    Document& document_;
    ProjectKeys& keys_;
    // NOLINTEND(cppcoreguidelines-avoid-const-or-ref-data-members)

  private:
    std::span<const std::string_view> parts_;
};

void CheckProjectModule(Document& document, XmlTree::Index object, ProjectKeys& keys);
void CheckProjectChannel(Document& document, XmlTree::Index object, ProjectKeys& keys);

} // namespace check
