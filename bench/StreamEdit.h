#pragma once

#include <string>
#include <vector>

namespace bench {

/// A value that a device stream is to give a point.
struct PointValue {
    bool isInput = false;
    std::wstring name;
    /// Of an input its link.
    std::wstring value;
};

/// The bytes, UTF-8, of a device stream whose points have other values; every other character is
/// as it was. Throws BenchError for a point that the stream does not have.
std::string WithValues(const std::wstring& stream, const std::vector<PointValue>& values);

} // namespace bench
