#pragma once

#include <string>

namespace bench {

/// Writes to the standard output. False, with a word on the error output, when
/// not all of it arrived.
bool Print(const std::string& text);

/// Writes to the error output; nobody is left to tell when that fails.
void Complain(const std::string& text);

} // namespace bench
