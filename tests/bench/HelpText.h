#pragma once

#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

namespace benchtest {

/// The commands that a help lists: two blanks, a word, blanks and what it does.
inline std::vector<std::string> CommandsIn(const std::string& help) {
    std::vector<std::string> commands;
    std::istringstream lines(help);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t end = line.find_first_not_of("abcdefghijklmnopqrstuvwxyz-", 2);
        if (line.starts_with("  ") && end != std::string::npos && end > 2 && line[2] != '-' &&
            line.substr(end).starts_with("  ")) {
            commands.push_back(line.substr(2, end - 2));
        }
    }
    return commands;
}

} // namespace benchtest
