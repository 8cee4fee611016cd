// Lines between the module's points and the same points of its channels. A line runs through
// the gutter between two blocks, on a track of its own. When the module's point is on the
// other side of the module, the line goes around: down, below the blocks, and up.

#include "drawing/Mirrors.h"

#include <algorithm>
#include <cstddef>

namespace drawing {

namespace {

constexpr double kTrack = 9;
constexpr double kPort = 4;

Side SideOf(Place place) noexcept {
    return place == Place::Left ? Side::Input : Side::Output;
}

/// The part of a gutter between the blocks and the first track.
constexpr double kMargin = 14;

bool IsDrawn(const Sheet& sheet, const Mirror& mirror) noexcept {
    return mirror.module.block == 0 && mirror.channel.block > 0 && Find(sheet, mirror.module) != nullptr &&
           Find(sheet, mirror.channel) != nullptr;
}

} // namespace

std::vector<Place> PlacesOf(const Sheet& sheet) {
    std::vector<std::ptrdiff_t> inputs(sheet.channels.size(), 0);
    for (const Mirror& mirror : sheet.mirrors) {
        if (IsDrawn(sheet, mirror)) {
            inputs[mirror.channel.block - 1] += mirror.module.side == Side::Input ? 1 : -1;
        }
    }
    std::vector<Place> places;
    places.reserve(inputs.size());
    for (const std::ptrdiff_t more : inputs) {
        places.push_back(more > 0 ? Place::Left : Place::Right);
    }
    return places;
}

Mirrors::Mirrors(const Sheet& sheet, const std::vector<Place>& places) {
    for (const Mirror& mirror : sheet.mirrors) {
        if (IsDrawn(sheet, mirror)) {
            const Place place = places[mirror.channel.block - 1];
            routes_.push_back({mirror, place, SideOf(place) != mirror.module.side});
        }
    }
}

std::size_t Mirrors::Count(Place place, bool isAround) const noexcept {
    return static_cast<std::size_t>(std::count_if(routes_.begin(), routes_.end(), [&](const Route& route) {
        return route.place == place && route.isAround == isAround;
    }));
}

double Mirrors::Gutter(Place place) const noexcept {
    const Place other = place == Place::Left ? Place::Right : Place::Left;
    // A line that goes around takes a track on each side.
    const std::size_t tracks = Count(place, false) + Count(place, true) + Count(other, true);
    return tracks == 0 ? 0 : 2 * kMargin + kTrack * static_cast<double>(tracks - 1);
}

double Mirrors::Below() const noexcept {
    const std::size_t tracks = Count(Place::Left, true) + Count(Place::Right, true);
    return tracks == 0 ? 0 : kMargin + kTrack * static_cast<double>(tracks);
}

bool Mirrors::Collides(const BlockBox& module, const BlockBox& channel, std::size_t number) const noexcept {
    const auto heightAtModule = [&module](const Route& route) {
        return module.HeightOf(route.mirror.module.side, route.mirror.module.index);
    };
    return std::any_of(routes_.begin(), routes_.end(), [&](const Route& arriving) {
        const PinId& pin = arriving.mirror.channel;
        return pin.block == number && std::any_of(routes_.begin(), routes_.end(), [&](const Route& leaving) {
                   return &leaving != &arriving && SideOf(arriving.place) == leaving.mirror.module.side &&
                          heightAtModule(leaving) == channel.HeightOf(pin.side, pin.index);
               });
    });
}

Mirrors::Ends Mirrors::EndsOf(const Route& route, const BlockBox& module, const BlockBox& channel) noexcept {
    const PinId& own = route.mirror.module;
    const PinId& far = route.mirror.channel;
    // The edge of the channel that faces the module. A pin that leaves the channel
    // there has a lead; another one is met at the edge.
    const Side facing = route.place == Place::Left ? Side::Output : Side::Input;
    const double edge = facing == Side::Output ? channel.Right() : channel.Left();
    const double lead = far.side != facing ? 0 : channel.Lead(facing) * (facing == Side::Output ? 1 : -1);
    const double start = own.side == Side::Input ? module.Left() - module.Lead(Side::Input)
                                                 : module.Right() + module.Lead(Side::Output);
    return {{start, module.HeightOf(own.side, own.index)},
            {edge + lead, channel.HeightOf(far.side, far.index)}};
}

void Mirrors::PaintLines(Drawing& drawing, const BlockBox& module,
                         const std::vector<BlockBox>& channels) const {
    PaintDirect(drawing, Place::Left, module, channels);
    PaintDirect(drawing, Place::Right, module, channels);
    PaintAround(drawing, module, channels);
}

void Mirrors::PaintPorts(Drawing& drawing, const BlockBox& module,
                         const std::vector<BlockBox>& channels) const {
    for (const Route& route : routes_) {
        const Point end = EndsOf(route, module, channels[route.mirror.channel.block - 1]).channel;
        drawing.items.push_back({Paint::MirrorPort,
                                 Polygon{{{end.x - kPort, end.y},
                                          {end.x, end.y - kPort},
                                          {end.x + kPort, end.y},
                                          {end.x, end.y + kPort}}},
                                 route.mirror.channel});
    }
}

void Mirrors::PaintDirect(Drawing& drawing, Place place, const BlockBox& module,
                          const std::vector<BlockBox>& channels) const {
    struct Wanted {
        const Route* route;
        Ends ends;
    };
    std::vector<Wanted> rising;
    std::vector<Wanted> falling;
    for (const Route& route : routes_) {
        if (route.place == place && !route.isAround) {
            const Ends ends = EndsOf(route, module, channels[route.mirror.channel.block - 1]);
            (ends.channel.y < ends.module.y ? rising : falling).push_back({&route, ends});
        }
    }
    // Lines of one direction do not cross when a rising line turns before those below
    // it, and a falling line after them.
    const auto byHeight = [](const Wanted& one, const Wanted& other) {
        return one.ends.module.y < other.ends.module.y;
    };
    std::stable_sort(rising.begin(), rising.end(), byHeight);
    std::stable_sort(falling.begin(), falling.end(), byHeight);
    std::reverse(falling.begin(), falling.end());
    const double out = place == Place::Left ? -1 : 1;
    const double edge = place == Place::Left ? module.Left() : module.Right();
    double track = edge + out * (module.Margin(SideOf(place)) + kMargin);
    for (const auto* const lines : {&rising, &falling}) {
        for (const Wanted& line : *lines) {
            const auto& [from, to] = line.ends;
            drawing.items.push_back(
                {Paint::Mirror, Line{{from, {track, from.y}, {track, to.y}, to}}, line.route->mirror.module});
            track += out * kTrack;
        }
    }
}

void Mirrors::PaintAround(Drawing& drawing, const BlockBox& module,
                          const std::vector<BlockBox>& channels) const {
    // After the tracks of the direct lines, on both sides.
    double left = module.Left() - module.Margin(Side::Input) - kMargin -
                  kTrack * static_cast<double>(Count(Place::Left, false));
    double right = module.Right() + module.Margin(Side::Output) + kMargin +
                   kTrack * static_cast<double>(Count(Place::Right, false));
    double level = module.Bottom() + kMargin;
    for (const Route& route : routes_) {
        if (!route.isAround) {
            continue;
        }
        const auto [from, to] = EndsOf(route, module, channels[route.mirror.channel.block - 1]);
        const double near = route.place == Place::Left ? right : left;
        const double far = route.place == Place::Left ? left : right;
        drawing.items.push_back({Paint::Mirror,
                                 Line{{from, {near, from.y}, {near, level}, {far, level}, {far, to.y}, to}},
                                 route.mirror.module});
        left -= kTrack;
        right += kTrack;
        level += kTrack;
    }
}

} // namespace drawing
