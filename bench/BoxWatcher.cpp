#include "bench/BoxWatcher.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace bench {

namespace {

// The watcher of the thread: a hook gets no parameter to find it by.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
thread_local BoxWatcher* current = nullptr;

/// Text and icon of a message box stand in controls of these numbers.
constexpr int kMessageText = 0xFFFF;
constexpr int kMessageIcon = 0x14;
constexpr int kMessageIconInWine = 1088;

std::wstring TextOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

/// The text of a control itself, longer than a window title may be.
std::wstring ControlText(HWND control) {
    const auto length = static_cast<std::size_t>(SendMessageW(control, WM_GETTEXTLENGTH, 0, 0));
    std::wstring text(length + 1, L'\0');
    const LRESULT copied = SendMessageW(control, WM_GETTEXT, static_cast<WPARAM>(text.size()),
                                        reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(copied));
    return text;
}

std::wstring ClassOf(HWND window) {
    wchar_t name[64] = {};
    GetClassNameW(window, name, 64);
    return name;
}

std::wstring WithoutAccessMark(std::wstring caption) {
    caption.erase(std::remove(caption.begin(), caption.end(), L'&'), caption.end());
    return caption;
}

UINT IconOf(HWND window) {
    const HWND own = GetDlgItem(window, kMessageIcon);
    const HWND control = own != nullptr ? own : GetDlgItem(window, kMessageIconInWine);
    auto* const shown = reinterpret_cast<HICON>(SendMessageW(control, STM_GETICON, 0, 0));
    const struct {
        LPCWSTR resource;
        UINT icon;
    } icons[] = {{IDI_HAND, MB_ICONSTOP},
                 {IDI_EXCLAMATION, MB_ICONEXCLAMATION},
                 {IDI_ASTERISK, MB_ICONINFORMATION},
                 {IDI_QUESTION, MB_ICONQUESTION}};
    for (const auto& entry : icons) {
        if (control != nullptr && shown != nullptr && shown == LoadIconW(nullptr, entry.resource)) {
            return entry.icon;
        }
    }
    return 0;
}

BOOL CALLBACK ReadControl(HWND control, LPARAM target) {
    Box& box = *reinterpret_cast<Box*>(target);
    const int id = GetDlgCtrlID(control);
    const std::wstring kind = ClassOf(control);
    const std::wstring text = ControlText(control);
    box.controls[id] = text;
    if (kind == L"Button") {
        box.buttons.push_back(WithoutAccessMark(text));
    } else if (kind == L"Static" && !box.isMessageBox && !text.empty()) {
        const bool hasAccessMark = (GetWindowLongW(control, GWL_STYLE) & SS_NOPREFIX) == 0;
        box.text += (box.text.empty() ? L"" : L"\n") + (hasAccessMark ? WithoutAccessMark(text) : text);
    } else if ((kind == L"Edit" || kind == L"ComboBox") && !text.empty()) {
        box.fields.push_back(text);
    }
    return TRUE;
}

Box Read(HWND window) {
    Box box;
    box.caption = TextOf(window);
    box.isMessageBox = GetDlgItem(window, kMessageText) != nullptr;
    EnumChildWindows(window, ReadControl, reinterpret_cast<LPARAM>(&box));
    if (box.isMessageBox) {
        box.text = box.controls[kMessageText];
        box.icon = IconOf(window);
    }
    return box;
}

} // namespace

BoxWatcher::BoxWatcher(Mode mode)
    : mode_(mode), hook_(SetWindowsHookExW(WH_CBT, &BoxWatcher::Hook, nullptr, GetCurrentThreadId())) {
    current = this;
}

BoxWatcher::~BoxWatcher() {
    UnhookWindowsHookEx(hook_);
    current = nullptr;
}

std::vector<Box> BoxWatcher::Take() {
    return std::exchange(seen_, {});
}

LRESULT CALLBACK BoxWatcher::Hook(int code, WPARAM wParam, LPARAM lParam) {
    if (current != nullptr && code == HCBT_ACTIVATE) {
        current->See(reinterpret_cast<HWND>(wParam));
    } else if (current != nullptr && code == HCBT_DESTROYWND) {
        std::erase(current->open_, reinterpret_cast<HWND>(wParam));
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void BoxWatcher::See(HWND window) {
    const bool known = std::find(open_.begin(), open_.end(), window) != open_.end();
    if (known || ClassOf(window) != L"#32770") {
        return;
    }
    open_.push_back(window);
    seen_.push_back(Read(window));
    const Box box = seen_.back();
    if (handler_ && handler_(window, box)) {
        return;
    }
    if (mode_ == Mode::Answer) {
        Press(window);
    }
}

void BoxWatcher::Press(HWND window) {
    const int answer = IsWindowEnabled(GetDlgItem(window, IDOK)) != FALSE ? IDOK : IDCANCEL;
    PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(answer), 0);
}

} // namespace bench
