#pragma once

#include "dialogs/FieldList.h"
#include "dialogs/ValueForm.h"

#include <optional>
#include <vector>

namespace tam {

/// The structure value editor: a row for each field, whose own editor opens by
/// a double-click, the Edit button, the space bar or F2.
class frmCPModif4 final : public ValueForm {
  public:
    frmCPModif4() noexcept;

  protected:
    void ReadDataPoint() override;
    void OnInit() override;
    bool OnCommand(int control, int notification) override;
    bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
    void OnFinished() override;
    void OnReleased() noexcept override;

  private:
    bool OnListNotification(const NMHDR& header);
    void FillList() const;
    void FitColumns() const;
    /// Takes off the list what would show a row cut through.
    void FitRows() const;
    void ShowRow(int index, const FieldRow& row) const;
    int SelectedRow() const noexcept;
    /// Opens the editor of a row's field; nothing for -1.
    void EditRow(int row);
    void OpenEditor(const FieldRow& row);
    void RefreshValues();
    void WriteStructure();
    void OkStep();

    std::vector<FieldRow> rows_;
    /// What Cancel goes back to: the opening, or the last OK that failed when all
    /// fields had been written.
    std::optional<ValueSnapshot> opening_;
    bool confirmed_ = false;
};

} // namespace tam
