#include "core/GeneralType.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace tam {

namespace {

struct Row {
    std::wstring_view text;
    std::wstring_view luiType;
    bool isNumeric;
    bool hasNumericFields;
};

/// In the order of the enumeration.
constexpr Row kRows[] = {
    {L"", L"", false, false},
    {L"SignedNumeric", L"Numeric", true, true},
    {L"UnsignedNumeric", L"Numeric", true, true},
    {L"Float", L"Float", true, true},
    {L"Enum", L"Logic", false, false},
    {L"Bitfield", L"Numeric", false, true},
    {L"Textual", L"Textual", false, false},
    {L"Struct", L"Invalid", false, false},
};

const Row& RowOf(GeneralType type) noexcept {
    return kRows[static_cast<std::size_t>(type)];
}

} // namespace

GeneralType GeneralTypeOf(std::wstring_view text) noexcept {
    const auto* const found = std::ranges::find(kRows, text, &Row::text);
    return found != std::end(kRows) ? static_cast<GeneralType>(found - kRows) : GeneralType::Other;
}

std::wstring_view GeneralTypeText(GeneralType type) noexcept {
    return RowOf(type).text;
}

bool IsNumeric(GeneralType type) noexcept {
    return RowOf(type).isNumeric;
}

bool HasNumericFields(GeneralType type) noexcept {
    return RowOf(type).hasNumericFields;
}

std::wstring_view LuiTypeOf(GeneralType type) noexcept {
    return RowOf(type).luiType;
}

} // namespace tam
