#include "core/ValueText.h"

#include "core/RunTimeError.h"

#include <cstddef>
#include <limits>

namespace tam {

namespace {

constexpr std::size_t kDigitsOfInt32 = 8;

std::wstring HexDigits(std::int32_t value) {
    auto bits = static_cast<std::uint32_t>(value);
    std::wstring digits;
    do {
        digits.insert(digits.begin(), L"0123456789ABCDEF"[bits % 16]);
        bits /= 16;
    } while (bits != 0);
    return digits;
}

} // namespace

std::wstring DecimalSeparatorFrom(std::wstring_view formattedHalf) {
    return formattedHalf.find(L',') != std::wstring_view::npos ? L"," : L".";
}

std::wstring MoveDecimalMark(std::wstring_view text, std::wstring_view separator) {
    auto mark = text.find(L'.');
    if (mark == std::wstring_view::npos) {
        mark = text.find(L',');
    }
    std::wstring result(text);
    if (mark != std::wstring_view::npos) {
        result.replace(mark, 1, separator);
    }
    return result;
}

std::wstring ToFixedHex(std::int32_t& value, std::int16_t digits) {
    const int bits = 4 * digits;
    if (bits < std::numeric_limits<std::int16_t>::min() || bits > std::numeric_limits<std::int16_t>::max()) {
        throw RunTimeError(RunTime::Overflow);
    }
    if (digits < 0) {
        throw RunTimeError(RunTime::InvalidCall);
    }
    const auto length = static_cast<std::size_t>(digits);
    // From eight digits on, every value is below the power.
    const bool isAbove = length < kDigitsOfInt32 && value > (std::int32_t{1} << bits);
    const std::int32_t shown = isAbove ? std::int32_t{1} << bits : value;
    std::wstring text = HexDigits(shown);
    if (text.size() > length) {
        text.erase(0, text.size() - length);
    } else {
        text.insert(0, length - text.size(), L'0');
    }
    value = shown;
    return text;
}

} // namespace tam
