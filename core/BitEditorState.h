#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tam {

/// Where the arrow keys, Home and End go from a bit.
enum class BitMove { Left, Right, Up, Down, First, Last };

/// The bits of a bit field: eight for a type of one byte, else sixteen.
class BitEditorState {
  public:
    static constexpr std::size_t kMostBits = 16;

    /// Shows the bits of the value as a whole number; a text that is no number
    /// has none set.
    BitEditorState(std::wstring_view value, std::int32_t length);

    std::size_t Count() const noexcept { return count_; }
    /// "1" or "0"; bit 0 is the least significant one.
    const wchar_t* Label(std::size_t bit) const noexcept { return IsSet(bit) ? L"1" : L"0"; }
    bool IsSet(std::size_t bit) const noexcept { return bits_.at(bit); }
    /// The bit that has the focus at first: the highest one, on the left.
    std::size_t First() const noexcept { return count_ - 1; }
    /// The bit that a move from this one ends at, itself where there is no
    /// further one. They stand eight to a row, the highest first; a row's end is
    /// followed by the next row.
    std::size_t After(std::size_t bit, BitMove move) const noexcept;
    void Flip(std::size_t bit) noexcept { bits_.at(bit) = !bits_.at(bit); }

    /// The sum of the bits that are shown and set.
    std::uint32_t Number() const noexcept;
    /// That sum as decimal text: what OK writes.
    std::wstring Value() const { return std::to_wstring(Number()); }
    /// The sum in both forms that data sheets use, such as "5 (0x05)".
    std::wstring Summary() const;

  private:
    std::size_t count_;
    std::array<bool, kMostBits> bits_{};
};

} // namespace tam
