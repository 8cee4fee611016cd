#pragma once

#include "host/BlockDefinition.h"
#include "host/BlockLink.h"

#include <memory>
#include <string>
#include <utility>

namespace orv {

/// What the inputs, outputs and attributes of a generic block have alike.
struct GenericPoint {
    GenericPoint(const Definition& said, BlockRef owner)
        : definition(said), link(std::move(owner)), visible(said.IsVisible()) {}

    const std::wstring& Name() const noexcept { return definition.Name(); }
    std::wstring GlobalKey() const { return Under(globalKeyAbove); }
    std::wstring ExtendedKey() const { return Under(extendedKeyAbove); }

    Definition definition;
    BlockRef link;
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
