#include "tests/host/HostDll.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

namespace hosttest {

namespace {

struct CatalogueRow {
    int index;
    const wchar_t* name;
    const wchar_t* unit;
};

constexpr CatalogueRow kCatalogue[] = {
#include "host/CatalogueUnits.inc"
};

/// What is shown for a unit text of the type table: labels, and a value in US
/// units for a value of the type's own, from the definitions of the units.
struct Expectation {
    std::wstring_view unit;
    std::wstring_view metric;
    std::wstring_view us;
    std::wstring_view value;
    std::wstring_view usValue;
};

constexpr Expectation kExpectations[] = {
    {L"A", L"A", L"A", L"2.5", L"2.5"},
    {L"mA", L"mA", L"mA", L"2.5", L"2.5"},
    {L"V", L"V", L"V", L"2.5", L"2.5"},
    {L"mV", L"mV", L"mV", L"2.5", L"2.5"},
    {L"kV", L"kV", L"kV", L"2.5", L"2.5"},
    {L"ohms", L"\u03A9", L"\u03A9", L"2.5", L"2.5"},
    {L"kohms", L"k\u03A9", L"k\u03A9", L"2.5", L"2.5"},
    {L"W", L"W", L"W", L"2.5", L"2.5"},
    {L"kW", L"kW", L"kW", L"2.5", L"2.5"},
    {L"Wh", L"Wh", L"Wh", L"2.5", L"2.5"},
    {L"kWh", L"kWh", L"kWh", L"2.5", L"2.5"},
    {L"Btu", L"Btu", L"Btu", L"2.5", L"2.5"},
    {L"kBtu", L"kBtu", L"kBtu", L"2.5", L"2.5"},
    {L"MBtu", L"MBtu", L"MBtu", L"2.5", L"2.5"},
    {L"Hz", L"Hz", L"Hz", L"2.5", L"2.5"},
    {L"kHz", L"kHz", L"kHz", L"2.5", L"2.5"},
    {L"dB", L"dB", L"dB", L"2.5", L"2.5"},
    {L"dB SPL", L"dB SPL", L"dB SPL", L"2.5", L"2.5"},
    {L"dBuV", L"dB\u00B5V", L"dB\u00B5V", L"2.5", L"2.5"},
    {L"rad", L"rad", L"rad", L"2.5", L"2.5"},
    {L"rad/s", L"rad/s", L"rad/s", L"2.5", L"2.5"},
    {L"degrees", L"\u00B0", L"\u00B0", L"2.5", L"2.5"},
    {L"rpm", L"rpm", L"rpm", L"2.5", L"2.5"},
    {L"s", L"s", L"s", L"2.5", L"2.5"},
    {L"min", L"min", L"min", L"2.5", L"2.5"},
    {L"h", L"h", L"h", L"2.5", L"2.5"},
    {L"%", L"%", L"%", L"2.5", L"2.5"},
    {L"% obscuration", L"% obscuration", L"% obscuration", L"2.5", L"2.5"},
    {L"ppm", L"ppm", L"ppm", L"2.5", L"2.5"},
    {L"pH", L"pH", L"pH", L"2.5", L"2.5"},
    {L"NTU", L"NTU", L"NTU", L"2.5", L"2.5"},
    {L"units", L"units", L"units", L"2.5", L"2.5"},
    {L"mg", L"mg", L"mg", L"2.5", L"2.5"},
    // The difference of two temperatures is told apart in UnitConverterTest.
    {L"degrees C", L"\u00B0C", L"\u00B0F", L"100", L"212"}, // boiling
    {L"degrees C/min", L"\u00B0C/min", L"\u00B0F/min", L"100", L"180"},
    // 1 gal = 3.785411784 l
    {L"l/s", L"l/s", L"gpm", L"3.785411784", L"60"},
    {L"ml/s", L"ml/s", L"gph", L"3785.411784", L"3600"},
    {L"m3/h", L"m\u00B3/h", L"gpm", L"3.785411784", L"16.66667"}, // 1000 gal an hour
    {L"l", L"l", L"gal", L"3.785411784", L"1"},
    {L"kl", L"kl", L"gal", L"3.785411784", L"1000"},
    {L"ml", L"ml", L"fl oz", L"3785.411784", L"128"},
    // 1 ft = 0.3048 m = 12 in, 1 mi = 5280 ft, 1 mil = 0.001 in
    {L"m", L"m", L"ft", L"3.048", L"10"},
    {L"km", L"km", L"mi", L"0.3048", L"0.1893939"}, // 1000 / 5280
    {L"mm", L"mm", L"in", L"304.8", L"12"},
    {L"um", L"\u00B5m", L"mil", L"304.8", L"12"},
    {L"m2", L"m\u00B2", L"ft\u00B2", L"0.09290304", L"1"}, // 0.3048 * 0.3048
    {L"m/s", L"m/s", L"fpm", L"0.3048", L"60"},
    // 1 lb = 0.45359237 kg = 16 oz, 1 short ton = 2000 lb
    {L"g", L"g", L"oz", L"453.59237", L"16"},
    {L"kg", L"kg", L"lb", L"0.45359237", L"1"},
    {L"metric tons", L"t", L"tn", L"0.45359237", L"0.5"}, // 1000 lb
    {L"kg/h", L"kg/h", L"lb/h", L"0.45359237", L"1"},
    {L"g/m2", L"g/m\u00B2", L"oz/yd\u00B2", L"453.59237", L"13.37804"}, // 16 * 0.9144 * 0.9144 = 13.37803776
    {L"kg/m3", L"kg/m\u00B3", L"lb/ft\u00B3", L"453.59237", L"28.31685"}, // 1000 * 0.3048^3 = 28.316846592
    // An inch of water is 25.4 mm * 9.80665 N/kg; a psi is a pound's weight on a square inch.
    {L"Pa", L"Pa", L"inH\u2082O", L"249.08891", L"1"},
    {L"kPa", L"kPa", L"psi", L"100", L"14.50377"}, // 100 / 6.894757293168 = 14.5037738
    // A Btu heats a pound by as much as 2.326 kJ a kilogram; a pound has 7000 grains.
    {L"kJ/kg", L"kJ/kg", L"Btu/lb", L"2.326", L"1"},
    {L"g/kg", L"g/kg", L"gr/lb", L"10", L"70"},
    // 3600 s/h * 0.09290304 m2/ft2 = 334.450944, and a Btu is 1055.05585262 J
    {L"W/m2", L"W/m\u00B2", L"Btu/(h\u00B7ft\u00B2)", L"1055.05585262", L"334.4509"},
    {L"lux", L"lx", L"fc", L"1000", L"92.90304"},
};

class UnitTableTest : public testing::Test {
  protected:
    void TearDown() override { Use(L"metric"); }

