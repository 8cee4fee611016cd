#pragma once

#include <cstddef>
#include <string>

namespace tests {

/// How often a part stands in a text.
inline std::size_t CountOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}

} // namespace tests
