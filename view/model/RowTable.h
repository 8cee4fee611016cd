#pragma once

#include "view/model/Listing.h"
#include "view/model/Row.h"

#include <cstddef>
#include <map>
#include <optional>
#include <vector>

namespace view {

/// The points of one grid, and which of them are shown.
class RowTable {
  public:
    RowTable();
    // The listing asks this very table for its cells.
    RowTable(const RowTable&) = delete;
    RowTable& operator=(const RowTable&) = delete;

    /// The points of a document. The order and the typed words stay.
    void Assign(std::vector<Row> rows);
    /// Puts a row in the place of the one of the same point; false when there is none.
    bool Update(Row row);
    /// Marks a point as unsaved or not; false when it is not in this table.
    bool MarkUnsaved(const PointId& id, bool isUnsaved);

    const std::vector<Row>& Rows() const noexcept { return rows_; }
    Listing& List() noexcept { return list_; }
    const Listing& List() const noexcept { return list_; }

    /// The row at a place of the list as it is shown.
    const Row& At(std::size_t place) const { return rows_[list_.RowAt(place)]; }
    const Row* Find(const PointId& id) const;
    /// Where a point is shown; none when the filter hides it or it is not there.
    std::optional<std::size_t> PlaceOf(const PointId& id) const;

  private:
    std::vector<Row> rows_;
    std::map<PointId, std::size_t> numbers_;
    Listing list_;
};

} // namespace view
