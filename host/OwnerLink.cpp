#include "host/OwnerLink.h"

#include "com/Boundary.h"
#include "com/VariantReference.h"
#include "core/RunTimeError.h"

namespace orv {

namespace {

bool HasKey(IMacroConnectionGroup& group, std::wstring_view key) {
    com::Ref<IMacroConnectedItems> items;
    com::Call(group, &IMacroConnectionGroup::get_Items, items.Put());
    com::CheckSet(items.Get());
    long count = 0;
    com::Call(items, &IMacroConnectedItems::get_Count, &count);
    for (long position = 1; position <= count; ++position) {
        com::Ref<IMacroConnectedItem> item;
        com::Bstr text;
        com::Call(items, &IMacroConnectedItems::get_Item, position, item.Put());
        com::CheckSet(item.Get());
        com::Call(item, &IMacroConnectedItem::get_key, text.Put());
        if (text.View() == key) {
            return true;
        }
    }
    return false;
}

} // namespace

com::Ref<IAppObject> ParentOf(const OwnerRef& link) {
    return link && link->owner != nullptr ? link->owner->AppObject() : com::Ref<IAppObject>();
}

com::Ref<HostType> TypeFor(const OwnerRef& link, std::wstring_view id) {
    const bool isKnown = link && link->owner != nullptr && !id.empty();
    return isKnown ? link->owner->MakeType(id) : com::Ref<HostType>();
}

bool IsMacroKey(const OwnerRef& link, std::wstring_view globalKey) {
    const auto parent = link && link->owner != nullptr ? link->owner->HostParent() : com::Ref<IDispatch>();
    const auto connections = parent.As<IMacroConnections>();
    if (!connections) {
        return false;
    }
    com::Ref<IMacroConnectionGroups> groups;
    com::Call(connections, &IMacroConnections::get_Groups, groups.Put());
    com::CheckSet(groups.Get());
    long count = 0;
    com::Call(groups, &IMacroConnectionGroups::get_Count, &count);
    for (long position = 1; position <= count; ++position) {
        com::Ref<IMacroConnectionGroup> group;
        com::Call(groups, &IMacroConnectionGroups::get_Item, position, group.Put());
        com::CheckSet(group.Get());
        if (HasKey(*group.Get(), globalKey)) {
            return true;
        }
    }
    return false;
}

com::Ref<ISNVType> TypeOfArgument(const VARIANT& argument, const OwnerRef& link) {
    // A script passes its variable by reference.
    const com::Variant value = com::CopyOf(argument);
    const VARTYPE kind = value.Get().vt;
    if (kind == VT_EMPTY || kind == VT_ERROR) {
        return {};
    }
    if (kind == VT_DISPATCH || kind == VT_UNKNOWN) {
        auto type = com::Query<ISNVType>(value.Get().punkVal);
        if (!type && value.Get().punkVal != nullptr) {
            throw tam::RunTimeError(tam::RunTime::TypeMismatch);
        }
        return type;
    }
    VARIANT other = value.Get(); // borrowed
    com::Variant text;
    if (FAILED(VariantChangeType(text.Put(), &other, 0, VT_BSTR))) {
        throw tam::RunTimeError(tam::RunTime::TypeMismatch);
    }
    return TypeFor(link, com::View(text.Get().bstrVal));
}

// The caller's own may be replaced while the type is asked.
// NOLINTNEXTLINE(performance-unnecessary-value-param): held by the copy
std::wstring TypeId(com::Ref<ISNVType> type) {
    com::Bstr id;
    if (type) {
        com::Call(type, &ISNVType::get_ID, id.Put());
    }
    return std::wstring(id.View());
}

} // namespace orv
