#include "tests/host/HostDll.h"

#include "com/LateBound.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace hosttest {

namespace {

// Identifiers of the types that the tests convert.
constexpr const wchar_t* kTemperature = L"105";           // SNVT_temp_p
constexpr const wchar_t* kTemperatureDifference = L"147"; // SNVT_temp_diff_p
constexpr const wchar_t* kFlow = L"15";                   // SNVT_flow
constexpr const wchar_t* kFactor = L"82";                 // SNVT_multiplier, without unit

class UnitConverterTest : public testing::Test {
  protected:
    void TearDown() override { Use(L"metric"); }

    void Use(std::wstring_view system) {
        const auto settings = converter_.As<IUnitSettings>();
        ASSERT_TRUE(settings);
        EXPECT_EQ(S_OK, settings->put_UnitSystem(com::Bstr(system).Get()));
    }
    std::wstring Convert(std::wstring_view value, std::wstring_view unit) {
        com::Bstr converted;
        EXPECT_EQ(S_OK, converter_->Convert(com::Bstr(value).Get(), com::Bstr(unit).Get(), converted.Put()));
        return std::wstring(converted.View());
    }
    std::wstring Label(std::wstring_view unit) {
        com::Bstr label;
        EXPECT_EQ(S_OK, converter_->Label(com::Bstr(unit).Get(), label.Put()));
        return std::wstring(label.View());
    }
    /// Converts a number written with "." and expects one written so.
    void ExpectUS(const wchar_t* expected, const wchar_t* value, std::wstring_view unit) {
        const testing::ScopedTrace trace(__FILE__, __LINE__, testing::Message() << value);
        EXPECT_EQ(Local(expected), Convert(Local(value), unit));
    }

    com::Ref<IUnitConverter> converter_ = Create<IUnitConverter>(__uuidof(UnitConverter));
};

TEST_F(UnitConverterTest, StartsMetric) {
    const auto settings = converter_.As<IUnitSettings>();
    ASSERT_TRUE(settings);
    EXPECT_EQ(L"metric", TextOf(*settings.Get(), &IUnitSettings::get_UnitSystem));
}

TEST_F(UnitConverterTest, LeavesMetricValuesAsTheyAreWritten) {
    for (const wchar_t* value : {L"21.5", L"21,5", L" 021.50 ", L"1E2", L"", L"abc"}) {
        EXPECT_EQ(value, Convert(value, kTemperature));
    }
    EXPECT_EQ(L"\u00B0C", Label(kTemperature));
    EXPECT_EQ(L"l/s", Label(kFlow));
}

TEST_F(UnitConverterTest, ConvertsTemperaturesWithTheirOffset) {
    Use(L"US");
    EXPECT_EQ(L"\u00B0F", Label(kTemperature));
    ExpectUS(L"32", L"0", kTemperature);
    ExpectUS(L"-40", L"-40", kTemperature);        // -72 + 32
    ExpectUS(L"70.7", L"21.5", kTemperature);      // 38.7 + 32
    ExpectUS(L"621.788", L"327.66", kTemperature); // 589.788 + 32
    ExpectUS(L"-0.4", L"-18", kTemperature);       // -32.4 + 32
}

TEST_F(UnitConverterTest, ConvertsTemperatureDifferencesWithoutOffset) {
    Use(L"US");
    EXPECT_EQ(L"\u00B0F", Label(kTemperatureDifference));
    ExpectUS(L"0", L"0", kTemperatureDifference);
    ExpectUS(L"18", L"10", kTemperatureDifference);
    ExpectUS(L"-2.7", L"-1.5", kTemperatureDifference);
    ExpectUS(L"9", L"5", L"131"); // SNVT_temp_ror, degrees in a minute
}

TEST_F(UnitConverterTest, RoundsToSevenDigits) {
    Use(L"US");
    ExpectUS(L"15.85032", L"1", kFlow);   // 60 / 3.785411784 = 15.850323...
    ExpectUS(L"1585.032", L"100", kFlow); // 1585.0323...
    ExpectUS(L"0.01585032", L"0.001", kFlow);
    ExpectUS(L"158503200", L"1E7", kFlow);  // 158503231.4...
    ExpectUS(L"60", L"3.785411784", kFlow); // a gallon a second
}

TEST_F(UnitConverterTest, WritesNeitherMinusZeroNorTheRestOfASubtraction) {
    Use(L"US");
    // 1.8 * -17.77778 + 32 = -0.000004: beyond the seventh digit of 32.
    ExpectUS(L"0", L"-17.77778", kTemperature);
    ExpectUS(L"0", L"-17.7777777777", kTemperature);
    ExpectUS(L"0", L"-0", kFlow);
    ExpectUS(L"0", L"0", kFlow);
    ExpectUS(L"-0.0002", L"-17.777889", kTemperature); // 1.8 * 17.777889 = 32.0002002
}

TEST_F(UnitConverterTest, ReadsEveryFormOfANumber) {
    Use(L"US");
    ExpectUS(L"70.7", L" 21.5 ", kTemperature);
    ExpectUS(L"70.7", L"+21.5", kTemperature);
    ExpectUS(L"70.7", L"0021.50", kTemperature);
    ExpectUS(L"32.9", L".5", kTemperature); // 0.9 + 32
    ExpectUS(L"41", L"5.", kTemperature);   // 9 + 32
    ExpectUS(L"70.7", L"2.15E1", kTemperature);
    ExpectUS(L"70.7", L"215e-1", kTemperature);
    ExpectUS(L"6.125076E+38", L"3.40282E+38", kTemperature); // 3.40282 * 1.8
}

TEST_F(UnitConverterTest, WritesVeryLargeAndVerySmallNumbersWithAnExponent) {
    Use(L"US");
    ExpectUS(L"0.00001", L"0.00002326", L"153"); // 2.326 kJ/kg is 1 Btu/lb
    ExpectUS(L"1E-06", L"0.000002326", L"153");
    ExpectUS(L"-1.5E-07", L"-0.0000003489", L"153");
    ExpectUS(L"100000000000000", L"2.326E14", L"153");
    ExpectUS(L"1E+15", L"2.326E15", L"153");
}

TEST_F(UnitConverterTest, ReadsGroupsOfThreeDigitsOnly) {
    Use(L"US");
    wchar_t mark[8] = {};
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_STHOUSAND, mark, 8);
    const std::wstring group(mark);
    ASSERT_FALSE(group.empty());
    EXPECT_EQ(Local(L"2254.1"), Convert(L"1" + group + Local(L"234.5"), kTemperature)); // 2222.1 + 32
    EXPECT_EQ(Local(L"1800032"), Convert(L"1" + group + L"000" + group + L"000", kTemperature));
    for (const std::wstring& value : {L"21" + group + L"5", L"1" + group, group + L"123",
                                      L"1234" + group + L"567", L"1" + group + L"2345"}) {
        EXPECT_EQ(value, Convert(value, kTemperature));
    }
}

