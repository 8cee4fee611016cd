#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace diff {

/// What the command line of a program that compares asks for.
struct ProgramOptions {
    std::filesystem::path before;
    std::filesystem::path after;
    /// Empty: the nearest catalogue.xml, from the second file's folder upwards, then
    /// beside the program.
    std::filesystem::path catalogue;
    bool isJson = false;
    bool hasColour = false;

    std::string program = "tambench";
    std::filesystem::path programFolder;
    std::function<void(const std::string&)> print;
    std::function<void(const std::string&)> complain;
};

// Exit statuses.
inline constexpr int kSame = 0;
inline constexpr int kDifferent = 1;
inline constexpr int kTrouble = 2;

/// Compares two documents and answers the exit status.
int RunProgram(const ProgramOptions& options);

} // namespace diff
