#include "check/Decimal.h"
#include "tests/check/Documents.h"

#include <gtest/gtest.h>

#include <optional>

using namespace check;
using namespace checking;

TEST(ValueRulesTest, FindsAttributesWithoutAValue) {
    ExpectOne(RuleId::ValueMissing,
              WithAttribute("<^AI1_A><SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>3</LOGICALADDRESS></AI1_A>"));
    ExpectOne(
        RuleId::ValueMissing,
        WithAttribute("<AI1_A><SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>3</LOGICALADDRESS><^VALUE/></AI1_A>"));
    ExpectClean(WithValue("36", "")); // an empty text is one
}

TEST(ValueRulesTest, FindsValuesThatAreNoNumbers) {
    ExpectOne(RuleId::ValueNotNumber, WithValue("105", "^warm"));
    ExpectOne(RuleId::ValueNotNumber, WithValue("105", "^21.5 C"), "21.5");
    ExpectOne(RuleId::ValueNotNumber, WithValue("105", "^1.2.3"), "1.2");
    ExpectOne(RuleId::ValueDecimalMark, WithValue("105", "^21,5"), "21.5");
    ExpectOne(RuleId::ValueNotNumber, WithValue("83", "^warm"));
}

TEST(ValueRulesTest, FindsValuesOutsideTheLimits) {
    ExpectClean(WithValue("105", "327.66"));
    ExpectClean(WithValue("105", "-273.17"));
    ExpectOne(RuleId::ValueLimit, WithValue("105", "^327.68"));
    ExpectOne(RuleId::ValueLimit, WithValue("105", "^-273.18"));
    ExpectOne(RuleId::ValueLimit, WithValue("8", "^-1"));
    ExpectOne(RuleId::ValueLimit, WithValue("51", "^1e39"));
    ExpectOne(RuleId::ValueLimit, WithValue("51", "^1e400"));
    ExpectOne(RuleId::ValueInvalid, WithValue("105", "^327.67"));
    ExpectOne(RuleId::ValueInvalid, WithValue("105", "^327.670"));
}

TEST(ValueRulesTest, FindsMoreDigitsThanTheTypeResolves) {
    ExpectClean(WithValue("105", "21.5000"));
    ExpectClean(WithValue("81", "99.995"));
    ExpectClean(WithValue("51", "0.123456"));
    ExpectOne(RuleId::ValueResolution, WithValue("105", "^21.555"));
    ExpectOne(RuleId::ValueResolution, WithValue("81", "^99.997"));
    ExpectOne(RuleId::ValueResolution, WithValue("8", "^1.5"));
}

TEST(ValueRulesTest, FindsBitFieldsThatAreTooWide) {
    ExpectClean(WithValue("83", "65535"));
    ExpectOne(RuleId::ValueBits, WithValue("83", "^65536"));
    ExpectOne(RuleId::ValueBits, WithValue("83", "^-1"));
    ExpectOne(RuleId::ValueBits, WithValue("83", "^1.5"));
    EXPECT_EQ(Find(WithValue("83", "-1")).front().message, "\"-1\" is no set of bits");
}

TEST(ValueRulesTest, FindsTextsThatAreTooLong) {
    ExpectClean(WithValue("7", "\xC3\xBC"));
    ExpectOne(RuleId::ValueTooLong, WithValue("7", "^ab"));
    ExpectOne(RuleId::ValueTooLong, WithValue("7", "^\xF0\x9F\x94\xA5")); // two code units
    ExpectOne(RuleId::ValueTooLong, WithValue("36", "^12345678901234567890123456789012"));
}

TEST(ValueRulesTest, FindsEnumerationValuesWithoutALabel) {
    ExpectClean(WithValue("22", "-1"));
    ExpectOne(RuleId::EnumNoLabel, WithValue("22", "^77"));
    ExpectOne(RuleId::EnumNoLabel, WithValue("22", "^01"), "1");
    ExpectOne(RuleId::EnumNoLabel, WithValue("22", " ^1"), "1");
    ExpectOne(RuleId::EnumNoLabel, WithValue("22", "^ST_LOW"), "1");
    ExpectOne(RuleId::EnumNoLabel, WithValue("22", "^st_onn"), "4");
}

TEST(ValueRulesTest, WritesTheStepOfATypeWithoutZerosThatMeanNothing) {
    EXPECT_EQ(StepText(1, -2, "."), "0.01");
    EXPECT_EQ(StepText(5, -1, ","), "0,5");
    EXPECT_EQ(StepText(10, -2, "."), "0.1");
    EXPECT_EQ(StepText(100, -2, "."), "1");
    EXPECT_EQ(StepText(-25, 0, "."), "25");
    EXPECT_EQ(StepText(2, 3, "."), "2000");
}

TEST(ValueRulesTest, TakesACommaForADecimalMarkWhereThatMakesANumber) {
    EXPECT_EQ(WithPoint("1,5"), "1.5");
    EXPECT_EQ(WithPoint("1.5"), std::nullopt);
    EXPECT_EQ(WithPoint("1,500,5"), std::nullopt);
    EXPECT_EQ(WithPoint("a,b"), std::nullopt);
}
