#include "host/UnitConverter.h"

#include "core/RunTimeError.h"
#include "host/NumberText.h"
#include "host/UserMarks.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

namespace orv {

namespace {

constexpr std::wstring_view kMetric = L"metric";
constexpr std::wstring_view kUS = L"US";

/// The value in the unit system, in the user's form. What is no number, has
/// no unit to convert, or would leave the range of numbers stays as it is.
std::wstring Converted(std::wstring_view value, std::wstring_view unit, UnitSystem system) {
    const auto type = FindType(unit);
    const UnitRule rule = type ? UnitRuleOf(*type) : UnitRule();
    if (system == UnitSystem::Metric || !rule.ChangesValues()) {
        return std::wstring(value);
    }
    const NumberMarks marks = UserMarks();
    const auto number = ParseNumber(value, marks);
    if (!number) {
        return std::wstring(value);
    }
    const double scaled = *number * rule.factor;
    const double result = scaled + rule.offset;
    if (!std::isfinite(result)) {
        return std::wstring(value);
    }
    return FormatNumber(RoundNumber(result, std::max(std::abs(scaled), std::abs(rule.offset))), marks);
}

} // namespace

HostSettings& Settings() noexcept {
    static HostSettings settings;
    return settings;
}

HRESULT UnitConverter::Convert(BSTR value, BSTR unit, BSTR* converted) {
    return Get(converted, [&] { return Converted(com::View(value), com::View(unit), Settings().units); });
}

HRESULT UnitConverter::Label(BSTR unit, BSTR* label) {
    return Get(label, [&] {
        const auto type = FindType(com::View(unit));
        return type ? UnitRuleOf(*type).Label(Settings().units) : std::wstring_view();
    });
}

HRESULT UnitConverter::get_UnitSystem(BSTR* value) {
    return Get(value, [] { return Settings().units == UnitSystem::US ? kUS : kMetric; });
}

HRESULT UnitConverter::put_UnitSystem(BSTR value) {
    return Do([&] {
        const std::wstring_view text = com::View(value);
        if (text != kMetric && text != kUS) {
            throw tam::RunTimeError(E_INVALIDARG, {},
                                    L"\"" + std::wstring(text) +
                                        L"\" is no unit system; use \"metric\" or \"US\"");
        }
        Settings().units = text == kUS ? UnitSystem::US : UnitSystem::Metric;
    });
}

} // namespace orv
