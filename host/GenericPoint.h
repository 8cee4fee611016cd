#pragma once

#include "host/BlockDefinition.h"
#include "host/BlockLink.h"

#include <string>
#include <utility>

namespace orv {

/// What the inputs, outputs and attributes of a generic block have alike.
struct GenericPoint {
    GenericPoint(const Definition& said, BlockRef owner)
        : definition(said), link(std::move(owner)), visible(said.IsVisible()) {}

    const std::wstring& Name() const noexcept { return definition.Name(); }

    Definition definition;
    BlockRef link;
    std::wstring globalKey;
    std::wstring extendedKey;
    bool visible;
};

} // namespace orv
