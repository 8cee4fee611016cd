#include "drawing/Palette.h"

#include <algorithm>
#include <cmath>

namespace drawing {

namespace {

struct Colours {
    Colour background;
    Colour body;
    Colour border;
    Colour head;
    Colour title;
    Colour subtitle;
    Colour text;
    Colour hidden;
    Colour muted;
    Colour line;
    Colour accent;
    Colour tag;
    Colour tagText;
    Colour mirror;
};

constexpr Colours kLight = {.background = 0xFFFFFF,
                            .body = 0xF8FAFC,
                            .border = 0x1D4E89,
                            .head = 0x1D4E89,
                            .title = 0xFFFFFF,
                            .subtitle = 0xDCE9F7,
                            .text = 0x14202E,
                            .hidden = 0x64707F,
                            .muted = 0x55616F,
                            .line = 0x7A8794,
                            .accent = 0x0B6E4F,
                            .tag = 0xE3F4EC,
                            .tagText = 0x084C37,
                            .mirror = 0x8A3FB0};

constexpr Colours kDark = {.background = 0x10161D,
                           .body = 0x19222C,
                           .border = 0x5E93CC,
                           .head = 0x234A75,
                           .title = 0xFFFFFF,
                           .subtitle = 0xCFE0F3,
                           .text = 0xE8EEF5,
                           .hidden = 0x97A4B3,
                           .muted = 0xA9B6C4,
                           .line = 0x7F8C9B,
                           .accent = 0x4CC79A,
                           .tag = 0x143528,
                           .tagText = 0xB5EBD4,
                           .mirror = 0xC792EA};

constexpr const Colours& ColoursOf(Scheme scheme) noexcept {
    return scheme == Scheme::Light ? kLight : kDark;
}

double Luminance(Colour colour) noexcept {
    const auto linear = [colour](unsigned shift) {
        const double part = (colour >> shift & 0xFFU) / 255.0;
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(16) + 0.7152 * linear(8) + 0.0722 * linear(0);
}

Look TextLook(Colour colour) noexcept {
    return {.fill = colour};
}

Look LineLook(Colour colour, double width, bool isDashed = false) noexcept {
    return {.fill = std::nullopt, .stroke = colour, .strokeWidth = width, .isDashed = isDashed};
}

} // namespace

Look LookOf(Paint paint, Scheme scheme) noexcept {
    const Colours& colours = ColoursOf(scheme);
    switch (paint) {
    case Paint::Body:
        return {.fill = colours.body};
    case Paint::Head:
        return {.fill = colours.head};
    case Paint::Outline:
        return LineLook(colours.border, 1.5);
    case Paint::Title:
        return TextLook(colours.title);
    case Paint::Subtitle:
        return TextLook(colours.subtitle);
    case Paint::Name:
        return TextLook(colours.text);
    case Paint::HiddenName:
        return TextLook(colours.hidden);
    case Paint::Note:
    case Paint::Address:
        return TextLook(colours.muted);
    case Paint::OpenLead:
        return LineLook(colours.line, 1);
    case Paint::WiredLead:
        return LineLook(colours.accent, 2);
    case Paint::HiddenLead:
        return LineLook(colours.line, 1, true);
    case Paint::OpenPin:
        return {.fill = colours.background, .stroke = colours.line, .strokeWidth = 1.2};
    case Paint::WiredPin:
        return {.fill = colours.accent, .stroke = colours.accent, .strokeWidth = 1.2};
    case Paint::Tag:
        return {.fill = colours.tag, .stroke = colours.accent};
    case Paint::TagText:
        return TextLook(colours.tagText);
    case Paint::Mirror:
        return LineLook(colours.mirror, 1.5, true);
    case Paint::MirrorPort:
        break;
    }
    return {.fill = colours.mirror};
}

Colour Background(Scheme scheme) noexcept {
    return ColoursOf(scheme).background;
}

Colour GroundOf(Paint paint, Scheme scheme) noexcept {
    const Colours& colours = ColoursOf(scheme);
    switch (paint) {
    case Paint::Title:
    case Paint::Subtitle:
        return colours.head;
    case Paint::Name:
    case Paint::HiddenName:
    case Paint::Note:
        return colours.body;
    case Paint::TagText:
        return colours.tag;
    default:
        return colours.background;
    }
}

double Contrast(Colour first, Colour second) noexcept {
    const double one = Luminance(first);
    const double other = Luminance(second);
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

} // namespace drawing
