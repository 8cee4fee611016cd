#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace view {

/// The files that were open last, the newest first, each once in whichever letter case.
class RecentFiles {
  public:
    static constexpr std::size_t kMost = 10;

    RecentFiles() = default;
    /// From the text that Text gave. What is empty, there twice or too much is left out.
    explicit RecentFiles(std::wstring_view text);

    /// A file was opened or saved; its path is whole.
    void Add(std::wstring path);
    /// A file is no longer there.
    void Remove(std::wstring_view path);
    void Clear() noexcept { files_.clear(); }

    const std::vector<std::wstring>& Files() const noexcept { return files_; }
    /// As the registry keeps several texts in one value: each ends with a NUL, and one
    /// more NUL ends them all.
    std::wstring Text() const;

  private:
    std::vector<std::wstring> files_;
};

} // namespace view
