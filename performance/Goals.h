#pragma once

#include "performance/Measure.h"

#include <string>
#include <vector>

namespace benchmark {

/// What is asked of a row, and what came of it.
struct Finding {
    bool isMet = false;
    std::string goal;
    std::string job;
    long points = 0;
    double value = 0;
    double limit = 0;
    /// Why a missed goal is missed, as far as the figures say.
    std::string reason;
};

/// Every goal of every row that it applies to.
std::vector<Finding> Judge(const std::vector<Row>& rows);

} // namespace benchmark
