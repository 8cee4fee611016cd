#include "dialogs/ErrorReportState.h"

namespace tam {

namespace {

constexpr std::wstring::size_type kLongest = 1000;

/// A text as far as a person would read it. Documents can hold texts of
/// megabytes, and a text box without a blank to break at takes minutes for them.
std::wstring Shown(const std::wstring& text) {
    return text.size() <= kLongest ? text : text.substr(0, kLongest) + L"\x2026";
}

} // namespace

ErrorReportState::ErrorReportState(const std::wstring& application, const std::wstring& description,
                                   const std::wstring& callingObject, const std::wstring& callingFunction,
                                   const std::wstring& source)
    : caption_(application + L" - Error report")
    , description_(Shown(description))
    , advancedInfo_(L"* Source application (Err.Source): \r\n"
                    L"  " +
                    Shown(source) +
                    L"\r\n"
                    L"* Calling object (Me.Name or module name): \r\n"
                    L"  " +
                    Shown(callingObject) +
                    L"\r\n"
                    L"* Calling function: \r\n"
                    L"  " +
                    Shown(callingFunction)) {}

const wchar_t* ErrorReportState::AdvancedCaption() const noexcept {
    return advancedShown_ ? L"Advanced Information  < <" : L"Advanced Information  > >";
}

} // namespace tam
