#pragma once

#include "check/Files.h"
#include "check/Output.h"

#include <cstddef>
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
    /// The folder that the search ends in; empty: the root.
    std::filesystem::path top;
    Format format = Format::Text;
    bool listsRules = false;
    /// Where the schemas are written; empty: nowhere.
    std::filesystem::path schemas;
    /// Where the findings of each file are written too, in a file of its own; empty: nowhere.
    std::filesystem::path outFolder;
    unsigned jobs = 1;
    bool hasColour = false;
    /// Places in the line of progress.
    std::size_t width = 79;

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

/// What is wrong with the options, as a line for the user; empty when nothing is.
std::string UsageFault(const ProgramOptions& options);

/// Checks, lists rules or writes schemas, and answers the exit status.
int RunProgram(const ProgramOptions& options);

/// The name of a format; false for another word.
bool ReadFormat(std::string_view word, Format& format);

/// How many files at a time: a number of up to three digits, 0 for as many as there are
/// processors. False for another word.
bool ReadJobs(std::string_view word, unsigned& jobs);

} // namespace check
