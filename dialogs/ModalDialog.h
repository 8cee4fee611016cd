#pragma once

#include "com/Boundary.h"

#include <windows.h>

#include <optional>
#include <string>

namespace tam {

/// Activates the component's manifest, and with it the current look of the
/// common controls, for as long as it lives.
class VisualStyles {
  public:
    VisualStyles() noexcept;
    ~VisualStyles();
    VisualStyles(const VisualStyles&) = delete;
    VisualStyles& operator=(const VisualStyles&) = delete;

  private:
    ULONG_PTR cookie_ = 0;
    bool active_ = false;
};

/// A modal dialog from a dialog resource: the one place that shows dialogs.
/// A form derives from it, fills its controls in OnInit and answers commands.
/// Nothing that a form throws leaves the window procedure.
class ModalDialog {
  public:
    /// Shows the dialog, modal to the host's active window; returns when it
    /// has closed. False when it could not be shown. When nobody attends it is
    /// written down and not shown, which is no failure.
    bool Show(int resource) noexcept;
    /// The same; throws what kept it from being shown or from filling itself.
    /// False when nobody attends: whoever opened it goes on as after Cancel.
    bool ShowOrThrow(int resource);
    bool IsShown() const noexcept { return window_ != nullptr; }

  protected:
    ModalDialog() = default;
    virtual ~ModalDialog() = default;

    virtual void OnInit() = 0;
    /// A button pressed or a control's notification. The Cancel button and Esc
    /// close the dialog unless the form answers true.
    virtual bool OnCommand(int control, int notification) = 0;
    /// Any other message. True when it is done with; `result` then goes back.
    virtual bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
    /// What it is about, written down where it is not shown.
    virtual std::wstring Subject() const { return {}; }

    HWND Window() const noexcept { return window_; }
    HWND Control(int id) const noexcept { return GetDlgItem(window_, id); }
    void SetText(int id, const std::wstring& text) const noexcept {
        SetDlgItemTextW(window_, id, text.c_str());
    }
    std::wstring GetText(int id) const;
    void Enable(int id, bool enabled) const noexcept { EnableWindow(Control(id), enabled ? TRUE : FALSE); }
    bool IsEnabled(int id) const noexcept { return IsWindowEnabled(Control(id)) != FALSE; }
    bool IsTicked(int id) const noexcept { return IsDlgButtonChecked(window_, id) == BST_CHECKED; }
    /// Moves the focus as the Tab key does, the default button with it.
    void Focus(int id) const noexcept {
        SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(id)), TRUE);
    }
    /// In OnInit: the control that has the focus at first, in place of the
    /// first one in tab order.
    void StartAt(int id) noexcept { firstFocus_ = id; }
    /// Moves controls up by a distance in pixels and takes it off the window's height.
    void Shorten(int firstMovedTop, int distance) const noexcept;
    /// Centres the window over its owner again, on the screen.
    void Centre() const noexcept;
    /// Moves the window so that all of it is on the screen.
    void KeepOnScreen() const noexcept;
    void Close() noexcept { EndDialog(window_, 0); }

  private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam);

    HWND window_ = nullptr;
    int firstFocus_ = 0;
    bool isLeftOut_ = false;
    /// What kept the form from filling itself when it was last shown; it has
    /// closed at once then.
    std::optional<com::Failure> openingFailure_;
};

} // namespace tam
