#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tam {

/// Letter case one character to one character, without locale, the same on
/// every machine. Covers Latin with the letters of the languages that are
/// written in it (Romanian and Vietnamese, say), Greek and Cyrillic; any other
/// character, and a letter without a partner of its own among them (ß, µ, the
/// Turkish i's), stays as it is.
wchar_t UpperCase(wchar_t c);
wchar_t LowerCase(wchar_t c);
std::wstring UpperCase(std::wstring_view text);
std::wstring LowerCase(std::wstring_view text);

bool EqualIgnoringCase(std::wstring_view a, std::wstring_view b);

/// Hash and equality of keys that differ in case only. They fold as they go, so
/// that a look-up makes no copy of the key. By capitals, not small letters: both
/// small sigmas have the same one.
struct FoldedHash {
    using is_transparent = void;
    std::size_t operator()(std::wstring_view key) const;
};
struct FoldedEqual {
    using is_transparent = void;
    bool operator()(std::wstring_view a, std::wstring_view b) const { return EqualIgnoringCase(a, b); }
};

} // namespace tam
