#include "view/Frame.h"

#include "view/resource.h"

#include <shellapi.h>
#include <windowsx.h>

#include <algorithm>
#include <string_view>

namespace view {

namespace {

constexpr UINT_PTR kDiskTimer = 1;
constexpr UINT kDiskPeriod = 1000;
constexpr SIZE kLeastSize{560, 400};
constexpr SIZE kFirstSize{1180, 760};

/// As much of an area as fits into another one, moved there where it stands out.
RECT Within(const RECT& area, const RECT& room) noexcept {
    const LONG width = std::min(area.right - area.left, room.right - room.left);
    const LONG height = std::min(area.bottom - area.top, room.bottom - room.top);
    const LONG left = std::clamp(area.left, room.left, room.right - width);
    const LONG top = std::clamp(area.top, room.top, room.bottom - height);
    return {left, top, left + width, top + height};
}

BOOL CALLBACK PassColourChange(HWND part, LPARAM) {
    SendMessageW(part, WM_SYSCOLORCHANGE, 0, 0);
    return TRUE;
}

/// Whether a setting that has changed is one of fonts or colours. Programs tell all windows of
/// others at any time, in the middle of a word that is typed.
bool IsOfTheLook(WPARAM setting, LPARAM area) noexcept {
    const auto* const name = reinterpret_cast<const wchar_t*>(area);
    return setting == SPI_SETNONCLIENTMETRICS || setting == SPI_SETICONTITLELOGFONT ||
           setting == SPI_SETHIGHCONTRAST || (name != nullptr && lstrcmpW(name, L"ImmersiveColorSet") == 0);
}

MONITORINFO MonitorOf(HMONITOR monitor) noexcept {
    MONITORINFO info{};
    info.cbSize = sizeof info;
    GetMonitorInfoW(monitor, &info);
    return info;
}

bool IsOfClass(HWND window, const wchar_t* className) noexcept {
    wchar_t name[32] = {};
    GetClassNameW(window, name, 32);
    return lstrcmpiW(name, className) == 0;
}

bool IsTypedInto(HWND window) noexcept {
    return IsOfClass(window, WC_EDITW) && (GetWindowLongW(window, GWL_STYLE) & ES_READONLY) == 0;
}

/// Once for the window: not every system keeps a table that it has loaded.
HACCEL LoadKeys(UINT table) noexcept {
    return LoadAcceleratorsW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(table));
}

std::vector<std::wstring> TakeDropped(HDROP drop) {
    constexpr UINT kCount = 0xFFFFFFFF;
    std::vector<std::wstring> files(DragQueryFileW(drop, kCount, nullptr, 0));
    for (std::size_t i = 0; i < files.size(); ++i) {
        const auto number = static_cast<UINT>(i);
        files[i].resize(DragQueryFileW(drop, number, nullptr, 0) + std::size_t{1});
        files[i].resize(DragQueryFileW(drop, number, files[i].data(), static_cast<UINT>(files[i].size())));
    }
    DragFinish(drop);
    return files;
}

/// As a text to read, and not as a field that takes nothing.
HBRUSH ColourText(HDC target) noexcept {
    SetTextColor(target, GetSysColor(COLOR_WINDOWTEXT));
    SetBkColor(target, GetSysColor(COLOR_WINDOW));
    return GetSysColorBrush(COLOR_WINDOW);
}

} // namespace

Frame::Frame(Settings& settings)
    : settings_(settings)
    , keys_(LoadKeys(IDR_ACCELERATORS))
    , listKeys_(LoadKeys(IDR_LIST_ACCELERATORS))
    , undoKeys_(LoadKeys(IDR_UNDO_ACCELERATORS))
    , columnKeys_(LoadKeys(IDR_COLUMN_ACCELERATORS))
    , sourceKeys_(LoadKeys(IDR_SOURCE_ACCELERATORS))
    , typeList_([this](std::size_t row, std::size_t column) -> std::wstring_view {
        const TypeRow& type = types_.at(row);
        const std::wstring* const cells[] = {&type.number, &type.name,     &type.kind,       &type.unit,
                                             &type.least,  &type.greatest, &type.resolution, &type.invalid};
        return *cells[column];
    })
    , findingList_([this](std::size_t row, std::size_t column) -> std::wstring_view {
        return findingTexts_.at(row).at(column);
    })
    , isUs_(settings.usUnits) {
    Shape shape{.className = VIEW_CLASS};
    const std::wstring title = Text(IDS_TITLE);
    shape.title = title.c_str();
    shape.style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
    shape.exStyle = WS_EX_ACCEPTFILES;
    shape.icon = LoadIconW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDI_VIEW));
    shape.background = GetSysColorBrush(COLOR_BTNFACE);
    Create(shape);
    SetMenu(Handle(), LoadMenuW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDR_MENU)));
    MatchTitle(Handle());
    MakeParts();
    SetFonts();
    ShowPage(0);
    UpdateTitle();
    UpdateTools();
    UpdateStatus();
    Say(Text(IDS_START));
    SetTimer(Handle(), kDiskTimer, kDiskPeriod, nullptr);
}

