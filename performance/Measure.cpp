#include "performance/Measure.h"

#include "performance/Floor.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <new>

namespace benchmark {

namespace {

constexpr int kLeastRounds = 7;
constexpr int kMostRounds = 60;
constexpr int kLeastRoundsOfMany = 2;   // they are long, and what disturbs them is little of it
constexpr double kEnough = 1.5e6;       // microseconds over all rounds of a trial
constexpr double kEnoughScript = 3.0e6; // of them for the script

double Microseconds(const Timed& timed) {
    if (timed.prepare) {
        timed.prepare();
    }
    LARGE_INTEGER frequency;
    LARGE_INTEGER start;
    LARGE_INTEGER end;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&start);
    timed.run();
    QueryPerformanceCounter(&end);
    return static_cast<double>(end.QuadPart - start.QuadPart) * 1e6 / static_cast<double>(frequency.QuadPart);
}

/// Runs once and keeps the least; the time that it took.
double Round(const Timed& timed, double& least) {
    if (!timed) {
        return 0;
    }
    const double time = Microseconds(timed);
    least = least == 0 ? time : std::min(least, time);
    return time;
}

} // namespace

Row Measure(const Trial& trial) {
    Row row;
    row.job = trial.job;
    row.points = trial.points;
    row.units = trial.units != 0 ? trial.units : trial.points;
    row.yields = trial.yields;
    row.isAllFloor = trial.isAllFloor;
    const int leastRounds = row.points >= kMany ? kLeastRoundsOfMany : kLeastRounds;
    double spent = 0;
    while (row.rounds < leastRounds || (spent < kEnough && row.rounds < kMostRounds)) {
        spent += Round(trial.component, row.component);
        spent += Round(trial.floor, row.floor);
        ++row.rounds;
    }
    // Not in turn with them: whoever came next would find the processor's cache full of
    // the script's objects, and that would be the component each time.
    double scripted = 0;
    for (int round = 0; row.points < kMany && round < row.rounds && scripted < kEnoughScript; ++round) {
        scripted += Round(trial.script, row.script);
    }
    return row;
}

void MeasureOnce(const std::function<void()>& run, double& least) {
    Round({{}, run}, least);
}

double YieldCost() {
    constexpr long kYields = 1000;
    double least = 0;
    for (int i = 0; i < kLeastRounds; ++i) {
        Round({{}, [] { YieldTimes(kYields); }}, least);
    }
    return least / kYields;
}

double PageCost() {
    constexpr std::size_t kPage = 4096;
    constexpr std::size_t kPages = 4096;
    double least = 0;
    for (int i = 0; i < kLeastRounds; ++i) {
        auto* const memory = static_cast<volatile char*>(
            VirtualAlloc(nullptr, kPages * kPage, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
        if (memory == nullptr) {
            throw std::bad_alloc();
        }
        Round({{},
               [&] {
                   for (std::size_t page = 0; page < kPages; ++page) {
                       memory[page * kPage] = 1;
                   }
               }},
              least);
        VirtualFree(const_cast<char*>(memory), 0,
                    MEM_RELEASE); // NOLINT(cppcoreguidelines-pro-type-const-cast)
    }
    return least / kPages;
}

} // namespace benchmark
