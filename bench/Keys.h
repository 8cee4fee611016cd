#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

/// One key press.
struct Stroke {
    enum class Kind {
        /// `character`, as a keyboard sends it.
        Character,
        /// The virtual key `key`.
        Key,
        /// `character` with the Alt key: the access key of a control.
        Access,
    };
    Kind kind = Kind::Character;
    wchar_t character = 0;
    WORD key = 0;
    /// As a key text writes it.
    std::wstring written;
};

/// A text that is no key text; what() says why.
class KeysError : public std::invalid_argument {
  public:
    using std::invalid_argument::invalid_argument;
};

/// Reads a key text:
///
///     characters           stand for themselves
///     {ENTER} {F2} ...     named keys, in any letter case; {TAB 3} is three of them
///     {ALT+x}              the control whose access key is x
///     {{} and {}}          the braces themselves
///
/// Throws KeysError.
std::vector<Stroke> ReadKeys(std::wstring_view text);

/// The names of the keys in braces, each as it is written.
const std::vector<std::wstring>& KeyNames();

} // namespace bench
