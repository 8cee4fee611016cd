#include "host/Units.h"

#include <algorithm>
#include <iterator>

namespace orv {

namespace {

// Definitions of the US units. All are exact but where it says otherwise.
constexpr double kFoot = 0.3048;                   // m: the international yard is 0.9144 m
constexpr double kInch = 25.4;                     // mm
constexpr double kMile = 1609.344;                 // m: 5280 ft
constexpr double kSquareFoot = kFoot * kFoot;      // m2: 0.09290304
constexpr double kSquareYard = 9 * kSquareFoot;    // m2: 0.83612736
constexpr double kCubicFoot = kFoot * kSquareFoot; // m3: 0.028316846592
constexpr double kGallon = 3.785411784;            // l: 231 cubic inches
constexpr double kFluidOunce = 29.5735295625;      // ml: a gallon has 128
constexpr double kPound = 0.45359237;              // kg
constexpr double kOunce = 28.349523125;            // g: a pound has 16
constexpr double kShortTon = 0.90718474;           // t: 2000 lb
constexpr double kPsi = 6.894757293168;            // kPa: 1 lb * 9.80665 m/s2 on a square inch, 13 digits
constexpr double kInchOfWater = 249.08891;         // Pa: 25.4 mm * 1000 kg/m3 * 9.80665 m/s2
constexpr double kBtuPerPound = 2.326;             // kJ/kg: defines the (international table) Btu
constexpr double kBtu = 1055.05585262;             // J: 2326 J/kg * 1 lb
constexpr double kGrainsPerPound = 7000;
constexpr double kMinute = 60;   // s
constexpr double kHour = 3600;   // s
constexpr double kKelvin = 1.8;  // degrees F in a kelvin
constexpr double kFreezing = 32; // degrees F at 0 degrees C

struct Row {
    std::wstring_view unit;
    UnitRule rule;
};

constexpr Row Same(std::wstring_view unit, std::wstring_view label) {
    return {unit, {label, label, 1, 0}};
}
constexpr Row Same(std::wstring_view unit) {
    return Same(unit, unit);
}

// One row per unit text of the type table. Where the field works in the same
// unit under both systems (electrical, acoustic, angles, time, ratios) there
// is nothing to convert. Btu types hold Btu under both.
constexpr Row kRows[] = {
    Same(L"A"),
    Same(L"mA"),
    Same(L"V"),
    Same(L"mV"),
    Same(L"kV"),
    Same(L"ohms", L"\u03A9"),
    Same(L"kohms", L"k\u03A9"),
    Same(L"W"),
    Same(L"kW"),
    Same(L"Wh"),
    Same(L"kWh"),
    Same(L"Btu"),
    Same(L"kBtu"),
    Same(L"MBtu"),
    Same(L"Hz"),
    Same(L"kHz"),
    Same(L"dB"),
    Same(L"dB SPL"),
    Same(L"dBuV", L"dB\u00B5V"),
    Same(L"rad"),
    Same(L"rad/s"),
    Same(L"degrees", L"\u00B0"),
    Same(L"rpm"),
    Same(L"s"),
    Same(L"min"),
    Same(L"h"),
    Same(L"%"),
    Same(L"% obscuration"),
    Same(L"ppm"),
    Same(L"pH"),
    Same(L"NTU"),
    Same(L"units"),
    {L"degrees C", {L"\u00B0C", L"\u00B0F", kKelvin, kFreezing}},
    {L"degrees C/min", {L"\u00B0C/min", L"\u00B0F/min", kKelvin, 0}},
    {L"l/s", {L"l/s", L"gpm", kMinute / kGallon, 0}},
    {L"ml/s", {L"ml/s", L"gph", kHour / 1000 / kGallon, 0}},
    {L"m3/h", {L"m\u00B3/h", L"gpm", 1000 / kMinute / kGallon, 0}},
    {L"l", {L"l", L"gal", 1 / kGallon, 0}},
    {L"kl", {L"kl", L"gal", 1000 / kGallon, 0}},
    {L"ml", {L"ml", L"fl oz", 1 / kFluidOunce, 0}},
    {L"m", {L"m", L"ft", 1 / kFoot, 0}},
    {L"km", {L"km", L"mi", 1000 / kMile, 0}},
    {L"mm", {L"mm", L"in", 1 / kInch, 0}},
    {L"um", {L"\u00B5m", L"mil", 1 / kInch, 0}},
    {L"m2", {L"m\u00B2", L"ft\u00B2", 1 / kSquareFoot, 0}},
    {L"m/s", {L"m/s", L"fpm", kMinute / kFoot, 0}},
    {L"g", {L"g", L"oz", 1 / kOunce, 0}},
    {L"kg", {L"kg", L"lb", 1 / kPound, 0}},
    {L"metric tons", {L"t", L"tn", 1 / kShortTon, 0}},
    Same(L"mg"),
    {L"kg/h", {L"kg/h", L"lb/h", 1 / kPound, 0}},
    {L"g/m2", {L"g/m\u00B2", L"oz/yd\u00B2", kSquareYard / kOunce, 0}},
    {L"kg/m3", {L"kg/m\u00B3", L"lb/ft\u00B3", kCubicFoot / kPound, 0}},
    {L"Pa", {L"Pa", L"inH\u2082O", 1 / kInchOfWater, 0}},
    {L"kPa", {L"kPa", L"psi", 1 / kPsi, 0}},
    // A change of unit only. Tables of moist air put their zero at 0 degrees F
    // in US units; a converter of units cannot know of which air it converts.
    {L"kJ/kg", {L"kJ/kg", L"Btu/lb", 1 / kBtuPerPound, 0}},
    {L"g/kg", {L"g/kg", L"gr/lb", kGrainsPerPound / 1000, 0}},
    {L"W/m2", {L"W/m\u00B2", L"Btu/(h\u00B7ft\u00B2)", kHour* kSquareFoot / kBtu, 0}},
    {L"lux", {L"lx", L"fc", kSquareFoot, 0}}, // a footcandle is a lumen on a square foot
};

/// The type whose degrees are a difference of two temperatures.
constexpr std::wstring_view kTemperatureDifference = L"SNVT_temp_diff_p";

} // namespace

UnitRule UnitRuleOf(const TypeFacts& type) noexcept {
    const Row* row = std::ranges::find(kRows, type.unit, &Row::unit);
    if (row == std::end(kRows)) {
        return Same(type.unit).rule;
    }
    UnitRule rule = row->rule;
    if (type.name == kTemperatureDifference) {
        rule.offset = 0;
    }
    return rule;
}

} // namespace orv
