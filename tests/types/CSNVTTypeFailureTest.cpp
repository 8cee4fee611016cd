#include "tests/types/Types.h"

#include <algorithm>
#include <string>

using namespace support;
using namespace types;

namespace {

class CSNVTTypeFailureTest : public TypesTest {
  protected:
    /// The plain box of a failure inside one of the two value reads.
    void ExpectReadFailure(const std::wstring& error, const std::wstring& procedure, const CalledFrom& = {}) {
        ExpectMessage(L"Error " + error + L" in procedure " + procedure + L" of Class Module CSNVTType",
                      L"Gateway Object", 0);
    }
};

TEST_F(CSNVTTypeFailureTest, ReportsACatalogueThatWasNeverHandedOver) {
    EXPECT_EQ(AnswersOf(Assigned(L"105")), Answers());
    ExpectAssignmentReport(kObjectNotSetText, L"105");
}

TEST_F(CSNVTTypeFailureTest, ReportsACatalogueThatWasTakenAway) {
    SetCatalogue(Entry(L"1", L"<Name>One</Name>"));
    EXPECT_EQ(NewModule()->putref_XmlSNVTDoc(nullptr), S_OK);
    EXPECT_EQ(AnswersOf(Assigned(L"1")), Answers());
    ExpectAssignmentReport(kObjectNotSetText, L"1");
}

TEST_F(CSNVTTypeFailureTest, ReportsACatalogueWithoutDocumentElement) {
    EXPECT_EQ(NewModule()->putref_XmlSNVTDoc(NewDocument().Get()), S_OK);
    EXPECT_EQ(AnswersOf(Assigned(L"1")), Answers());
    ExpectAssignmentReport(kObjectNotSetText, L"1");
}

TEST_F(CSNVTTypeFailureTest, ReportsAnIdentifierThatMakesNoPath) {
    SetCatalogue(Entry(L"1", L"<Name>One</Name>"));
    EXPECT_EQ(AnswersOf(Assigned(L"1[")), Answers());
    const auto boxes = Boxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_FALSE(boxes[0].isMessageBox);
    EXPECT_EQ(boxes[0].caption, L"Gateway Object - Error report");
    // Description and source are the document's own.
    const bool named =
        std::any_of(boxes[0].controls.begin(), boxes[0].controls.end(), [](const auto& control) {
            return control.second.find(L"* Calling object (Me.Name or module name): \r\n  CSNVTType\r\n"
                                       L"* Calling function: \r\n  ID [Property Let]  -  ID = '1['") !=
                   std::wstring::npos;
        });
    EXPECT_TRUE(named);
}

TEST_F(CSNVTTypeFailureTest, ReportsAFactorOutOfRangeAndKeepsWhatWasStored) {
    const auto answers = AnswersOf(FromEntry(L"<Name>N</Name>", L"Z3Region='4' Factor='3000000000'"));
    ExpectAssignmentReport(kOverflowText, L"1");
    EXPECT_EQ(answers.z3Region, 4);
    EXPECT_EQ(answers.factor, 0);
    EXPECT_EQ(answers.name, L""); // the walk over the children never began
    EXPECT_EQ(answers.id, L"");
}

TEST_F(CSNVTTypeFailureTest, ReportsARegionOutOfRange) {
    EXPECT_EQ(AnswersOf(FromEntry(L"", L"Z3Region='-2147483649'")), Answers());
    ExpectAssignmentReport(kOverflowText, L"1");
}

TEST_F(CSNVTTypeFailureTest, ShowsABadTypeAndWalksOn) {
    const auto answers = AnswersOf(FromEntry(L"<Type>Odd</Type><Name>Behind</Name>", L"Factor='2'"));
    ExpectMessage(L"Error: SNVT_1 has a bad type", L"O_Tam_ID.CSNVTType::ID", MB_ICONSTOP);
    EXPECT_EQ(answers.name, L"Behind");
    EXPECT_EQ(answers.factor, 2);
    EXPECT_EQ(answers.genType, L"Odd");
    EXPECT_EQ(answers.luiType, L"");
    EXPECT_EQ(answers.id, L"1");
}

TEST_F(CSNVTTypeFailureTest, ComparesGeneralTypesExactly) {
    for (const wchar_t* genType : {L"float", L"SIGNEDNUMERIC", L"BitField", L"Text", L"struct"}) {
        EXPECT_EQ(AnswersOf(FromEntry(std::wstring(L"<Type>") + genType + L"</Type>")).luiType, L"")
            << genType;
        ExpectMessage(L"Error: SNVT_1 has a bad type", L"O_Tam_ID.CSNVTType::ID", MB_ICONSTOP);
    }
}

TEST_F(CSNVTTypeFailureTest, ShowsAnEmptyTypeAsBad) {
    EXPECT_EQ(AnswersOf(FromEntry(L"<Type/>")).genType, L"");
    ExpectMessage(L"Error: SNVT_1 has a bad type", L"O_Tam_ID.CSNVTType::ID", MB_ICONSTOP);
}

TEST_F(CSNVTTypeFailureTest, ShowsALengthThatIsNoNumberAndGoesOn) {
    const auto answers = AnswersOf(FromEntry(L"<Type>Float</Type><Unit>before</Unit><Length>two</Length>"
                                             L"<Max>5</Max><Name>Behind</Name>"));
    ExpectReadFailure(L"13 (Type mismatch)", L"pGetNumeric");
    EXPECT_EQ(answers.units, L"before");
    EXPECT_EQ(answers.length, 0); // and no message of a bad one: the read ended at the fault
    EXPECT_EQ(answers.max, L"");
    EXPECT_EQ(answers.name, L"Behind");
    EXPECT_EQ(answers.luiType, L"Float");
    EXPECT_EQ(answers.id, L"1");
}

TEST_F(CSNVTTypeFailureTest, ShowsALengthWithoutText) {
    FromEntry(L"<Type>Bitfield</Type><Length/>");
    ExpectReadFailure(L"13 (Type mismatch)", L"pGetNumeric");
}

TEST_F(CSNVTTypeFailureTest, ShowsALengthOutOfRange) {
    FromEntry(L"<Type>Float</Type><Length>3000000000</Length>");
    ExpectReadFailure(L"6 (Overflow)", L"pGetNumeric");
}

TEST_F(CSNVTTypeFailureTest, ShowsEachCoefficientThatIsNoNumber) {
    for (const std::wstring name : {L"A_Coef", L"B_Coef", L"C_Coef"}) {
        const auto answers = AnswersOf(FromEntry(L"<Type>SignedNumeric</Type><Length>2</Length><" + name +
                                                 L">x</" + name + L"><InvalidValue>i</InvalidValue>"));
        ExpectReadFailure(L"13 (Type mismatch)", L"pGetNumeric");
        EXPECT_EQ(answers.length, 2);
        EXPECT_EQ(answers.invalidValue, L"");
        EXPECT_EQ(answers.id, L"1");
    }
}

TEST_F(CSNVTTypeFailureTest, ShowsATextsLengthThatIsNoNumber) {
    const auto answers =
        AnswersOf(FromEntry(L"<Type>Textual</Type><Length>long</Length><Name>Behind</Name>"));
    ExpectReadFailure(L"13 (Type mismatch)", L"pGetTextual");
    EXPECT_EQ(answers.luiType, L"Textual");
    EXPECT_EQ(answers.length, 0);
    EXPECT_EQ(answers.name, L"Behind");
    EXPECT_EQ(answers.id, L"1");
}

TEST_F(CSNVTTypeFailureTest, ShowsATextsLengthOutOfRange) {
    FromEntry(L"<Type>Textual</Type><Length>3000000000</Length>");
    ExpectReadFailure(L"6 (Overflow)", L"pGetTextual");
}

TEST_F(CSNVTTypeFailureTest, ReadsNoNumbersWhereTheyDoNotCount) {
    for (const wchar_t* genType : {L"Enum", L"Struct"}) {
        FromEntry(std::wstring(L"<Type>") + genType + L"</Type><Length>x</Length><A_Coef>x</A_Coef>");
        ExpectNoBox();
    }
    FromEntry(L"<Type>Textual</Type><Length>2</Length><A_Coef>x</A_Coef>");
    ExpectNoBox();
}

TEST_F(CSNVTTypeFailureTest, NeverFailsTheOwner) {
    // Loading goes on after each of these; Assigned expects success.
    SetCatalogue(Entry(L"1", L"<Type>Odd</Type>") + Entry(L"2", L"<Type>Float</Type>") +
                 Entry(L"3", L"", L"Factor='1e300'"));
    module = Loaded(
        Stream({}, L"<A><SNVTTYPE>1</SNVTTYPE></A><B><SNVTTYPE>2</SNVTTYPE></B><C><SNVTTYPE>3</SNVTTYPE></C>"
                   L"<D><SNVTTYPE>4</SNVTTYPE></D>"));
    EXPECT_EQ(Long(Object(module, &IAppObject::get_Outputs), &IOutputs::get_Count), 4);
    EXPECT_EQ(Boxes().size(), 4u);
}

} // namespace
