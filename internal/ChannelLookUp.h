#pragma once

#include "com/Boundary.h"
#include "com/Conversion.h"
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

/// The parent, held for a call.
inline com::Ref<ITamInternalAppObject> ParentOf(const ChannelRef& parent) {
    com::CheckSet(parent);
    return com::Ref<ITamInternalAppObject>(parent);
}

/// The parent as an application object.
inline com::Ref<IAppObject> ParentObjectOf(const ChannelRef& parent) {
    return com::Query<IAppObject>(parent);
}

/// The name that an item of the channel has in the module: the internal object
/// key, "_" and the item's name.
inline std::wstring ContainerKey(ITamInternalAppObject& parent, const std::wstring& itemName) {
    com::Bstr key;
    com::Call(parent, &ITamInternalAppObject::get_TamInternalObjectKey, key.Put());
    return std::wstring(key.View()) + L"_" + itemName;
}

/// The module object that holds the channel. "Object not set" when there is none.
inline com::Ref<IAppObject> ContainerOf(ITamInternalAppObject& parent) {
    com::Ref<IDispatch> container;
    com::Call(parent, &ITamInternalAppObject::get_TamObjectContainer, container.Put());
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
inline com::Ref<IAttribute> ContainerAttribute(ITamInternalAppObject& parent, const std::wstring& key) {
    com::Ref<IAttributes> attributes;
    com::Call(ContainerOf(parent), &IAppObject::get_Attributes, attributes.Put());
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
    const auto items = Required<IEnumVARIANT>(unknown);
    for (;;) {
        com::Variant item;
        const HRESULT next = com::Call(items, &IEnumVARIANT::Next, 1u, item.Put(), nullptr);
        if (next != S_OK) {
            return;
        }
        const bool isObject = item.Get().vt == VT_DISPATCH || item.Get().vt == VT_UNKNOWN;
        if (!visit(Required<Point>(com::Ref<IUnknown>(isObject ? item.Get().punkVal : nullptr)))) {
            return;
        }
    }
}

} // namespace tam
