#pragma once

#include "core/RenameState.h"
#include "dialogs/ModalDialog.h"

#include <string>
#include <utility>

namespace tam {

/// The dialog in which the user types the name of a device. It has no default
/// button while the name has the focus: Enter is the text box's there.
class frmRename final : public ModalDialog {
  public:
    explicit frmRename(RenameState state) : state_(std::move(state)) {}
    /// The user's choice and the name. Throws what kept the dialog from being shown.
    const RenameState& ShowModal();

  protected:
    void OnInit() override;
    std::wstring Subject() const override { return state_.DeviceName(); }
    bool OnCommand(int control, int notification) override;
    bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

  private:
    static LRESULT CALLBACK TextProcedure(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    bool HandleText(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
    static LRESULT CALLBACK ButtonProcedure(HWND button, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    LRESULT PlainText(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) const noexcept;
    void OnOk();

    RenameState state_;
    WNDPROC plainText_ = nullptr;
};

} // namespace tam
