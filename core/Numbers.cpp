#include "core/Numbers.h"

#include "core/RunTimeError.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <new>
#include <string>
#include <system_error>

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

/// A decimal number in the form that std::from_chars reads.
struct Decimal {
    std::string text;
    bool hasDigits = false;
    bool isZero = true;
    /// Power of ten of the first digit that is not 0.
    std::int64_t magnitude = 0;
};

void TakeDigits(Characters& rest, Decimal& number, bool isFraction) {
    while (IsDigit(rest.Peek())) {
        const wchar_t digit = rest.Peek();
        number.text.push_back(static_cast<char>(digit));
        number.hasDigits = true;
        if (number.isZero && digit != L'0') {
            number.isZero = false;
            number.magnitude -= isFraction ? 1 : 0;
        } else if (number.isZero == isFraction) {
            // A zero before the first other digit of a fraction, or a digit
            // after the first one of a whole number.
            number.magnitude += isFraction ? -1 : 1;
        }
        rest.Advance();
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
    if (!IsDigit(rest.Peek())) {
        return;
    }
    number.text.append(isNegative ? "e-" : "e");
    std::int64_t exponent = 0;
    while (IsDigit(rest.Peek())) {
        number.text.push_back(static_cast<char>(rest.Peek()));
        if (exponent < kExponentLimit) {
            exponent = exponent * 10 + (rest.Peek() - L'0');
        }
        rest.Advance();
    }
    number.magnitude += isNegative ? -exponent : exponent;
}

double DecimalValue(Characters& rest) {
    Decimal number;
    if (rest.Take(L'-')) {
        number.text.push_back('-');
    } else {
        rest.Take(L'+');
    }
    TakeDigits(rest, number, false);
    if (rest.Take(L'.')) {
        number.text.push_back('.');
        TakeDigits(rest, number, true);
    }
    if (!number.hasDigits) {
        return 0;
    }
    TakeExponent(rest, number);
    if (number.isZero) {
        return 0;
    }
    double value = 0;
    const char* const begin = number.text.data();
    const auto result = std::from_chars(begin, begin + number.text.size(), value);
    if (result.ec == std::errc::result_out_of_range || std::isinf(value)) {
        if (number.magnitude > 0) {
            throw RunTimeError(RunTime::Overflow);
        }
        return 0;
    }
    return value;
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
        return 0; // many digits are copied to be read, and a look-up never fails
    }
}

} // namespace tam
