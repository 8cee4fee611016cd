#pragma once

#include "dialogs/BitEditorState.h"
#include "dialogs/ValueForm.h"

#include <cstddef>
#include <optional>

namespace tam {

/// The bit-field value editor. A bit is flipped by a double-click, or, for a
/// hand on the keyboard, by the space bar; the arrow keys go from bit to bit.
class frmCPModif5 final : public ValueForm {
  public:
    frmCPModif5() noexcept;

  protected:
    void ReadDataPoint() override;
    void OnInit() override;
    bool OnCommand(int control, int notification) override;
    bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

  private:
    static LRESULT CALLBACK BitProcedure(HWND label, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    bool HandleBit(HWND label, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
    bool HandleKey(std::size_t bit, WPARAM key);
    /// Leaves the grid of a type of one byte without its upper half.
    void HideUpperByte() const;
    void ShowBit(std::size_t bit) const;
    void Flip(std::size_t bit);
    void OkStep();

    std::optional<BitEditorState> state_;
    WNDPROC plainLabel_ = nullptr;
};

} // namespace tam
