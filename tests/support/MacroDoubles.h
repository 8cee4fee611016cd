#pragma once

#include "com/Conversion.h"
#include "com/Object.h"

#include <OrvDBFaces.h>

#include <cstddef>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

// Doubles of a host's macro connections: groups of connected items, each with
// the key of a point.

namespace support {

/// Fails where told, else answers a key and counts how often.
class ConnectedItem final : public com::DualObject<ConnectedItem, IMacroConnectedItem> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    explicit ConnectedItem(std::wstring key) : key_(std::move(key)) {}
    HRESULT result = S_OK;
    int reads = 0;

    STDMETHODIMP get_key(BSTR* value) override {
        ++reads;
        *value = SUCCEEDED(result) ? com::Bstr(key_).Detach() : nullptr;
        return result;
    }

  private:
    std::wstring key_;
};

/// The items of a group; a position without one is an empty reference.
class ConnectedItems final : public com::DualObject<ConnectedItems, IMacroConnectedItems> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    std::vector<com::Ref<ConnectedItem>> items;
    HRESULT countResult = S_OK;
    HRESULT itemResult = S_OK;

    STDMETHODIMP get_Count(long* value) override {
        *value = static_cast<long>(items.size());
        return countResult;
    }
    STDMETHODIMP get_Item(long position, IMacroConnectedItem** value) override {
        *value = nullptr;
        if (position < 1 || position > static_cast<long>(items.size())) {
            return DISP_E_BADINDEX;
        }
        *value = com::Ref<IMacroConnectedItem>(items[static_cast<std::size_t>(position) - 1]).Detach();
        return itemResult;
    }
    STDMETHODIMP get_NewEnum(IUnknown**) override { return E_NOTIMPL; }
};

class ConnectionGroup final : public com::DualObject<ConnectionGroup, IMacroConnectionGroup> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    com::Ref<ConnectedItems> items = ConnectedItems::Make();
    HRESULT result = S_OK;

    STDMETHODIMP get_Items(IMacroConnectedItems** value) override {
        *value = SUCCEEDED(result) ? com::Ref<IMacroConnectedItems>(items).Detach() : nullptr;
        return result;
    }
};

class ConnectionGroups final : public com::DualObject<ConnectionGroups, IMacroConnectionGroups> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    std::vector<com::Ref<ConnectionGroup>> groups;
    HRESULT countResult = S_OK;

    STDMETHODIMP get_Count(long* value) override {
        *value = static_cast<long>(groups.size());
        return countResult;
    }
    STDMETHODIMP get_Item(long position, IMacroConnectionGroup** value) override {
        *value = nullptr;
        if (position < 1 || position > static_cast<long>(groups.size())) {
            return DISP_E_BADINDEX;
        }
        *value = com::Ref<IMacroConnectionGroup>(groups[static_cast<std::size_t>(position) - 1]).Detach();
        return S_OK;
    }
    STDMETHODIMP get_NewEnum(IUnknown**) override { return E_NOTIMPL; }
};

class Connections final : public com::DualObject<Connections, IMacroConnections> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    com::Ref<ConnectionGroups> groups = ConnectionGroups::Make();
    HRESULT result = S_OK;

    STDMETHODIMP get_Groups(IMacroConnectionGroups** value) override {
        *value = SUCCEEDED(result) ? com::Ref<IMacroConnectionGroups>(groups).Detach() : nullptr;
        return result;
    }
};

/// A group of items with these keys.
inline com::Ref<ConnectionGroup> GroupOf(std::initializer_list<const wchar_t*> keys) {
    auto group = ConnectionGroup::Make();
    for (const wchar_t* key : keys) {
        group->items->items.push_back(ConnectedItem::Make(key));
    }
    return group;
}

} // namespace support
