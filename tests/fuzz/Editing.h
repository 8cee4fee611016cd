#pragma once

#include "core/Numbers.h"
#include "core/NumericEditorState.h"
#include "core/RunTimeError.h"
#include "core/ValueText.h"
#include "Subjects.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

namespace tam::fuzz {

/// As the user's locale reads a number, for either mark.
inline float ReadSingle(std::wstring_view text) {
    const double number = Val(MoveDecimalMark(text, L"."));
    if (std::abs(number) > static_cast<double>(std::numeric_limits<float>::max())) {
        throw RunTimeError(RunTime::Overflow);
    }
    return static_cast<float>(number);
}

/// Text box contents with any selection in it.
inline EditText AnyEdit(Input& input, std::wstring text) {
    const std::size_t first = input.Below(text.size() + 1);
    const std::size_t second = input.Below(text.size() + 1);
    return {std::move(text), std::min(first, second), std::max(first, second)};
}

inline NumericEditorState::Setup AnySetup(Input& input) {
    constexpr std::array kTypes = {GeneralType::SignedNumeric, GeneralType::UnsignedNumeric,
                                   GeneralType::Float, GeneralType::Enum};
    constexpr std::array<const wchar_t*, 4> kLimits = {L"", L"-5.5", L"0", L"3.25"};
    NumericEditorState::Setup setup;
    setup.separator = input.Below(2) == 0 ? L"." : L",";
    setup.generalType = kTypes.at(input.Below(kTypes.size()));
    setup.min = kLimits.at(input.Below(kLimits.size()));
    setup.invalidValue = input.Below(2) == 0 ? L"" : L"327.67";
    setup.readSingle = &ReadSingle;
    return setup;
}

/// Whether a number of this setup may be below 0.
inline bool TakesMinus(const NumericEditorState::Setup& setup) {
    return setup.min.empty() ? setup.generalType != GeneralType::UnsignedNumeric : setup.min.front() == L'-';
}

} // namespace tam::fuzz
