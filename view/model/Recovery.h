#pragma once

#include "view/model/ProjectModules.h"
#include "view/model/Row.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace view {

/// By which a file is known to be the one that was read.
struct FileStamp {
    std::uint64_t size = 0;
    /// As the system counts the time of its last change.
    std::uint64_t modified = 0;
    bool operator==(const FileStamp&) const = default;
};

/// A file, and how it was when it was read.
struct StampedFile {
    std::wstring path;
    FileStamp stamp;
    bool operator==(const StampedFile&) const = default;
};

/// What a person saw last when the program ended without being asked.
struct Recovery {
    /// The file that was open, and after it those that it names.
    std::vector<StampedFile> files;
    /// The project that was saved into; empty before the first save.
    std::wstring project;
    /// Of all points that were changed since the file was opened, those saved elsewhere too:
    /// the file has none of these values.
    std::map<PointId, std::wstring> values;
    /// Of a project with several modules the one that was open.
    std::optional<ModuleKey> module = std::nullopt;
    bool operator==(const Recovery&) const = default;
};

/// As the lines of a text file. The last line tells that it is whole.
std::wstring TextOf(const Recovery& recovery);
/// None for a text that is not whole, of another version or damaged: half of the changes
/// is worse than none.
std::optional<Recovery> ReadRecovery(std::wstring_view text);
/// Whether this version wrote it, whole or cut off: another version's is its own to remove.
bool IsOfThisVersion(std::wstring_view text);

} // namespace view
