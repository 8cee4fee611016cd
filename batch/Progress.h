#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace batch {

/// Puts a line in the place of the one that it showed last; an empty one takes it away.
using ShowLine = std::function<void(std::string_view line)>;

/// "12 of 103  hall.xml  8 s left", within a width: a long name loses its beginning.
/// The time left is not told before anything is done.
std::string ProgressLine(std::size_t done, std::size_t total, std::string_view name,
                         std::chrono::milliseconds elapsed, std::size_t width);

/// How far a run over many files is, on a line that goes away at its end.
class Progress {
  public:
    /// Without `show` nothing is told.
    Progress(ShowLine show, std::size_t total, std::size_t width);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// A file is being worked on, and so many are done.
    void At(std::size_t done, std::string_view name);
    /// Takes the line away, so that something else can be printed.
    void Clear();

  private:
    ShowLine show_;
    std::size_t total_;
    std::size_t width_;
    bool isShown_ = false;
    std::chrono::steady_clock::time_point started_ = std::chrono::steady_clock::now();
};

} // namespace batch
