#include "host/NumberText.h"

#include "core/Trimmed.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <system_error>

namespace orv {

namespace {

constexpr int kDigits = 7;
constexpr std::size_t kGroupSize = 3;
constexpr double kLeastPlain = 1E-5;
constexpr double kMostPlain = 1E15;

/// Takes a number text apart and writes it down in the form of `from_chars`.
class Scanner {
  public:
    Scanner(std::wstring_view text, const NumberMarks& marks)
        : rest_(tam::Trimmed(text, L" \t")), marks_(marks) {}

    std::optional<std::string> Scan() {
        Sign(false);
        std::size_t digits = Whole();
        if (Skip(marks_.decimal)) {
            plain_ += '.';
            digits += Digits();
        }
        if (digits == 0 || badGroup_) {
            return std::nullopt;
        }
        if (Skip(L"E") || Skip(L"e")) {
            plain_ += 'e';
            Sign(true);
            if (Digits() == 0) {
                return std::nullopt;
            }
        }
        return rest_.empty() ? std::optional(plain_) : std::nullopt;
    }

  private:
    bool Skip(std::wstring_view mark) {
        const bool found = !mark.empty() && rest_.starts_with(mark);
        rest_.remove_prefix(found ? mark.size() : 0);
        return found;
    }
    void Sign(bool exponent) {
        if (Skip(L"-")) {
            plain_ += '-';
        } else if (Skip(L"+") && exponent) {
            plain_ += '+';
        }
    }
    std::size_t Digits() {
        std::size_t count = 0;
        for (; count < rest_.size() && rest_[count] >= L'0' && rest_[count] <= L'9'; ++count) {
            plain_ += static_cast<char>('0' + (rest_[count] - L'0'));
        }
        rest_.remove_prefix(count);
        return count;
    }
    /// The digits before the decimal mark, in groups or not.
    std::size_t Whole() {
        std::size_t digits = Digits();
        const std::size_t first = digits;
        while (Skip(marks_.group)) {
            const std::size_t group = Digits();
            badGroup_ = badGroup_ || group != kGroupSize || first == 0 || first > kGroupSize;
            digits += group;
        }
        return digits;
    }

    std::wstring_view rest_;
    const NumberMarks& marks_;
    std::string plain_;
    bool badGroup_ = false;
};

/// value as the number with this many decimals, or mantissa digits, next to it.
double Nearest(double value, std::chars_format format, int decimals) noexcept {
    char text[512];
    const auto written = std::to_chars(std::begin(text), std::end(text), value, format, decimals);
    double rounded = value;
    if (written.ec == std::errc()) {
        std::from_chars(text, written.ptr, rounded, format);
    }
    return rounded;
}

} // namespace

std::optional<double> ParseNumber(std::wstring_view text, const NumberMarks& marks) {
    const auto plain = Scanner(text, marks).Scan();
    double number = 0;
    if (!plain) {
        return std::nullopt;
    }
    const auto read = std::from_chars(plain->data(), plain->data() + plain->size(), number);
    return read.ec == std::errc() && read.ptr == plain->data() + plain->size() ? std::optional(number)
                                                                               : std::nullopt;
}

double RoundNumber(double value, double magnitude) noexcept {
    const double size = std::max(std::abs(value), std::abs(magnitude));
    if (size == 0) {
        return 0;
    }
    const int decimals = kDigits - 1 - static_cast<int>(std::floor(std::log10(size)));
    const double rounded = decimals >= 0 ? Nearest(value, std::chars_format::fixed, decimals)
                                         : Nearest(value, std::chars_format::scientific, kDigits - 1);
    return rounded == 0 ? 0 : rounded; // not minus zero
}

std::wstring FormatNumber(double number, const NumberMarks& marks) {
    const double size = std::abs(number);
    const bool plain = size == 0 || (size >= kLeastPlain && size < kMostPlain);
    char digits[512];
    const auto written = std::to_chars(std::begin(digits), std::end(digits), number,
                                       plain ? std::chars_format::fixed : std::chars_format::scientific);
    std::wstring text;
    for (const char* digit = digits; digit != written.ptr; ++digit) {
        if (*digit == '.') {
            text += marks.decimal;
        } else {
            text += static_cast<wchar_t>(*digit == 'e' ? 'E' : *digit);
        }
    }
    return text;
}

} // namespace orv
