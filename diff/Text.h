#pragma once

#include "diff/Compare.h"

#include <string>
#include <string_view>
#include <vector>

namespace diff {

/// "added", "removed", "renamed", "moved", "changed".
std::string_view WordOf(What what);

/// The changes for people, a line each, with a line that counts them. With colours as
/// terminals take them, or without.
std::string Text(const std::vector<Change>& changes, const Model& model, bool isColoured);

} // namespace diff
