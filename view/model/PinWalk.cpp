#include "view/model/PinWalk.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <tuple>

namespace view {

namespace {

using drawing::PinId;
using drawing::Rectangle;
using drawing::Side;

double MiddleX(const Rectangle& area) noexcept {
    return area.x + area.width / 2;
}

double MiddleY(const Rectangle& area) noexcept {
    return area.y + area.height / 2;
}

bool IsAbove(const Rectangle& area, const Rectangle& other) noexcept {
    return MiddleY(area) < MiddleY(other);
}

bool ShareAColumn(const Rectangle& left, const Rectangle& right) noexcept {
    return left.x < right.x + right.width && right.x < left.x + left.width;
}

std::size_t CountOf(const drawing::Sheet& sheet, std::size_t block, Side side) {
    const drawing::Block& known = block == 0 ? sheet.module : sheet.channels.at(block - 1);
    return side == Side::Input ? known.inputs.size() : known.outputs.size();
}

/// The pin of the next row in the column, of its block or of the one above or below.
std::optional<PinId> NextInColumn(const drawing::Drawing& drawing, const Rectangle& area, bool isUp) {
    std::optional<PinId> nearest;
    double least = 0;
    for (const drawing::Spot& spot : drawing.spots) {
        const bool isThere = isUp ? IsAbove(spot.area, area) : IsAbove(area, spot.area);
        if (!isThere || !ShareAColumn(spot.area, area)) {
            continue;
        }
        const double distance = std::abs(MiddleY(spot.area) - MiddleY(area));
        if (!nearest || distance < least) {
            nearest = spot.pin;
            least = distance;
        }
    }
    return nearest;
}

/// The pin beside it in a neighbour: the channels are those of the module, and it theirs.
std::optional<PinId> NextInRow(const drawing::Drawing& drawing, const PinId& from, const Rectangle& area,
                               bool isLeft) {
    std::optional<PinId> nearest;
    std::tuple<double, double> least;
    for (const drawing::Spot& spot : drawing.spots) {
        const bool isNeighbour = (spot.pin.block == 0) != (from.block == 0);
        const bool isThere = isLeft ? MiddleX(spot.area) < MiddleX(area) : MiddleX(spot.area) > MiddleX(area);
        const std::tuple distance(std::abs(MiddleY(spot.area) - MiddleY(area)),
                                  std::abs(MiddleX(spot.area) - MiddleX(area)));
        if (isNeighbour && isThere && (!nearest || distance < least)) {
            nearest = spot.pin;
            least = distance;
        }
    }
    return nearest;
}

} // namespace

std::optional<PinId> NextPin(const drawing::Sheet& sheet, const drawing::Drawing& drawing,
                             const std::optional<PinId>& from, Direction direction) {
    if (drawing.spots.empty()) {
        return std::nullopt;
    }
    if (!from) {
        return drawing.spots.front().pin;
    }
    const Rectangle* const area = drawing::AreaOf(drawing, *from);
    if (area == nullptr) {
        return std::nullopt;
    }
    if (direction == Direction::Up || direction == Direction::Down) {
        return NextInColumn(drawing, *area, direction == Direction::Up);
    }
    const Side side = direction == Direction::Left ? Side::Input : Side::Output;
    const std::size_t count = CountOf(sheet, from->block, side);
    if (from->side != side && count > 0) {
        const PinId beside{from->block, side, std::min(from->index, count - 1)};
        // A channel has its outputs below its inputs.
        const Rectangle* const there = drawing::AreaOf(drawing, beside);
        if (there != nullptr && !ShareAColumn(*there, *area)) {
            return beside;
        }
    }
    return NextInRow(drawing, *from, *area, direction == Direction::Left);
}

} // namespace view
