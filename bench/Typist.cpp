#include "bench/Typist.h"

#include <algorithm>
#include <array>
#include <utility>

namespace bench {

namespace {

/// A message box has its text under this number.
constexpr int kMessageText = 0xFFFF;

bool IsExtended(WORD key) {
    constexpr std::array<WORD, 9> kExtended{VK_DELETE, VK_LEFT, VK_RIGHT, VK_UP,  VK_DOWN,
                                            VK_HOME,   VK_END,  VK_PRIOR, VK_NEXT};
    return std::find(kExtended.begin(), kExtended.end(), key) != kExtended.end();
}

/// What a key message says of the key: pressed once, its place on the keyboard.
LPARAM KeyData(WORD key) {
    constexpr LPARAM kExtendedKey = 1 << 24;
    const auto place = static_cast<LPARAM>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    return 1 | place << 16 | (IsExtended(key) ? kExtendedKey : 0);
}

void Press(HWND window, const Stroke& stroke) {
    constexpr auto kReleased = static_cast<LPARAM>(0xC0000000);
    constexpr LPARAM kAltIsDown = 1 << 29;
    switch (stroke.kind) {
    case Stroke::Kind::Character:
        PostMessageW(window, WM_CHAR, stroke.character, 1);
        break;
    case Stroke::Kind::Access:
        PostMessageW(window, WM_SYSCHAR, stroke.character, 1 | kAltIsDown);
        break;
    case Stroke::Kind::Key:
        PostMessageW(window, WM_KEYDOWN, stroke.key, KeyData(stroke.key));
        PostMessageW(window, WM_KEYUP, stroke.key, KeyData(stroke.key) | kReleased);
        break;
    }
}

std::wstring CaptionOf(HWND window) {
    std::array<wchar_t, 256> text{};
    GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
    return text.data();
}

bool TakesKeys(HWND window) {
    constexpr DWORD kDialogClass = 32770;
    return GetClassLongW(window, GCW_ATOM) == kDialogClass && IsWindowVisible(window) != FALSE &&
           IsWindowEnabled(window) != FALSE;
}

BOOL CALLBACK FindDialog(HWND window, LPARAM found) {
    if (!TakesKeys(window)) {
        return TRUE;
    }
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

/// The active window of this thread. It has none while another program is in front:
/// then the dialog that is open is made active, for keys find their way by the focus.
HWND ActiveWindow() {
    if (GetActiveWindow() == nullptr) {
        HWND dialog = nullptr;
        EnumThreadWindows(GetCurrentThreadId(), &FindDialog, reinterpret_cast<LPARAM>(&dialog));
        if (dialog != nullptr) {
            SetActiveWindow(dialog);
        }
    }
    return GetActiveWindow();
}

/// The dialog that keys go to by now; none while a message box is shown or no
/// dialog is on the screen yet.
HWND ReadyDialog() {
    const HWND active = ActiveWindow();
    const bool isReady = active != nullptr && TakesKeys(active);
    return isReady && GetDlgItem(active, kMessageText) == nullptr ? active : nullptr;
}

} // namespace

Typist::Typist(const std::vector<Stroke>& strokes)
    : clock_(CreateWindowExW(0, L"Static", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr))
    , strokes_(strokes.begin(), strokes.end()) {
    // A timer's message comes only when no other is waiting.
    SetWindowLongPtrW(clock_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetWindowLongPtrW(clock_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Typist::Procedure));
    SetTimer(clock_, 1, USER_TIMER_MINIMUM, nullptr);
}

Typist::~Typist() {
    DestroyWindow(clock_);
}

std::wstring Typist::Left() const {
    std::wstring text;
    for (const Stroke& stroke : strokes_) {
        text += stroke.written;
    }
    return text;
}

LRESULT CALLBACK Typist::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_TIMER) {
        reinterpret_cast<Typist*>(GetWindowLongPtrW(window, GWLP_USERDATA))->Tick();
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

void Typist::Tick() {
    const HWND dialog = ReadyDialog();
    if (dialog == nullptr || GetQueueStatus(QS_POSTMESSAGE) != 0) {
        return;
    }
    if (strokes_.empty()) {
        CloseWhatIsLeft(dialog);
        return;
    }
    const Stroke stroke = std::move(strokes_.front());
    strokes_.pop_front();
    const HWND focus = GetFocus();
    Press(focus != nullptr ? focus : dialog, stroke);
}

void Typist::CloseWhatIsLeft(HWND dialog) {
    if (dialog != cancelled_) {
        cancelled_ = dialog;
        leftOpen_.push_back(CaptionOf(dialog));
        PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    }
}

} // namespace bench
