#pragma once

#include <string>

namespace tam {

/// What the error report shows, and whether its advanced part is open. The texts
/// are those that it was given.
class ErrorReportState {
  public:
    ErrorReportState(const std::wstring& application, std::wstring description,
                     const std::wstring& callingObject, const std::wstring& callingFunction,
                     const std::wstring& source);

    const std::wstring& Application() const noexcept { return application_; }
    const std::wstring& Caption() const noexcept { return caption_; }
    const std::wstring& Description() const noexcept { return description_; }
    /// Six lines, joined by CR LF.
    const std::wstring& AdvancedInfo() const noexcept { return advancedInfo_; }
    bool IsAdvancedShown() const noexcept { return advancedShown_; }
    const wchar_t* AdvancedCaption() const noexcept;
    void ToggleAdvanced() noexcept { advancedShown_ = !advancedShown_; }

  private:
    std::wstring application_;
    std::wstring caption_;
    std::wstring description_;
    std::wstring advancedInfo_;
    bool advancedShown_ = false;
};

} // namespace tam
