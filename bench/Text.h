#pragma once

#include <windows.h>

#include <cstddef>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

namespace bench {

/// A failure that the bench itself found: a file that cannot be read, a point
/// that is not there. Its code and text are shown like those of a failed call.
class BenchError : public std::exception {
  public:
    BenchError(HRESULT code, std::string text) : code_(code), text_(std::move(text)) {}
    HRESULT Code() const noexcept { return code_; }
    const char* what() const noexcept override { return text_.c_str(); }

  private:
    HRESULT code_;
    std::string text_;
};

/// The COM code of an error of Windows.
inline HRESULT CodeOf(DWORD error) noexcept {
    return HRESULT_FROM_WIN32(error);
}

/// Half a surrogate pair becomes U+FFFD.
std::string Utf8(std::wstring_view text);
/// Bytes that are no UTF-8 become U+FFFD.
std::wstring Wide(std::string_view text);

/// "0x800A005B"
std::string Hex(HRESULT code);
/// "1 input", "2 inputs"
std::string Count(std::size_t number, const std::string& noun);

/// In whichever letter case and whatever language the user has.
bool SameKey(const std::wstring& left, const std::wstring& right);

bool IsFile(const std::wstring& path);
std::wstring FullPath(const std::wstring& path);
/// The folder of this program, with the closing backslash.
std::wstring ProgramFolder();
/// The name of this program's file.
std::string ProgramName();

/// Throws a BenchError of an error of Windows: "<path> <what>: <the system's words>".
[[noreturn]] void ThrowFileError(const std::wstring& path, const char* what, DWORD error);

} // namespace bench
