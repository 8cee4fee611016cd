#include "drawing/Layout.h"

#include "drawing/BlockBox.h"
#include "drawing/Mirrors.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <vector>

namespace drawing {

namespace {

/// Around everything.
constexpr double kBorder = 8;
constexpr double kBetweenChannels = 20;
/// Rows of all blocks are equally high, so that a channel that is moved by less
/// than a row has none at the height of a row of the module.
constexpr double kOutOfTheWay = 8;

/// The channels of one side from top to bottom, in the order of the module's
/// items that they are joined to.
std::vector<std::size_t> Ordered(const Sheet& sheet, const std::vector<Place>& places, Place place) {
    std::vector<std::size_t> first(sheet.channels.size(), static_cast<std::size_t>(-1));
    for (const Mirror& mirror : sheet.mirrors) {
        const std::size_t channel = mirror.channel.block - 1;
        if (channel < first.size()) {
            first[channel] = std::min(first[channel], mirror.module.index);
        }
    }
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (places[i] == place) {
            order.push_back(i);
        }
    }
    std::stable_sort(order.begin(), order.end(),
                     [&first](std::size_t one, std::size_t other) { return first[one] < first[other]; });
    return order;
}

/// The widest channel of a side, from lead to lead.
double WidthOf(const std::vector<std::size_t>& order, const std::vector<BlockBox>& channels) {
    double width = 0;
    for (const std::size_t channel : order) {
        // cppcheck-suppress containerOutOfBounds ; the order has the numbers of the channels
        const BlockBox& box = channels[channel];
        width = std::max(width, box.Margin(Side::Input) + box.Width() + box.Margin(Side::Output));
    }
    return width;
}

} // namespace

Drawing Draw(const Sheet& sheet, const Measure& measure, Format format) {
    const std::vector<Place> places = PlacesOf(sheet);
    const Mirrors mirrors(sheet, places);
    const bool isNarrow = format == Format::Narrow && sheet.channels.empty();
    BlockBox module(sheet.module, 0, isNarrow ? BlockBox::Rows::BelowEachOther : BlockBox::Rows::SideBySide,
                    measure);
    std::vector<BlockBox> channels;
    channels.reserve(sheet.channels.size());
    for (std::size_t i = 0; i < sheet.channels.size(); ++i) {
        channels.emplace_back(sheet.channels[i], i + 1, BlockBox::Rows::BelowEachOther, measure);
    }

    const std::vector<std::size_t> left = Ordered(sheet, places, Place::Left);
    const std::vector<std::size_t> right = Ordered(sheet, places, Place::Right);
    const double leftWidth = WidthOf(left, channels);
    const auto stack = [&](const std::vector<std::size_t>& order, double x, double width) {
        double y = kBorder;
        for (const std::size_t channel : order) {
            BlockBox& box = channels[channel];
            // Towards the module, where its lines come from.
            const double inset = places[channel] == Place::Left
                                     ? width - box.Margin(Side::Output) - box.Width()
                                     : box.Margin(Side::Input);
            box.MoveTo({x + inset, y});
            if (mirrors.Collides(module, box, channel + 1)) {
                y += kOutOfTheWay;
                box.MoveTo({x + inset, y});
            }
            y += box.Height() + kBetweenChannels;
        }
    };
    const double x = kBorder + leftWidth + mirrors.Gutter(Place::Left) + module.Margin(Side::Input);
    module.MoveTo({x, kBorder});
    stack(left, kBorder, leftWidth);
    const double after = module.Right() + module.Margin(Side::Output) + mirrors.Gutter(Place::Right);
    const double rightWidth = WidthOf(right, channels);
    stack(right, after, rightWidth);

    Drawing drawing;
    drawing.width = after + rightWidth + kBorder;
    double bottom = module.Bottom() + mirrors.Below();
    for (const BlockBox& channel : channels) {
        bottom = std::max(bottom, channel.Bottom());
    }
    drawing.height = bottom + kBorder;
    mirrors.PaintLines(drawing, module, channels);
    module.Paint(drawing);
    for (const BlockBox& channel : channels) {
        channel.Paint(drawing);
    }
    mirrors.PaintPorts(drawing, module, channels);
    return drawing;
}

const Pin* Find(const Sheet& sheet, const PinId& id) noexcept {
    if (id.block > sheet.channels.size()) {
        return nullptr;
    }
    const Block& block = id.block == 0 ? sheet.module : sheet.channels[id.block - 1];
    const std::vector<Pin>& pins = id.side == Side::Input ? block.inputs : block.outputs;
    return id.index < pins.size() ? &pins[id.index] : nullptr;
}

std::optional<PinId> PinAt(const Drawing& drawing, const Point& place) noexcept {
    const auto found = std::find_if(drawing.spots.begin(), drawing.spots.end(),
                                    [&place](const Spot& spot) { return spot.area.Holds(place); });
    return found != drawing.spots.end() ? std::optional(found->pin) : std::nullopt;
}

const Rectangle* AreaOf(const Drawing& drawing, const PinId& pin) noexcept {
    const auto found = std::find_if(drawing.spots.begin(), drawing.spots.end(),
                                    [&pin](const Spot& spot) { return spot.pin == pin; });
    return found != drawing.spots.end() ? &found->area : nullptr;
}

} // namespace drawing
