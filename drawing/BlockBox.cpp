#include "drawing/BlockBox.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace drawing {

namespace {

constexpr double kHead = 52;
constexpr double kHeadWithoutSubtitle = 36;
constexpr double kIcon = 32;
constexpr double kRow = 34;
constexpr double kPadding = 8;
constexpr double kCorner = 6;
/// From the block's edge to the words of a pin.
constexpr double kIndent = 14;
/// Between the words of an input and those of an output.
constexpr double kGap = 28;
constexpr double kNarrowest = 180;
constexpr double kWidestName = 190;
constexpr double kWidestTitle = 320;
constexpr double kShortestLead = 22;
constexpr double kWidestAddress = 40;
constexpr double kPin = 5;
constexpr double kWidestTag = 150;
constexpr double kTagHeight = 18;
constexpr double kTagTip = 8;
constexpr double kTagPadding = 6;

/// 1 for what points to the right, -1 for what points to the left.
double Outward(Side side) noexcept {
    return side == Side::Input ? -1 : 1;
}

Anchor AnchorOf(Side side) noexcept {
    return side == Side::Input ? Anchor::Start : Anchor::End;
}

bool HasTag(const Pin& pin) noexcept {
    return pin.isWired && !pin.wiredTo.empty();
}

std::string ChipText(const Pin& pin, Side side) {
    return (side == Side::Input ? "from " : "to ") + pin.wiredTo;
}

} // namespace

BlockBox::BlockBox(const Block& block, std::size_t number, Rows rows, const Measure& measure)
    : block_(block), number_(number), rows_(rows), measure_(measure) {
    const double inputs = NameWidth(Side::Input);
    const double outputs = NameWidth(Side::Output);
    const double words = rows == Rows::SideBySide ? inputs + (inputs > 0 && outputs > 0 ? kGap : 0) + outputs
                                                  : std::max(RowWidth(Side::Input), RowWidth(Side::Output));
    const double icon = block.hasIcon ? kIcon + 10 : 0;
    const double title = std::min(
        kWidestTitle, std::max(measure(block.name, Font::Title), measure(block.subtitle, Font::Subtitle)));
    width_ = std::ceil(std::max({kNarrowest, words + 2 * kIndent, title + icon + 2 * kIndent}));
    const std::size_t count = rows == Rows::SideBySide ? std::max(block.inputs.size(), block.outputs.size())
                                                       : block.inputs.size() + block.outputs.size();
    const double head = block.subtitle.empty() && !block.hasIcon ? kHeadWithoutSubtitle : kHead;
    height_ = head + 2 * kPadding + kRow * static_cast<double>(count);

    for (const Side side : {Side::Input, Side::Output}) {
        double& lead = lead_.at(IndexOf(side));
        double& tags = tags_.at(IndexOf(side));
        lead = kShortestLead;
        for (const Pin& pin : PinsOf(side)) {
            const double address = std::min(kWidestAddress, std::ceil(measure(pin.address, Font::Address)));
            lead = std::max(lead, address + kPin + 8);
            if (rows == Rows::SideBySide) {
                tags = std::max(tags, TagWidth(pin, side));
            }
        }
    }
}

const std::vector<Pin>& BlockBox::PinsOf(Side side) const noexcept {
    return side == Side::Input ? block_.inputs : block_.outputs;
}

double BlockBox::NameWidth(Side side) const {
    double width = 0;
    for (const Pin& pin : PinsOf(side)) {
        width = std::max({width, measure_(pin.name, Font::Name), measure_(pin.type, Font::Note)});
    }
    return std::min(std::ceil(width), kWidestName);
}

double BlockBox::TagWidth(const Pin& pin, Side side) const {
    if (!HasTag(pin)) {
        return 0;
    }
    const std::string text = rows_ == Rows::SideBySide ? pin.wiredTo : ChipText(pin, side);
    const double tip = rows_ == Rows::SideBySide ? kTagTip : 0;
    return std::min(kWidestTag, std::ceil(measure_(text, Font::Tag))) + 2 * kTagPadding + tip;
}

