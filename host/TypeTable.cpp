#include "host/TypeTable.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace orv {

namespace {

struct UnitRow {
    std::uint16_t index;
    std::wstring_view name;
    std::wstring_view unit;
};

constexpr UnitRow kUnits[] = {
#include "host/CatalogueUnits.inc"
};

struct LengthRow {
    std::uint16_t index;
    std::uint8_t length;
};

constexpr LengthRow kLengths[] = {
#include "host/CatalogueLengths.inc"
};

/// Both tables are made from one source, so a position fits both.
static_assert(std::ranges::equal(kUnits, kLengths, {}, &UnitRow::index, &LengthRow::index));
static_assert(std::ranges::is_sorted(kUnits, {}, &UnitRow::index));

constexpr std::size_t kLongestIndex = 5;

/// The number that stands for an index; none when the text is not just that,
/// such as "0105", which names no type.
std::optional<std::uint32_t> IndexOf(std::wstring_view text) noexcept {
    if (text.empty() || text.size() > kLongestIndex || text.front() == L'0') {
        return std::nullopt;
    }
    std::uint32_t index = 0;
    for (const wchar_t character : text) {
        if (character < L'0' || character > L'9') {
            return std::nullopt;
        }
        index = index * 10 + static_cast<std::uint32_t>(character - L'0');
    }
    return index;
}

const UnitRow* RowOf(std::wstring_view identifier) noexcept {
    const UnitRow* row = std::end(kUnits);
    if (const auto index = IndexOf(identifier)) {
        row = std::ranges::lower_bound(kUnits, *index, {}, &UnitRow::index);
        if (row != std::end(kUnits) && row->index != *index) {
            row = std::end(kUnits);
        }
    } else {
        row = std::ranges::find(kUnits, identifier, &UnitRow::name);
    }
    return row;
}

} // namespace

std::optional<TypeFacts> FindType(std::wstring_view identifier) noexcept {
    const UnitRow* row = RowOf(identifier);
    if (row == std::end(kUnits)) {
        return std::nullopt;
    }
    return TypeFacts{row->index, row->name, row->unit, kLengths[row - std::begin(kUnits)].length};
}

} // namespace orv
