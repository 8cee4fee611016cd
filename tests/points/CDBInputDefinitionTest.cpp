#include "tests/points/Points.h"

#include <cstddef>
#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

class CDBInputDefinitionTest : public PointsTest {
  protected:
    com::Ref<IInput> One(const std::wstring& content) {
        module = WithInputs(L"<In1>" + content + L"</In1>");
        return Input(module, L"In1");
    }
    std::wstring Field(const std::wstring& content, const std::wstring& field) {
        One(content);
        return Interop(module, L"Inputs", L"In1", field);
    }
    std::wstring List(const com::Ref<IInput>& input) {
        return Text(Object(input, &IInput::get_SNVTCompatibles), &ICompatibleSNVTs::ToString);
    }
    void ExpectWarnings(std::initializer_list<const wchar_t*> names, const CalledFrom& = {}) {
        const auto boxes = Boxes();
        ASSERT_EQ(boxes.size(), names.size());
        std::size_t i = 0;
        for (const std::wstring name : names) {
            ExpectBox(boxes[i++],
                      name + L": SNVT Compatibility list not defined into the XML file of the object Module.",
                      L"Warning", MB_ICONSTOP);
        }
    }
};

TEST_F(CDBInputDefinitionTest, ReadsTheLogicalAddress) {
    EXPECT_EQ(Field(L"<LOGICALADDRESS>A1</LOGICALADDRESS>", L"LogicalAddress"), L"A1");
}

TEST_F(CDBInputDefinitionTest, ReadsTheProtocolReference) {
    EXPECT_EQ(Field(L"<PROTOCOLREFERENCE>P2</PROTOCOLREFERENCE>", L"Reference"), L"P2");
}

TEST_F(CDBInputDefinitionTest, ReadsTheTypeAsText) {
    // The text is kept whether the catalogue knows it or not.
    EXPECT_EQ(Field(L"<SNVTTYPE>105</SNVTTYPE>", L"SNVTType"), L"105");
    EXPECT_EQ(Field(L"<SNVTTYPE>999</SNVTTYPE>", L"SNVTType"), L"999");
}

TEST_F(CDBInputDefinitionTest, IsPermanentForExactlyOne) {
    EXPECT_EQ(Field(L"<ISPERMANENT>1</ISPERMANENT>", L"isPermanent"), L"True");
    for (const wchar_t* text : {L"true", L"True", L"0", L"11", L"-1", L"1.0", L"01"}) {
        EXPECT_EQ(Field(std::wstring(L"<ISPERMANENT>") + text + L"</ISPERMANENT>", L"isPermanent"), L"False")
            << text;
    }
    EXPECT_EQ(Field(L"<ISPERMANENT/>", L"isPermanent"), L"False");
    EXPECT_EQ(Field(L"", L"isPermanent"), L"False");
}

TEST_F(CDBInputDefinitionTest, IsNotPermanentForAOneWithABlank) {
    EXPECT_EQ(Field(L"<ISPERMANENT> 1</ISPERMANENT>", L"isPermanent"), L"False");
    EXPECT_EQ(Field(L"<ISPERMANENT>1 </ISPERMANENT>", L"isPermanent"), L"False");
    EXPECT_EQ(Field(L"<ISPERMANENT><![CDATA[ 1]]></ISPERMANENT>", L"isPermanent"), L"False");
}

TEST_F(CDBInputDefinitionTest, ExportsThePermanenceAsAFlag) {
    One(L"<ISPERMANENT>1</ISPERMANENT>");
    EXPECT_EQ(Exported(module, L"Inputs/In1/@isPermanent"), L"1");
    One(L"<ISPERMANENT>true</ISPERMANENT>");
    EXPECT_EQ(Exported(module, L"Inputs/In1/@isPermanent"), L"0");
}

TEST_F(CDBInputDefinitionTest, ReadsTheCompatibilityList) {
    EXPECT_EQ(List(One(L"<SNVTCOMPATIBILITYLIST>105,8,105,51</SNVTCOMPATIBILITYLIST>")), L"105,8,51");
}

TEST_F(CDBInputDefinitionTest, KeepsTheBlanksOfTheCompatibilityList) {
    EXPECT_EQ(List(One(L"<SNVTCOMPATIBILITYLIST> 105, 8</SNVTCOMPATIBILITYLIST>")), L" 105, 8");
}

TEST_F(CDBInputDefinitionTest, AddsTheListsOfRepeatedChildren) {
    EXPECT_EQ(List(One(L"<SNVTCOMPATIBILITYLIST>105</SNVTCOMPATIBILITYLIST>"
                       L"<SNVTCOMPATIBILITYLIST>8,105</SNVTCOMPATIBILITYLIST>")),
              L"105,8");
}

