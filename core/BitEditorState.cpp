#include "core/BitEditorState.h"

#include "core/Numbers.h"
#include "core/ValueNumber.h"
#include "core/ValueText.h"

#include <cmath>

namespace tam {

namespace {

/// The low sixteen bits of a whole number, of the two's complement of a
/// negative one.
std::uint32_t LowBits(double whole) {
    constexpr double kRange = 65536;
    const double rest = std::fmod(whole, kRange);
    return static_cast<std::uint32_t>(rest < 0 ? rest + kRange : rest);
}

} // namespace

BitEditorState::BitEditorState(std::wstring_view value, std::int32_t length)
    : count_(length == 1 ? kMostBits / 2 : kMostBits) {
    const auto number = ValueNumber(value);
    const std::uint32_t set = number ? LowBits(RoundToEven(*number)) : 0;
    for (std::size_t bit = 0; bit < count_; ++bit) {
        bits_.at(bit) = (set >> bit & 1U) != 0;
    }
}

std::size_t BitEditorState::After(std::size_t bit, BitMove move) const noexcept {
    constexpr std::size_t kRow = 8;
    std::size_t next = bit; // a step below bit 0 is past the highest one, too
    switch (move) {
    case BitMove::Left:
        next = bit + 1;
        break;
    case BitMove::Right:
        next = bit - 1;
        break;
    case BitMove::Up:
        next = bit + kRow;
        break;
    case BitMove::Down:
        next = bit - kRow;
        break;
    case BitMove::First:
        next = First();
        break;
    case BitMove::Last:
        next = 0;
        break;
    }
    return next < count_ ? next : bit;
}

std::uint32_t BitEditorState::Number() const noexcept {
    std::uint32_t sum = 0;
    for (std::size_t bit = 0; bit < count_; ++bit) {
        sum += bits_.at(bit) ? 1U << bit : 0U;
    }
    return sum;
}

std::wstring BitEditorState::Summary() const {
    auto number = static_cast<std::int32_t>(Number());
    return Value() + L" (0x" + ToFixedHex(number, static_cast<std::int16_t>(count_ / 4)) + L")";
}

} // namespace tam
