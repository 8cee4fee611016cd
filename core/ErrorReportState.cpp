#include "core/ErrorReportState.h"

#include <utility>

namespace tam {

ErrorReportState::ErrorReportState(const std::wstring& application, std::wstring description,
                                   const std::wstring& callingObject, const std::wstring& callingFunction,
                                   const std::wstring& source)
    : application_(application)
    , caption_(application + L" - Error report")
    , description_(std::move(description))
    , advancedInfo_(L"* Source application (Err.Source): \r\n"
                    L"  " +
                    source +
                    L"\r\n"
                    L"* Calling object (Me.Name or module name): \r\n"
                    L"  " +
                    callingObject +
                    L"\r\n"
                    L"* Calling function: \r\n"
                    L"  " +
                    callingFunction) {}

const wchar_t* ErrorReportState::AdvancedCaption() const noexcept {
    return advancedShown_ ? L"Advanced Information  < <" : L"Advanced Information  > >";
}

} // namespace tam
