#pragma once

#include "core/BitEditorState.h"
#include "dialogs/ValueForm.h"

#include <cstddef>
#include <optional>

namespace tam {

/// The bit-field value editor. A bit is flipped by a double-click, or, for a
/// hand on the keyboard, by the space bar. All bits are one stop of the Tab key;
/// the arrow keys, Home and End go from bit to bit.
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
    /// The Tab key now stops at this bit, and no more at the one before.
    void MoveTabStop(std::size_t bit);
    void DrawFocus(std::size_t bit) const;
    void ShowBit(std::size_t bit) const;
    void Flip(std::size_t bit);
    void OkStep();

    std::optional<BitEditorState> state_;
    /// The bit that had the focus last.
    std::size_t tabStop_ = 0;
    WNDPROC plainLabel_ = nullptr;
};

} // namespace tam
