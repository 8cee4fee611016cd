#include "core/ValueNumber.h"

#include "core/Numbers.h"
#include "core/RunTimeError.h"

namespace tam {

std::optional<double> ValueNumber(std::wstring_view value) {
    if (value.find_first_of(L"0123456789") == std::wstring_view::npos) {
        return std::nullopt;
    }
    try {
        return Val(value);
    } catch (const RunTimeError&) {
        return std::nullopt;
    }
}

} // namespace tam