TEST_F(CDBInputDefinitionTest, StartsWithAnEmptyListAndNoWarning) {
    EXPECT_EQ(List(One(L"")), L"");
    EXPECT_TRUE(Boxes().empty());
}

TEST_F(CDBInputDefinitionTest, WarnsOfAnEmptyListAndGoesOn) {
    EXPECT_EQ(Field(L"<SNVTCOMPATIBILITYLIST/><LOGICALADDRESS>A1</LOGICALADDRESS>", L"LogicalAddress"),
              L"A1");
    ExpectWarnings({L"In1"});
}

TEST_F(CDBInputDefinitionTest, WarnsOfAListWhoseFirstFieldIsEmpty) {
    EXPECT_EQ(List(One(L"<SNVTCOMPATIBILITYLIST>,105</SNVTCOMPATIBILITYLIST>")), L"");
    ExpectWarnings({L"In1"});
}

TEST_F(CDBInputDefinitionTest, WarnsOnceForEachInput) {
    module =
        WithInputs(L"<In1><SNVTCOMPATIBILITYLIST/></In1><In2><SNVTCOMPATIBILITYLIST>8</SNVTCOMPATIBILITYLIST>"
                   L"</In2><In3><SNVTCOMPATIBILITYLIST></SNVTCOMPATIBILITYLIST></In3>");
    ExpectWarnings({L"In1", L"In3"});
    EXPECT_EQ(Names(Inputs(module)), (std::vector<std::wstring>{L"In1", L"In2", L"In3"}));
}

TEST_F(CDBInputDefinitionTest, DoesNotWarnOfAnEmptyChildWhileTheListHasEntries) {
    EXPECT_EQ(List(One(L"<SNVTCOMPATIBILITYLIST>8</SNVTCOMPATIBILITYLIST><SNVTCOMPATIBILITYLIST/>")), L"8");
}

TEST_F(CDBInputDefinitionTest, NamesItsModuleInTheWarning) {
    module = Loaded(Stream(L"<In1><SNVTCOMPATIBILITYLIST/></In1>", {}, {}, L"Valve 3"));
    ExpectOnlyBox(Boxes(),
                  L"In1: SNVT Compatibility list not defined into the XML file of the object Valve 3.",
                  L"Warning", MB_ICONSTOP);
}

TEST_F(CDBInputDefinitionTest, ReadsKeywordsInAnyLetterCaseByLocalName) {
    EXPECT_EQ(Field(L"<logicalAddress>A1</logicalAddress>", L"LogicalAddress"), L"A1");
    EXPECT_EQ(Field(L"<x:SnvtType xmlns:x='urn:x'>8</x:SnvtType>", L"SNVTType"), L"8");
}

TEST_F(CDBInputDefinitionTest, PassesOverCommentsAndOtherNames) {
    EXPECT_EQ(
        Field(L"<!--SNVTTYPE--><SNVTTYPES>9</SNVTTYPES><SNVTTYPE>8</SNVTTYPE><TYPE>7</TYPE>", L"SNVTType"),
        L"8");
}

TEST_F(CDBInputDefinitionTest, TakesTheFirstChildOfAChild) {
    EXPECT_EQ(Field(L"<SNVTTYPE>1<b/>2</SNVTTYPE>", L"SNVTType"), L"1");
    EXPECT_EQ(Field(L"<SNVTTYPE><![CDATA[<5>]]></SNVTTYPE>", L"SNVTType"), L"<5>");
}

TEST_F(CDBInputDefinitionTest, TakesAChildWithoutTextForAnEmptyText) {
    EXPECT_EQ(Field(L"<SNVTTYPE>8</SNVTTYPE><SNVTTYPE/>", L"SNVTType"), L"");
    EXPECT_EQ(Field(L"<LOGICALADDRESS/>", L"LogicalAddress"), L"");
}

TEST_F(CDBInputDefinitionTest, AnswersVisibleAndNotMandatoryWhateverTheDefinitionSays) {
    for (const wchar_t* content : {L"", L"<VISIBLE/>", L"<VISIBLE>0</VISIBLE>", L"<MANDATORY/>",
                                   L"<MANDATORY>1</MANDATORY>", L"<VISIBLE/><MANDATORY/>"}) {
        const auto input = One(content);
        EXPECT_TRUE(Flag(input, &IInput::get_Visible)) << content;
        EXPECT_FALSE(Flag(input, &IInput::get_Mandatory)) << content;
    }
}

} // namespace
