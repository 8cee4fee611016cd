#include "tests/types/Types.h"

using namespace support;
using namespace types;

namespace {

/// Several assignments to one object.
class CSNVTTypeReassignTest : public TypesTest {
  protected:
    com::Ref<IAttribute> gain;

    void SetUp() override {
        TypesTest::SetUp();
        SetCatalogue(
            Entry(L"full",
                  L"<Name>Full</Name><Type>SignedNumeric</Type><Unit>degC</Unit><BACnetUnit>62</BACnetUnit>"
                  L"<Min>-1.5</Min><Max>1.5</Max><Length>2</Length><A_Coef>1</A_Coef><B_Coef>2</B_Coef>"
                  L"<C_Coef>3</C_Coef><InvalidValue>7FFF</InvalidValue>",
                  L"Factor='10' Z3Region='5'") +
            Entry(L"name", L"<Name>Name</Name>") + Entry(L"enum", L"<Type>Enum</Type>") +
            Entry(L"struct", L"<Type>Struct</Type>") + Entry(L"text", L"<Type>Textual</Type>") +
            Entry(L"float", L"<Type>Float</Type><Min>0.5</Min>") + Entry(L"bad", L"<Type>Odd</Type>") +
            Entry(L"zero", L"<Type>Float</Type><Length>0</Length><Unit>z</Unit>") +
            Entry(L"same", L"<Type>Float</Type><Length>0</Length>"));
        gain = Untyped();
    }
    void TearDown() override {
        gain.Reset();
        TypesTest::TearDown();
    }
    Answers Full(const CalledFrom& = {}) {
        const Answers answers = AnswersOf(Assign(gain, L"full"));
        EXPECT_EQ(answers.name, L"Full");
        EXPECT_EQ(answers.length, 2);
        return answers;
    }
};

TEST_F(CSNVTTypeReassignTest, KeepsWhatTheNewEntryLacks) {
    Answers expected = Full();
    expected.id = L"name";
    expected.name = L"Name";
    EXPECT_EQ(AnswersOf(Assign(gain, L"name")), expected);
}

TEST_F(CSNVTTypeReassignTest, ATypeThatIsChangedLeavesItsEqualsAlone) {
    const Type first = Assign(gain, L"full");
    const Type other = Assigned(L"full");
    const Answers full = AnswersOf(other);
    EXPECT_EQ(AnswersOf(first), full);

    EXPECT_EQ(first.As<IEnumType>()->put_EnumDesc(com::Bstr(L"1,On;").Get()), S_OK);
    Answers described = full;
    described.enumDesc = L"1,On;";
    described.isEnumType = false;
    EXPECT_EQ(AnswersOf(first), described);
    EXPECT_EQ(AnswersOf(other), full);

    Assign(gain, L"name");
    described.id = L"name";
    described.name = L"Name";
    EXPECT_EQ(AnswersOf(first), described);
    EXPECT_EQ(AnswersOf(other), full);
}

TEST_F(CSNVTTypeReassignTest, KeepsTheNumbersOfAnEarlierTypeInAStructure) {
    Answers expected = Full();
    expected.id = L"struct";
    expected.genType = L"Struct";
    expected.luiType = L"Invalid";
    EXPECT_EQ(AnswersOf(Assign(gain, L"struct")), expected);
}

TEST_F(CSNVTTypeReassignTest, SetsTheLengthOfAnEnumeration) {
    Answers expected = Full();
    expected.id = L"enum";
    expected.genType = L"Enum";
    expected.luiType = L"Logic";
    expected.length = 1;
    expected.isEnumType = true;
    EXPECT_EQ(AnswersOf(Assign(gain, L"enum")), expected);
}

TEST_F(CSNVTTypeReassignTest, KeepsTheLengthForATextWithoutOne) {
    Answers expected = Full();
    expected.id = L"text";
    expected.genType = L"Textual";
    expected.luiType = L"Textual";
    EXPECT_EQ(AnswersOf(Assign(gain, L"text")), expected);
}

TEST_F(CSNVTTypeReassignTest, KeepsTheLengthForANumberWithoutOneAndShowsNothing) {
    Answers expected = Full();
    expected.id = L"float";
    expected.genType = L"Float";
    expected.luiType = L"Float";
    expected.min = Local(L"0.5");
    EXPECT_EQ(AnswersOf(Assign(gain, L"float")), expected);
    ExpectNoBox();
}

TEST_F(CSNVTTypeReassignTest, KeepsTheClassificationForABadType) {
    Answers expected = Full();
    expected.id = L"bad";
    expected.genType = L"Odd";
    EXPECT_EQ(AnswersOf(Assign(gain, L"bad")), expected);
    ExpectMessage(L"Error: SNVT_bad has a bad type", L"O_Tam_ID.CSNVTType::ID", MB_ICONSTOP);
}

TEST_F(CSNVTTypeReassignTest, NamesThePreviousIdentifierInABadLength) {
    Full();
    const Answers answers = AnswersOf(Assign(gain, L"zero"));
    ExpectMessage(L"Error: SNVT_full has a bad Length", L"O_Tam_id.CSNVTType::pGetNumeric", MB_ICONSTOP);
    EXPECT_EQ(answers.id, L"zero");
    EXPECT_EQ(answers.length, 0);
    EXPECT_EQ(answers.units, L"z");
    Assign(gain, L"same");
    ExpectMessage(L"Error: SNVT_zero has a bad Length", L"O_Tam_id.CSNVTType::pGetNumeric", MB_ICONSTOP);
    Assign(gain, L"same");
    ExpectMessage(L"Error: SNVT_same has a bad Length", L"O_Tam_id.CSNVTType::pGetNumeric", MB_ICONSTOP);
}

TEST_F(CSNVTTypeReassignTest, KeepsTheDescriptionOfTheOwner) {
    const Type type = Assign(gain, L"enum");
    EXPECT_EQ(Put(type.As<IEnumType>(), &IEnumType::put_EnumDesc, L"1,On;"), S_OK);
    Assign(gain, L"full");
    EXPECT_EQ(Text(type, &ISNVType::get_EnumDesc), L"1,On;");
}

TEST_F(CSNVTTypeReassignTest, AnswersTheSameAfterTheSameAssignment) {
    const Answers first = Full();
    EXPECT_EQ(Full(), first);
}

TEST_F(CSNVTTypeReassignTest, ReturnsToAnEarlierType) {
    const Answers first = Full();
    Assign(gain, L"enum");
    EXPECT_EQ(Full(), first);
}

} // namespace
