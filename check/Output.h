#pragma once

#include "check/Check.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

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
Totals TotalsOf(const std::vector<FileResult>& results);

/// "file:line:column: error: ... [rule]" for each finding, each on a line.
std::string TextOf(const FileResult& result, bool hasColour);
/// "3 files: 2 errors, 1 warning".
std::string TextOf(const Totals& totals);
/// `status` is what the program exits with.
std::string JsonOf(const std::vector<FileResult>& results, std::string_view program, int status);
/// SARIF 2.1.0.
std::string SarifOf(const std::vector<FileResult>& results, std::string_view program);

/// The table of rules.
std::string RulesText();
std::string RulesJson();
std::string RulesMarkdown();

} // namespace check
