#pragma once

#include <functional>
#include <string>

namespace benchmark {

/// With so many points a round takes seconds. The script, which takes minutes, is
/// left out.
inline constexpr long kMany = 100000;

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
    /// The parser and the yields are nearly all there is: no other way to do it is
    /// much faster, so it is compared with its floor alone.
    bool isAllFloor = false;
};

/// The least of the rounds, in microseconds; 0 for what was not measured.
struct Row {
    std::string job;
    long points = 0;
    long units = 0;
    long yields = 0;
    bool isAllFloor = false;
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

/// Runs once, and keeps the time in microseconds where it is the least so far.
void MeasureOnce(const std::function<void()>& run, double& least);

/// What one yield to the message loop costs here, in microseconds.
double YieldCost();
/// Cost of the first use of a page of memory that the system has just given, in microseconds.
double PageCost();

} // namespace benchmark
