#include "bench/Text.h"
#include "bench/WholeFile.h"
#include "performance/Checking.h"
#include "performance/Goals.h"
#include "performance/Jobs.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iomanip>
#include <ios>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

// Whole jobs of a host at 100, 1,000, 10,000 and 100,000 points, or at others, each beside
// its floor and beside the same job in a script, in the same run.
// tam_benchmark JOBS.VBS [RESULT.JSON [POINTS...]]

namespace {

using namespace benchmark;

const std::vector<long> kSizes{100, 1000, 10000, 100000};
/// Where the memory for a point, and the checks, are measured.
constexpr long kWeighed = 10000;

struct Result {
    std::vector<Row> rows;
    double yieldCost = 0;
    double pageCost = 0;
    double bytesPerPoint = 0;
    CheckingCost checking;
    unsigned long dllSize = 0;
    StartCost start;
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
        char script[40] = "-";
        char faster[40] = "-";
        if (row.script > 0) {
            std::snprintf(script, sizeof script, "%.1f", row.script);
            std::snprintf(faster, sizeof faster, "%.1f", row.script / row.component);
        }
        std::printf("%-27s %6ld %11.1f %11s %6s %12s %7s %10.4f\n", row.job.c_str(), row.points,
                    row.component, floor, ratio, script, faster, row.PerUnit());
    }
    std::printf("\nA yield to the message loop costs %.2f us here.\n", result.yieldCost);
    std::printf("A fresh page of memory costs %.2f us here.\n", result.pageCost);
    std::printf("The DLL loads in %.0f us, the first module object is made in %.0f us.\n", result.start.load,
                result.start.create);
    std::printf("A point takes %.0f bytes; O_Tam_id.dll has %lu bytes.\n", result.bytesPerPoint,
                result.dllSize);
    std::printf("To check a point of a stream takes %.2f us, to parse it by the DOM alone %.2f us.\n\n",
                result.checking.checks, result.checking.dom);
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

std::string Json(const Result& result, const std::vector<Finding>& findings) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(3) << "{\n  \"yield_us\": " << result.yieldCost
         << ",\n  \"page_us\": " << result.pageCost << ",\n  \"bytes_per_point\": " << std::setprecision(1)
         << result.bytesPerPoint << ",\n  \"load_us\": " << result.start.load
         << ",\n  \"first_object_us\": " << result.start.create
         << ",\n  \"check_us\": " << std::setprecision(3) << result.checking.checks
         << ",\n  \"dom_us\": " << result.checking.dom << ",\n  \"dll_bytes\": " << result.dllSize
         << ",\n  \"jobs\": [\n"
         << std::setprecision(2);
    const char* separator = "";
    for (const Row& row : result.rows) {
        text << separator << "    {\"job\": \"" << row.job << "\", \"points\": " << row.points
             << ", \"units\": " << row.units << ", \"all_floor\": " << (row.isAllFloor ? "true" : "false")
             << ", \"yields\": " << row.yields << ", \"rounds\": " << row.rounds
             << ", \"job_us\": " << row.component << ", \"floor_us\": " << row.floor
             << ", \"script_us\": " << row.script << "}";
        separator = ",\n";
    }
    text << "\n  ],\n  \"goals\": [\n";
    separator = "";
    for (const Finding& finding : findings) {
        text << separator << "    {\"goal\": \"" << finding.goal << "\", \"job\": \"" << finding.job
             << "\", \"points\": " << finding.points << ", \"value\": " << std::setprecision(3)
             << finding.value << ", \"limit\": " << std::setprecision(1) << finding.limit
             << ", \"met\": " << (finding.isMet ? "true" : "false") << ", \"reason\": \""
             << (finding.isMet ? "" : finding.reason) << "\"}";
        separator = ",\n";
    }
    text << "\n  ]\n}\n";
    return text.str();
}

/// A name from the command line, in the user's character set.
std::wstring Wide(const char* name) {
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, name, -1, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_ACP, 0, name, -1, wide.data(), static_cast<int>(wide.size()));
    wide.pop_back(); // the closing NUL
    return wide;
}

/// False, with a word on the error output, when the file is as it was.
bool Write(const char* path, const std::string& bytes) {
    try {
        bench::WriteWholeFile(Wide(path), bytes);
        return true;
    } catch (const bench::BenchError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return false;
    }
}

Result Run(const std::wstring& script, const std::vector<long>& sizes) {
    Result result;
    Jobs jobs(script);
    result.dllSize = Jobs::DllSize();
    result.start = Jobs::CostOfStart();
    result.yieldCost = YieldCost();
    result.pageCost = PageCost();
    std::fputs("checking ...\n", stderr);
    result.checking = MeasureChecking(kWeighed);
    for (const long points : sizes) {
        std::fprintf(stderr, "%ld points ...\n", points);
        for (Row& row : jobs.Run(points)) {
            result.rows.push_back(std::move(row));
        }
        result.yieldCost = std::min(result.yieldCost, YieldCost());
    }
    // The last, because from then on every block of memory is counted, which takes time.
    result.bytesPerPoint = jobs.BytesPerPoint(kWeighed);
    return result;
}

} // namespace

int main(int argc, char** argv) {
    const std::wstring script = argc > 1 ? FileText(argv[1]) : std::wstring();
    if (script.empty()) {
        std::fputs("usage: tam_benchmark JOBS.VBS [RESULT.JSON [POINTS...]]\n", stderr);
        return 2;
    }
    std::vector<long> sizes;
    for (int i = 3; i < argc; ++i) {
        sizes.push_back(std::strtol(argv[i], nullptr, 10));
    }
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
        return 1;
    }
    int status = 1;
    const auto failure = com::Attempt([&] {
        const Result result = Run(script, sizes.empty() ? kSizes : sizes);
        const auto findings = Judge(result.rows);
        Print(result);
        PrintGoals(findings);
        const bool isWritten = argc <= 2 || Write(argv[2], Json(result, findings));
        status = isWritten ? 0 : 1;
    });
    if (failure) {
        std::fprintf(stderr, "the benchmark failed: %ls\n", failure->Description().c_str());
    }
    CoUninitialize();
    return status;
}
