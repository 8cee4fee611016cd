#pragma once

#include <string>

namespace com {

/// The value of a variable of the process's environment; empty without one.
std::wstring EnvironmentText(const wchar_t* name);

} // namespace com
