#pragma once

#include "check/Output.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace check {

enum class Format { Text, Json, Sarif, Markdown };

/// What the command line of a program that checks asks for.
struct ProgramOptions {
    std::vector<std::filesystem::path> inputs;
    /// Empty: the nearest catalogue.xml, from each file's folder upwards, then beside
    /// the program.
    std::filesystem::path catalogue;
    Format format = Format::Text;
    bool listsRules = false;
    /// Where the schemas are written; empty: nowhere.
    std::filesystem::path schemas;
    unsigned jobs = 1;
    bool hasColour = false;

    /// What the output says of itself.
    std::string program = "tamcheck";
    std::filesystem::path programFolder;
    std::function<void(const std::string&)> print;
    std::function<void(const std::string&)> complain;
    /// Shows a line of progress in place of the last; empty on no terminal.
    std::function<void(std::string_view)> showProgress;
};

// Exit statuses.
inline constexpr int kClean = 0;
inline constexpr int kFound = 1;
inline constexpr int kUnreadable = 2;

/// Checks, lists rules or writes schemas, and answers the exit status.
int RunProgram(const ProgramOptions& options);

/// The name of a format; false for another word.
bool ReadFormat(std::string_view word, Format& format);

/// How many files at a time: a number of up to three digits, 0 for as many as there are
/// processors. False for another word.
bool ReadJobs(std::string_view word, unsigned& jobs);

/// The nearest catalogue.xml: from a file's folder upwards, then beside the program. Empty
/// when there is none.
std::filesystem::path NearestCatalogue(const std::filesystem::path& file,
                                       const std::filesystem::path& programFolder);

/// Bytes of a file. Empty, with the reason in `problem`, when it cannot be read.
std::string ReadFile(const std::filesystem::path& path, std::string& problem);

} // namespace check
