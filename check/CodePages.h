#pragma once

#include <array>
#include <string>
#include <string_view>

namespace check {

class Findings;
struct Span;

inline constexpr std::string_view kUtf8 = "UTF-8";
inline constexpr std::string_view kUtf16 = "UTF-16";
inline constexpr std::string_view kAscii = "US-ASCII";

/// Of one byte for each character, of which the lower half is ASCII's.
struct CodePage {
    std::string_view name;
    /// Whether every parser loads it that the component may have.
    bool isCommon;
    std::array<char16_t, 128> upper;
};

/// Those that every parser loads that the component may have, for people.
inline constexpr const char* kCommonEncodings =
    "UTF-8, UTF-16, US-ASCII, ISO-8859-1 to -9, -11, -13 and -15, or windows-1250 to -1258";

/// Null when there is none of the name, which is in capitals.
const CodePage* FindCodePage(std::string_view name);

/// The standard name of an encoding that goes by another one, in capitals; empty when it is none.
std::string StandardName(std::string_view name);

/// A finding: the encoding that is declared is none, or none that is read.
void ReportUnknownEncoding(std::string_view name, Span declared, Findings& findings);

} // namespace check
