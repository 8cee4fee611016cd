#include "tests/fuzz/RandomValues.h"

#include "com/Conversion.h"
#include "tests/fuzz/Texts.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

namespace component_fuzz {

namespace {

constexpr std::array kNumbers = {0.0,
                                 1.0,
                                 -1.0,
                                 2.0,
                                 7.0,
                                 0.5,
                                 255.0,
                                 32767.0,
                                 32768.0,
                                 -32768.0,
                                 2147483647.0,
                                 -2147483648.0,
                                 4294967296.0,
                                 1e308,
                                 std::numeric_limits<double>::infinity(),
                                 std::numeric_limits<double>::quiet_NaN()};

/// The number, or the type's lowest where it does not hold it.
template <class T>
T Whole(double number) {
    const bool isSmall = std::abs(number) <= 32767;
    return isSmall ? static_cast<T>(static_cast<long>(number)) : std::numeric_limits<T>::min();
}

VARIANT Decimal(Random& random) {
    VARIANT value{};
    value.decVal.Hi32 = random.OneIn(2) ? 0 : 0xFFFFFFFFu;
    value.decVal.Lo64 = random.OneIn(2) ? random.Below(1000) : ~0ull;
    value.decVal.scale = static_cast<BYTE>(random.Below(29));
    value.decVal.sign = random.OneIn(2) ? DECIMAL_NEG : BYTE{0};
    value.vt = VT_DECIMAL; // it lies in the decimal's own room
    return value;
}

} // namespace

VARIANT TextValue(Random& random) {
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = random.OneIn(10) ? nullptr : com::Bstr(AnyText(random)).Detach();
    return value;
}

VARIANT NumberValue(Random& random) {
    const double number = kNumbers[random.Below(kNumbers.size())];
    VARIANT value{};
    switch (random.Below(10)) {
    case 0:
        value.vt = VT_R8;
        value.dblVal = number;
        break;
    case 1:
        value.vt = VT_I2;
        value.iVal = Whole<SHORT>(number);
        break;
    case 2:
        value.vt = VT_BOOL;
        value.boolVal = Whole<VARIANT_BOOL>(number);
        break;
    case 3:
        value.vt = VT_DATE;
        value.date = number;
        break;
    case 4:
        value.vt = VT_R4;
        value.fltVal =
            std::abs(number) > 1e38 ? std::numeric_limits<float>::max() : static_cast<float>(number);
        break;
    case 5:
        value.vt = VT_UI1;
        value.bVal = Whole<BYTE>(number);
        break;
    case 6:
        value.vt = VT_I8;
        value.llVal = Whole<std::int64_t>(number);
        break;
    case 7:
        value.vt = VT_CY;
        value.cyVal.int64 = Whole<std::int64_t>(number);
        break;
    case 8:
        return Decimal(random);
    default:
        value.vt = VT_I4;
        value.lVal = Whole<LONG>(number);
    }
    return value;
}

VARIANT NowhereValue(Random& random) {
    constexpr std::array kTypes = {VT_BSTR, VT_I4,  VT_I2,      VT_R8,      VT_BOOL,
                                   VT_CY,   VT_UI1, VT_DECIMAL, VT_VARIANT, VT_DISPATCH};
    VARIANT value{};
    value.vt = static_cast<VARTYPE>(VT_BYREF | kTypes[random.Below(kTypes.size())]);
    return value;
}

} // namespace component_fuzz
