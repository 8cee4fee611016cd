#include "view/model/RowTable.h"

#include <utility>

namespace view {

RowTable::RowTable()
    : list_([this](std::size_t row, std::size_t column) {
        return CellOf(rows_[row], static_cast<Column>(column));
    }) {}

void RowTable::Assign(std::vector<Row> rows) {
    rows_ = std::move(rows);
    numbers_.clear();
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        numbers_.try_emplace(rows_[i].id, i);
    }
    list_.Reset(rows_.size(), kColumns);
}

bool RowTable::Update(Row row) {
    const auto found = numbers_.find(row.id);
    if (found == numbers_.end()) {
        return false;
    }
    rows_[found->second] = std::move(row);
    list_.Changed(found->second);
    return true;
}

bool RowTable::MarkUnsaved(const PointId& id, bool isUnsaved) {
    const auto found = numbers_.find(id);
    if (found == numbers_.end()) {
        return false;
    }
    rows_[found->second].isUnsaved = isUnsaved;
    return true;
}

const Row* RowTable::Find(const PointId& id) const {
    const auto found = numbers_.find(id);
    return found != numbers_.end() ? &rows_[found->second] : nullptr;
}

std::optional<std::size_t> RowTable::PlaceOf(const PointId& id) const {
    const auto found = numbers_.find(id);
    return found != numbers_.end() ? list_.PlaceOf(found->second) : std::nullopt;
}

} // namespace view
