#pragma once

#include "bench/BoxWatcher.h"
#include "bench/ImportPatch.h"

#include <windows.h>

#include <cstddef>
#include <functional>

namespace bench {

/// Answers the message boxes of the component at the call itself, from a certain one on:
/// a window for each of two thousand boxes takes half a minute. The first ones are real
/// windows, which the BoxWatcher reads. One at a time.
class QuickBoxes {
  public:
    using Tell = std::function<void(const Box& box)>;

    /// How many boxes of a run are windows.
    static constexpr std::size_t kWindows = 50;

    /// `tell` gets each box that was not shown.
    QuickBoxes(HMODULE component, Tell tell);
    ~QuickBoxes();
    QuickBoxes(const QuickBoxes&) = delete;
    QuickBoxes& operator=(const QuickBoxes&) = delete;

  private:
    static int WINAPI Answer(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type);

    Tell tell_;
    std::size_t seen_ = 0;
    ImportPatch patch_;
};

} // namespace bench
