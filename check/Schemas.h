#pragma once

#include <span>
#include <string_view>

namespace check {

/// An XML Schema of a kind of documents, as schemas/ has it.
struct Schema {
    std::string_view file;
    std::string_view text;
};

std::span<const Schema> AllSchemas();

} // namespace check
