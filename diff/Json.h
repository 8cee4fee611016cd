#pragma once

#include "diff/Compare.h"

#include <string>
#include <vector>

namespace diff {

/// What there is to say of two files.
struct Answer {
    std::string before;
    std::string after;
    /// Empty when they could not be compared.
    std::string kind;
    std::vector<Change> changes;
    /// Why they could not be compared.
    std::vector<std::string> problems;
    int status = 0;
};

/// The answer as one JSON document (docs/json/diff.schema.json).
std::string Json(const Answer& answer);

} // namespace diff
