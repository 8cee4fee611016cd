#pragma once

#include "drawing/BlockBox.h"
#include "drawing/DisplayList.h"
#include "drawing/Sheet.h"

#include <cstddef>
#include <vector>

namespace drawing {

/// Where a channel stands: left of the module or right of it.
enum class Place { Left, Right };

/// Where each channel stands: on the side on which most of its items are. The
/// right one, when there is no difference.
std::vector<Place> PlacesOf(const Sheet& sheet);

/// The ways of the lines between a module and its channels. Lines run in tracks:
/// upright in the gutters beside the module, level below it.
class Mirrors {
  public:
    Mirrors(const Sheet& sheet, const std::vector<Place>& places);

    /// The width that the lines of a side take.
    double Gutter(Place place) const noexcept;
    /// The height that lines below the module take.
    double Below() const noexcept;
    /// Whether a line to this channel would lie on the beginning of another line, at
    /// one height.
    bool Collides(const BlockBox& module, const BlockBox& channel, std::size_t number) const noexcept;
    /// Paints the lines of blocks that have their places; they lie below the blocks.
    void PaintLines(Drawing& drawing, const BlockBox& module, const std::vector<BlockBox>& channels) const;
    /// Paints where lines meet the channels, above the blocks.
    void PaintPorts(Drawing& drawing, const BlockBox& module, const std::vector<BlockBox>& channels) const;

  private:
    struct Route {
        Mirror mirror;
        /// The side of the channel.
        Place place = Place::Left;
        /// Whether the module's item is on the other side, so that the line goes around.
        bool isAround = false;
    };
    struct Ends {
        Point module;
        Point channel;
    };
    static Ends EndsOf(const Route& route, const BlockBox& module, const BlockBox& channel) noexcept;
    void PaintDirect(Drawing& drawing, Place place, const BlockBox& module,
                     const std::vector<BlockBox>& channels) const;
    void PaintAround(Drawing& drawing, const BlockBox& module, const std::vector<BlockBox>& channels) const;
    std::size_t Count(Place place, bool isAround) const noexcept;

    std::vector<Route> routes_;
};

} // namespace drawing
