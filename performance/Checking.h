#pragma once

namespace benchmark {

/// What a point of a device stream costs, in microseconds: to check all that it says, and to
/// be parsed by the DOM alone.
struct CheckingCost {
    double checks = 0;
    double dom = 0;
};

CheckingCost MeasureChecking(long points);

} // namespace benchmark
