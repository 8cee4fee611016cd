#include "benchmarks/Goals.h"
#include "benchmarks/Jobs.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

// Whole jobs of a host at 100, 1,000 and 10,000 points, each beside its floor
// and beside the same job in a script, in the same run.
// tam_benchmark JOBS.VBS [RESULT.JSON]

namespace {

using namespace benchmark;

constexpr long kSizes[] = {100, 1000, 10000};

struct Result {
    std::vector<Row> rows;
    double yieldCost = 0;
    double bytesPerPoint = 0;
    unsigned long dllSize = 0;
};

/// Empty when there is no such file. The script is plain ASCII.
std::wstring FileText(const char* path) {
    std::wstring text;
    if (std::FILE* file = std::fopen(path, "rb")) {
        for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
            text.push_back(static_cast<wchar_t>(c));
        }
        std::fclose(file);
    }
    return text;
}

void Print(const Result& result) {
    std::printf("%-27s %6s %11s %11s %6s %12s %7s %10s\n", "job", "points", "job us", "floor us", "ratio",
                "script us", "faster", "us/unit");
    for (const Row& row : result.rows) {
        char floor[40] = "-";
        char ratio[40] = "-";
        if (row.floor > 0) {
            std::snprintf(floor, sizeof floor, "%.1f", row.floor);
            std::snprintf(ratio, sizeof ratio, "%.2f", row.component / row.floor);
        }
        std::printf("%-27s %6ld %11.1f %11s %6s %12.1f %7.1f %10.4f\n", row.job.c_str(), row.points,
                    row.component, floor, ratio, row.script, row.script / row.component, row.PerUnit());
    }
    std::printf("\nA yield to the message loop costs %.2f us here.\n", result.yieldCost);
    std::printf("A point takes %.0f bytes; O_Tam_id.dll has %lu bytes.\n\n", result.bytesPerPoint,
                result.dllSize);
}

void PrintGoals(const std::vector<Finding>& findings) {
    const auto met =
        std::count_if(findings.begin(), findings.end(), [](const Finding& f) { return f.isMet; });
    std::printf("Goals: %d of %d met.\n", static_cast<int>(met), static_cast<int>(findings.size()));
    for (const Finding& finding : findings) {
        if (!finding.isMet) {
            std::printf("missed: %s, %ld points: %.2f %s (goal %.1f): %s.\n", finding.job.c_str(),
                        finding.points, finding.value, finding.goal.c_str(), finding.limit,
                        finding.reason.c_str());
        }
    }
}

void WriteJson(const char* path, const Result& result, const std::vector<Finding>& findings) {
    std::FILE* file = std::fopen(path, "w");
    if (file == nullptr) {
        std::fprintf(stderr, "%s cannot be written\n", path);
        std::exit(1);
    }
    std::fprintf(file, "{\n  \"yield_us\": %.3f,\n  \"bytes_per_point\": %.1f,\n  \"dll_bytes\": %lu,\n",
                 result.yieldCost, result.bytesPerPoint, result.dllSize);
    std::fputs("  \"jobs\": [\n", file);
    const char* separator = "";
    for (const Row& row : result.rows) {
        std::fprintf(
            file,
            "%s    {\"job\": \"%s\", \"points\": %ld, \"units\": %ld, \"yields\": %ld, \"rounds\": %d, "
            "\"job_us\": %.2f, \"floor_us\": %.2f, \"script_us\": %.2f}",
            separator, row.job.c_str(), row.points, row.units, row.yields, row.rounds, row.component,
            row.floor, row.script);
        separator = ",\n";
    }
    std::fputs("\n  ],\n  \"goals\": [\n", file);
    separator = "";
    for (const Finding& finding : findings) {
        std::fprintf(file,
                     "%s    {\"goal\": \"%s\", \"job\": \"%s\", \"points\": %ld, \"value\": %.3f, "
                     "\"limit\": %.1f, \"met\": %s, \"reason\": \"%s\"}",
                     separator, finding.goal.c_str(), finding.job.c_str(), finding.points, finding.value,
                     finding.limit, finding.isMet ? "true" : "false",
                     finding.isMet ? "" : finding.reason.c_str());
        separator = ",\n";
    }
    std::fputs("\n  ]\n}\n", file);
    std::fclose(file);
}

Result Run(const std::wstring& script) {
    Result result;
    Jobs jobs(script);
    result.dllSize = Jobs::DllSize();
    result.bytesPerPoint = jobs.BytesPerPoint(kSizes[2]);
    result.yieldCost = YieldCost();
    for (const long points : kSizes) {
        std::fprintf(stderr, "%ld points ...\n", points);
        for (Row& row : jobs.Run(points)) {
            result.rows.push_back(std::move(row));
        }
        result.yieldCost = std::min(result.yieldCost, YieldCost());
    }
    return result;
}

} // namespace

int main(int argc, char** argv) {
    const std::wstring script = argc > 1 ? FileText(argv[1]) : std::wstring();
    if (script.empty()) {
        std::fputs("usage: tam_benchmark JOBS.VBS [RESULT.JSON]\n", stderr);
        return 2;
    }
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
        return 1;
    }
    int status = 1;
    const auto failure = com::Attempt([&] {
        const Result result = Run(script);
        const auto findings = Judge(result.rows);
        Print(result);
        PrintGoals(findings);
        if (argc > 2) {
            WriteJson(argv[2], result, findings);
        }
        status = 0;
    });
    if (failure) {
        std::fprintf(stderr, "the benchmark failed: %ls\n", failure->Description().c_str());
    }
    CoUninitialize();
    return status;
}
