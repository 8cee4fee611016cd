#pragma once

#include <string>
#include <string_view>

namespace view {

/// What a cell is sorted by: numbers as numbers, "AO2" before "AO10", letter case
/// does not count.
class CellKey {
  public:
    explicit CellKey(std::wstring_view cell);

    /// An empty cell stands last, whichever way the column is sorted.
    bool IsEmpty() const noexcept { return kind_ == Kind::Empty; }
    /// Below 0, 0 or above 0. Numbers come before texts; after equal numbers the
    /// rest of the cell decides ("105 temp_p").
    int Compare(const CellKey& other) const noexcept;

  private:
    enum class Kind { Number, Text, Empty };
    Kind kind_ = Kind::Empty;
    double number_ = 0;
    /// After the number, in capitals.
    std::wstring rest_;
};

/// Compares texts in one letter case; runs of digits count as numbers of any length.
int CompareNaturally(std::wstring_view left, std::wstring_view right) noexcept;

} // namespace view
