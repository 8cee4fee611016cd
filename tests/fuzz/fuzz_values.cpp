// Input: a number text. Numbers, decimal marks, hexadecimal texts.
#include "common/Numbers.h"
#include "common/RunTimeError.h"
#include "Input.h"
#include "points/ValueText.h"

#include <cmath>

using namespace tam;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::wstring text = fuzz::TextOf(data, size);
    try {
        const double number = Val(text);
        fuzz::Require(std::isfinite(number));
        const std::int32_t whole = ToInt32(number);
        fuzz::Require(std::abs(number - whole) <= 0.5);
        std::int32_t shown = whole;
        fuzz::Require(ToFixedHex(shown, static_cast<std::int16_t>(size % 16)).size() == size % 16);
        fuzz::Require(shown <= whole);
    } catch (const RunTimeError& error) {
        fuzz::Require(error.Number() == static_cast<std::int32_t>(RunTime::Overflow));
    }
    // The first of two points is replaced at each turn.
    const bool hasTwoPoints = text.find(L'.') != text.rfind(L'.');
    for (const wchar_t* separator : {L".", L","}) {
        const std::wstring moved = MoveDecimalMark(text, separator);
        fuzz::Require(moved.size() == text.size());
        fuzz::Require(hasTwoPoints || MoveDecimalMark(moved, separator) == moved);
    }
    return 0;
}
