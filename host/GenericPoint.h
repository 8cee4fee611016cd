#pragma once

#include "host/GenericDefinition.h"
#include "host/OwnerLink.h"

#include <memory>
#include <string>
#include <utility>

namespace orv {

/// What the inputs, outputs and attributes of a generic object have alike.
struct GenericPoint {
    GenericPoint(const Definition& said, OwnerRef owner)
        : definition(said), link(std::move(owner)), visible(said.IsVisible()) {}

    const std::wstring& Name() const noexcept { return definition.Name(); }
    std::wstring GlobalKey() const { return Under(globalKeyAbove); }
    std::wstring ExtendedKey() const { return Under(extendedKeyAbove); }

    /// What changeType is given, or the definition's own type where nothing is given.
    com::Ref<ISNVType> ChangedType(const VARIANT& given) const {
        com::Ref<ISNVType> type = TypeOfArgument(given, link);
        return type ? type : com::Ref<ISNVType>(TypeFor(link, definition.Text(L"SNVTTYPE")));
    }

    Definition definition;
    OwnerRef link;
    /// Those of the collection, which it shares with its points.
    std::shared_ptr<const std::wstring> globalKeyAbove;
    std::shared_ptr<const std::wstring> extendedKeyAbove;
    bool visible;

  private:
    std::wstring Under(const std::shared_ptr<const std::wstring>& key) const {
        return key ? *key + L"\\" + Name() : std::wstring();
    }
};

} // namespace orv
