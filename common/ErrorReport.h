#pragma once

#include "com/Boundary.h"

#include <string>
#include <string_view>

namespace tam {

/// The five texts of an error report, in the order of its set-up operation.
struct ErrorReport {
    std::wstring application;
    std::wstring description;
    /// Class or module, such as "O_Tam_id Class Module CDBInput".
    std::wstring callingObject;
    /// Procedure, such as "Sub XmlLoad".
    std::wstring callingFunction;
    std::wstring source;
};

/// Shows a report as a modal dialog. Traps nothing and throws nothing: it is the
/// end of every error path.
using ErrorReportDialog = void (*)(const ErrorReport& report) noexcept;

/// Hands the dialog down to the reports, which lie below the dialogs. Called once,
/// before any other code of the component runs.
void SetErrorReportDialog(ErrorReportDialog show) noexcept;

/// Shows what was trapped in a member.
void ShowErrorReport(const com::Failure& failure, std::wstring_view callingObject,
                     std::wstring_view callingFunction) noexcept;

/// Runs the body of a member that traps: what it throws is shown, and the
/// member goes on to its default result. True when nothing was thrown.
bool Trap(std::wstring_view callingObject, std::wstring_view callingFunction, com::Body body) noexcept;

/// A message box, modal to the host's active window, with an OK button alone.
/// The only place that shows one; written down instead when nobody attends. `icon`
/// is an MB_ICON value, 0 for none.
void ShowBox(const std::wstring& text, const std::wstring& caption, unsigned icon = 0) noexcept;

} // namespace tam
