#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace tests {

/// The version resource of a program or DLL.
class FileVersion {
  public:
    explicit FileVersion(const std::wstring& path);

    /// False when the file has none.
    bool IsThere() const noexcept { return !info_.empty(); }
    VS_FIXEDFILEINFO Fixed() const;
    /// An American English text of it; "(none)" without one.
    std::wstring Text(const wchar_t* name) const;

  private:
    std::vector<BYTE> info_;
};

} // namespace tests
