#include "performance/Goals.h"

#include <cstdio>

namespace benchmark {

namespace {

constexpr double kMostOfFloor = 1.2;
constexpr double kMostGrowth = 1.2;
constexpr double kLeastFaster = 5.0;
constexpr long kSmall = 1000;

std::string Figure(const char* before, double value, const char* after) {
    char text[200];
    std::snprintf(text, sizeof text, "%s%.2f%s", before, value, after);
    return text;
}

const Row* Find(const std::vector<Row>& rows, const std::string& job, long points) {
    for (const Row& row : rows) {
        if (row.job == job && row.points == points) {
            return &row;
        }
    }
    return nullptr;
}

Finding JudgeFloor(const Row& row) {
    const double ratio = row.component / row.floor;
    return {ratio <= kMostOfFloor, "times its floor",         row.job, row.points, ratio,
            kMostOfFloor,          "the component's own work"};
}

Finding JudgeGrowth(const Row& small, const Row& large) {
    const double growth = large.PerUnit() / small.PerUnit();
    Finding finding{growth <= kMostGrowth, "growth from 1,000 points", large.job, large.points, growth,
                    kMostGrowth,           "the component's own work"};
    if (!finding.isMet && large.floor > 0) {
        const double floorGrowth = large.FloorPerUnit() / small.FloorPerUnit();
        if (growth <= kMostGrowth * floorGrowth) {
            finding.reason = Figure("the floor grows ", floorGrowth, " times by itself, ") +
                             Figure("the component beside it ", growth / floorGrowth, " times");
        }
    }
    return finding;
}

Finding JudgeScript(const Row& row) {
    const double faster = row.script / row.component;
    return {faster >= kLeastFaster, "times faster than the script", row.job, row.points, faster,
            kLeastFaster,           "the component's own work"};
}

} // namespace

std::vector<Finding> Judge(const std::vector<Row>& rows) {
    std::vector<Finding> findings;
    for (const Row& row : rows) {
        if (row.floor > 0) {
            findings.push_back(JudgeFloor(row));
        }
        const Row* small = Find(rows, row.job, kSmall);
        if (row.points > kSmall && small != nullptr) {
            findings.push_back(JudgeGrowth(*small, row));
        }
        if (row.script > 0 && !row.isAllFloor) {
            findings.push_back(JudgeScript(row));
        }
    }
    return findings;
}

} // namespace benchmark
