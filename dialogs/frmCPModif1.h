#pragma once

#include "core/NumericEditorState.h"
#include "dialogs/TextInput.h"
#include "dialogs/ValueForm.h"

#include <optional>
#include <string>
#include <string_view>

namespace tam {

/// The numeric value editor.
class frmCPModif1 final : public ValueForm, private TextInput::Rules {
  public:
    frmCPModif1() noexcept;

  protected:
    void ReadDataPoint() override;
    void OnInit() override;
    bool OnCommand(int control, int notification) override;
    void OnFinished() override;

  private:
    // TextInput::Rules
    KeyAnswer Key(wchar_t key, const EditText& edit) override;
    std::optional<std::wstring> Insertion(std::wstring_view pasted, const EditText& edit) override;
    void Confirm() override;
    void OnKeyFailure(const com::Failure& failure) noexcept override;

    void FillLabels() const;
    void OnTextChanged();
    void OnInvalidClicked();
    void OkStep();

    TextInput input_;
    std::optional<NumericEditorState> state_;
    /// The value text as the data point holds it: what the closing write-back writes.
    std::wstring held_;
    bool filling_ = false;
};

} // namespace tam
