#pragma once

#include "diff/Compare.h"

#include <string>
#include <string_view>
#include <vector>

namespace diff {

/// The changes between two files of one kind as one JSON document (docs/json/diff.schema.json).
std::string Json(const std::vector<Change>& changes, std::string_view kind, std::string_view before,
                 std::string_view after);

} // namespace diff
