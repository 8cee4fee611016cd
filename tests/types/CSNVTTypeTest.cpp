#include "tests/types/Types.h"

#include "com/LateBound.h"

#include <string>

using namespace support;
using namespace types;

namespace {

/// Everything that an entry can say.
const std::wstring kAll =
    L"<Name>Temperature</Name><Unit>degC</Unit><BACnetUnit>62</BACnetUnit><Min>-273.17</Min>"
    L"<Max>327.66</Max><Length>2</Length><A_Coef>1</A_Coef><B_Coef>-2</B_Coef>"
    L"<C_Coef>3</C_Coef><InvalidValue>7FFF</InvalidValue>";

class CSNVTTypeTest : public TypesTest {
  protected:
    Answers Read(const std::wstring& genType, const CalledFrom& = {}) {
        return AnswersOf(FromEntry(L"<Type>" + genType + L"</Type>" + kAll, L"Factor='100' Z3Region='4'"));
    }
    /// What every entry says, whatever its kind.
    static Answers Common(const std::wstring& genType) {
        Answers answers;
        answers.id = L"1";
        answers.name = L"Temperature";
        answers.factor = 100;
        answers.z3Region = 4;
        answers.genType = genType;
        return answers;
    }
    static Answers Numeric(const std::wstring& genType, const std::wstring& luiType) {
        Answers answers = Common(genType);
        answers.luiType = luiType;
        answers.units = L"degC";
        answers.bacnetUnits = L"62";
        answers.min = Local(L"-273.17");
        answers.max = Local(L"327.66");
        answers.length = 2;
        answers.aCoef = 1;
        answers.bCoef = -2;
        answers.cCoef = 3;
        answers.invalidValue = L"7FFF";
        return answers;
    }
};

TEST_F(CSNVTTypeTest, StartsEmpty) {
    SetCatalogue(L"");
    const Type type = Assigned(L"5");
    ExpectMessage(L"Can't find the node related to SNVT ID 5", L"O_Tam_id-CSNVTType::ID [Property Let]",
                  MB_ICONSTOP);
    EXPECT_EQ(AnswersOf(type), Answers());
}

TEST_F(CSNVTTypeTest, ReadsASignedNumber) {
    EXPECT_EQ(Read(L"SignedNumeric"), Numeric(L"SignedNumeric", L"Numeric"));
}

TEST_F(CSNVTTypeTest, ReadsAnUnsignedNumber) {
    EXPECT_EQ(Read(L"UnsignedNumeric"), Numeric(L"UnsignedNumeric", L"Numeric"));
}

TEST_F(CSNVTTypeTest, ReadsABitfieldAsANumber) {
    EXPECT_EQ(Read(L"Bitfield"), Numeric(L"Bitfield", L"Numeric"));
}

TEST_F(CSNVTTypeTest, ReadsAFloat) {
    EXPECT_EQ(Read(L"Float"), Numeric(L"Float", L"Float"));
}

TEST_F(CSNVTTypeTest, ReadsOnlyTheLengthOfAText) {
    Answers expected = Common(L"Textual");
    expected.luiType = L"Textual";
    expected.length = 2;
    EXPECT_EQ(Read(L"Textual"), expected);
}

TEST_F(CSNVTTypeTest, ReadsNothingMoreOfAnEnumeration) {
    Answers expected = Common(L"Enum");
    expected.luiType = L"Logic";
    expected.length = 1; // whatever the entry says
    expected.isEnumType = true;
    EXPECT_EQ(Read(L"Enum"), expected);
}

TEST_F(CSNVTTypeTest, ReadsNothingMoreOfAStructure) {
    Answers expected = Common(L"Struct");
    expected.luiType = L"Invalid";
    EXPECT_EQ(Read(L"Struct"), expected);
}

TEST_F(CSNVTTypeTest, ReadsNothingMoreOfABadType) {
    EXPECT_EQ(Read(L"Numeric"), Common(L"Numeric"));
    ExpectMessage(L"Error: SNVT_1 has a bad type", L"O_Tam_ID.CSNVTType::ID", MB_ICONSTOP);
}

TEST_F(CSNVTTypeTest, ReadsNameAndAttributesOfAnEntryWithoutType) {
    Answers expected = Common(L"");
    EXPECT_EQ(AnswersOf(FromEntry(kAll, L"Factor='100' Z3Region='4'")), expected);
}

TEST_F(CSNVTTypeTest, TakesTheIdentifierOfAnEmptyEntry) {
    Answers expected;
    expected.id = L"1";
    EXPECT_EQ(AnswersOf(FromEntry(L"")), expected);
}

TEST_F(CSNVTTypeTest, ReadsTheSameWhereverTheTypeStands) {
    const std::wstring type = L"<Type>Float</Type>";
    const auto first = AnswersOf(FromEntry(type + kAll));
    EXPECT_EQ(AnswersOf(FromEntry(kAll + type)), first);
    EXPECT_EQ(AnswersOf(FromEntry(L"<Min>-273.17</Min><Length>2</Length>" + type + kAll)), first);
    EXPECT_EQ(first.max, Local(L"327.66"));
}

TEST_F(CSNVTTypeTest, TakesTheLastOfRepeatedElements) {
    const auto answers =
        AnswersOf(FromEntry(L"<Type>Float</Type><Name>A</Name><Unit>x</Unit><Length>2</Length>"
                            L"<Name>B</Name><Unit>y</Unit><Length>4</Length>"));
    EXPECT_EQ(answers.name, L"B");
    EXPECT_EQ(answers.units, L"y");
    EXPECT_EQ(answers.length, 4);
}

TEST_F(CSNVTTypeTest, ClassifiesEachOfRepeatedTypes) {
    const auto answers =
        AnswersOf(FromEntry(L"<Type>Float</Type><Unit>x</Unit><Length>4</Length><Type>Struct</Type>"));
    EXPECT_EQ(answers.genType, L"Struct");
    EXPECT_EQ(answers.luiType, L"Invalid");
    EXPECT_EQ(answers.units, L"x");
    EXPECT_EQ(answers.length, 4);
}

TEST_F(CSNVTTypeTest, NeverHasFields) {
    EXPECT_FALSE(AnswersOf(FromEntry(L"<Type>Struct</Type><HasField>1</HasField><Fields/>")).hasField);
}

TEST_F(CSNVTTypeTest, NeverReadsAnEnumerationDescription) {
    EXPECT_EQ(
        AnswersOf(FromEntry(L"<Type>Enum</Type><EnumDesc>1,On;</EnumDesc>", L"EnumDesc='1,On;'")).enumDesc,
        L"");
}

TEST_F(CSNVTTypeTest, GivesTheCoefficientsAsTheyAreAndScalesNothing) {
    const auto answers = AnswersOf(FromEntry(
        L"<Type>SignedNumeric</Type><Min>-100</Min><Max>100</Max><Length>1</Length><A_Coef>5</A_Coef>"
        L"<B_Coef>-2</B_Coef><C_Coef>7</C_Coef>",
        L"Factor='10'"));
    EXPECT_EQ(answers.min, L"-100");
    EXPECT_EQ(answers.max, L"100");
    EXPECT_EQ(answers.aCoef, 5);
    EXPECT_EQ(answers.bCoef, -2);
    EXPECT_EQ(answers.cCoef, 7);
    EXPECT_EQ(answers.factor, 10);
}

TEST_F(CSNVTTypeTest, IsReachedByName) {
    const auto script = FromEntry(L"<Type>Enum</Type><Name>Switch</Name>", L"Factor='2'").As<IDispatch>();
    EXPECT_EQ(com::Text(com::GetMember(*script.Get(), L"ID").Get().bstrVal), L"1");
    EXPECT_EQ(com::Text(com::GetMember(*script.Get(), L"Name").Get().bstrVal), L"Switch");
    EXPECT_EQ(com::GetMember(*script.Get(), L"Factor").Get().lVal, 2);
    EXPECT_EQ(com::GetMember(*script.Get(), L"HasField").Get().boolVal, VARIANT_FALSE);
    EXPECT_EQ(com::GetMember(*script.Get(), L"IsEnumType").Get().boolVal, VARIANT_TRUE);
    const com::Variant description(L"1,On;");
    com::PutMember(*script.Get(), L"EnumDesc", description.Get());
    EXPECT_EQ(com::Text(com::GetMember(*script.Get(), L"EnumDesc").Get().bstrVal), L"1,On;");
}

TEST_F(CSNVTTypeTest, IsReadOnlyToTheHost) {
    const auto script = FromEntry(L"<Type>Enum</Type>").As<IDispatch>();
    const com::Variant text(L"2");
    for (const wchar_t* name : {L"ID", L"GenType", L"Name", L"Min", L"Units"}) {
        const auto failure = com::Attempt([&] { com::PutMember(*script.Get(), name, text.Get()); });
        ASSERT_TRUE(failure);
        EXPECT_EQ(failure->code, DISP_E_MEMBERNOTFOUND);
    }
}

} // namespace
