#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace tam::fuzz {

/// The fuzzer's bytes as characters, one each.
inline std::wstring TextOf(const std::uint8_t* data, std::size_t size) {
    return {data, data + size};
}

/// Cuts off and returns what stands before the first line feed.
inline std::wstring TakeLine(std::wstring& text) {
    const std::size_t end = text.find(L'\n');
    std::wstring line = text.substr(0, end);
    text.erase(0, end == std::wstring::npos ? end : end + 1);
    return line;
}

/// Ends the program where a property does not hold, for the fuzzer to see.
inline void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

} // namespace tam::fuzz
