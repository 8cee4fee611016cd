#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace orv {

/// What the host knows of a standard network variable type.
struct TypeFacts {
    std::uint16_t index = 0;
    std::wstring_view name;
    /// The table's unit text; empty where a type has no unit.
    std::wstring_view unit;
    /// Length of a value in bytes; 0 where the table states none.
    std::uint8_t length = 0;
};

/// The type with this identifier, its index ("105") or its name
/// ("SNVT_temp_p"); none for any other text.
std::optional<TypeFacts> FindType(std::wstring_view identifier) noexcept;

} // namespace orv
