#pragma once

#include "view/model/Row.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace view {

/// By which a file is known to be the one that was read.
struct FileStamp {
    std::uint64_t size = 0;
    /// As the system counts the time of its last change.
    std::uint64_t modified = 0;
    bool operator==(const FileStamp&) const = default;
};

/// What was not saved when the program ended without being asked.
struct Recovery {
    std::wstring file;
    FileStamp stamp;
    std::map<PointId, std::wstring> values;
    bool operator==(const Recovery&) const = default;
};

/// As the lines of a text file. The last line tells that it is whole.
std::wstring TextOf(const Recovery& recovery);
/// None for a text that is not whole, of another version or damaged: half of the changes
/// is worse than none.
std::optional<Recovery> ReadRecovery(std::wstring_view text);

} // namespace view
