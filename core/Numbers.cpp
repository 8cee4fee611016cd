#include "core/Numbers.h"

#include "core/DecimalNumber.h"
#include "core/RunTimeError.h"

#include <cmath>
#include <cstddef>
#include <limits>
#include <new>

namespace tam {

namespace {

/// Far beyond any exponent of a double, and far from overflow in sums.
constexpr std::int64_t kExponentLimit = 1'000'000'000'000;

/// The characters of a text without its blanks, tabs and line feeds.
class Characters {
  public:
    explicit Characters(std::wstring_view text) : text_(text) { SkipBlanks(); }

    /// NUL at the end, which is no part of a number either.
    wchar_t Peek() const { return at_ < text_.size() ? text_[at_] : L'\0'; }
    void Advance() {
        ++at_;
        SkipBlanks();
    }
    bool Take(wchar_t c) {
        if (at_ == text_.size() || text_[at_] != c) {
            return false;
        }
        Advance();
        return true;
    }
    bool TakeEither(wchar_t a, wchar_t b) { return Take(a) || Take(b); }

  private:
    void SkipBlanks() {
        while (at_ < text_.size() && (text_[at_] == L' ' || text_[at_] == L'\t' || text_[at_] == L'\n')) {
            ++at_;
        }
    }

    std::wstring_view text_;
    std::size_t at_ = 0;
};

bool IsDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

struct Decimal {
    /// From the first one that is not 0 on.
    DecimalNumber digits;
    bool hasDigits = false;
    /// Power of ten of the first of them.
    std::int64_t magnitude = 0;
};

void TakeDigits(Characters& rest, Decimal& number, bool isFraction) {
    for (; IsDigit(rest.Peek()); rest.Advance()) {
        const auto digit = static_cast<std::uint32_t>(rest.Peek() - L'0');
        number.hasDigits = true;
        if (isFraction && number.digits.IsEmpty()) {
            --number.magnitude;
        } else if (!isFraction && !number.digits.IsEmpty()) {
            ++number.magnitude;
        }
        if (!number.digits.IsEmpty() || digit != 0) {
            number.digits.Add(digit);
        }
    }
}

void TakeExponent(Characters& rest, Decimal& number) {
    if (!rest.TakeEither(L'E', L'e') && !rest.TakeEither(L'D', L'd')) {
        return;
    }
    const bool isNegative = rest.Take(L'-');
    if (!isNegative) {
        rest.Take(L'+');
    }
    std::int64_t exponent = 0;
    for (; IsDigit(rest.Peek()); rest.Advance()) {
        if (exponent < kExponentLimit) {
            exponent = exponent * 10 + (rest.Peek() - L'0');
        }
    }
    number.magnitude += isNegative ? -exponent : exponent;
}

double DecimalValue(Characters& rest) {
    Decimal number;
    const bool isNegative = rest.Take(L'-');
    if (!isNegative) {
        rest.Take(L'+');
    }
    TakeDigits(rest, number, false);
    if (rest.Take(L'.')) {
        TakeDigits(rest, number, true);
    }
    if (!number.hasDigits) {
        return 0;
    }
    TakeExponent(rest, number);
    const double value = number.digits.IsEmpty() ? 0 : number.digits.Value(number.magnitude);
    if (std::isinf(value)) {
        throw RunTimeError(RunTime::Overflow);
    }
    return isNegative && value != 0 ? -value : value; // no number is -0
}

/// The digit's value; the radix itself or more for any other character.
std::uint32_t DigitValue(wchar_t c) {
    if (IsDigit(c)) {
        return static_cast<std::uint32_t>(c - L'0');
    }
    if (c >= L'A' && c <= L'F') {
        return static_cast<std::uint32_t>(c - L'A') + 10;
    }
    if (c >= L'a' && c <= L'f') {
        return static_cast<std::uint32_t>(c - L'a') + 10;
    }
    return 16;
}

double RadixValue(Characters& rest) {
    std::uint32_t radix = 8;
    if (rest.TakeEither(L'H', L'h')) {
        radix = 16;
    } else if (!rest.TakeEither(L'O', L'o')) {
        return 0;
    }
    std::uint64_t bits = 0;
    while (DigitValue(rest.Peek()) < radix) {
        bits = bits * radix + DigitValue(rest.Peek());
        if (bits > std::numeric_limits<std::uint32_t>::max()) {
            throw RunTimeError(RunTime::Overflow);
        }
        rest.Advance();
    }
    if (bits <= std::numeric_limits<std::uint16_t>::max() && !rest.Take(L'&')) {
        return static_cast<std::int16_t>(bits);
    }
    return static_cast<std::int32_t>(bits);
}

template <class Int>
Int Convert(double number) {
    const double rounded = RoundToEven(number);
    const bool isInRange =
        rounded >= std::numeric_limits<Int>::min() && rounded <= std::numeric_limits<Int>::max();
    if (!isInRange) {
        throw RunTimeError(RunTime::Overflow);
    }
    return static_cast<Int>(rounded);
}

} // namespace

double Val(std::wstring_view text) {
    Characters rest(text);
    return rest.Take(L'&') ? RadixValue(rest) : DecimalValue(rest);
}

// Not std::nearbyint: it follows a rounding mode that the host may have set.
double RoundToEven(double number) {
    const double below = std::floor(number);
    const double rest = number - below;
    const bool goesUp = rest > 0.5 || (rest == 0.5 && std::fmod(below, 2.0) != 0);
    return goesUp ? below + 1 : below;
}

std::int32_t ToInt32(double number) {
    return Convert<std::int32_t>(number);
}
std::int16_t ToInt16(double number) {
    return Convert<std::int16_t>(number);
}

std::size_t PositionIn(std::wstring_view text, std::size_t count) noexcept {
    try {
        const double position = RoundToEven(Val(text));
        const bool isOneOfThem = position >= 1 && position <= static_cast<double>(count);
        return isOneOfThem ? static_cast<std::size_t>(position) : 0;
    } catch (const RunTimeError&) {
        return 0; // past the range of numbers
    } catch (const std::bad_alloc&) {
        return 0; // the same, without memory for the error's words
    }
}

} // namespace tam
