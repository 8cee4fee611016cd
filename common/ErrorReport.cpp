#include "common/ErrorReport.h"

#include "common/ComponentState.h"
#include "common/Unattended.h"
#include "core/ErrorReportState.h"

#include <windows.h>

namespace tam {

namespace {
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): the dialogs hand themselves down
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
        if (IsUnattended()) {
            const ErrorReportState state(report.application, report.description, report.callingObject,
                                         report.callingFunction, report.source);
            WriteUnshown({L"report", state.Caption(), report.description, report.callingFunction,
                          report.callingObject, report.source});
            return;
        }
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
    if (IsUnattended()) {
        com::Attempt([&] { WriteUnshown({L"box", caption, text, {}, {}, {}}); });
        return;
    }
    MessageBoxW(GetActiveWindow(), text.c_str(), caption.c_str(), MB_OK | icon);
}

} // namespace tam
