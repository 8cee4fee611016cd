#pragma once

#include <cstdint>
#include <string_view>

namespace tam {

/// What kind of value a type has. The catalogue says it in a text, which is what
/// hosts are answered, any other text included.
enum class GeneralType : std::uint8_t {
    Other,
    SignedNumeric,
    UnsignedNumeric,
    Float,
    Enum,
    Bitfield,
    Textual,
    Struct,
};

/// The kind that a text names; the comparison is exact.
GeneralType GeneralTypeOf(std::wstring_view text) noexcept;
/// The text that names the kind; empty for Other.
std::wstring_view GeneralTypeText(GeneralType type) noexcept;

/// A number with a unit. The values of a bit field are not.
bool IsNumeric(GeneralType type) noexcept;
/// Whether the catalogue gives limits, coefficients and a length for such a type.
bool HasNumericFields(GeneralType type) noexcept;
/// The coarser kind that hosts ask for as LUIType; empty for Other.
std::wstring_view LuiTypeOf(GeneralType type) noexcept;

} // namespace tam
