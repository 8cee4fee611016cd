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

/// A device stream whose points have other values; all else is as it was, blanks and
/// comments too. Throws BenchError for a point that the stream does not have.
std::wstring WithValues(const std::wstring& stream, const std::vector<PointValue>& values);

} // namespace bench
