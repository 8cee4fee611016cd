#pragma once

#include "tests/support/Component.h"
#include "tests/support/Read.h"

#include <string>
#include <vector>

namespace benchmark {

/// Name of the definition file, beside the DLL.
inline constexpr const wchar_t* kDefinition = L"Bench";
std::wstring DefinitionPath();

/// The key that the modules are given.
inline constexpr const wchar_t* kKey = L"PROJECT\\SHEET\\MODULE";

/// What the jobs of one size work on.
struct Size {
    explicit Size(long count);

    long points;
    std::wstring stream;
    support::TextFile definitionFile;
    support::Document definition;
    std::vector<std::wstring> names;
    std::vector<std::wstring> outputs;
    long inputs = 0;
};

} // namespace benchmark
