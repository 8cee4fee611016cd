#pragma once

#include "check/Check.h"
#include "check/Json.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace check {

/// What came of one file.
struct FileResult {
    /// UTF-8, as it was given.
    std::string file;
    Result result;
    /// Why the file could not be read; empty when it could.
    std::string problem;
};

struct Totals {
    std::size_t files = 0;
    std::size_t unreadable = 0;
    std::size_t errors = 0;
    std::size_t warnings = 0;
    std::size_t notes = 0;
};
Totals TotalsOf(std::span<const FileResult> results);

// A document of some megabytes can have an answer of ten: it is handed on in pieces.

/// "file:line:column: error: ... [rule]" for each finding, each on a line; then the totals, as
/// "3 files: 2 errors, 1 warning".
void PrintText(std::span<const FileResult> results, bool hasColour, const Print& print);
/// `status` is what the program exits with.
void PrintJson(std::span<const FileResult> results, std::string_view program, int status, const Print& print);
/// SARIF 2.1.0.
void PrintSarif(std::span<const FileResult> results, std::string_view program, const Print& print);

/// The table of rules.
std::string RulesText();
std::string RulesJson();
std::string RulesMarkdown();

} // namespace check
