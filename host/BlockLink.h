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

/// What the points of a generic block ask of it.
class Block {
  public:
    virtual com::Ref<IAppObject> AppObject() = 0;
    virtual com::Ref<IAttributeInterceptor> Interceptor() const = 0;
    /// The interceptor is gone without having been unregistered.
    virtual void ForgetInterceptor(const com::Ref<IAttributeInterceptor>& gone) noexcept = 0;
    virtual short BlockExportIndex() const = 0;
    virtual com::Ref<HostType> MakeType(std::wstring_view id) const = 0;
    /// The object that the block belongs to; may be empty.
    virtual com::Ref<IDispatch> HostParent() const = 0;
    /// What the owner device's document holds for the block, by the attributes' names;
    /// empty without a document or an entry.
    virtual DeviceValues ReadDeviceValues() const = 0;

  protected:
    ~Block() = default;
};

/// The back reference of a point to its block. It does not keep the block
/// alive; the block clears it, so that a point that somebody holds longer has
/// no parent instead of a dead one.
struct BlockLink {
    Block* block = nullptr;
};
using BlockRef = std::shared_ptr<const BlockLink>;

/// The block as a host sees it; empty when it is gone.
com::Ref<IAppObject> ParentOf(const BlockRef& link);

/// The type of an identifier; none for an empty one or without a block.
com::Ref<HostType> TypeFor(const BlockRef& link, std::wstring_view id);

/// True when a macro connection of the block's parent has exactly this key.
bool IsMacroKey(const BlockRef& link, std::wstring_view globalKey);

/// The type that an argument of `changeType` stands for: a type object, or an
/// identifier's text. Empty for an argument that was left out or is empty.
com::Ref<ISNVType> TypeOfArgument(const VARIANT& argument, const BlockRef& link);

/// Identifier of a type; empty without one. By value: the type may be a host's, which
/// may change what the point has meanwhile.
std::wstring TypeId(com::Ref<ISNVType> type);

} // namespace orv
