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

bool Trap(std::wstring_view callingObject, std::wstring_view callingFunction, com::Body body) noexcept {
    com::ForgetErrors(); // what an earlier call left is not this member's error
    const auto failure = com::Attempt(body);
    if (failure) {
        ShowErrorReport(*failure, callingObject, callingFunction);
    }
    return !failure;
}

void ShowBox(const std::wstring& text, const std::wstring& caption, unsigned icon) noexcept {
    MessageBoxW(GetActiveWindow(), text.c_str(), caption.c_str(), MB_OK | icon);
}

} // namespace tam
