#pragma once

#include "com/Ref.h"
#include "host/HostType.h"

#include <OrvDBFaces.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace orv {

/// Values of attributes by their names; of two of one name the first in the document.
using DeviceValues = std::map<std::wstring, std::wstring, std::less<>>;

/// What the points of a generic object ask of it.
class GenericOwner {
  public:
    virtual com::Ref<IAppObject> AppObject() = 0;
    virtual com::Ref<IAttributeInterceptor> Interceptor() const = 0;
    /// The interceptor is gone without having been unregistered.
    virtual void ForgetInterceptor(const com::Ref<IAttributeInterceptor>& gone) noexcept = 0;
    virtual short OwnerExportIndex() const = 0;
    virtual com::Ref<HostType> MakeType(std::wstring_view id) const = 0;
    /// The object that this one belongs to; may be empty.
    virtual com::Ref<IDispatch> HostParent() const = 0;
    /// What the owner device's document holds for the object, by the attributes' names;
    /// empty without a document or an entry.
    virtual DeviceValues ReadDeviceValues() const = 0;

  protected:
    ~GenericOwner() = default;
};

/// The back reference of a point to its owner. It does not keep the owner
/// alive; the owner clears it, so that a point that somebody holds longer has
/// no parent instead of a dead one.
struct OwnerLink {
    GenericOwner* owner = nullptr;
};
using OwnerRef = std::shared_ptr<const OwnerLink>;

/// The owner as a host sees it; empty when it is gone.
com::Ref<IAppObject> ParentOf(const OwnerRef& link);

/// The type of an identifier; none for an empty one or without an owner.
com::Ref<HostType> TypeFor(const OwnerRef& link, std::wstring_view id);

/// True when a macro connection of the owner's parent has exactly this key.
bool IsMacroKey(const OwnerRef& link, std::wstring_view globalKey);

/// The type that an argument of `changeType` stands for: a type object, or an
/// identifier's text. Empty for an argument that was left out or is empty.
com::Ref<ISNVType> TypeOfArgument(const VARIANT& argument, const OwnerRef& link);

/// Identifier of a type; empty without one. By value: the type may be a host's, which
/// may change what the point has meanwhile.
std::wstring TypeId(com::Ref<ISNVType> type);

} // namespace orv
