#include "tests/points/Points.h"

#include <cstddef>
#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

class CDBAttributeDefinitionTest : public PointsTest {
  protected:
    com::Ref<IAttribute> One(const std::wstring& content) {
        module = WithAttributes(L"<Gain>" + content + L"</Gain>");
        return Attribute(module, L"Gain");
    }
    std::wstring TypeOf(const com::Ref<IAttribute>& attribute) {
        const auto type = Object(attribute, &IAttribute::get_SNVTType);
        return type ? Text(type, &ISNVType::get_ID) : L"(none)";
    }
    void ExpectUnknown(const std::vector<bench::Box>& boxes, std::size_t times, const std::wstring& id,
                       const CalledFrom& = {}) {
        ASSERT_EQ(boxes.size(), times);
        for (const bench::Box& box : boxes) {
            ExpectBox(box, L"Can't find the node related to SNVT ID " + id,
                      L"O_Tam_id-CSNVTType::ID [Property Let]", MB_ICONSTOP);
        }
    }
};

TEST_F(CDBAttributeDefinitionTest, ReadsTypeAndValue) {
    const auto gain = One(L"<SNVTTYPE>105</SNVTTYPE><VALUE>21.5</VALUE>");
    EXPECT_EQ(TypeOf(gain), L"105");
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), L"21.5");
}

TEST_F(CDBAttributeDefinitionTest, ReadsKeywordsInAnyLetterCase) {
    const auto gain = One(L"<SnvtType>95</SnvtType><value>4</value>");
    EXPECT_EQ(TypeOf(gain), L"95");
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), L"4");
}

TEST_F(CDBAttributeDefinitionTest, ReadsKeywordsByTheirLocalName) {
    const auto gain = One(L"<x:SNVTTYPE xmlns:x='urn:x'>95</x:SNVTTYPE><x:VALUE xmlns:x='urn:x'>4</x:VALUE>");
    EXPECT_EQ(TypeOf(gain), L"95");
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), L"4");
}

TEST_F(CDBAttributeDefinitionTest, PassesOverCommentsAndOtherNames) {
    const auto gain =
        One(L"<!--VALUE--><VALUES>9</VALUES><SNVTTYPE>105</SNVTTYPE><!--x--><VALUE>4</VALUE><Val>8</Val>");
    EXPECT_EQ(TypeOf(gain), L"105");
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), L"4");
}

TEST_F(CDBAttributeDefinitionTest, TakesTheLastOfRepeatedChildren) {
    const auto gain = One(L"<VALUE>1</VALUE><SNVTTYPE>105</SNVTTYPE><VALUE>2</VALUE><SNVTTYPE>95</SNVTTYPE>");
    EXPECT_EQ(TypeOf(gain), L"95");
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), L"2");
}

TEST_F(CDBAttributeDefinitionTest, StartsANewTypeAtEachTypeChild) {
    // The first one's name, limits and unit do not show through the second.
    const auto type =
        Object(One(L"<SNVTTYPE>105</SNVTTYPE><SNVTTYPE>95</SNVTTYPE>"), &IAttribute::get_SNVTType);
    EXPECT_EQ(Text(type, &ISNVType::get_Name), L"Switch");
    EXPECT_EQ(Text(type, &ISNVType::get_Units), L"");
    EXPECT_EQ(Text(type, &ISNVType::get_Max), L"");
    EXPECT_EQ(Long(type, &ISNVType::get_Factor), 0);
}

TEST_F(CDBAttributeDefinitionTest, TakesTheFirstChildOfAChild) {
    EXPECT_EQ(Text(One(L"<SNVTTYPE>105</SNVTTYPE><VALUE>1<b/>2</VALUE>"), &IAttribute::get_Value), L"1");
    EXPECT_EQ(Text(One(L"<SNVTTYPE>105</SNVTTYPE><VALUE><b>3</b>4</VALUE>"), &IAttribute::get_Value), L"3");
    EXPECT_EQ(Text(One(L"<SNVTTYPE>105</SNVTTYPE><VALUE><![CDATA[<5>]]></VALUE>"), &IAttribute::get_Value),
              L"<5>");
    EXPECT_EQ(TypeOf(One(L"<SNVTTYPE>95<b/>1</SNVTTYPE>")), L"95");
    EXPECT_EQ(TypeOf(One(L"<SNVTTYPE><b>8</b>1</SNVTTYPE>")), L"8");
}

