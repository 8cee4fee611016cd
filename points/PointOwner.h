#pragma once

#include "com/Boundary.h"
#include "com/Ref.h"

#include <OrvDBFaces.h>

#include <optional>
#include <string>

namespace tam {

/// What the points and collections of an application object ask of it. They
/// hold it while anybody outside holds them.
class PointOwner {
  public:
    // Of the object that it is.
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;

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

/// The owner as the host sees it; empty before there is one.
inline com::Ref<IAppObject> ParentOf(PointOwner* owner) {
    return owner != nullptr ? owner->AppObject() : com::Ref<IAppObject>();
}

/// The owner. "Object not set" before there is one.
inline PointOwner& OwnerOf(PointOwner* owner) {
    com::CheckSet(owner);
    return *owner;
}

} // namespace tam
