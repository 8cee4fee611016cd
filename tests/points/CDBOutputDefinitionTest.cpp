#include "tests/points/Points.h"

#include <string>

using namespace support;
using namespace points;

namespace {

class CDBOutputDefinitionTest : public PointsTest {
  protected:
    com::Ref<IOutput> One(const std::wstring& content, const std::wstring& attributes = {}) {
        module = WithOutputs(L"<Out1 " + attributes + L">" + content + L"</Out1>");
        return Output(module, L"Out1");
    }
    std::wstring TypeOf(const com::Ref<IOutput>& output) {
        const auto type = Object(output, &IOutput::get_SNVTType);
        return type ? Text(type, &ISNVType::get_ID) : L"(none)";
    }
    std::wstring CompatibleOf(const com::Ref<IOutput>& output) {
        const auto compatible = Object(output, &IOutput::get_SNVTCompatible);
        return compatible ? Text(compatible, &ICompatibleSNVT::get_ID) : L"(none)";
    }
};

TEST_F(CDBOutputDefinitionTest, LooksItsTypeUpOnce) {
    const auto output = One(L"<SNVTTYPE>105</SNVTTYPE>");
    EXPECT_EQ(TypeOf(output), L"105");
    EXPECT_EQ(Text(Object(output, &IOutput::get_SNVTType), &ISNVType::get_Name), L"Temperature");
    EXPECT_EQ(CompatibleOf(output), L"105");
}

TEST_F(CDBOutputDefinitionTest, ShowsAnUnknownTypeOnceAndKeepsItAsCompatible) {
    const auto output = One(L"<SNVTTYPE>999</SNVTTYPE>");
    ExpectOnlyBox(Boxes(), L"Can't find the node related to SNVT ID 999",
                  L"O_Tam_id-CSNVTType::ID [Property Let]", MB_ICONSTOP);
    EXPECT_EQ(TypeOf(output), L"");
    EXPECT_EQ(CompatibleOf(output), L"999");
}

TEST_F(CDBOutputDefinitionTest, HasNoTypeWithoutATypeChild) {
    const auto output = One(L"<LOGICALADDRESS>A</LOGICALADDRESS>");
    EXPECT_FALSE(Object(output, &IOutput::get_SNVTType));
    EXPECT_FALSE(Object(output, &IOutput::get_SNVTCompatible));
    EXPECT_FALSE(Object(output.As<ISubItemConnable>(), &ISubItemConnable::get_SNVTType));
    EXPECT_FALSE(Object(output.As<IDisplayItem>(), &IDisplayItem::get_SNVTType));
}

TEST_F(CDBOutputDefinitionTest, WarnsOfAnEmptyTypeAndMakesItAnEnumeration) {
    const auto output = One(L"<SNVTTYPE/><LOGICALADDRESS>A</LOGICALADDRESS>");
    ExpectOnlyBox(Boxes(),
                  L"Out1: SNVT Compatibility list not defined into the XML file of the object Module.",
                  L"Warning", MB_ICONSTOP);
    EXPECT_EQ(TypeOf(output), L"");
    EXPECT_EQ(Text(Object(output, &IOutput::get_SNVTType), &ISNVType::get_GenType), L"Enum");
    EXPECT_EQ(CompatibleOf(output), L"");
    EXPECT_EQ(Interop(module, L"Outputs", L"Out1", L"LogicalAddress"), L"A");
}

TEST_F(CDBOutputDefinitionTest, TakesTheWholeTextAsOneIdentifier) {
    SetCatalogue(L"<SNVT_A><Name>A</Name></SNVT_A>");
    EXPECT_EQ(CompatibleOf(One(L"<SNVTTYPE>A</SNVTTYPE>")), L"A");
    EXPECT_EQ(CompatibleOf(One(L"<SNVTTYPE>A.B</SNVTTYPE>")), L"A.B");
    EXPECT_EQ(Boxes().size(), 1u);
}

TEST_F(CDBOutputDefinitionTest, StartsANewTypeAtEachTypeChild) {
    const auto output = One(L"<SNVTTYPE>105</SNVTTYPE><SNVTTYPE>95</SNVTTYPE>");
    EXPECT_EQ(TypeOf(output), L"95");
    EXPECT_EQ(CompatibleOf(output), L"95");
    EXPECT_EQ(Text(Object(output, &IOutput::get_SNVTType), &ISNVType::get_Units), L"");
}

TEST_F(CDBOutputDefinitionTest, ReadsItsTextsForTheExport) {
    One(L"<LOGICALADDRESS>A1</LOGICALADDRESS><ISMAPASOO>1</ISMAPASOO><OBJOFFSET>4</OBJOFFSET>"
        L"<ABSOLUTEOBJECTINDEX>17</ABSOLUTEOBJECTINDEX><ISWRITABLE>True</ISWRITABLE>");
    EXPECT_EQ(Exported(module, L"Outputs/Out1/@LogicalAddress"), L"A1");
    EXPECT_EQ(Exported(module, L"Outputs/Out1/@isMapAsOO"), L"1");
    EXPECT_EQ(Exported(module, L"Outputs/Out1/@ObjOffset"), L"4");
    EXPECT_EQ(Exported(module, L"Outputs/Out1/@AbsoluteObjectIndex"), L"17");
    EXPECT_EQ(Exported(module, L"Outputs/Out1/@IsWritable"), L"1");
}

TEST_F(CDBOutputDefinitionTest, IsNotWritableUnlessTheDefinitionSaysSo) {
    One(L"<SNVTTYPE>105</SNVTTYPE>");
    EXPECT_EQ(Exported(module, L"Outputs/Out1/@IsWritable"), L"0");
    EXPECT_EQ(Exported(module, L"Outputs/Out1/@isMapAsOO"), L"0");
    EXPECT_EQ(Exported(module, L"Outputs/Out1/@ObjOffset"), L"");
    EXPECT_EQ(Exported(module, L"Outputs/Out1/@AbsoluteObjectIndex"), L"");
}

TEST_F(CDBOutputDefinitionTest, ReadsKeywordsInAnyLetterCaseByLocalName) {
    const auto output = One(L"<SnvtType>95</SnvtType><x:LogicalAddress xmlns:x='urn:x'>B</x:LogicalAddress>");
    EXPECT_EQ(TypeOf(output), L"95");
    EXPECT_EQ(Interop(module, L"Outputs", L"Out1", L"LogicalAddress"), L"B");
}

TEST_F(CDBOutputDefinitionTest, PassesOverCommentsAndOtherNames) {
    EXPECT_EQ(TypeOf(One(L"<!--SNVTTYPE--><SNVT_TYPE>8</SNVT_TYPE><SNVTTYPE>95</SNVTTYPE><TYPE>51</TYPE>")),
              L"95");
}

TEST_F(CDBOutputDefinitionTest, TakesTheWholeTextOfAChild) {
    EXPECT_EQ(TypeOf(One(L"<SNVTTYPE>9<b/>5</SNVTTYPE>")), L"95");
}

TEST_F(CDBOutputDefinitionTest, AnswersNotTypeDependentWhateverTheDefinitionSays) {
    for (const wchar_t* attributes : {L"", L"TYPEDEPENDENT='1'", L"TypeDependent=''", L"typedependent='0'"}) {
        EXPECT_FALSE(Flag(One(L"<SNVTTYPE>105</SNVTTYPE>", attributes), &IOutput::get_IsTypeDependent));
    }
}

TEST_F(CDBOutputDefinitionTest, AnswersVisibleWhateverTheDefinitionSays) {
    for (const wchar_t* content : {L"", L"<VISIBLE/>", L"<VISIBLE>0</VISIBLE>"}) {
        EXPECT_TRUE(Flag(One(content), &IOutput::get_Visible));
    }
}

TEST_F(CDBOutputDefinitionTest, AnswersNotDisplayWritable) {
    const auto output = One(L"<ISWRITABLE>1</ISWRITABLE>", L"DisplayWritable='1'");
    EXPECT_FALSE(Flag(output, &IOutput::get_DisplayWritable));
    EXPECT_FALSE(Flag(output.As<IDisplayItem>(), &IDisplayItem::get_IsWritable));
}

} // namespace
