#include "view/Window.h"

#include "view/Session.h"

#include "bench/Text.h"

#include <array>
#include <cstddef>

namespace view {

namespace {

bool IsRegistered(const wchar_t* className) noexcept {
    WNDCLASSEXW known{};
    known.cbSize = sizeof known;
    return GetClassInfoExW(GetModuleHandleW(nullptr), className, &known) != FALSE;
}

template <class Function>
Function Imported(const wchar_t* library, const char* name) noexcept {
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(library), name)));
}

} // namespace

Window::~Window() {
    if (handle_ != nullptr) {
        SetWindowLongPtrW(handle_, GWLP_USERDATA, 0);
        DestroyWindow(handle_);
    }
}

void Window::Create(const Shape& shape) {
    if (!IsRegistered(shape.className)) {
        WNDCLASSEXW own{};
        own.cbSize = sizeof own;
        own.style = shape.classStyle;
        own.lpfnWndProc = &Window::Procedure;
        own.hInstance = GetModuleHandleW(nullptr);
        own.hIcon = shape.icon;
        own.hCursor = shape.cursor != nullptr ? shape.cursor : LoadCursorW(nullptr, IDC_ARROW);
        own.hbrBackground = shape.background;
        own.lpszClassName = shape.className;
        if (RegisterClassExW(&own) == 0) {
            throw com::CallError(bench::CodeOf(GetLastError()));
        }
    }
    const bool isChild = (shape.style & WS_CHILD) != 0;
    auto* const menu = isChild ? reinterpret_cast<HMENU>(static_cast<INT_PTR>(shape.id)) : nullptr;
    const int place = isChild ? 0 : CW_USEDEFAULT;
    if (CreateWindowExW(shape.exStyle, shape.className, shape.title, shape.style, place, place, place, place,
                        shape.parent, menu, GetModuleHandleW(nullptr), this) == nullptr) {
        throw com::CallError(bench::CodeOf(GetLastError()));
    }
}

LRESULT CALLBACK Window::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_NCCREATE) {
        auto* const made = static_cast<Window*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        made->handle_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(made));
    }
    auto* const self = reinterpret_cast<Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    if (message == WM_NCDESTROY) {
        self->handle_ = nullptr;
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        return DefWindowProcW(window, message, wParam, lParam);
    }
    LRESULT result = 0;
    if (const auto problem = Try([&] { result = self->OnMessage(message, wParam, lParam); })) {
        com::Attempt([&] { self->OnProblem(problem->words); });
    }
    return result;
}

LRESULT Window::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return DefWindowProcW(handle_, message, wParam, lParam);
}

void Window::OnProblem(const std::wstring&) {}

Scaling Scaling::Of(HWND window) noexcept {
    using Function = UINT(WINAPI*)(HWND);
    static const auto dpiOf = Imported<Function>(L"user32.dll", "GetDpiForWindow");
    if (dpiOf != nullptr) {
        if (const UINT dpi = dpiOf(window); dpi != 0) {
            return Scaling(dpi);
        }
    }
    const HDC screen = GetDC(nullptr);
    const Scaling scaling(static_cast<UINT>(GetDeviceCaps(screen, LOGPIXELSY)));
    ReleaseDC(nullptr, screen);
    return scaling;
}

Fonts::Fonts(Scaling scaling) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    // The system's answer is for the scale of the first monitor at logon.
    const HDC screen = GetDC(nullptr);
    const int systemDpi = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    LOGFONTW shape = metrics.lfMessageFont;
    shape.lfHeight = MulDiv(shape.lfHeight, scaling.Dpi(), systemDpi);
    // Of the letters of dialogs nine points are the usual size; smaller ones are hard to read in a grid.
    const int least = -MulDiv(9, scaling.Dpi(), 72);
    if (shape.lfHeight > least) {
        shape.lfHeight = least;
    }
    normal = OwnFont(shape);
    shape.lfWeight = FW_BOLD;
    bold = OwnFont(shape);
    shape.lfWeight = FW_NORMAL;
    shape.lfPitchAndFamily = FIXED_PITCH | FF_MODERN;
    lstrcpynW(shape.lfFaceName, L"Consolas", LF_FACESIZE);
    fixed = OwnFont(shape);
}

SIZE SizeOf(HFONT font, const std::wstring& text) noexcept {
    const HDC screen = GetDC(nullptr);
    const HGDIOBJ former = SelectObject(screen, font);
    SIZE size{};
    GetTextExtentPoint32W(screen, text.c_str(), static_cast<int>(text.size()), &size);
    SelectObject(screen, former);
    ReleaseDC(nullptr, screen);
    return size;
}

drawing::Colour ColourOfSystem(int index) noexcept {
    const COLORREF colour = GetSysColor(index);
    return static_cast<drawing::Colour>(GetRValue(colour)) << 16U |
           static_cast<drawing::Colour>(GetGValue(colour)) << 8U | GetBValue(colour);
}

bool IsMenuOpen() noexcept {
    GUITHREADINFO thread{};
    thread.cbSize = sizeof thread;
    return GetGUIThreadInfo(GetCurrentThreadId(), &thread) != FALSE && (thread.flags & GUI_INMENUMODE) != 0;
}

bool IsHighContrast() noexcept {
    HIGHCONTRASTW contrast{};
    contrast.cbSize = sizeof contrast;
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) != FALSE &&
           (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

void MatchTitle(HWND window) noexcept {
    constexpr const wchar_t* kKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize";
    constexpr DWORD kDarkTitle = 20; // DWMWA_USE_IMMERSIVE_DARK_MODE
    DWORD isLight = 1;
    DWORD size = sizeof isLight;
    RegGetValueW(HKEY_CURRENT_USER, kKey, L"AppsUseLightTheme", RRF_RT_REG_DWORD, nullptr, &isLight, &size);
    using Function = HRESULT(WINAPI*)(HWND, DWORD, const void*, DWORD);
    const HMODULE manager = LoadLibraryExW(L"dwmapi.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (manager == nullptr) {
        return;
    }
    if (const auto set = Imported<Function>(L"dwmapi.dll", "DwmSetWindowAttribute"); set != nullptr) {
        const BOOL isDark = isLight == 0 && !IsHighContrast() ? TRUE : FALSE;
        set(window, kDarkTitle, &isDark, sizeof isDark);
    }
    FreeLibrary(manager);
}

std::wstring TextOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

bool IsSamePath(const std::wstring& one, const std::wstring& other) {
    return CompareStringOrdinal(bench::FullPath(one).c_str(), -1, bench::FullPath(other).c_str(), -1, TRUE) ==
           CSTR_EQUAL;
}

std::wstring NameOf(const std::wstring& path) {
    return path.substr(path.find_last_of(L"\\/") + 1);
}

std::wstring Text(UINT id) {
    std::array<wchar_t, 512> text{};
    const int length = LoadStringW(GetModuleHandleW(nullptr), id, text.data(), static_cast<int>(text.size()));
    return {text.data(), static_cast<std::size_t>(length)};
}

std::wstring Text(UINT id, const std::wstring& first, const std::wstring& second) {
    const std::wstring form = Text(id);
    std::wstring text;
    for (std::size_t i = 0; i < form.size(); ++i) {
        const bool isPlace =
            form[i] == L'%' && i + 1 < form.size() && (form[i + 1] == L'1' || form[i + 1] == L'2');
        if (isPlace) {
            text += form[++i] == L'1' ? first : second;
        } else {
            text += form[i];
        }
    }
    return text;
}

} // namespace view
