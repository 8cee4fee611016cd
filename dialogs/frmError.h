#pragma once

#include "common/ErrorReport.h"
#include "core/ErrorReportState.h"
#include "dialogs/LongTextBox.h"
#include "dialogs/ModalDialog.h"

#include <utility>

namespace tam {

/// The error report: a short description and, on request, where it came from.
class frmError final : public ModalDialog {
  public:
    explicit frmError(ErrorReportState state) : state_(std::move(state)) {}
    void ShowModal() noexcept;

  protected:
    void OnInit() override;
    bool OnCommand(int control, int notification) override;

  private:
    /// Shows or hides the advanced part; the window ends below the last part shown.
    void ApplyAdvanced();

    ErrorReportState state_;
    LongTextBox description_;
    LongTextBox advancedInfo_;
    int fullHeight_ = 0;
    int foldedHeight_ = 0;
};

/// Shows a report; what SetErrorReportDialog is given.
void ShowErrorReport(const ErrorReport& report) noexcept;

} // namespace tam
