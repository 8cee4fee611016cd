// A yield handles what waits when it begins, and no more: what a handler causes would
// otherwise keep it busy for ever. Posted messages end at the mark, a message of the
// yield's own. Keys and the mouse go by their time, paints and timers once for each
// window or timer; where none of this tells, a fixed number is the limit (kMost). The
// kinds are handled one after another, because posted messages go before all others.
#include "common/MessageLoop.h"

#include "common/ComponentState.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <tuple>
#include <utility>

namespace tam {

namespace {

// What a call takes from the queue. Without filter it is the first kind of these
// of which there is a message.
constexpr UINT kAnything = 0;
constexpr UINT kPosted = (QS_POSTMESSAGE | QS_HOTKEY) << 16;
constexpr UINT kInput = PM_QS_INPUT;
constexpr UINT kPaint = PM_QS_PAINT;
constexpr UINT kTimer = QS_TIMER << 16;

/// How many messages of a kind one yield handles where nothing tells those that
/// waited from those that came meanwhile.
constexpr std::size_t kMost = 64;

/// Takes the next message. False when there is none, or when it is the end of the
/// host's loop: that is the host's to see.
bool Take(MSG& message, UINT kinds) {
    if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | kinds) == FALSE) {
        return false;
    }
    if (message.message == WM_QUIT) {
        PostQuitMessage(static_cast<int>(message.wParam));
        return false;
    }
    return true;
}

void Handle(const MSG& message) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

/// The end of the posted messages that wait: a message to a window of its own,
/// which closes with it. So it shows when another loop has come by it, such as
/// that of a dialog which the host opens meanwhile. A message without a window
/// would be lost there.
class Mark {
  public:
    Mark() noexcept
        : window_(CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr))
        , outer_(std::exchange(State().YieldMark, window_)) {
        Post();
    }
    ~Mark() {
        State().YieldMark = outer_;
        if (Stands()) {
            DestroyWindow(window_);
        }
    }
    Mark(const Mark&) = delete;
    Mark& operator=(const Mark&) = delete;

    /// Puts it after all that is posted by now.
    void Post() noexcept {
        posted_ = GetTickCount();
        if (window_ != nullptr && PostMessageW(window_, WM_CLOSE, 0, 0) == FALSE) {
            DestroyWindow(window_);
        }
    }
    /// False when another loop has come by it.
    bool Stands() const noexcept { return IsWindow(window_) != FALSE; }
    bool Is(const MSG& message) const noexcept { return message.hwnd == window_; }
    /// Whether a message was posted after the mark, by more than the step that the clocks
    /// of messages and of GetTickCount may be apart: what waited must not be left. A loop
    /// that takes everything and gives its window none of it can lose the mark while the
    /// window stands; then only this ends the yield.
    bool IsPassedBy(const MSG& message) const noexcept {
        return static_cast<LONG>(message.time - posted_) > kClockStep;
    }

  private:
    static constexpr LONG kClockStep = 50; // milliseconds
    DWORD posted_ = 0;
    HWND window_;
    HWND outer_;
};

/// The windows and timers that had their message in one yield. A window that
/// does not validate what it paints has the next one at once; so has a timer
/// whose handler takes longer than its period.
class Served {
  public:
    /// False when it has had its turn, and when too many have.
    bool Add(const MSG& message) noexcept {
        const Entry entry(message.hwnd, message.message, message.message == WM_PAINT ? 0 : message.wParam);
        const auto end = entries_.begin() + static_cast<std::ptrdiff_t>(count_);
        if (count_ == entries_.size() || std::find(entries_.begin(), end, entry) != end) {
            return false;
        }
        entries_[count_++] = entry;
        return true;
    }

  private:
    using Entry = std::tuple<HWND, UINT, WPARAM>;
    std::array<Entry, kMost> entries_{};
    std::size_t count_ = 0;
};