double BlockBox::RowWidth(Side side) const {
    double width = 0;
    for (const Pin& pin : PinsOf(side)) {
        const double words =
            std::min(kWidestName, std::max(measure_(pin.name, Font::Name), measure_(pin.type, Font::Note)));
        width = std::max(width, std::ceil(words) + kGap + TagWidth(pin, side));
    }
    return width;
}

double BlockBox::HeightOf(Side side, std::size_t index) const noexcept {
    const std::size_t row =
        rows_ == Rows::BelowEachOther && side == Side::Output ? block_.inputs.size() + index : index;
    const double head = block_.subtitle.empty() && !block_.hasIcon ? kHeadWithoutSubtitle : kHead;
    return place_.y + head + kPadding + kRow * (static_cast<double>(row) + 0.5);
}

void BlockBox::Paint(Drawing& drawing) const {
    drawing.items.push_back({Paint::Body, Rectangle{place_.x, place_.y, width_, height_, kCorner}});
    PaintHead(drawing);
    for (const Side side : {Side::Input, Side::Output}) {
        for (std::size_t i = 0; i < PinsOf(side).size(); ++i) {
            PaintPin(drawing, side, i);
        }
    }
}

void BlockBox::PaintHead(Drawing& drawing) const {
    const bool isLow = block_.subtitle.empty() && !block_.hasIcon;
    const double height = isLow ? kHeadWithoutSubtitle : kHead;
    // Round above, square below.
    drawing.items.push_back({Paint::Head, Rectangle{place_.x, place_.y, width_, height, kCorner}});
    drawing.items.push_back({Paint::Head, Rectangle{place_.x, place_.y + height - kCorner, width_, kCorner}});
    drawing.items.push_back({Paint::Outline, Rectangle{place_.x, place_.y, width_, height_, kCorner}});
    double left = place_.x + kIndent;
    if (block_.hasIcon) {
        drawing.items.push_back(
            {Paint::Head, Picture{{left - 2, place_.y + (height - kIcon) / 2, kIcon, kIcon}}});
        left += kIcon + 8;
    }
    const double room = Right() - kIndent - left;
    const double middle = place_.y + height / 2;
    drawing.items.push_back({Paint::Title, Text{{left, block_.subtitle.empty() ? middle + 5 : middle - 3},
                                                Shortened(block_.name, Font::Title, room, measure_),
                                                Font::Title}});
    if (!block_.subtitle.empty()) {
        drawing.items.push_back(
            {Paint::Subtitle, Text{{left, middle + 14},
                                   Shortened(block_.subtitle, Font::Subtitle, room, measure_),
                                   Font::Subtitle}});
    }
}

void BlockBox::PaintPin(Drawing& drawing, Side side, std::size_t index) const {
    const Pin& pin = PinsOf(side)[index];
    const PinId id{number_, side, index};
    PaintWords(drawing, pin, id);
    PaintLead(drawing, pin, id);
    if (HasTag(pin)) {
        if (rows_ == Rows::SideBySide) {
            PaintTag(drawing, pin, id);
        } else {
            PaintChip(drawing, pin, id);
        }
    }
    // Half the block, or all of it when it has the row for itself, with the lead.
    const double half = rows_ == Rows::SideBySide ? width_ / 2 : width_;
    const double reach = Margin(side);
    const double left = side == Side::Input ? place_.x - reach : Right() - half;
    drawing.spots.push_back({Rectangle{left, HeightOf(side, index) - kRow / 2, half + reach, kRow}, id});
}