TEST_F(CDBAttributeDefinitionTest, KeepsTheBlanksOfAValue) {
    const auto gain = One(L"<SNVTTYPE>83</SNVTTYPE><VALUE> 0101 </VALUE>");
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), L" 0101 ");
    EXPECT_EQ(Text(gain, &IAttribute::get_DispValue), L"0101");
}

TEST_F(CDBAttributeDefinitionTest, MakesAnEnumerationOfATypeOfBlanks) {
    const auto gain = One(L"<SNVTTYPE><![CDATA[  ]]></SNVTTYPE>");
    EXPECT_EQ(TypeOf(gain), L"");
    EXPECT_EQ(Text(Object(gain, &IAttribute::get_SNVTType), &ISNVType::get_GenType), L"Enum");
}

TEST_F(CDBAttributeDefinitionTest, KeepsTheValueWhenTheChildHasNoText) {
    EXPECT_EQ(Text(One(L"<SNVTTYPE>105</SNVTTYPE><VALUE/>"), &IAttribute::get_Value), L"");
    EXPECT_EQ(Text(One(L"<SNVTTYPE>105</SNVTTYPE><VALUE>7</VALUE><VALUE/>"), &IAttribute::get_Value), L"7");
}

TEST_F(CDBAttributeDefinitionTest, GoesOnAfterAChildWithoutText) {
    const auto gain = One(L"<DESCRIPTION/><LOGICALADDRESS/><ISPERMANENT/><VALUE/><SNVTTYPE>95</SNVTTYPE>");
    EXPECT_EQ(TypeOf(gain), L"95");
}

TEST_F(CDBAttributeDefinitionTest, ReadsTheLogicalAddress) {
    One(L"<SNVTTYPE>105</SNVTTYPE><LogicalAddress>A17</LogicalAddress>");
    EXPECT_EQ(Exported(module, L"Attributes/Gain/@LogicalAddress"), L"A17");
    One(L"<SNVTTYPE>105</SNVTTYPE><LogicalAddress>A1<b/>7</LogicalAddress>");
    EXPECT_EQ(Exported(module, L"Attributes/Gain/@LogicalAddress"), L"A1") << "the first child alone";
}

TEST_F(CDBAttributeDefinitionTest, IsPermanentUnlessTheDefinitionSaysOtherwise) {
    One(L"<SNVTTYPE>105</SNVTTYPE>");
    EXPECT_EQ(Exported(module, L"Attributes/Gain/@isPermanent"), L"1");
    One(L"<SNVTTYPE>105</SNVTTYPE><ISPERMANENT>0</ISPERMANENT>");
    EXPECT_EQ(Exported(module, L"Attributes/Gain/@isPermanent"), L"0");
    One(L"<SNVTTYPE>105</SNVTTYPE><ISPERMANENT/>");
    EXPECT_EQ(Exported(module, L"Attributes/Gain/@isPermanent"), L"1");
}

TEST_F(CDBAttributeDefinitionTest, LooksTheTypeUpTwiceSoThatAnUnknownOneIsShownTwice) {
    const auto gain = One(L"<SNVTTYPE>999</SNVTTYPE>");
    ExpectUnknown(Boxes(), 2, L"999");
    EXPECT_EQ(TypeOf(gain), L"");
    EXPECT_EQ(Text(Object(gain, &IAttribute::get_SNVTType), &ISNVType::get_GenType), L"");
}

TEST_F(CDBAttributeDefinitionTest, LooksOnlyTheLastTypeUpAgain) {
    const auto gain = One(L"<SNVTTYPE>999</SNVTTYPE><SNVTTYPE>105</SNVTTYPE>");
    ExpectUnknown(Boxes(), 1, L"999");
    EXPECT_EQ(TypeOf(gain), L"105");
}

TEST_F(CDBAttributeDefinitionTest, ShowsABadTypeTwice) {
    One(L"<SNVTTYPE>900</SNVTTYPE>");
    const auto boxes = Boxes();
    ASSERT_EQ(boxes.size(), 2u);
    for (const bench::Box& box : boxes) {
        ExpectBox(box, L"Error: SNVT_900 has a bad type", L"O_Tam_ID.CSNVTType::ID", MB_ICONSTOP);
    }
}

