#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tam {

/// The rename dialog: a short identifier typed by the user, and the user's choice.
class RenameState {
  public:
    static constexpr std::size_t kMostCharacters = 6;
    static constexpr std::int16_t kConfirmed = 1;
    static constexpr std::int16_t kCancelled = 2;

    RenameState(std::wstring deviceName, std::wstring deviceKey);

    /// The name shown at opening; after OK the one typed.
    const std::wstring& DeviceName() const noexcept { return deviceName_; }
    /// Kept for the caller; the dialog does not use it.
    const std::wstring& DeviceKey() const noexcept { return deviceKey_; }
    std::int16_t RetValue() const noexcept { return retValue_; }

    /// What the text box opens with: no more than it accepts.
    std::wstring ShownName() const { return deviceName_.substr(0, kMostCharacters); }
    /// Whether a character that is typed into the name confirms it. The key code 0
    /// does; any other, Enter's too, is left to the text box.
    static bool IsConfirmedBy(wchar_t key) noexcept { return key == 0; }
    static bool IsOkEnabled(std::wstring_view text) noexcept { return !text.empty(); }

    /// Why a name is refused, as the user is told; empty for a good one. What
    /// counts as its first letter is its first character as the system's ANSI
    /// code page has it.
    static const wchar_t* Refusal(std::wstring_view name, wchar_t firstInAnsi) noexcept;
    /// Takes over a name that is not refused.
    void Confirm(std::wstring name) noexcept;
    /// Cancel was pressed, or a name refused.
    void Cancel() noexcept { retValue_ = kCancelled; }

  private:
    std::wstring deviceName_;
    std::wstring deviceKey_;
    std::int16_t retValue_ = kCancelled;
};

} // namespace tam
