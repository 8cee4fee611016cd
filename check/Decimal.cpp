#include "check/Decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <system_error>

namespace check {

namespace {

/// Far past any number that a type can hold.
constexpr int kLargestExponent = 9999;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

std::size_t CountDigits(std::string_view text, std::size_t at) {
    const std::size_t begin = at;
    while (at < text.size() && IsDigit(text[at])) {
        ++at;
    }
    return at - begin;
}

} // namespace

std::optional<Decimal> ReadDecimal(std::string_view text) {
    Decimal number;
    std::size_t at = 0;
    if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
        number.isNegative = text[0] == '-';
        at = 1;
    }
    const std::size_t whole = CountDigits(text, at);
    number.digits = text.substr(at, whole);
    at += whole;
    std::size_t fraction = 0;
    if (at < text.size() && text[at] == '.') {
        fraction = CountDigits(text, ++at);
        number.digits += text.substr(at, fraction);
        at += fraction;
        number.exponent = -static_cast<int>(std::min<std::size_t>(fraction, kLargestExponent));
    }
    if (whole + fraction == 0) {
        return std::nullopt;
    }
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        int power = 0;
        const std::size_t begin = at + (at + 1 < text.size() && text[at + 1] == '+' ? 2U : 1U);
        const auto result = std::from_chars(text.data() + begin, text.data() + text.size(), power);
        if (result.ec != std::errc() || std::abs(power) > kLargestExponent) {
            return std::nullopt;
        }
        number.exponent += power;
        at = static_cast<std::size_t>(result.ptr - text.data());
    }
    if (at != text.size()) {
        return std::nullopt;
    }
    number.digits.erase(0, number.digits.find_first_not_of('0'));
    while (!number.digits.empty() && number.digits.back() == '0') {
        number.digits.pop_back();
        ++number.exponent;
    }
    const std::string plain =
        number.digits.empty() ? "0" : number.digits + "e" + std::to_string(number.exponent);
    const auto result = std::from_chars(plain.data(), plain.data() + plain.size(), number.value);
    if (result.ec == std::errc::result_out_of_range) {
        number.value = number.exponent + static_cast<int>(number.digits.size()) > 0 ? HUGE_VAL : 0;
    }
    number.value = number.isNegative ? -number.value : number.value;
    return number;
}

std::optional<long long> ReadWhole(std::string_view text) {
    const bool hasSign = !text.empty() && (text[0] == '-' || text[0] == '+');
    const std::string_view digits = text.substr(hasSign ? 1U : 0U);
    constexpr std::size_t kMostDigits = 18;
    std::string_view counted = digits;
    counted.remove_prefix(std::min(counted.find_first_not_of('0'), counted.size()));
    if (digits.empty() || CountDigits(digits, 0) != digits.size() || counted.size() > kMostDigits) {
        return std::nullopt;
    }
    long long value = 0;
    for (const char c : counted) {
        value = value * 10 + (c - '0');
    }
    return text[0] == '-' ? -value : value;
}

bool IsMultiple(const Decimal& number, long a, long b) {
    if (number.digits.empty()) {
        return true;
    }
    if (number.exponent < b || a == 0) {
        return false;
    }
    const long long step = std::llabs(a);
    long long rest = 0;
    for (const char c : number.digits) {
        rest = (rest * 10 + (c - '0')) % step;
    }
    for (long i = b; i < number.exponent && rest != 0; ++i) {
        rest = rest * 10 % step;
    }
    return rest == 0;
}

std::optional<std::string> WithPoint(std::string_view text) {
    std::string withPoint(text);
    std::replace(withPoint.begin(), withPoint.end(), ',', '.');
    return withPoint != text && ReadDecimal(withPoint) ? std::optional(withPoint) : std::nullopt;
}

std::string StepText(long a, long b, std::string_view mark) {
    constexpr long kMost = 30; // no type goes so far
    std::string digits = std::to_string(std::labs(a));
    if (b >= 0) {
        return digits + std::string(static_cast<std::size_t>(std::min(b, kMost)), '0');
    }
    const auto places = static_cast<std::size_t>(std::min(-b, kMost));
    digits.insert(0, digits.size() <= places ? places + 1 - digits.size() : 0, '0');
    std::string broken = digits.substr(digits.size() - places);
    digits.resize(digits.size() - places);
    broken.erase(broken.find_last_not_of('0') + 1);
    return broken.empty() ? digits : digits + std::string(mark) + broken;
}

std::string LeadingNumber(std::string_view text) {
    for (std::size_t size = std::min<std::size_t>(text.size(), 40); size > 0; --size) {
        if (text[size - 1] != '.' && ReadDecimal(text.substr(0, size))) {
            // "0x10" and "1O0" are other numbers than what they begin with.
            const std::string_view rest = text.substr(size);
            const bool isOther = !rest.empty() &&
                                 ((rest[0] >= 'A' && rest[0] <= 'Z') || (rest[0] >= 'a' && rest[0] <= 'z')) &&
                                 rest.find_first_of("0123456789") != std::string_view::npos;
            return isOther ? std::string() : std::string(text.substr(0, size));
        }
    }
    return {};
}

} // namespace check
