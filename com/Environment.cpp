#include "com/Environment.h"

#include <windows.h>

namespace com {

std::wstring EnvironmentText(const wchar_t* name) {
    std::wstring value;
    // The answer is the length where the place is large enough, else the size wanted:
    // another thread may have set a longer value between two calls.
    for (DWORD size = GetEnvironmentVariableW(name, nullptr, 0); size > value.size();) {
        value.resize(size);
        size = GetEnvironmentVariableW(name, value.data(), size);
        if (size < value.size()) {
            value.resize(size);
            break;
        }
    }
    return value;
}

} // namespace com
