#include "core/ElementFields.h"

#include "tests/core/FieldRules.h"
#include "tests/core/Thrown.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>

namespace tam {
namespace {

struct Sample {
    std::wstring text = L"old";
    bool isPresent = false;
    bool isAbsent = true;
    bool isOne = false;
    bool truth = false;
    double number = 0;
    std::int16_t small = 0;
    std::int32_t large = 0;
    std::int32_t whole = 0;
};

constexpr ReadField<Sample> kRead[] = {
    {L"TEXT", TakeText<&Sample::text>},
    {L"PRESENT", TakePresence<&Sample::isPresent, true>},
    {L"ABSENT", TakePresence<&Sample::isAbsent, false>},
    {L"ONE", TakeOne<&Sample::isOne>},
    {L"TRUTH", TakeTruth<&Sample::truth>},
    {L"NUMBER", TakeNumber<&Sample::number>},
    {L"SMALL", TakeInt16<&Sample::small>},
    {L"LARGE", TakeInt32<&Sample::large>},
    {L"WHOLE", TakeWholeNumber<&Sample::whole>},
};

TEST(ElementFieldsTest, TakesATextAsItStands) {
    Sample sample;
    EXPECT_TRUE(Take(kRead, L"TEXT", sample, L" a "));
    EXPECT_EQ(sample.text, L" a ");
    EXPECT_TRUE(Take(kRead, L"TEXT", sample, L""));
    EXPECT_EQ(sample.text, L"");
}

TEST(ElementFieldsTest, ReadsNoTextOfAnElementWithoutARow) {
    Sample sample;
    const std::function<std::wstring()> text = []() -> std::wstring {
        throw RunTimeError(RunTime::ObjectNotSet);
    };
    EXPECT_FALSE(TakeElement(kRead, L"OTHER", sample, {text, kCommaRules}));
    EXPECT_FALSE(TakeElement(kRead, L"text", sample, {text, kCommaRules})); // names come in capitals
    EXPECT_FALSE(TakeElement(kRead, L"", sample, {text, kCommaRules}));
}

TEST(ElementFieldsTest, ReadsNoTextWherePresenceCounts) {
    Sample sample;
    const std::function<std::wstring()> text = []() -> std::wstring {
        throw RunTimeError(RunTime::ObjectNotSet);
    };
    EXPECT_TRUE(TakeElement(kRead, L"PRESENT", sample, {text, kCommaRules}));
    EXPECT_TRUE(TakeElement(kRead, L"ABSENT", sample, {text, kCommaRules}));
    EXPECT_TRUE(sample.isPresent);
    EXPECT_FALSE(sample.isAbsent);
}

TEST(ElementFieldsTest, ATextThatCannotBeReadChangesNothing) {
    Sample sample;
    const std::function<std::wstring()> text = []() -> std::wstring {
        throw RunTimeError(RunTime::TypeMismatch);
    };
    EXPECT_EQ(ErrorOf([&] { TakeElement(kRead, L"TEXT", sample, {text, kCommaRules}); }), kTypeMismatch);
    EXPECT_EQ(sample.text, L"old");
}

TEST(ElementFieldsTest, OnlyExactlyOneIsTrue) {
    Sample sample;
    Take(kRead, L"ONE", sample, L"1");
    EXPECT_TRUE(sample.isOne);
    for (const wchar_t* text : {L" 1", L"1 ", L"true", L"", L"01", L"2"}) {
        sample.isOne = true;
        Take(kRead, L"ONE", sample, text);
        EXPECT_FALSE(sample.isOne) << std::wstring(text);
    }
}

TEST(ElementFieldsTest, NumbersFollowNoLocale) {
    Sample sample;
    Take(kRead, L"NUMBER", sample, L"12.5 m");
    EXPECT_EQ(sample.number, 12.5);
    Take(kRead, L"NUMBER", sample, L"12,5");
    EXPECT_EQ(sample.number, 12.0);
    Take(kRead, L"SMALL", sample, L"2.5");
    EXPECT_EQ(sample.small, 2);
    Take(kRead, L"LARGE", sample, L"3.5x");
    EXPECT_EQ(sample.large, 4);
    Take(kRead, L"LARGE", sample, L"none");
    EXPECT_EQ(sample.large, 0);
}

TEST(ElementFieldsTest, ANumberOutOfRangeChangesNothing) {
    Sample sample;
    sample.small = 7;
    EXPECT_EQ(ErrorOf([&] { Take(kRead, L"SMALL", sample, L"32768"); }), kOverflow);
    EXPECT_EQ(sample.small, 7);
    EXPECT_EQ(ErrorOf([&] { Take(kRead, L"LARGE", sample, L"2147483648"); }), kOverflow);
    EXPECT_EQ(sample.large, 0);
}

TEST(ElementFieldsTest, WholeNumbersAndTruthFollowTheLocale) {
    Sample sample;
    Take(kRead, L"WHOLE", sample, L"12");
    EXPECT_EQ(sample.whole, 12);
    EXPECT_EQ(ErrorOf([&] { Take(kRead, L"WHOLE", sample, L"x"); }), kTypeMismatch);
    EXPECT_EQ(sample.whole, 12);
    Take(kRead, L"TRUTH", sample, L"True");
    EXPECT_TRUE(sample.truth);
    EXPECT_EQ(ErrorOf([&] { Take(kRead, L"TRUTH", sample, L"yes"); }), kTypeMismatch);
    EXPECT_TRUE(sample.truth);
}

TEST(ElementFieldsTest, WritesInTheTablesOrder) {
    constexpr WrittenField<Sample> kGive[] = {
        {L"Whole", GiveInteger<&Sample::whole>},  {L"Text", GiveText<&Sample::text>},
        {L"Flag", GiveFlag<&Sample::isAbsent>},   {L"Off", GiveFlag<&Sample::isPresent>},
        {L"Truth", GiveTruth<&Sample::isAbsent>}, {L"Not", GiveTruth<&Sample::isPresent>},
        {L"Number", GiveNumber<&Sample::number>}, {L"AsFlag", GiveTextAsFlag<&Sample::text>},
    };
    Sample sample;
    sample.whole = -3;
    sample.number = 12.5;
    sample.text = L"True";
    EXPECT_EQ(Give(kGive, sample), (Written{{L"Whole", L"-3"},
                                            {L"Text", L"True"},
                                            {L"Flag", L"1"},
                                            {L"Off", L"0"},
                                            {L"Truth", L"True"},
                                            {L"Not", L"False"},
                                            {L"Number", L"12,5"},
                                            {L"AsFlag", L"1"}}));
}

TEST(ElementFieldsTest, ATextThatIsNoTruthIsTheFlagZero) {
    constexpr WrittenField<Sample> kGive[] = {{L"AsFlag", GiveTextAsFlag<&Sample::text>}};
    for (const wchar_t* text : {L"False", L"", L"maybe"}) {
        Sample sample;
        sample.text = text;
        EXPECT_EQ(Give(kGive, sample), (Written{{L"AsFlag", L"0"}})) << std::wstring(text);
    }
}

} // namespace
} // namespace tam
