#pragma once

#include "drawing/DisplayList.h"
#include "drawing/Sheet.h"
#include "drawing/TextWidth.h"

#include <array>
#include <cstddef>
#include <vector>

namespace drawing {

/// A block with its measures, and its place once that is set.
class BlockBox {
  public:
    /// Side by side, an input and an output share a row, and what they are wired to
    /// stands outside. Below each other, each point has a row of its own, which lines
    /// can reach from either side; what it is wired to stands in the row.
    enum class Rows { SideBySide, BelowEachOther };

    /// The block must outlive this.
    BlockBox(const Block& block, std::size_t number, Rows rows, const Measure& measure);

    double Width() const noexcept { return width_; }
    double Height() const noexcept { return height_; }
    /// How far leads and what they are wired to reach out of a side.
    double Margin(Side side) const noexcept { return lead_.at(IndexOf(side)) + tags_.at(IndexOf(side)); }
    /// How far the leads alone do.
    double Lead(Side side) const noexcept { return lead_.at(IndexOf(side)); }

    /// The upper left corner of the body.
    void MoveTo(const Point& place) noexcept { place_ = place; }
    double Left() const noexcept { return place_.x; }
    double Right() const noexcept { return place_.x + width_; }
    double Top() const noexcept { return place_.y; }
    double Bottom() const noexcept { return place_.y + height_; }
    /// The height at which a pin leaves the block.
    double HeightOf(Side side, std::size_t index) const noexcept;

    void Paint(Drawing& drawing) const;

  private:
    static std::size_t IndexOf(Side side) noexcept { return side == Side::Input ? 0 : 1; }
    const std::vector<Pin>& PinsOf(Side side) const noexcept;
    double NameWidth(Side side) const;
    double TagWidth(const Pin& pin, Side side) const;
    double RowWidth(Side side) const;
    void PaintHead(Drawing& drawing) const;
    void PaintPin(Drawing& drawing, Side side, std::size_t index) const;
    void PaintWords(Drawing& drawing, const Pin& pin, const PinId& id) const;
    void PaintLead(Drawing& drawing, const Pin& pin, const PinId& id) const;
    void PaintTag(Drawing& drawing, const Pin& pin, const PinId& id) const;
    void PaintChip(Drawing& drawing, const Pin& pin, const PinId& id) const;

    const Block& block_;
    std::size_t number_;
    Rows rows_;
    const Measure& measure_;
    double width_ = 0;
    double height_ = 0;
    std::array<double, 2> lead_{};
    std::array<double, 2> tags_{};
    Point place_{};
};

} // namespace drawing
