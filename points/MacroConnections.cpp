#include "points/MacroConnections.h"

#include "com/Boundary.h"
#include "com/Conversion.h"

#include <string>

namespace tam {

namespace {

using com::Attempt;
using com::Call;
using com::Ref;

bool HasKey(IMacroConnectedItems& items, long position, const std::wstring& key) {
    Ref<IMacroConnectedItem> item;
    Call(items, &IMacroConnectedItems::get_Item, position, item.Put());
    com::CheckSet(item.Get());
    com::Bstr text;
    Call(item, &IMacroConnectedItem::get_key, text.Put());
    return text.View() == key;
}

bool GroupHasKey(IMacroConnectionGroups& groups, long position, const std::wstring& key) {
    Ref<IMacroConnectionGroup> group;
    Call(groups, &IMacroConnectionGroups::get_Item, position, group.Put());
    com::CheckSet(group.Get());
    Ref<IMacroConnectedItems> items;
    Call(group, &IMacroConnectionGroup::get_Items, items.Put());
    com::CheckSet(items.Get());
    long count = 0;
    Call(items, &IMacroConnectedItems::get_Count, &count);
    for (long i = 1; i <= count; ++i) {
        bool found = false;
        Attempt([&] { found = HasKey(*items.Get(), i, key); });
        if (found) {
            return true;
        }
    }
    return false;
}

} // namespace

bool IsInMacroConnection(PointOwner* owner, const PointIdentity& point) noexcept {
    bool connected = false;
    Attempt([&] {
        const auto connections = OwnerOf(owner).HostParent().As<IMacroConnections>();
        if (!connections) {
            return;
        }
        Ref<IMacroConnectionGroups> groups;
        Call(connections, &IMacroConnections::get_Groups, groups.Put());
        com::CheckSet(groups.Get());
        long count = 0;
        Call(groups, &IMacroConnectionGroups::get_Count, &count);
        const std::wstring key = PointKey(point.globalKey, point.name);
        for (long i = 1; i <= count && !connected; ++i) {
            Attempt([&] { connected = GroupHasKey(*groups.Get(), i, key); });
        }
    });
    return connected;
}

} // namespace tam
