#pragma once

#include "points/PointOwner.h"

#include <string>

namespace tam {

/// True when a macro connection of the owner's host project names this key.
/// The connections are those of the owner's host object. A step that fails is
/// passed over; nothing is thrown.
bool IsInMacroConnection(const OwnerRef& owner, const std::wstring& globalKey) noexcept;

} // namespace tam
