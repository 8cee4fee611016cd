#pragma once

#include "core/TextEditorState.h"
#include "dialogs/TextInput.h"
#include "dialogs/ValueForm.h"

#include <optional>
#include <string>
#include <string_view>

namespace tam {

/// The text value editor.
class frmCPModif2 final : public ValueForm, private TextInput::Rules {
  public:
    frmCPModif2() noexcept;

  protected:
    void ReadDataPoint() override;
    void OnInit() override;
    bool OnCommand(int control, int notification) override;

  private:
    // TextInput::Rules
    KeyAnswer Key(wchar_t key, const EditText& edit) override;
    std::optional<std::wstring> Insertion(std::wstring_view pasted, const EditText& edit) override;
    void Confirm() override;
    void OnKeyFailure(const com::Failure& failure) noexcept override;

    void OnTextChanged();
    void OkStep();

    TextInput input_;
    std::optional<TextEditorState> state_;
    bool filling_ = false;
};

} // namespace tam
