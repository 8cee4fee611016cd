#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

namespace tam {

/// The classic run-time errors. A host sees error n as HRESULT 0x800A0000 + n.
enum class RunTime : std::int32_t {
    InvalidCall = 5,
    Overflow = 6,
    Subscript = 9,
    TypeMismatch = 13,
    ObjectNotSet = 91,
    DuplicateKey = 457,
};

/// The standard text of a classic run-time error, without a closing full stop.
std::wstring_view StandardText(RunTime number);

/// A run-time error of the component. It becomes an HRESULT with error
/// information at the COM boundary, or a report in members that trap.
class RunTimeError : public std::exception {
  public:
    explicit RunTimeError(RunTime number);
    /// An error with a number outside the classic range, such as 0x80040201.
    RunTimeError(std::int32_t code, std::wstring source, std::wstring description);

    /// The HRESULT: 0x800A0000 + n for a classic error.
    std::int32_t Code() const noexcept { return code_; }
    /// The number as a message shows it: n for a classic error, else the HRESULT.
    std::int32_t Number() const noexcept;
    /// Empty means: the component itself.
    const std::wstring& Source() const noexcept { return source_; }
    const std::wstring& Description() const noexcept { return description_; }
    const char* what() const noexcept override { return "run-time error of the component"; }

  private:
    std::int32_t code_;
    std::wstring source_;
    std::wstring description_;
};

} // namespace tam
