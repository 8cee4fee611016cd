#include "common/DocumentFields.h"

#include "com/Conversion.h"

#include <cstdint>

namespace tam {

const LocaleRules kUserRules = {
    [](std::wstring_view text) -> std::int32_t { return com::LongOf(text); },
    &com::BoolOf,
    &com::BoolIn,
    [](double number) { return com::TextOf(number); },
};

} // namespace tam
