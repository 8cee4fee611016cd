#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace bench {

/// A message box or dialog that the component showed on this thread.
struct Box {
    std::wstring caption;
    /// The text of a message box; of a dialog, its static texts joined by line feeds.
    std::wstring text;
    /// MB_ICONSTOP, MB_ICONEXCLAMATION, MB_ICONINFORMATION, MB_ICONQUESTION or 0.
    UINT icon = 0;
    bool isMessageBox = false;
    /// Captions of the buttons, without access marks, in tab order.
    std::vector<std::wstring> buttons;
    /// Texts of a dialog's controls by control identifier.
    std::map<int, std::wstring> controls;
    /// What stands in the edit fields and drop-down lists of a dialog, in tab order.
    std::vector<std::wstring> fields;
};

/// Sees every message box and dialog of the thread as it is activated, keeps
/// what it shows and, unless told otherwise, answers it with its OK (or
/// first) button, so that nothing waits for a hand. One watcher per thread.
class BoxWatcher {
  public:
    /// Called with each box instead of the plain answer. The window is live:
    /// post to it what should happen. Answer false to have it answered plainly.
    using Handler = std::function<bool(HWND window, const Box& box)>;

    enum class Mode { Answer, LeaveToUser };

    explicit BoxWatcher(Mode mode = Mode::Answer);
    ~BoxWatcher();
    BoxWatcher(const BoxWatcher&) = delete;
    BoxWatcher& operator=(const BoxWatcher&) = delete;

    const std::vector<Box>& Seen() const noexcept { return seen_; }
    /// What was seen since the last call.
    std::vector<Box> Take();
    void OnBox(Handler handler) { handler_ = std::move(handler); }
    void SetMode(Mode mode) noexcept { mode_ = mode; }
    /// Presses the OK (or first) button of a box, as soon as the box handles its messages.
    static void Press(HWND window);

  private:
    static LRESULT CALLBACK Hook(int code, WPARAM wParam, LPARAM lParam);
    void See(HWND window);

    Mode mode_;
    HHOOK hook_ = nullptr;
    std::vector<HWND> open_;
    std::vector<Box> seen_;
    Handler handler_;
};

} // namespace bench
