#pragma once

#include "com/Boundary.h"
#include "com/Conversion.h"
#include "com/Enumerator.h"
#include "com/Ref.h"
#include "core/Case.h"
#include "internal/Forward.h"

#include <OrvDBFaces.h>

#include <string>
#include <string_view>
#include <utility>

namespace tam {

/// The channel object that shows an inner point, which holds it
/// while anybody outside holds the point.
using ChannelRef = ITamInternalAppObject*;

/// The owner of a point, held for a call.
inline com::Ref<ITamInternalAppObject> OwnerOf(const ChannelRef& owner) {
    com::CheckSet(owner);
    return com::Ref<ITamInternalAppObject>(owner);
}

/// The owner as an application object: what hosts call the point's parent.
inline com::Ref<IAppObject> OwnerObjectOf(const ChannelRef& owner) {
    return com::Query<IAppObject>(owner);
}

/// The name that an item of the channel has in the module: the internal object
/// key, "_" and the item's name.
inline std::wstring ContainerKey(ITamInternalAppObject& channel, const std::wstring& itemName) {
    com::Bstr key;
    com::Call(channel, &ITamInternalAppObject::get_TamInternalObjectKey, key.Put());
    return std::wstring(key.View()) + L"_" + itemName;
}

/// The module object that holds the channel. "Object not set" when there is none.
inline com::Ref<IAppObject> ContainerOf(ITamInternalAppObject& channel) {
    com::Ref<IDispatch> container;
    com::Call(channel, &ITamInternalAppObject::get_TamObjectContainer, container.Put());
    return Required<IAppObject>(container);
}

/// The name of an inner point.
template <class I>
std::wstring NameOf(const com::Ref<I>& point) {
    com::CheckSet(point.Get());
    com::Bstr name;
    com::Call(point, &I::get_Name, name.Put());
    return std::wstring(name.View());
}

/// What a container's collection answered for a key, when that is its name in
/// any letter case; else empty. Only a key that begins like a number can be
/// taken for a position, so no other item is asked for its name.
template <class I>
com::Ref<I> OfThatName(com::Ref<I> item, const std::wstring& key) {
    constexpr std::wstring_view kStartsOfNumbers = L" \t\n&+-.0123456789";
    const bool mayBePosition = kStartsOfNumbers.find(key.front()) != std::wstring_view::npos;
    return item && mayBePosition && !EqualIgnoringCase(NameOf(item), key) ? com::Ref<I>() : item;
}

/// The container's attribute of a key; empty when it has none.
inline com::Ref<IAttribute> ContainerAttribute(ITamInternalAppObject& channel, const std::wstring& key) {
    com::Ref<IAttributes> attributes;
    com::Call(ContainerOf(channel), &IAppObject::get_Attributes, attributes.Put());
    com::CheckSet(attributes.Get());
    com::Ref<IAttribute> attribute;
    com::Call(attributes, &IAttributes::get_Item, com::Bstr(key).Get(), attribute.Put());
    return OfThatName(std::move(attribute), key);
}

/// Calls visit with each point of a collection, in order, until it answers
/// false. By the enumerator: an access by position may cost the host a walk.
template <class Point, class Collection, class F>
void WalkPoints(const com::Ref<Collection>& collection, F&& visit) {
    com::Ref<IUnknown> unknown;
    com::Call(collection, &Collection::get_NewEnum, unknown.Put());
    com::ForEachItem(*Required<IEnumVARIANT>(unknown).Get(), [&](com::Variant& item) {
        const bool isObject = item.Get().vt == VT_DISPATCH || item.Get().vt == VT_UNKNOWN;
        return visit(Required<Point>(com::Ref<IUnknown>(isObject ? item.Get().punkVal : nullptr)));
    });
}

} // namespace tam