Frame::~Frame() = default;

void Frame::Show(int how) {
    WINDOWPLACEMENT place = settings_.placement;
    const RECT& area = place.rcNormalPosition;
    const bool isKnown = place.length == sizeof place && area.right > area.left && area.bottom > area.top &&
                         MonitorFromRect(&area, MONITOR_DEFAULTTONULL) != nullptr;
    if (isKnown) {
        // The place and not the state: a window that ended as a symbol comes back as a window.
        const bool wasWhole =
            place.showCmd == SW_SHOWMAXIMIZED ||
            (place.showCmd == SW_SHOWMINIMIZED && (place.flags & WPF_RESTORETOMAXIMIZED) != 0);
        place.showCmd = wasWhole ? SW_SHOWMAXIMIZED : static_cast<UINT>(how);
        // A placement counts from the corner of what no bar covers.
        const MONITORINFO info = MonitorOf(MonitorFromRect(&area, MONITOR_DEFAULTTONEAREST));
        RECT room = info.rcWork;
        OffsetRect(&room, info.rcMonitor.left - info.rcWork.left, info.rcMonitor.top - info.rcWork.top);
        place.rcNormalPosition = Within(area, room);
        isPlacing_ = true;
        SetWindowPlacement(Handle(), &place);
        isPlacing_ = false;
    } else {
        RECT first{};
        GetWindowRect(Handle(), &first);
        first.right = first.left + scaling_(kFirstSize.cx);
        first.bottom = first.top + scaling_(kFirstSize.cy);
        first = Within(first, MonitorOf(MonitorFromWindow(Handle(), MONITOR_DEFAULTTONEAREST)).rcWork);
        SetWindowPos(Handle(), nullptr, first.left, first.top, first.right - first.left,
                     first.bottom - first.top, SWP_NOZORDER);
        ShowWindow(Handle(), how);
    }
    UpdateWindow(Handle());
    SetFocus(PaneOf(page_).Handle());
}

LRESULT Frame::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_SIZE:
        if (fonts_ && wParam != SIZE_MINIMIZED) {
            Layout();
        }
        return 0;
    case WM_GETMINMAXINFO:
        reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {scaling_(kLeastSize.cx),
                                                                 scaling_(kLeastSize.cy)};
        return 0;
    case WM_DPICHANGED:
        OnDpiChanged(*reinterpret_cast<const RECT*>(lParam));
        return 0;
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED:
        OnLookChanged(message, wParam, lParam);
        break;
    case WM_ACTIVATE:
        if (LOWORD(wParam) == WA_INACTIVE) {
            lastFocus_ = GetFocus();
        }
        break;
    case WM_SETFOCUS:
        ReturnFocus();
        return 0;
    case WM_COMMAND:
        if (OnCommand(LOWORD(wParam), HIWORD(wParam), reinterpret_cast<HWND>(lParam))) {
            return 0;
        }
        break;
    case WM_NOTIFY:
        return OnNotify(*reinterpret_cast<NMHDR*>(lParam));
    case WM_CTLCOLORSTATIC:
        if (reinterpret_cast<HWND>(lParam) == sourceBox_) {
            return reinterpret_cast<LRESULT>(ColourText(reinterpret_cast<HDC>(wParam)));
        }
        break;
    case WM_INITMENUPOPUP:
        if (HIWORD(lParam) != 0) {
            break; // the system's own menu: what it offers goes by the window's state
        }
        UpdateMenu(reinterpret_cast<HMENU>(wParam));
        return 0;
    case WM_CONTEXTMENU:
        if (ListPane* const pane = PaneOf(reinterpret_cast<HWND>(wParam))) {
            ShowListMenu(*pane, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
            return 0;
        }
        break;
    case WM_DROPFILES:
        OnDropped(TakeDropped(reinterpret_cast<HDROP>(wParam)));
        return 0;
    case WM_TIMER:
        OnTimer(wParam);
        return 0;
    default:
        return OnEndMessage(message, wParam, lParam);
    }
    return Window::OnMessage(message, wParam, lParam);
}

