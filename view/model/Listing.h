#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace view {

/// How a list is sorted; by nothing when it is in the order of its source.
struct SortOrder {
    std::size_t column = 0;
    bool isDownward = false;
    bool operator==(const SortOrder&) const = default;
};

/// Which rows of a list are shown, and where: sorted by a column, and only those in
/// which the typed words occur. It holds no cells but asks for them; a row is told by
/// its number in the source. Look-ups take constant time.
class Listing {
  public:
    using Cell = std::function<std::wstring_view(std::size_t row, std::size_t column)>;

    /// `cell` is asked again whenever it is sorted; it must outlive this, and its
    /// answers the next call.
    explicit Listing(Cell cell) : cell_(std::move(cell)) {}

    /// A new source. The order and the typed words stay.
    void Reset(std::size_t rows, std::size_t columns);
    /// A row has other cells. It stays where it is until the list is sorted or
    /// filtered the next time: what a person works on does not run away.
    void Changed(std::size_t row);

    /// Equal rows keep the order of the source.
    void Sort(std::optional<SortOrder> order);
    /// What a click on a column's head does: upward, downward, then as in the source.
    void ToggleSort(std::size_t column);
    const std::optional<SortOrder>& Order() const noexcept { return order_; }

    /// Shows the rows in which each word occurs, in any column, in any letter case.
    void Filter(std::wstring_view words);
    const std::wstring& Words() const noexcept { return words_; }

    /// How many rows are shown, and how many there are.
    std::size_t Shown() const noexcept { return shown_.size(); }
    std::size_t Rows() const noexcept { return texts_.size(); }
    /// The row at a place of the list.
    std::size_t RowAt(std::size_t place) const { return shown_.at(place); }
    /// Where a row is shown; none when the filter hides it.
    std::optional<std::size_t> PlaceOf(std::size_t row) const;

    /// The next place at which the cell of a column begins with this text, in any
    /// letter case, from a place on and around the end. None when there is none.
    std::optional<std::size_t> FindBeginning(std::wstring_view text, std::size_t column,
                                             std::size_t from) const;

  private:
    std::wstring TextOf(std::size_t row) const;
    void Arrange();
    void Select();

    Cell cell_;
    std::size_t columns_ = 0;
    /// All cells of a row in capitals, to search in.
    std::vector<std::wstring> texts_;
    std::optional<SortOrder> order_;
    std::wstring words_;
    /// All rows as they are sorted; those that are shown; where each row is shown.
    std::vector<std::size_t> sorted_;
    std::vector<std::size_t> shown_;
    std::vector<std::size_t> places_;
};

} // namespace view
