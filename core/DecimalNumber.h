#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tam {

/// The digits of a decimal number, taken one after another, and the double that is
/// nearest to it. Takes no memory, and no locale counts. The C++ library's own function
/// would bring 40 to 60 KB of tables into the DLL.
// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): words_, of which count_ tells
class DecimalNumber {
  public:
    /// A value from 0 to 9. The first one is not 0.
    void Add(std::uint32_t digit) noexcept;
    bool IsEmpty() const noexcept { return digits_ == 0; }
    /// The nearest double, the even one of two, with the first digit at this power of
    /// ten; infinite past the range. To be asked once, after a digit.
    double Value(std::int64_t magnitude) noexcept;

  private:
    /// Two neighbouring doubles have their middle at 768 digits at most: from then on it
    /// counts only whether there is anything but zeros.
    static constexpr std::size_t kMostDigits = 770;
    /// For so many digits, shifted so far that 64 bits are left of the smallest double.
    static constexpr std::size_t kMostWords = 128;

    void Multiply(std::uint32_t factor, std::uint32_t andAdd) noexcept;
    /// The quotient stays; what is left over is `isMore_`.
    void Divide(std::uint32_t divisor) noexcept;
    void ShiftByWords(std::size_t count) noexcept;
    /// From the highest word, which is 0; 0 below the lowest.
    std::uint32_t WordFromTop(std::size_t index) const noexcept;
    /// The double next to the words' number, whose lowest bit stands at this power of two.
    double Nearest(std::int64_t lowestBit) const noexcept;

    /// The lowest first; those from count_ on are not set: most numbers need one.
    std::array<std::uint32_t, kMostWords> words_;
    std::size_t count_ = 0;
    std::size_t digits_ = 0;
    /// The number is greater than the words say, by less than the last digit taken.
    bool isMore_ = false;
};

} // namespace tam
