// Input: a number text. Numbers, decimal marks, hexadecimal texts.
#include "core/Numbers.h"
#include "core/RunTimeError.h"
#include "core/ValueText.h"
#include "Subjects.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace tam::fuzz {

namespace {

/// Nothing for "overflow"; every other error is a fault.
std::optional<double> Number(const std::wstring& text) {
    try {
        return Val(text);
    } catch (const RunTimeError& error) {
        Require(error.Number() == static_cast<std::int32_t>(RunTime::Overflow));
        return std::nullopt;
    }
}

template <class F>
void CheckWhole(F&& convert, double number, double lowest, double highest) {
    const double rounded = RoundToEven(number);
    try {
        const double whole = convert(number);
        Require(std::abs(number - whole) <= 0.5);
        Require(whole == rounded && rounded >= lowest && rounded <= highest);
    } catch (const RunTimeError& error) {
        Require(error.Number() == static_cast<std::int32_t>(RunTime::Overflow));
        Require(!(rounded >= lowest && rounded <= highest));
    }
}

void CheckHex(std::int32_t value, std::int16_t digits) {
    std::int32_t shown = value;
    try {
        const std::wstring text = ToFixedHex(shown, digits);
        Require(digits >= 0 && text.size() == static_cast<std::size_t>(digits));
        Require(text.find_first_not_of(L"0123456789ABCDEF") == std::wstring::npos);
        Require(shown <= value);
        Require(shown == value || text.find_first_not_of(L'0') == std::wstring::npos);
    } catch (const RunTimeError& error) {
        Require(digits < 0 || digits > 8191);
        Require(shown == value);
        Require(error.Number() == static_cast<std::int32_t>(RunTime::Overflow) ||
                error.Number() == static_cast<std::int32_t>(RunTime::InvalidCall));
    }
}

} // namespace

void FuzzValues(Input& input) {
    const std::wstring text = input.Rest();
    if (const auto number = Number(text)) {
        Require(std::isfinite(*number));
        CheckWhole(ToInt32, *number, -2147483648.0, 2147483647.0);
        CheckWhole(ToInt16, *number, -32768.0, 32767.0);
        if (std::abs(*number) < 2147483647.0) {
            CheckHex(ToInt32(*number), static_cast<std::int16_t>(text.size() % 16));
            CheckHex(ToInt32(*number), static_cast<std::int16_t>(ToInt32(*number)));
        }
        // Blanks count nowhere, and what ends a number does not change it.
        Require(Number(L" \t" + text) == number);
        Require(Number(text + L"\n") == number);
        Require(Number(text + L"?") == number);
    }
    // The first of two points is replaced at each turn.
    const bool hasTwoPoints = text.find(L'.') != text.rfind(L'.');
    for (const wchar_t* separator : {L".", L",", L""}) {
        const std::wstring moved = MoveDecimalMark(text, separator);
        const bool hasMark = text.find_first_of(L".,") != std::wstring::npos;
        Require(moved.size() == text.size() - (hasMark && *separator == L'\0' ? 1 : 0));
        Require(*separator == L'\0' || hasTwoPoints || MoveDecimalMark(moved, separator) == moved);
    }
}

} // namespace tam::fuzz
