#pragma once

#include <string>
#include <string_view>

namespace tam {

// A process that nobody attends: what would wait for a user is written down.

/// The environment variable that says so. It is read whenever something is to be
/// shown, so a host may set it for its own process at any time.
inline constexpr const wchar_t* kUnattendedVariable = L"O_TAM_ID_UNATTENDED";

/// Whether a value of the variable means that nobody attends: any but none and "0".
bool IsUnattendedBy(std::wstring_view value) noexcept;
/// The file that it names; empty for "1", which names none.
std::wstring_view UnattendedFile(std::wstring_view value) noexcept;

/// What was not shown.
struct Unshown {
    /// "box", "report", "dialog", "view" or "data sheet".
    std::wstring kind;
    std::wstring title;
    std::wstring text;
    /// Of a report: the procedure and the class that it names, and the error's source.
    std::wstring label;
    std::wstring place;
    std::wstring source;
};

/// It as one line of JSON without a line break. Half of a surrogate pair is written
/// as an escape, so that the line is valid in UTF-8. `time` is when it happened.
std::wstring JsonLine(const Unshown& unshown, std::wstring_view time);

} // namespace tam
