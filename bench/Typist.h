#pragma once

#include "bench/BoxWatcher.h"
#include "bench/Keys.h"

#include <deque>
#include <string>
#include <vector>

namespace bench {

/// Types into the dialogs of this thread while they are shown: each key goes
/// to the window that has the focus by then, so that what a key opens gets the
/// next one. A key is pressed only when the thread has nothing else to do.
/// Message boxes are not typed into; who watches the boxes answers them.
class Typist {
  public:
    /// Without strokes it types nothing and only closes what stays open.
    explicit Typist(const std::vector<Stroke>& strokes);
    ~Typist();
    Typist(const Typist&) = delete;
    Typist& operator=(const Typist&) = delete;

    /// Keys that no dialog was left for, as a key text writes them.
    std::wstring Left() const;
    /// Captions of the dialogs that were open when the keys had run out. They
    /// are closed with Cancel, as is one that its OK does not close.
    const std::vector<std::wstring>& LeftOpen() const noexcept { return leftOpen_; }

  private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    void Tick();
    void CloseWhatIsLeft(HWND dialog);

    HWND clock_ = nullptr;
    std::deque<Stroke> strokes_;
    HWND cancelled_ = nullptr;
    std::vector<std::wstring> leftOpen_;
};

} // namespace bench
