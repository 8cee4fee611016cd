#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <string>
#include <string_view>

namespace view {

enum class Kind { Input, Output, Attribute };

/// A point of the open module. Names are unique among the points of one kind.
struct PointId {
    Kind kind = Kind::Attribute;
    std::wstring name;
    auto operator<=>(const PointId&) const = default; // NOLINT(modernize-use-nullptr): it has none
};

/// One point as the grid shows it. All texts are as a reader is to see them.
struct Row {
    PointId id;
    /// Its place among the points of its kind, from 0.
    std::size_t index = 0;
    std::wstring type = {};
    std::wstring value = {};
    /// The value in the user's words, with its unit.
    std::wstring displayed = {};
    std::wstring unit = {};
    std::wstring defaultValue = {};
    std::wstring address = {};
    std::wstring visible = {};
    /// Its value is not in the file.
    bool isUnsaved = false;
};

enum class Column : std::size_t { Name, Type, Value, Displayed, Unit, DefaultValue, Address, Visible };
inline constexpr std::size_t kColumns = 8;

inline std::wstring_view CellOf(const Row& row, Column column) noexcept {
    const std::array<const std::wstring*, kColumns> cells = {&row.id.name,   &row.type,   &row.value,
                                                             &row.displayed, &row.unit,   &row.defaultValue,
                                                             &row.address,   &row.visible};
    return *cells.at(static_cast<std::size_t>(column));
}

} // namespace view
