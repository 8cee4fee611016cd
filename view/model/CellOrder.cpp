#include "view/model/CellOrder.h"

#include "core/Case.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <string>
#include <system_error>

namespace view {

namespace {

constexpr bool IsDigit(wchar_t c) noexcept {
    return c >= L'0' && c <= L'9';
}

std::size_t EndOfDigits(std::wstring_view text, std::size_t at) noexcept {
    while (at < text.size() && IsDigit(text[at])) {
        ++at;
    }
    return at;
}

int Sign(bool isLess, bool isGreater) noexcept {
    return isLess ? -1 : (isGreater ? 1 : 0);
}

/// Of two runs of digits, by their value.
int CompareDigits(std::wstring_view left, std::wstring_view right) noexcept {
    left.remove_prefix(std::min(left.find_first_not_of(L'0'), left.size()));
    right.remove_prefix(std::min(right.find_first_not_of(L'0'), right.size()));
    if (left.size() != right.size()) {
        return left.size() < right.size() ? -1 : 1;
    }
    return left.compare(right);
}

/// The end of the number that a text begins with; 0 when it begins with none. The
/// user's decimal mark is a point or a comma.
std::size_t EndOfNumber(std::wstring_view text) noexcept {
    const std::size_t begin = !text.empty() && (text[0] == L'-' || text[0] == L'+') ? 1 : 0;
    std::size_t end = EndOfDigits(text, begin);
    if (end == begin) {
        return 0;
    }
    if (end + 1 < text.size() && (text[end] == L'.' || text[end] == L',') && IsDigit(text[end + 1])) {
        end = EndOfDigits(text, end + 1);
    }
    if (end < text.size() && (text[end] == L'E' || text[end] == L'e')) {
        const bool hasSign = end + 1 < text.size() && (text[end + 1] == L'-' || text[end + 1] == L'+');
        const std::size_t exponent = end + (hasSign ? 2 : 1);
        const std::size_t after = EndOfDigits(text, exponent);
        // "3E" of an identifier such as "3Eb" is no exponent.
        if (after > exponent && (after == text.size() || text[after] == L' ')) {
            end = after;
        }
    }
    return end;
}

/// False when it is past the range of numbers.
bool ReadNumber(std::wstring_view text, double& number) {
    std::string plain;
    for (const wchar_t c : text) {
        if (c != L'+' || !plain.empty()) { // from_chars takes no plus in front
            plain += c == L',' ? '.' : static_cast<char>(c);
        }
    }
    return std::from_chars(plain.data(), plain.data() + plain.size(), number).ec == std::errc();
}

} // namespace

CellKey::CellKey(std::wstring_view cell) {
    cell.remove_prefix(std::min(cell.find_first_not_of(L' '), cell.size()));
    if (cell.empty()) {
        return;
    }
    const std::size_t end = EndOfNumber(cell);
    kind_ = end > 0 && ReadNumber(cell.substr(0, end), number_) ? Kind::Number : Kind::Text;
    rest_ = tam::UpperCase(kind_ == Kind::Number ? cell.substr(end) : cell);
}

int CellKey::Compare(const CellKey& other) const noexcept {
    if (kind_ != other.kind_) {
        return kind_ < other.kind_ ? -1 : 1;
    }
    if (kind_ == Kind::Number && number_ != other.number_) {
        return number_ < other.number_ ? -1 : 1;
    }
    return CompareNaturally(rest_, other.rest_);
}

int CompareNaturally(std::wstring_view left, std::wstring_view right) noexcept {
    std::size_t l = 0;
    std::size_t r = 0;
    while (l < left.size() && r < right.size()) {
        if (IsDigit(left[l]) && IsDigit(right[r])) {
            const std::size_t leftEnd = EndOfDigits(left, l);
            const std::size_t rightEnd = EndOfDigits(right, r);
            if (const int order = CompareDigits(left.substr(l, leftEnd - l), right.substr(r, rightEnd - r))) {
                return order;
            }
            l = leftEnd;
            r = rightEnd;
            continue;
        }
        const wchar_t a = tam::UpperCase(left[l++]);
        const wchar_t b = tam::UpperCase(right[r++]);
        if (a != b) {
            return a < b ? -1 : 1;
        }
    }
    return Sign(r < right.size(), l < left.size());
}

} // namespace view
