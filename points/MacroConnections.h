#pragma once

#include "core/PointKeys.h"
#include "points/PointOwner.h"

namespace tam {

/// True when a macro connection of the owner's host project names the global key
/// of the point. The connections are those of the owner's host object. A step that
/// fails is passed over; nothing is thrown.
bool IsInMacroConnection(PointOwner* owner, const PointIdentity& point) noexcept;

} // namespace tam
