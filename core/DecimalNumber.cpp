#include "core/DecimalNumber.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace tam {

namespace {

constexpr std::int64_t kWordBits = 32;
/// The first digit of the greatest double stands at 308; half of the smallest one is
/// above ten to the power of -324.
constexpr std::int64_t kMostMagnitude = 308;
constexpr std::int64_t kLeastMagnitude = -324;

/// Powers of ten that fit into a word.
constexpr std::array<std::uint32_t, 10> kTens{1,      10,      100,      1000,      10000,
                                              100000, 1000000, 10000000, 100000000, 1000000000};
constexpr std::int64_t kMostTens = kTens.size() - 1;

// A double: 53 bits, of which the first is not written down, and the power of two of
// the first, 1023 being 0. Below the least power there are fewer bits.
constexpr std::int64_t kBits = 53;
constexpr std::int64_t kLeastPower = -1022;
constexpr std::int64_t kMostPower = 1023;

} // namespace

void DecimalNumber::Add(std::uint32_t digit) noexcept {
    if (digits_ == kMostDigits) {
        isMore_ = isMore_ || digit != 0;
        return;
    }
    Multiply(10, digit);
    ++digits_;
}

double DecimalNumber::Value(std::int64_t magnitude) noexcept {
    if (magnitude > kMostMagnitude) {
        return std::numeric_limits<double>::infinity();
    }
    if (magnitude < kLeastMagnitude) {
        return 0;
    }
    std::int64_t tens = magnitude - static_cast<std::int64_t>(digits_) + 1;
    for (; tens > 0; tens -= std::min(tens, kMostTens)) {
        Multiply(kTens.at(static_cast<std::size_t>(std::min(tens, kMostTens))), 0);
    }
    if (tens == 0) {
        return Nearest(0);
    }
    // So many bits in front that 64 are left after the division; ten is less than
    // two to the power of 10 / 3.
    const std::int64_t below = magnitude < 0 ? -magnitude * 10 / 3 + 1 : 0;
    const std::int64_t words = 2 + (below + kWordBits - 1) / kWordBits;
    ShiftByWords(static_cast<std::size_t>(words));
    for (; tens < 0; tens += std::min(-tens, kMostTens)) {
        Divide(kTens.at(static_cast<std::size_t>(std::min(-tens, kMostTens))));
    }
    return Nearest(-words * kWordBits);
}

void DecimalNumber::Multiply(std::uint32_t factor, std::uint32_t andAdd) noexcept {
    std::uint64_t carried = andAdd;
    for (std::size_t i = 0; i < count_; ++i) {
        carried += std::uint64_t{words_[i]} * factor;
        words_[i] = static_cast<std::uint32_t>(carried);
        carried >>= kWordBits;
    }
    if (carried != 0) {
        words_[count_++] = static_cast<std::uint32_t>(carried);
    }
}

void DecimalNumber::Divide(std::uint32_t divisor) noexcept {
    std::uint64_t rest = 0;
    for (std::size_t i = count_; i-- > 0;) {
        rest = rest << kWordBits | words_[i];
        words_[i] = static_cast<std::uint32_t>(rest / divisor);
        rest %= divisor;
    }
    isMore_ = isMore_ || rest != 0;
    while (words_[count_ - 1] == 0) { // never the last: 64 bits are left
        --count_;
    }
}

void DecimalNumber::ShiftByWords(std::size_t count) noexcept {
    const auto begin = words_.begin();
    const auto end = begin + static_cast<std::ptrdiff_t>(count_);
    const auto by = static_cast<std::ptrdiff_t>(count);
    std::copy_backward(begin, end, end + by);
    std::fill(begin, begin + by, 0);
    count_ += count;
}

std::uint32_t DecimalNumber::WordFromTop(std::size_t index) const noexcept {
    return index < count_ ? words_[count_ - 1 - index] : 0;
}

double DecimalNumber::Nearest(std::int64_t lowestBit) const noexcept {
    // The first 64 bits, and whether anything follows them.
    const int zeros = std::countl_zero(WordFromTop(0));
    const std::uint64_t two = std::uint64_t{WordFromTop(0)} << kWordBits | WordFromTop(1);
    const std::uint64_t third = std::uint64_t{WordFromTop(2)} << zeros;
    const std::uint64_t first = two << zeros | third >> kWordBits;
    bool isMore = isMore_ || static_cast<std::uint32_t>(third) != 0;
    for (std::size_t i = 3; i < count_ && !isMore; ++i) {
        isMore = WordFromTop(i) != 0;
    }
    // The bits that the double has room for, and what is cut off, beside half of one.
    const std::int64_t power = lowestBit + static_cast<std::int64_t>(count_) * kWordBits - zeros - 1;
    if (power > kMostPower) {
        return std::numeric_limits<double>::infinity();
    }
    const std::int64_t kept = std::min(power - kLeastPower + kBits, kBits);
    if (kept < 0) {
        return 0; // less than half of the smallest
    }
    const auto cut = static_cast<unsigned>(64 - kept);
    std::uint64_t bits = kept == 0 ? 0 : first >> cut;
    const std::uint64_t half = std::uint64_t{1} << (cut - 1);
    const std::uint64_t rest = first & (half | (half - 1));
    if (rest > half || (rest == half && (isMore || bits % 2 != 0))) {
        ++bits; // a carry past the first bit makes the next power, or infinity
    }
    const std::uint64_t powerBits = kept == kBits ? static_cast<std::uint64_t>(power - kLeastPower) : 0;
    return std::bit_cast<double>((powerBits << (kBits - 1)) + bits);
}

} // namespace tam
