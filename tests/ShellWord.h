#pragma once

#include <string>

namespace tests {

/// A text as one word of a shell's command, whatever is in it.
inline std::string ShellWord(const std::string& text) {
    std::string word = "'";
    for (const char c : text) {
        word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return word + "'";
}

} // namespace tests