void BlockBox::PaintWords(Drawing& drawing, const Pin& pin, const PinId& id) const {
    const double middle = HeightOf(id.side, id.index);
    const double edge = id.side == Side::Input ? Left() + kIndent : Right() - kIndent;
    const bool isAlone =
        rows_ == Rows::SideBySide && (id.side == Side::Input ? block_.outputs : block_.inputs).empty();
    const double room = isAlone ? width_ - 2 * kIndent : kWidestName;
    drawing.items.push_back({pin.isHidden ? Paint::HiddenName : Paint::Name,
                             Text{{edge, pin.type.empty() ? middle + 4.5 : middle - 1},
                                  Shortened(pin.name, Font::Name, room, measure_),
                                  Font::Name,
                                  AnchorOf(id.side)},
                             id});
    if (!pin.type.empty()) {
        drawing.items.push_back({Paint::Note,
                                 Text{{edge, middle + 12},
                                      Shortened(pin.type, Font::Note, room, measure_),
                                      Font::Note,
                                      AnchorOf(id.side)},
                                 id});
    }
}

void BlockBox::PaintLead(Drawing& drawing, const Pin& pin, const PinId& id) const {
    const double out = Outward(id.side);
    const double edge = id.side == Side::Input ? Left() : Right();
    const double y = HeightOf(id.side, id.index);
    const double end = edge + out * Lead(id.side);
    const auto lead = pin.isWired ? Paint::WiredLead : pin.isHidden ? Paint::HiddenLead : Paint::OpenLead;
    drawing.items.push_back({lead, Line{{{edge, y}, {end, y}}}, id});
    // Signals go to the right: an input's arrow points into the block, an output's out of it.
    const double base = id.side == Side::Input ? edge - kPin : edge;
    drawing.items.push_back({pin.isWired ? Paint::WiredPin : Paint::OpenPin,
                             Polygon{{{base, y - kPin}, {base + 1.6 * kPin, y}, {base, y + kPin}}}, id});
    if (!pin.address.empty()) {
        const double at = id.side == Side::Input ? edge - kPin - 4 : edge + 1.6 * kPin + 2;
        drawing.items.push_back({Paint::Address,
                                 Text{{at, y - 4},
                                      Shortened(pin.address, Font::Address, kWidestAddress, measure_),
                                      Font::Address,
                                      id.side == Side::Input ? Anchor::End : Anchor::Start},
                                 id});
    }
}

void BlockBox::PaintTag(Drawing& drawing, const Pin& pin, const PinId& id) const {
    const double y = HeightOf(id.side, id.index);
    const std::string text = Shortened(pin.wiredTo, Font::Tag, kWidestTag, measure_);
    const double body = TagWidth(pin, id.side) - kTagTip;
    // The tip of an input's tag points to the block, that of an output's away from it.
    const double left =
        id.side == Side::Input ? Left() - Lead(id.side) - kTagTip - body : Right() + Lead(id.side);
    const double half = kTagHeight / 2;
    drawing.items.push_back({Paint::Tag,
                             Polygon{{{left, y - half},
                                      {left + body, y - half},
                                      {left + body + kTagTip, y},
                                      {left + body, y + half},
                                      {left, y + half}}},
                             id});
    drawing.items.push_back({Paint::TagText, Text{{left + kTagPadding, y + 4}, text, Font::Tag}, id});
}

void BlockBox::PaintChip(Drawing& drawing, const Pin& pin, const PinId& id) const {
    const double y = HeightOf(id.side, id.index);
    const double width = TagWidth(pin, id.side);
    const double left = id.side == Side::Input ? Right() - kIndent - width : Left() + kIndent;
    drawing.items.push_back(
        {Paint::Tag, Rectangle{left, y - kTagHeight / 2, width, kTagHeight, kTagHeight / 2}, id});
    drawing.items.push_back({Paint::TagText,
                             Text{{left + kTagPadding, y + 4},
                                  Shortened(ChipText(pin, id.side), Font::Tag, kWidestTag, measure_),
                                  Font::Tag},
                             id});
}

} // namespace drawing
