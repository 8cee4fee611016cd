#pragma once

#include "tests/support/TypeLibrary.h"

#include <string>
#include <vector>

namespace contract {

using support::TypeLibrary;

/// A page of docs/api.
struct ApiPage {
    std::string file;
    std::string text;
};

/// Describes the type libraries of both DLLs: an index and a page for each
/// library, in Markdown. An interface stands on the page of the library that it
/// comes from, not where another library repeats it.
std::vector<ApiPage> ApiPages(const TypeLibrary& faces, const TypeLibrary& component,
                              const TypeLibrary& services);

} // namespace contract
