#pragma once

#include <functional>
#include <string>

namespace benchmark {

/// Something measured: what is made ready, and what the clock runs over.
struct Timed {
    std::function<void()> prepare;
    std::function<void()> run;
    explicit operator bool() const { return static_cast<bool>(run); }
};

struct Trial {
    std::string job;
    long points = 0;
    Timed component;
    Timed floor;  // empty: judged by its growth alone
    Timed script; // empty: none
    /// What the figure per unit is divided by: points, or look-ups.
    long units = 0;
    /// Message-loop yields in the job and in its floor.
    long yields = 0;
};

/// The least of the rounds, in microseconds; 0 for what was not measured.
struct Row {
    std::string job;
    long points = 0;
    long units = 0;
    long yields = 0;
    int rounds = 0;
    double component = 0;
    double floor = 0;
    double script = 0;

    double PerUnit() const { return component / static_cast<double>(units); }
    double FloorPerUnit() const { return floor / static_cast<double>(units); }
};

/// Runs component, floor and script in turn, again and again, so that what else
/// the machine does meets all three, and takes the least of each: it only ever
/// adds. The slow script sits out once it has had its share of the time.
Row Measure(const Trial& trial);

/// What one yield to the message loop costs here, in microseconds.
double YieldCost();

} // namespace benchmark
