#pragma once

#include "host/TypeTable.h"

#include <string_view>

namespace orv {

enum class UnitSystem { Metric, US };

/// How values of a type are shown. A type's own values are metric.
struct UnitRule {
    std::wstring_view metricLabel;
    std::wstring_view usLabel;
    /// US value = value * factor + offset.
    double factor = 1;
    double offset = 0;

    std::wstring_view Label(UnitSystem system) const noexcept {
        return system == UnitSystem::US ? usLabel : metricLabel;
    }
    bool ChangesValues() const noexcept { return factor != 1 || offset != 0; }
};

/// The rule of a type's unit. A type without unit has empty labels; a unit
/// text that is not known is its own label and is not converted.
UnitRule UnitRuleOf(const TypeFacts& type) noexcept;

} // namespace orv
