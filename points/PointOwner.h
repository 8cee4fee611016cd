#pragma once

#include "com/Boundary.h"
#include "com/Ref.h"

#include <OrvDBFaces.h>

#include <memory>
#include <optional>
#include <string>

namespace tam {

/// What the points of an application object ask of it.
class PointOwner {
  public:
    virtual com::Ref<IAppObject> AppObject() = 0;
    virtual const std::wstring& OwnerName() const = 0;
    virtual short OwnerExportIndex() const = 0;
    /// The unit converter.
    virtual com::Ref<IDispatch> OwnerUnitsManager() const = 0;
    /// The host object that the application object belongs to; may be empty.
    virtual com::Ref<IDispatch> HostParent() const = 0;
    /// The default value that the definition document holds for an attribute;
    /// none before Init.
    virtual std::optional<std::wstring> OwnerDefaultValue(const std::wstring& attribute) const = 0;

  protected:
    ~PointOwner() = default;
};

/// The back reference of a point to its owner. It does not keep the owner
/// alive; the owner clears it when it ends, so that a point that the host
/// holds longer has no owner instead of a dead one.
struct OwnerLink {
    PointOwner* owner = nullptr;
};
using OwnerRef = std::shared_ptr<const OwnerLink>;

/// The owner as the host sees it; empty when there is none any more.
inline com::Ref<IAppObject> ParentOf(const OwnerRef& link) {
    return link && link->owner != nullptr ? link->owner->AppObject() : com::Ref<IAppObject>();
}

/// The owner. "Object not set" when there is none any more.
inline PointOwner& OwnerOf(const OwnerRef& link) {
    com::CheckSet(link ? link->owner : nullptr);
    return *link->owner;
}

} // namespace tam
