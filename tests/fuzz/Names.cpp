// Input: a device's name, a line feed, the name typed. And what a name makes of
// itself: keys of items, references, letter case.
#include "core/Case.h"
#include "core/PointKeys.h"
#include "core/References.h"
#include "core/RenameState.h"
#include "Subjects.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace tam::fuzz {

namespace {

bool IsLetter(wchar_t c) {
    return std::wstring_view(L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz").find(c) !=
           std::wstring_view::npos;
}

std::wstring RefusalByRule(const std::wstring& name) {
    if (name.empty() || !IsLetter(name.front())) {
        return L"The name have to start with a letter.";
    }
    for (const wchar_t c : name) {
        if (!IsLetter(c) && c != L'_' &&
            std::wstring_view(L"0123456789").find(c) == std::wstring_view::npos) {
            return L"The name haven't to contain special keys.";
        }
    }
    return {};
}

void CheckDialog(const std::wstring& device, const std::wstring& typed) {
    RenameState state(device, L"key");
    Require(state.RetValue() == RenameState::kCancelled);
    Require(state.ShownName().size() <= RenameState::kMostCharacters &&
            device.starts_with(state.ShownName()));
    Require(RenameState::IsOkEnabled(typed) == !typed.empty());
    const std::wstring refusal = RenameState::Refusal(typed, typed.empty() ? L'\0' : typed.front());
    Require(refusal == RefusalByRule(typed));
    if (refusal.empty()) {
        state.Confirm(typed);
        Require(state.RetValue() == RenameState::kConfirmed && state.DeviceName() == typed);
    } else {
        state.Cancel();
        Require(state.RetValue() == RenameState::kCancelled && state.DeviceName() == device);
    }
    Require(state.DeviceKey() == L"key");
}

} // namespace

void FuzzNames(Input& input) {
    const std::wstring device = input.Line();
    const std::wstring typed = input.Rest();
    CheckDialog(device, typed);

    const std::wstring key(ReferenceKey(typed));
    const std::size_t last = typed.rfind(L'_');
    Require(key.size() == (last == std::wstring::npos ? typed.size() : last));
    Require(EqualIgnoringCase(key, typed.substr(0, key.size())));
    Require(EqualIgnoringCase(ReferenceKey(UpperCase(typed)), key));
    Require(ReferenceKey(key + L"_x") == key);
    Require(PointKey(std::make_shared<const std::wstring>(device), typed) == device + L"\\" + typed);
    const bool isZeros = typed.size() <= 6 && typed.find_first_not_of(L'0') == std::wstring::npos;
    Require(LeadsToAnOutput(std::wstring_view(typed)) == !isZeros);

    Require(UpperCase(UpperCase(typed)) == UpperCase(typed));
    Require(LowerCase(LowerCase(typed)) == LowerCase(typed));
    Require(UpperCase(LowerCase(typed)) == UpperCase(typed));
    Require(UpperCase(typed).size() == typed.size());
    Require(EqualIgnoringCase(typed, UpperCase(typed)) && EqualIgnoringCase(LowerCase(typed), typed));
    Require(FoldedHash()(typed) == FoldedHash()(UpperCase(typed)));
    Require(EqualIgnoringCase(device, typed) == (UpperCase(device) == UpperCase(typed)));
}

} // namespace tam::fuzz
