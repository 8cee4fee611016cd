#pragma once

#include "core/EnumEditorState.h"
#include "dialogs/ValueForm.h"

#include <optional>
#include <string>

namespace tam {

/// The enumeration value editor.
class frmCPModif3 final : public ValueForm {
  public:
    frmCPModif3() noexcept;

  protected:
    void ReadDataPoint() override;
    void OnInit() override;
    bool OnCommand(int control, int notification) override;

  private:
    /// The text of the entry that the list shows; empty when it shows none.
    std::wstring Shown() const;
    bool IsChosen() const noexcept;
    void OkStep();

    std::optional<EnumEditorState> state_;
};

} // namespace tam
