#include "core/RenameState.h"

#include <algorithm>
#include <utility>

namespace tam {

namespace {

bool IsLetter(wchar_t c) noexcept {
    return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z');
}

bool IsAllowed(wchar_t c) noexcept {
    return IsLetter(c) || (c >= L'0' && c <= L'9') || c == L'_';
}

} // namespace

RenameState::RenameState(std::wstring deviceName, std::wstring deviceKey)
    : deviceName_(std::move(deviceName)), deviceKey_(std::move(deviceKey)) {}

const wchar_t* RenameState::Refusal(std::wstring_view name, wchar_t firstInAnsi) noexcept {
    if (!IsLetter(firstInAnsi)) {
        return L"The name have to start with a letter.";
    }
    if (!std::all_of(name.begin(), name.end(), IsAllowed)) {
        return L"The name haven't to contain special keys.";
    }
    return L"";
}

void RenameState::Confirm(std::wstring name) noexcept {
    deviceName_ = std::move(name);
    retValue_ = kConfirmed;
}

} // namespace tam
