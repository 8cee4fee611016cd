#pragma once

#include "core/PointKeys.h"
#include "points/PointOwner.h"

#include <string>

namespace tam {

/// True when a macro connection of the owner's host project names the global
/// key of the point called `name`. The connections are those of the owner's host
/// object. A step that fails is passed over; nothing is thrown.
bool IsInMacroConnection(const OwnerRef& owner, const SharedKey& sideKey, const std::wstring& name) noexcept;

} // namespace tam
