#include "view/model/Colours.h"

namespace view {

bool IsLight(drawing::Colour background) noexcept {
    // To the eye green is the brightest and blue the darkest.
    const unsigned brightness =
        299 * (background >> 16U & 0xFFU) + 587 * (background >> 8U & 0xFFU) + 114 * (background & 0xFFU);
    constexpr unsigned kHalf = 1000 * 0x80;
    return brightness >= kHalf;
}

std::optional<drawing::Colour> ColourOf(Weight weight, drawing::Colour background) noexcept {
    struct Pair {
        drawing::Colour onLight;
        drawing::Colour onDark;
    };
    constexpr Pair kWarning{0x8A5500, 0xFFC873};
    constexpr Pair kError{0xB01E1E, 0xFF9A9A};
    if (weight == Weight::Note) {
        return std::nullopt;
    }
    const Pair& pair = weight == Weight::Warning ? kWarning : kError;
    return IsLight(background) ? pair.onLight : pair.onDark;
}

} // namespace view