/// Handles the posted messages up to the mark. True when it got there itself;
/// `time` is then the mark's.
bool HandlePosted(const Mark& mark, DWORD& time) {
    MSG message;
    bool isPast = false;
    while (!isPast && mark.Stands() && Take(message, kPosted)) {
        if (mark.Is(message)) {
            time = message.time;
            return true;
        }
        isPast = mark.IsPassedBy(message);
        Handle(message);
    }
    return false;
}

/// Handles a message, and the characters that a key makes right after it: they
/// are posted, and would come after all other keys that wait.
void HandleWithCharacters(const MSG& message) {
    Handle(message);
    constexpr int kMostCharacters = 4;
    constexpr std::array<std::pair<UINT, UINT>, 2> kKinds{
        {{WM_KEYDOWN, WM_CHAR}, {WM_SYSKEYDOWN, WM_SYSCHAR}}};
    for (const auto& [key, first] : kKinds) {
        const bool makesThem = message.message == key;
        MSG character;
        for (int i = 0; makesThem && i < kMostCharacters; ++i) {
            if (PeekMessageW(&character, message.hwnd, first, first + 1, PM_REMOVE | kPosted) == FALSE) {
                break;
            }
            if (character.message == WM_QUIT) {
                PostQuitMessage(static_cast<int>(character.wParam));
                break;
            }
            DispatchMessageW(&character);
        }
    }
}

/// Keys and mouse come with their time. The clock is a coarse one, and a program
/// may give any time to what it sends, so there is a limit too.
void HandleInput(DWORD until) {
    MSG message;
    for (std::size_t i = 0; i < kMost && Take(message, kInput); ++i) {
        HandleWithCharacters(message);
        if (static_cast<LONG>(message.time - until) > 0) {
            return;
        }
    }
}

/// False when it ended at a message that had its turn.
bool HandleEachOnce(UINT kind, Served& served) {
    MSG message;
    while (Take(message, kind)) {
        if (!served.Add(message)) {
            return false;
        }
        Handle(message);
    }
    return true;
}

BOOL CALLBACK PaintOne(HWND window, LPARAM served) {
    MSG paint{};
    paint.hwnd = window;
    paint.message = WM_PAINT;
    if (GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId() &&
        IsWindowVisible(window) != FALSE && GetUpdateRect(window, nullptr, FALSE) != FALSE &&
        reinterpret_cast<Served*>(served)->Add(paint)) {
        RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_NOCHILDREN);
    }
    return TRUE;
}

BOOL CALLBACK PaintWithChildren(HWND window, LPARAM served) {
    PaintOne(window, served);
    EnumChildWindows(window, &PaintOne, served);
    return TRUE;
}

/// The system names the first window with something to paint, and no other until
/// that one is validated. Beside a window that never is, the others are looked for.
void PaintEachOnce(Served& served) {
    if (!HandleEachOnce(kPaint, served)) {
        EnumThreadWindows(GetCurrentThreadId(), &PaintWithChildren, reinterpret_cast<LPARAM>(&served));
    }
}

} // namespace

void YieldToHost() {
    // A message that posts itself again and loads would go ever deeper.
    if (State().YieldMark != nullptr && IsWindow(State().YieldMark) != FALSE) {
        return;
    }
    MSG first;
    if (!Take(first, kAnything)) { // a call to the system, and the only one where nothing waits
        return;
    }
    Mark mark; // before anything is handled: what a handler posts comes after it
    Served served;
    if (first.message == WM_PAINT || first.message == WM_TIMER) {
        served.Add(first);
    }
    HandleWithCharacters(first);
    DWORD time = 0;
    if (!HandlePosted(mark, time)) {
        return; // the loop that came by the mark has handled what waited
    }
    mark.Post(); // for loops that handlers run from here on
    // Each kind by itself: posted messages would always come first.
    HandleInput(time);
    PaintEachOnce(served);
    HandleEachOnce(kTimer, served);
}

} // namespace tam
