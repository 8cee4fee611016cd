#pragma once

#include "view/model/FindingRow.h"

#include <cstddef>
#include <deque>
#include <vector>

namespace view {

/// The boxes that the component showed since a file was opened: the latest of them, and how
/// many there were.
class BoxLog {
  public:
    static constexpr std::size_t kMost = 1000;

    void Clear() noexcept;
    /// In the order in which they were shown.
    void Add(const std::vector<FindingRow>& boxes);
    /// The oldest first.
    const std::deque<FindingRow>& Latest() const noexcept { return latest_; }
    std::size_t LeftOut() const noexcept { return leftOut_; }
    std::size_t All() const noexcept { return leftOut_ + latest_.size(); }

  private:
    std::deque<FindingRow> latest_;
    std::size_t leftOut_ = 0;
};

} // namespace view
