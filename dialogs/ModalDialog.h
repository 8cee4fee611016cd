#pragma once

#include <windows.h>

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
    /// has closed. False when it could not be shown.
    bool Show(int resource) noexcept;

  protected:
    ModalDialog() = default;
    virtual ~ModalDialog() = default;

    virtual void OnInit() = 0;
    /// A button pressed or a control's notification. The Cancel button and Esc
    /// close the dialog unless the form answers true.
    virtual bool OnCommand(int control, int notification) = 0;
    /// Any other message. True when it is done with; `result` then goes back.
    virtual bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
    /// The window is going: references to host objects end here.
    virtual void OnClosed() {}

    HWND Window() const noexcept { return window_; }
    HWND Control(int id) const noexcept { return GetDlgItem(window_, id); }
    void SetText(int id, const std::wstring& text) const noexcept { SetDlgItemTextW(window_, id, text.c_str()); }
    std::wstring GetText(int id) const;
    void Close() noexcept { EndDialog(window_, 0); }

  private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam);

    HWND window_ = nullptr;
};

} // namespace tam
