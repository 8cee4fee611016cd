#include "tests/types/Types.h"

#include <climits>
#include <string>

using namespace support;
using namespace types;

namespace {

constexpr const wchar_t* kBadLength = L"Error: SNVT_ has a bad Length";
constexpr const wchar_t* kNumericCaption = L"O_Tam_id.CSNVTType::pGetNumeric";

class CSNVTTypeNumberTest : public TypesTest {
  protected:
    long FactorOf(const std::wstring& text, const CalledFrom& = {}) {
        return Long(FromEntry(L"", L"Factor='" + text + L"'"), &ISNVType::get_Factor);
    }
    long LengthOf(const std::wstring& text, const CalledFrom& = {}) {
        return Long(FromEntry(L"<Type>Textual</Type><Length>" + text + L"</Length>"), &ISNVType::get_Length);
    }
    std::wstring MinOf(const std::wstring& text, const CalledFrom& = {}) {
        return Text(FromEntry(L"<Type>Float</Type><Length>4</Length><Min>" + text + L"</Min>"),
                    &ISNVType::get_Min);
    }
    std::wstring MaxOf(const std::wstring& text, const CalledFrom& = {}) {
        return Text(FromEntry(L"<Type>Float</Type><Length>4</Length><Max>" + text + L"</Max>"),
                    &ISNVType::get_Max);
    }
};

TEST_F(CSNVTTypeNumberTest, TakesTheLeadingNumberOfAFactor) {
    EXPECT_EQ(FactorOf(L"100"), 100);
    EXPECT_EQ(FactorOf(L"12abc"), 12);
    EXPECT_EQ(FactorOf(L"abc"), 0);
    EXPECT_EQ(FactorOf(L""), 0);
    EXPECT_EQ(FactorOf(L" 7 "), 7);
    EXPECT_EQ(FactorOf(L"-3"), -3);
    EXPECT_EQ(FactorOf(L"+3"), 3);
    EXPECT_EQ(FactorOf(L"1e3"), 1000);
}

TEST_F(CSNVTTypeNumberTest, RoundsAFactorToTheEvenOfTwoNeighbours) {
    EXPECT_EQ(FactorOf(L"2.5"), 2);
    EXPECT_EQ(FactorOf(L"3.5"), 4);
    EXPECT_EQ(FactorOf(L"2.51"), 3);
    EXPECT_EQ(FactorOf(L"2.49"), 2);
    EXPECT_EQ(FactorOf(L"-2.5"), -2);
    EXPECT_EQ(FactorOf(L"0.5"), 0);
    EXPECT_EQ(FactorOf(L".75"), 1);
}

TEST_F(CSNVTTypeNumberTest, ReadsAFactorWithAPointUnderEveryLocale) {
    EXPECT_EQ(FactorOf(L"1.6"), 2);
    EXPECT_EQ(FactorOf(L"1,6"), 1); // the comma ends the number
    EXPECT_EQ(FactorOf(L"1.000"), 1);
}

TEST_F(CSNVTTypeNumberTest, TakesFactorsOfTheWholeRange) {
    EXPECT_EQ(FactorOf(L"2147483647"), 2147483647);
    EXPECT_EQ(FactorOf(L"-2147483648"), LONG_MIN);
}

TEST_F(CSNVTTypeNumberTest, ReadsTheRegionAsAFactor) {
    const auto region = [&](const std::wstring& text) {
        return Long(FromEntry(L"", L"Z3Region='" + text + L"'"), &ISNVType::get_Z3Region);
    };
    EXPECT_EQ(region(L"4"), 4);
    EXPECT_EQ(region(L"2.5"), 2);
    EXPECT_EQ(region(L"3.5"), 4);
    EXPECT_EQ(region(L"1,9"), 1);
    EXPECT_EQ(region(L"9x"), 9);
    EXPECT_EQ(region(L"x"), 0);
}

TEST_F(CSNVTTypeNumberTest, ReadsALengthInTheUsersLocale) {
    EXPECT_EQ(LengthOf(L"31"), 31);
    EXPECT_EQ(LengthOf(L"-1"), -1);
    EXPECT_EQ(LengthOf(Local(L"2.5")), 2);
    EXPECT_EQ(LengthOf(Local(L"3.5")), 4);
    EXPECT_EQ(LengthOf(Local(L"2.6")), 3);
    // The other mark groups digits.
    EXPECT_EQ(LengthOf(DecimalMark() == L"," ? L"1.000" : L"1,000"), 1000);
}

TEST_F(CSNVTTypeNumberTest, ReadsCoefficientsInTheUsersLocale) {
    const auto answers = AnswersOf(FromEntry(L"<Type>SignedNumeric</Type><Length>2</Length><A_Coef>" +
                                             Local(L"2.5") + L"</A_Coef><B_Coef>" + Local(L"-3.5") +
                                             L"</B_Coef><C_Coef>" + Local(L"0.4") + L"</C_Coef>"));
    EXPECT_EQ(answers.aCoef, 2);
    EXPECT_EQ(answers.bCoef, -4);
    EXPECT_EQ(answers.cCoef, 0);
}

TEST_F(CSNVTTypeNumberTest, BringsLimitsToTheUsersDecimalMark) {
    EXPECT_EQ(MinOf(L"-12.5"), Local(L"-12.5"));
    EXPECT_EQ(MaxOf(L"-12.5"), Local(L"-12.5"));
    EXPECT_EQ(MinOf(L"-12,5"), Local(L"-12.5"));
    EXPECT_EQ(MaxOf(L"12,5"), Local(L"12.5"));
}

TEST_F(CSNVTTypeNumberTest, KeepsALimitWithoutMark) {
    for (const wchar_t* text : {L"0", L"-32768", L"none", L""}) {
        EXPECT_EQ(MinOf(text), text);
        EXPECT_EQ(MaxOf(text), text);
    }
}

TEST_F(CSNVTTypeNumberTest, ReplacesOneMarkOfALimitAlone) {
    EXPECT_EQ(MinOf(L"1,000.5"), L"1,000" + DecimalMark() + L"5");
    EXPECT_EQ(MaxOf(L"1.234,5"), L"1" + DecimalMark() + L"234,5");
    EXPECT_EQ(MinOf(L".5"), DecimalMark() + L"5");
    EXPECT_EQ(MaxOf(L"5."), L"5" + DecimalMark());
}

// Under a user with a comma the second point is found when the limit is read.
TEST_F(CSNVTTypeNumberTest, ReplacesAMarkOfALimitWhenItIsStoredAndWhenItIsRead) {
    const std::wstring mark = DecimalMark();
    EXPECT_EQ(MinOf(L"1.2.3"), L"1" + mark + L"2" + mark + L"3");
    EXPECT_EQ(MaxOf(L"1,2,3"), L"1" + mark + L"2,3");
}

TEST_F(CSNVTTypeNumberTest, AnswersTheSameLimitsEachTime) {
    const Type type = FromEntry(L"<Type>Float</Type><Length>4</Length><Min>-1,000.5</Min><Max>1.5,5</Max>");
    const std::wstring min = Text(type, &ISNVType::get_Min);
    const std::wstring max = Text(type, &ISNVType::get_Max);
    EXPECT_EQ(Text(type, &ISNVType::get_Min), min);
    EXPECT_EQ(Text(type, &ISNVType::get_Max), max);
    EXPECT_EQ(min, L"-1,000" + DecimalMark() + L"5");
    EXPECT_EQ(max, L"1" + DecimalMark() + L"5,5");
}

TEST_F(CSNVTTypeNumberTest, KeepsTheInvalidValueAndTheUnitsAsTheyAre) {
    const auto answers =
        AnswersOf(FromEntry(L"<Type>Float</Type><Length>4</Length><InvalidValue>1.5</InvalidValue>"
                            L"<Unit>1,5 m</Unit><BACnetUnit>no.units</BACnetUnit>"));
    EXPECT_EQ(answers.invalidValue, L"1.5");
    EXPECT_EQ(answers.units, L"1,5 m");
    EXPECT_EQ(answers.bacnetUnits, L"no.units");
}

TEST_F(CSNVTTypeNumberTest, ShowsABadLengthOfEachNumericKind) {
    for (const wchar_t* genType : {L"SignedNumeric", L"UnsignedNumeric", L"Float", L"Bitfield"}) {
        const auto answers =
            AnswersOf(FromEntry(std::wstring(L"<Type>") + genType + L"</Type><Name>N</Name>"));
        ExpectMessage(kBadLength, kNumericCaption, MB_ICONSTOP);
        EXPECT_EQ(answers.id, L"1"); // the assignment goes on
        EXPECT_EQ(answers.name, L"N");
        EXPECT_EQ(answers.length, 0);
    }
}

TEST_F(CSNVTTypeNumberTest, ShowsALengthOfZeroAsBad) {
    FromEntry(L"<Type>Float</Type><Length>0</Length>");
    ExpectMessage(kBadLength, kNumericCaption, MB_ICONSTOP);
    FromEntry(L"<Type>Float</Type><Length>" + Local(L"0.4") + L"</Length>");
    ExpectMessage(kBadLength, kNumericCaption, MB_ICONSTOP);
}

TEST_F(CSNVTTypeNumberTest, ShowsABadLengthForEachTypeElement) {
    FromEntry(L"<Type>Float</Type><Type>Bitfield</Type>");
    const auto boxes = Boxes();
    ASSERT_EQ(boxes.size(), 2u);
    ExpectBox(boxes[0], kBadLength, kNumericCaption, MB_ICONSTOP);
    ExpectBox(boxes[1], kBadLength, kNumericCaption, MB_ICONSTOP);
}

TEST_F(CSNVTTypeNumberTest, BearsANegativeLength) {
    EXPECT_EQ(Long(FromEntry(L"<Type>Float</Type><Length>-4</Length>"), &ISNVType::get_Length), -4);
    ExpectNoBox();
}

TEST_F(CSNVTTypeNumberTest, BearsATextWithoutLength) {
    EXPECT_EQ(Long(FromEntry(L"<Type>Textual</Type>"), &ISNVType::get_Length), 0);
    EXPECT_EQ(LengthOf(L"0"), 0);
    ExpectNoBox();
}

} // namespace
