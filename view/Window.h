#pragma once

#include "drawing/Palette.h"

#include <windows.h>

#include <string>

namespace view {

/// A window with a procedure of its own. What a message's handling throws is told by
/// OnProblem and does not leave the procedure.
class Window {
  public:
    Window() = default;
    virtual ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    HWND Handle() const noexcept { return handle_; }

  protected:
    struct Shape {
        const wchar_t* className = nullptr;
        const wchar_t* title = L"";
        DWORD style = 0;
        DWORD exStyle = 0;
        UINT classStyle = 0;
        HWND parent = nullptr;
        int id = 0;
        HCURSOR cursor = nullptr;
        HBRUSH background = nullptr;
        HICON icon = nullptr;
    };
    /// Throws CallError.
    void Create(const Shape& shape);
    /// Answers a message; by itself what the system does with it.
    virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
    virtual void OnProblem(const std::wstring& words);

  private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

    HWND handle_ = nullptr;
};

/// The number that belongs to a length at 96 dots to the inch.
class Scaling {
  public:
    explicit Scaling(UINT dpi = USER_DEFAULT_SCREEN_DPI) noexcept : dpi_(static_cast<int>(dpi)) {}
    /// Of the monitor on which a window is.
    static Scaling Of(HWND window) noexcept;

    int operator()(int length) const noexcept { return MulDiv(length, dpi_, USER_DEFAULT_SCREEN_DPI); }
    int Back(int pixels) const noexcept { return MulDiv(pixels, USER_DEFAULT_SCREEN_DPI, dpi_); }
    int Dpi() const noexcept { return dpi_; }

  private:
    int dpi_;
};

/// A font that this side owns.
class OwnFont {
  public:
    OwnFont() = default;
    explicit OwnFont(const LOGFONTW& shape) noexcept : font_(CreateFontIndirectW(&shape)) {}
    OwnFont(OwnFont&& other) noexcept : font_(other.font_) { other.font_ = nullptr; }
    OwnFont& operator=(OwnFont&& other) noexcept {
        HFONT const font = font_;
        font_ = other.font_;
        other.font_ = font;
        return *this;
    }
    ~OwnFont() { DeleteObject(font_); }
    HFONT Get() const noexcept { return font_; }

  private:
    HFONT font_ = nullptr;
};

/// The fonts of a window at some scale.
struct Fonts {
    explicit Fonts(Scaling scaling);

    OwnFont normal;
    OwnFont bold;
    OwnFont fixed;
};

/// The pointer says that it takes a while, as long as this lives.
class WaitPointer {
  public:
    WaitPointer() noexcept : former_(SetCursor(LoadCursorW(nullptr, IDC_WAIT))) {}
    ~WaitPointer() { SetCursor(former_); }
    WaitPointer(const WaitPointer&) = delete;
    WaitPointer& operator=(const WaitPointer&) = delete;

  private:
    HCURSOR former_;
};

/// What a text takes in a font, in pixels.
SIZE SizeOf(HFONT font, const std::wstring& text) noexcept;

/// Of this thread: the keys are the menu's then.
bool IsMenuOpen() noexcept;
bool IsHighContrast() noexcept;
/// A colour of the system as the drawing has colours.
drawing::Colour ColourOfSystem(int index) noexcept;
/// Gives a window a dark title where the user has programs dark.
void MatchTitle(HWND window) noexcept;
std::wstring TextOf(HWND window);

/// A path's last part.
std::wstring NameOf(const std::wstring& path);
bool IsSamePath(const std::wstring& one, const std::wstring& other);

/// A text of the program's resources; with %1 and %2 replaced.
std::wstring Text(UINT id);
std::wstring Text(UINT id, const std::wstring& first, const std::wstring& second = {});

/// SendMessage with the types that a message has in fact.
template <class W = int, class L = int>
LRESULT Send(HWND window, UINT message, W first = {}, L second = {}) noexcept {
    const auto plain = [](auto value) {
        if constexpr (requires { static_cast<LPARAM>(value); }) {
            return static_cast<LPARAM>(value);
        } else {
            return reinterpret_cast<LPARAM>(value);
        }
    };
    return SendMessageW(window, message, static_cast<WPARAM>(plain(first)), plain(second));
}

} // namespace view
