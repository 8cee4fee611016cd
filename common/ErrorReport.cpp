#include "common/ErrorReport.h"

#include "common/ComponentState.h"

#include <windows.h>

namespace tam {

namespace {
ErrorReportDialog reportDialog = nullptr;
} // namespace

void SetErrorReportDialog(ErrorReportDialog show) noexcept {
    reportDialog = show;
}

void ShowErrorReport(const com::Failure& failure, std::wstring_view callingObject,
                     std::wstring_view callingFunction) noexcept {
    com::Attempt([&] {
        ErrorReport report;
        report.application = ComponentTitle();
        report.description = failure.Description();
        report.callingObject = callingObject;
        report.callingFunction = callingFunction;
        report.source = failure.Source();
        reportDialog(report);
    });
}

void ShowBox(const std::wstring& text, const std::wstring& caption, unsigned icon) noexcept {
    MessageBoxW(GetActiveWindow(), text.c_str(), caption.c_str(), MB_OK | icon);
}

} // namespace tam
