#include "dialogs/frmError.h"

#include "common/ErrorReport.h"
#include "common/resource.h"

namespace tam {

void frmError::ShowModal() noexcept {
    Show(IDD_ERROR);
}

void frmError::OnInit() {
    SetWindowTextW(Window(), state_.Caption().c_str());
    SendMessageW(Control(IDC_ERROR_ICON), STM_SETICON,
                 reinterpret_cast<WPARAM>(LoadIconW(nullptr, IDI_ERROR)), 0);
    SetText(IDC_ERROR_TITLE, state_.Application());
    description_.Show(Control(IDC_ERROR_DESCRIPTION), state_.Description());
    advancedInfo_.Show(Control(IDC_ERROR_ADVANCED_INFO), state_.AdvancedInfo());

    RECT window{};
    RECT advanced{};
    GetWindowRect(Window(), &window);
    GetWindowRect(Control(IDC_ERROR_DETAILS), &advanced);
    fullHeight_ = window.bottom - window.top;
    foldedHeight_ = advanced.top - window.top;
    ApplyAdvanced();
    Centre();
    StartAt(IDOK);
}

bool frmError::OnCommand(int control, int) {
    if (control == IDC_ERROR_ADVANCED) {
        state_.ToggleAdvanced();
        ApplyAdvanced();
        return true;
    }
    if (control == IDOK) {
        Close();
        return true;
    }
    return false;
}

void frmError::ApplyAdvanced() {
    SetText(IDC_ERROR_ADVANCED, state_.AdvancedCaption());
    const int show = state_.IsAdvancedShown() ? SW_SHOW : SW_HIDE;
    ShowWindow(Control(IDC_ERROR_DETAILS), show);
    ShowWindow(Control(IDC_ERROR_ADVANCED_INFO), show);
    RECT window{};
    GetWindowRect(Window(), &window);
    SetWindowPos(Window(), nullptr, 0, 0, window.right - window.left,
                 state_.IsAdvancedShown() ? fullHeight_ : foldedHeight_,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    KeepOnScreen();
}

void ShowErrorReport(const ErrorReport& report) noexcept {
    com::Attempt([&] {
        frmError form(ErrorReportState(report.application, report.description, report.callingObject,
                                       report.callingFunction, report.source));
        form.ShowModal();
    });
}

} // namespace tam
