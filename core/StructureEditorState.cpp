#include "core/StructureEditorState.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

namespace tam {

EditorKind EditorFor(GeneralType type) noexcept {
    switch (type) {
    case GeneralType::SignedNumeric:
    case GeneralType::UnsignedNumeric:
    case GeneralType::Float:
        return EditorKind::Numeric;
    case GeneralType::Textual:
        return EditorKind::Text;
    case GeneralType::Enum:
        return EditorKind::Enumeration;
    case GeneralType::Struct:
        return EditorKind::Structure;
    case GeneralType::Bitfield:
        return EditorKind::BitField;
    case GeneralType::Other:
        break;
    }
    return EditorKind::None;
}

std::vector<int> ColumnWidths(const std::vector<int>& wanted, int room) {
    // From the narrowest on each takes at most an equal share of what is left.
    std::vector<std::size_t> order(wanted.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return std::pair(wanted[a], a) < std::pair(wanted[b], b);
    });
    std::vector<int> widths(wanted.size());
    int left = room;
    int columns = static_cast<int>(wanted.size());
    for (const std::size_t column : order) {
        widths[column] = std::min(wanted[column], left / columns);
        left -= widths[column];
        --columns;
    }
    if (!widths.empty()) {
        widths.back() += left;
    }
    return widths;
}

int CutRowHeight(int heightOfRows, int rowHeight) noexcept {
    return heightOfRows > 0 && rowHeight > 0 ? heightOfRows % rowHeight : 0;
}

} // namespace tam