    void Use(const wchar_t* system) {
        EXPECT_EQ(S_OK, converter_.As<IUnitSettings>()->put_UnitSystem(com::Bstr(system).Get()));
    }
    std::wstring Label(const std::wstring& unit) {
        com::Bstr label;
        EXPECT_EQ(S_OK, converter_->Label(com::Bstr(unit).Get(), label.Put()));
        return std::wstring(label.View());
    }
    std::wstring Convert(const std::wstring& value, const std::wstring& unit) {
        com::Bstr converted;
        EXPECT_EQ(S_OK, converter_->Convert(com::Bstr(value).Get(), com::Bstr(unit).Get(), converted.Put()));
        return std::wstring(converted.View());
    }

    com::Ref<IUnitConverter> converter_ = Create<IUnitConverter>(__uuidof(UnitConverter));
};

const Expectation* ExpectationOf(std::wstring_view unit) {
    const Expectation* found = std::ranges::find(kExpectations, unit, &Expectation::unit);
    return found == std::end(kExpectations) ? nullptr : found;
}

constexpr std::wstring_view kDifference = L"SNVT_temp_diff_p";

TEST_F(UnitTableTest, NamesTheUnitOfEveryTypeInBothSystems) {
    for (const CatalogueRow& row : kCatalogue) {
        const Expectation* expected = ExpectationOf(row.unit);
        const bool none = *row.unit == L'\0';
        ASSERT_TRUE(none || expected != nullptr) << row.name << " has a unit that is not known: " << row.unit;
        Use(L"metric");
        EXPECT_EQ(none ? L"" : expected->metric, Label(std::to_wstring(row.index))) << row.name;
        EXPECT_EQ(none ? L"" : expected->metric, Label(row.name)) << row.name;
        Use(L"US");
        EXPECT_EQ(none ? L"" : expected->us, Label(std::to_wstring(row.index))) << row.name;
    }
}

TEST_F(UnitTableTest, ConvertsEveryTypeByTheDefinitionOfItsUnit) {
    for (const CatalogueRow& row : kCatalogue) {
        const Expectation* expected = ExpectationOf(row.unit);
        const std::wstring unit = std::to_wstring(row.index);
        const std::wstring value = Local(expected == nullptr ? L"2.5" : expected->value);
        Use(L"metric");
        EXPECT_EQ(value, Convert(value, unit)) << row.name;
        Use(L"US");
        if (row.name != kDifference) {
            EXPECT_EQ(expected == nullptr ? value : Local(expected->usValue), Convert(value, unit))
                << row.name;
        }
    }
}

TEST_F(UnitTableTest, KnowsNoUnitThatNoTypeHas) {
    for (const Expectation& expected : kExpectations) {
        const bool used = std::ranges::any_of(
            kCatalogue, [&](const CatalogueRow& row) { return row.unit == expected.unit; });
        EXPECT_TRUE(used) << std::wstring(expected.unit);
    }
}

} // namespace

} // namespace hosttest
