#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace bench {

/// Where a text goes: the width that its lines may have, and what can be shown there.
struct Screen {
    /// Places in a line; what is no terminal has a hundred.
    std::size_t width = 100;
    bool isTerminal = false;
    /// A terminal may have colours, unless the environment has NO_COLOR.
    bool isColoured = false;
};

/// The standard output, and the error output.
Screen OutputScreen();
Screen ErrorScreen();

enum class Ink { Heading, Fault, Good, Note };

/// The text in a colour, where the screen has colours; else as it is.
std::string Painted(std::string_view text, Ink ink, const Screen& screen);

/// Writes to the standard output. False, with a word on the error output, when
/// not all of it arrived.
bool Print(const std::string& text);

/// Writes to the error output; nobody is left to tell when that fails.
void Complain(const std::string& text);

/// Puts a line in the place of the last one on the error output, if that is a
/// terminal; an empty one takes it away.
void ShowProgress(std::string_view line);

} // namespace bench
