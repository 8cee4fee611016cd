#include "tests/points/Points.h"

#include <string>

using namespace support;
using namespace points;

namespace {

/// Definitions that a person or another program writes differently: comments,
/// line breaks, sections, prefixes and order.
class UnusualDefinitionsTest : public PointsTest {
  protected:
    std::wstring InputField(const std::wstring& content, const wchar_t* field) {
        module = WithInputs(L"<In1>" + content + L"</In1>");
        return Interop(module, L"Inputs", L"In1", field);
    }
    com::Ref<IOutput> OneOutput(const std::wstring& content) {
        module = WithOutputs(L"<Out1>" + content + L"</Out1>");
        return Output(module, L"Out1");
    }
    static std::wstring TypeOf(const com::Ref<IOutput>& output) {
        const auto type = Object(output, &IOutput::get_SNVTType);
        return type ? Text(type, &ISNVType::get_ID) : L"(none)";
    }
    com::Ref<IAttribute> OneAttribute(const std::wstring& content) {
        module = WithAttributes(L"<Gain>" + content + L"</Gain>");
        return Attribute(module, L"Gain");
    }
};

TEST_F(UnusualDefinitionsTest, AnInputIsPermanentByTheFirstChildsText) {
    EXPECT_EQ(InputField(L"<ISPERMANENT>1<!-- kept --></ISPERMANENT>", L"isPermanent"), L"True");
    EXPECT_EQ(InputField(L"<ISPERMANENT>1<b/>0</ISPERMANENT>", L"isPermanent"), L"True");
    EXPECT_EQ(InputField(L"<ISPERMANENT>1<![CDATA[1]]></ISPERMANENT>", L"isPermanent"), L"True");
    EXPECT_EQ(InputField(L"<ISPERMANENT><b>1</b></ISPERMANENT>", L"isPermanent"), L"True");
    EXPECT_EQ(InputField(L"<ISPERMANENT><![CDATA[1]]></ISPERMANENT>", L"isPermanent"), L"True");
    EXPECT_EQ(InputField(L"<ISPERMANENT><!--0-->1</ISPERMANENT>", L"isPermanent"), L"False");
}

TEST_F(UnusualDefinitionsTest, AnInputTakesTheLastOfRepeatedChildren) {
    EXPECT_EQ(InputField(L"<ISPERMANENT>1</ISPERMANENT><IsPermanent/>", L"isPermanent"), L"False");
    EXPECT_EQ(InputField(L"<LOGICALADDRESS>A</LOGICALADDRESS><logicaladdress>B</logicaladdress>",
                         L"LogicalAddress"),
              L"B");
}

TEST_F(UnusualDefinitionsTest, AnInputsChildrenStandInAnyOrder) {
    const std::wstring children[] = {
        L"<MANDATORY/>",
        L"<VISIBLE/>",
        L"<LOGICALADDRESS>A1</LOGICALADDRESS>",
        L"<ISPERMANENT>1</ISPERMANENT>",
        L"<SNVTCOMPATIBILITYLIST>105,8</SNVTCOMPATIBILITYLIST>",
        L"<PROTOCOLREFERENCE>P2</PROTOCOLREFERENCE>",
        L"<SNVTTYPE>105</SNVTTYPE>",
    };
    std::wstring forwards;
    std::wstring backwards;
    for (const std::wstring& child : children) {
        forwards += child;
        backwards = child + backwards;
    }
    for (const std::wstring& content : {forwards, backwards}) {
        EXPECT_EQ(InputField(content, L"LogicalAddress"), L"A1");
        EXPECT_EQ(Interop(module, L"Inputs", L"In1", L"isPermanent"), L"True");
        EXPECT_EQ(Interop(module, L"Inputs", L"In1", L"Reference"), L"P2");
        EXPECT_EQ(Interop(module, L"Inputs", L"In1", L"SNVTType"), L"105");
        EXPECT_EQ(
            Text(Object(Input(module, L"1"), &IInput::get_SNVTCompatibles), &ICompatibleSNVTs::ToString),
            L"105,8");
    }
}

TEST_F(UnusualDefinitionsTest, AnOutputTakesTheWholeTextOfAChild) {
    EXPECT_EQ(TypeOf(OneOutput(L"<SNVTTYPE><!-- temperature -->105</SNVTTYPE>")), L"105");
    EXPECT_EQ(TypeOf(OneOutput(L"<SNVTTYPE>1<!-- split -->05</SNVTTYPE>")), L"105");
    EXPECT_EQ(TypeOf(OneOutput(L"<SNVTTYPE>1<b>0</b><![CDATA[5]]></SNVTTYPE>")), L"105");
    EXPECT_EQ(TypeOf(OneOutput(L"<SNVTTYPE>\n    105\n  </SNVTTYPE>")), L"105");
    EXPECT_EQ(Text(Object(Output(module, L"1"), &IOutput::get_SNVTCompatible), &ICompatibleSNVT::get_ID),
              L"105");
}

TEST_F(UnusualDefinitionsTest, AnOutputTakesTheWholeTextsForTheExport) {
    OneOutput(L"<LOGICALADDRESS><!--x-->A1</LOGICALADDRESS><ISMAPASOO><![CDATA[1]]></ISMAPASOO>"
              L"<OBJOFFSET>1<b>2</b></OBJOFFSET><ABSOLUTEOBJECTINDEX>\n 17\n</ABSOLUTEOBJECTINDEX>"
              L"<ISWRITABLE><b>True</b></ISWRITABLE>");
    EXPECT_EQ(Exported(module, L"Outputs/Out1/@LogicalAddress"), L"A1");
    EXPECT_EQ(Exported(module, L"Outputs/Out1/@isMapAsOO"), L"1");
    EXPECT_EQ(Exported(module, L"Outputs/Out1/@ObjOffset"), L"12");
    EXPECT_EQ(Exported(module, L"Outputs/Out1/@AbsoluteObjectIndex"), L"17");
    EXPECT_EQ(Exported(module, L"Outputs/Out1/@IsWritable"), L"1");
}

TEST_F(UnusualDefinitionsTest, AnOutputWarnsOfATypeOfACommentAlone) {
    const auto output = OneOutput(L"<SNVTTYPE><!-- none yet --></SNVTTYPE>");
    ExpectOnlyBox(Boxes(),
                  L"Out1: SNVT Compatibility list not defined into the XML file of the object Module.",
                  L"Warning", MB_ICONSTOP);
    EXPECT_EQ(TypeOf(output), L"");
}

TEST_F(UnusualDefinitionsTest, AnOutputsAttributesStandInAnyOrderAndWithPrefixes) {
    module = WithOutputs(L"<Out1 b='2' xmlns:x='urn:x' x:TypeDependent='0' a='1'>"
                         L"<SNVTTYPE>105</SNVTTYPE></Out1>");
    EXPECT_FALSE(Flag(Output(module, L"Out1"), &IOutput::get_IsTypeDependent));
    EXPECT_EQ(TypeOf(Output(module, L"Out1")), L"105");
}

TEST_F(UnusualDefinitionsTest, AnAttributeTakesAFirstChildThatIsAComment) {
    // The first child counts, whatever it is.
    EXPECT_EQ(Text(OneAttribute(L"<SNVTTYPE>36</SNVTTYPE><VALUE><!--c-->5</VALUE>"), &IAttribute::get_Value),
              L"c");
}

TEST_F(UnusualDefinitionsTest, AnAttributesChildrenStandInAnyOrder) {
    const auto gain =
        OneAttribute(L"<VALUE>7</VALUE><ISPERMANENT>0</ISPERMANENT><LOGICALADDRESS>A</LOGICALADDRESS>"
                     L"<VISIBLE/><SNVTTYPE>36</SNVTTYPE><DESCRIPTION>d</DESCRIPTION>");
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), L"7");
    EXPECT_EQ(Text(gain, &IAttribute::get_DispValue), L"7");
    EXPECT_EQ(Exported(module, L"Attributes/Gain/@isPermanent"), L"0");
    EXPECT_EQ(Exported(module, L"Attributes/Gain/@LogicalAddress"), L"A");
}

TEST_F(UnusualDefinitionsTest, InstructionsAmongTheChildrenAreNoFields) {
    EXPECT_EQ(TypeOf(OneOutput(L"<?tool keep?><SNVTTYPE>105</SNVTTYPE><?tool end?>")), L"105");
    EXPECT_EQ(InputField(L"<?tool keep?><SNVTTYPE>8</SNVTTYPE>text", L"SNVTType"), L"8");
    EXPECT_EQ(Text(OneAttribute(L"text<?tool keep?><SNVTTYPE>36</SNVTTYPE><VALUE>7</VALUE>"),
                   &IAttribute::get_Value),
              L"7");
}

} // namespace