TEST_F(UnitConverterTest, DoesNotTakeTheOtherLocalesMarkForAThousandsMark) {
    Use(L"US");
    const std::wstring other = DecimalMark() == L"," ? L"21.5" : L"21,5";
    EXPECT_EQ(other, Convert(other, kTemperature));
}

TEST_F(UnitConverterTest, LeavesWhatIsNoNumberAsItIs) {
    Use(L"US");
    for (const wchar_t* value : {L"", L" ", L"-", L"abc", L"12a", L"1 2", L"--1", L"NaN", L"inf", L"0x10",
                                 L"&H10", L"1E", L"E5", L"1E400", L"1E308"}) {
        EXPECT_EQ(value, Convert(value, kTemperature)); // 1.8E308 is beyond all numbers
    }
    const std::wstring twoMarks = Local(L"1.2") + DecimalMark() + L"3";
    EXPECT_EQ(twoMarks, Convert(twoMarks, kTemperature));
    EXPECT_EQ(std::wstring(L"1\0 2", 4), Convert(std::wstring(L"1\0 2", 4), kTemperature));
}

TEST_F(UnitConverterTest, LeavesValuesOfUnknownTypesAsTheyAre) {
    for (const wchar_t* system : {L"metric", L"US"}) {
        Use(system);
        for (const wchar_t* unit : {L"", L"0", L"140", L"226", L"0105", L" 105", L"105 ", L"-105",
                                    L"99999999999", L"degrees C", L"SNVT_none"}) {
            EXPECT_EQ(L"5", Convert(L"5", unit)) << unit;
            EXPECT_EQ(L"", Label(unit)) << unit;
        }
    }
}

TEST_F(UnitConverterTest, KeepsFactorsWithoutLabel) {
    Use(L"US");
    EXPECT_EQ(L"5", Convert(L"5", kFactor));
    EXPECT_EQ(L"", Label(kFactor));
}

TEST_F(UnitConverterTest, SwitchesEveryConverterOfTheHost) {
    const auto other = Create<IUnitConverter>(__uuidof(UnitConverter));
    Use(L"US");
    com::Bstr label;
    EXPECT_EQ(S_OK, other->Label(com::Bstr(kTemperature).Get(), label.Put()));
    EXPECT_EQ(L"\u00B0F", label.View());
}

TEST_F(UnitConverterTest, RefusesAnUnknownUnitSystem) {
    Use(L"US");
    const auto settings = converter_.As<IUnitSettings>();
    for (const wchar_t* text : {L"", L"us", L"Metric", L"imperial", L"US "}) {
        EXPECT_EQ(E_INVALIDARG, settings->put_UnitSystem(com::Bstr(text).Get()));
        EXPECT_EQ(L"\"" + std::wstring(text) + L"\" is no unit system; use \"metric\" or \"US\"",
                  LastError());
    }
    EXPECT_EQ(E_INVALIDARG, settings->put_UnitSystem(nullptr));
    EXPECT_EQ(L"US", TextOf(*settings.Get(), &IUnitSettings::get_UnitSystem));
}

TEST_F(UnitConverterTest, AnswersByName) {
    com::PutMember(*converter_.Get(), L"UnitSystem", com::Variant(L"US").Get());
    com::Variant value(Local(L"21.5"));
    com::Variant unit(kTemperature);
    VARIANT arguments[] = {value.Get(), unit.Get()};
    const com::Variant converted = com::CallMember(*converter_.Get(), L"Convert", arguments);
    ASSERT_EQ(VT_BSTR, converted.Get().vt);
    EXPECT_EQ(Local(L"70.7"), com::View(converted.Get().bstrVal));
}

TEST_F(UnitConverterTest, RefusesAMissingResult) {
    EXPECT_EQ(E_POINTER, converter_->Convert(nullptr, nullptr, nullptr));
    EXPECT_EQ(E_POINTER, converter_->Label(nullptr, nullptr));
    EXPECT_EQ(L"", Convert({}, kTemperature));
}

} // namespace

} // namespace hosttest