LRESULT Frame::OnEndMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_QUERYENDSESSION:
        return OnQueryEnd() ? TRUE : FALSE;
    case WM_ENDSESSION:
        if (wParam != FALSE) {
            OnEnd();
        }
        isEndAgreed_ = false; // to this end alone
        return 0;
    case WM_CLOSE:
        Close();
        return 0;
    case WM_DESTROY:
        SavePlaces();
        PostQuitMessage(0);
        return 0;
    default:
        return Window::OnMessage(message, wParam, lParam);
    }
}

void Frame::OnLookChanged(UINT message, WPARAM setting, LPARAM area) {
    MatchTitle(Handle());
    if (message == WM_SYSCOLORCHANGE) {
        EnumChildWindows(Handle(), &PassColourChange, 0); // the system tells top windows alone
    }
    if (fonts_ && (message != WM_SETTINGCHANGE || IsOfTheLook(setting, area))) {
        SetFonts();
        InvalidateRect(Handle(), nullptr, TRUE);
    }
}

void Frame::ReturnFocus() {
    if (typePane_) {
        const bool isThere = IsWindow(lastFocus_) != FALSE && IsWindowVisible(lastFocus_) != FALSE &&
                             IsChild(Handle(), lastFocus_) != FALSE;
        SetFocus(isThere ? lastFocus_ : PaneOf(page_).Handle());
    }
}

void Frame::OnDropped(const std::vector<std::wstring>& files) {
    SetForegroundWindow(Handle());
    OpenDropped(files);
}

void Frame::OnTimer(UINT_PTR timer) {
    if (timer == kDiskTimer) {
        CheckDisk();
    } else if (timer == kProgressTimer) {
        OnProgress();
    }
}

void Frame::OnProblem(const std::wstring& words) {
    Ask(words, MB_OK | MB_ICONERROR);
}

bool Frame::Translate(MSG& message) {
    if (message.message < WM_KEYFIRST || message.message > WM_KEYLAST ||
        (message.hwnd != Handle() && IsChild(Handle(), message.hwnd) == FALSE) || IsMenuOpen()) {
        return false;
    }
    const bool isText = IsOfClass(message.hwnd, WC_EDITW);
    const bool isCell = isText && GetDlgCtrlID(message.hwnd) == IDC_CELL;
    const bool hasOwnKeys = isText || IsOfClass(message.hwnd, VIEW_SPLITTER_CLASS);
    const bool isSource = message.hwnd == sourceBox_ || message.hwnd == search_;
    if (isSource && TranslateAcceleratorW(Handle(), sourceKeys_.get(), &message) != 0) {
        return true;
    }
    if (!isCell && TranslateAcceleratorW(Handle(), keys_.get(), &message) != 0) {
        return true;
    }
    if (!hasOwnKeys && TranslateAcceleratorW(Handle(), listKeys_.get(), &message) != 0) {
        return true;
    }
    if (PaneOf(message.hwnd) != nullptr &&
        TranslateAcceleratorW(Handle(), columnKeys_.get(), &message) != 0) {
        return true;
    }
    // A field that is typed into undoes its letters.
    if (!IsTypedInto(message.hwnd) && TranslateAcceleratorW(Handle(), undoKeys_.get(), &message) != 0) {
        return true;
    }
    if (message.message == WM_KEYDOWN && message.wParam == VK_TAB && GetKeyState(VK_CONTROL) >= 0 &&
        !isCell) {
        MoveTab(GetKeyState(VK_SHIFT) >= 0);
        return true;
    }
    return false;
}

bool Frame::IsInHand() const {
    const bool isCellOpen = std::any_of(pages_.begin(), pages_.end(), [](const PointPage& page) {
        return page.pane && page.pane->IsTyped();
    });
    return isCellOpen || IsTypedInto(GetFocus()) || GetCapture() != nullptr || IsMenuOpen();
}

} // namespace view