// The message names the identifier that the type held before: none at first.
TEST_F(CDBAttributeDefinitionTest, ShowsABadLengthTwiceAndTheIdentifierInTheSecond) {
    SetCatalogue(L"<SNVT_51><Type>Float</Type></SNVT_51>");
    EXPECT_EQ(TypeOf(One(L"<SNVTTYPE>51</SNVTTYPE>")), L"51");
    const auto boxes = Boxes();
    ASSERT_EQ(boxes.size(), 2u);
    constexpr const wchar_t* kCaption = L"O_Tam_id.CSNVTType::pGetNumeric";
    ExpectBox(boxes[0], L"Error: SNVT_ has a bad Length", kCaption, MB_ICONSTOP);
    ExpectBox(boxes[1], L"Error: SNVT_51 has a bad Length", kCaption, MB_ICONSTOP);
}

TEST_F(CDBAttributeDefinitionTest, MakesAnEnumerationOfATypeChildWithoutText) {
    const auto gain = One(L"<SNVTTYPE/>");
    EXPECT_EQ(TypeOf(gain), L"");
    EXPECT_EQ(Text(Object(gain, &IAttribute::get_SNVTType), &ISNVType::get_GenType), L"Enum");
}

TEST_F(CDBAttributeDefinitionTest, KeepsTheTypesNameWhenALaterChildHasNoText) {
    EXPECT_EQ(TypeOf(One(L"<SNVTTYPE>105</SNVTTYPE><SNVTTYPE/>")), L"105");
}

TEST_F(CDBAttributeDefinitionTest, EndsTheLoadingAtAnAttributeWithoutType) {
    module = NewModule();
    EXPECT_EQ(Load(module, Stream({}, {}, L"<A><SNVTTYPE>105</SNVTTYPE></A><B><VALUE>5</VALUE></B><C/>")),
              kObjectNotSet);
    EXPECT_EQ(LastError().description, kObjectNotSetText);
    // The attribute itself is there, for it is added before its editor is chosen.
    EXPECT_EQ(Names(Attributes(module)), (std::vector<std::wstring>{L"A", L"B"}));
    const auto b = Attribute(module, L"B");
    EXPECT_FALSE(Object(b, &IAttribute::get_SNVTType));
    EXPECT_EQ(Text(b, &IAttribute::get_Value), L"5");
    com::Bstr shown;
    EXPECT_EQ(b->get_DispValue(shown.Put()), kObjectNotSet);
    EXPECT_EQ(shown.Get(), nullptr);
}

TEST_F(CDBAttributeDefinitionTest, LoadsANumericTypeWithoutAndWithADefinitionDocument) {
    // The default value lies in the definition document; it is kept and shown
    // to nobody, and neither its presence nor its absence is an error.
    const TextFile file(Component::Folder() + L"Settings.xml",
                        L"<Tam><AppObject><NAME>Settings</NAME></AppObject><Attributes><Gain>"
                        L"<DefaultValue>1,5</DefaultValue></Gain></Attributes></Tam>");
    module = NewModule();
    const com::Bstr name(L"Settings");
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(module->Init(name.Get(), &done), S_OK);
    EXPECT_EQ(done, VARIANT_TRUE);
    EXPECT_EQ(
        Load(module,
             Stream({}, {}, L"<Gain><SNVTTYPE>105</SNVTTYPE></Gain><Rise><SNVTTYPE>51</SNVTTYPE></Rise>")),
        S_OK);
    EXPECT_EQ(Text(Attribute(module, L"Gain"), &IAttribute::get_DefaultValue), L"");
    EXPECT_EQ(Text(Attribute(module, L"Gain"), &IAttribute::get_Value), L"");
    EXPECT_EQ(Attributes(module) ? Names(Attributes(module)).size() : 0, 2u);
}

TEST_F(CDBAttributeDefinitionTest, ReportsAMissingCatalogueTwiceAndGoesOn) {
    const auto other = NewModule();
    EXPECT_EQ(other->putref_XmlSNVTDoc(nullptr), S_OK);
    const auto gain = One(L"<SNVTTYPE>105</SNVTTYPE><VALUE>3</VALUE>");
    const auto boxes = Boxes();
    ASSERT_EQ(boxes.size(), 2u);
    for (const bench::Box& box : boxes) {
        ExpectReport(box, kObjectNotSetText, L"CSNVTType", L"ID [Property Let]  -  ID = '105'");
    }
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), L"3");
}

} // namespace
