#include "tests/check/Documents.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

using namespace check;
using namespace checking;

namespace {

std::string Header(std::string_view rest) {
    return "<Tam><Name>Hall</Name><DevKey>K7</DevKey>" + std::string(rest) + "</Tam>";
}

} // namespace

TEST(StreamRulesTest, AGoodStreamHasNoFindings) {
    ExpectClean(WithValue("105", "21.50"));
    ExpectClean(Header("<IsLastOnDev>1</IsLastOnDev><TamObjID>-5</TamObjID><CDB>426</CDB><DDB>160</DDB>"));
    // Keywords of points in any letter case, flags, the attribute of an output.
    ExpectClean(
        WithOutput("<AI1_Out TYPEDEPENDENT=\"0\"><Visible/><snvtType>105</snvtType>"
                   "<LogicalAddress>2</LogicalAddress><IsMapAsOO>1</IsMapAsOO><ObjOffset>0</ObjOffset>"
                   "<AbsoluteObjectIndex>16</AbsoluteObjectIndex><IsWritable>0</IsWritable></AI1_Out>"));
}

TEST(StreamRulesTest, FindsWrongDocumentElements) {
    ExpectOne(RuleId::RootName,
              "<^tam><Name>H</Name><DevKey>K</DevKey><IsLastOnDev>0</IsLastOnDev>"
              "<TamObjID>3</TamObjID></tam>",
              "Tam");
    ExpectOne(RuleId::KindUnknown, "<^html><body/></html>");
}

TEST(StreamRulesTest, FindsMissingMisspeltRepeatedAndUnknownParts) {
    ExpectOne(RuleId::ElementMissing,
              "<^Tam><Name>H</Name><DevKey>K</DevKey><IsLastOnDev>0</IsLastOnDev></Tam>");
    ExpectAmong(RuleId::ElementMisspelt, Header("<IsLastOnDev>0</IsLastOnDev><^TamObjId>3</TamObjId>"),
                "TamObjID");
    ExpectOne(RuleId::ElementRepeated,
              Header("<IsLastOnDev>0</IsLastOnDev><TamObjID>3</TamObjID><^TamObjID>3</TamObjID>"));
    ExpectOne(RuleId::ElementUnknown,
              Header("<IsLastOnDev>0</IsLastOnDev><TamObjID>3</TamObjID><^Firmware>2</Firmware>"));
    // Sections are looked for at any depth.
    ExpectAmong(RuleId::ElementMisplaced, Header("<IsLastOnDev>0</IsLastOnDev><TamObjID>3</TamObjID>"
                                                 "<Firmware><^Tam><OutReferences/></Tam></Firmware>"));
    ExpectOne(RuleId::ElementMisplaced,
              Header("<IsLastOnDev>0</IsLastOnDev><TamObjID>3</TamObjID><^SNVTTYPE>2</SNVTTYPE>"));
    ExpectOne(RuleId::ElementEmpty, "<Tam><Name>H</Name><^DevKey></DevKey><IsLastOnDev>0</IsLastOnDev>"
                                    "<TamObjID>3</TamObjID></Tam>");
}

TEST(StreamRulesTest, ANameThatBreaksOffIsMisspelt) {
    ExpectAmong(RuleId::ElementMisspelt,
                WithOutput("<AI1_Out><SNVTTYPE>105</SNVTTYPE><^LOGICALADD>2</LOGICALADD></AI1_Out>"),
                "LOGICALADDRESS");
    // Less than half of a name, and what several names begin with, are no slips.
    ExpectOne(RuleId::ElementUnknown,
              WithAttribute("<AI1_Value><SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>3</LOGICALADDRESS>"
                            "<VALUE>1</VALUE><^Desc>a</Desc></AI1_Value>"));
}

TEST(StreamRulesTest, ANumberInAnotherNotationIsNotCutShort) {
    ExpectOne(RuleId::ValueNotNumber, WithValue("105", "^0x10"));
    ExpectOne(RuleId::ValueNotNumber, WithValue("105", "^21 C"), "21");
}

TEST(StreamRulesTest, LooksIntoASectionWhoseNameIsMisspelt) {
    const auto findings =
        Find("<Tam><Name>H</Name><DevKey>K</DevKey><IsLastOnDev>0</IsLastOnDev><TamObjID>3</TamObjID>"
             "<InReferences/><OutReference><AI1_Out><SNVTTYPE>99</SNVTTYPE>"
             "<LOGICALADDRESS>1</LOGICALADDRESS></AI1_Out></OutReference></Tam>");
    ASSERT_EQ(findings.size(), 2u);
    EXPECT_EQ(findings[0].rule, RuleId::ElementMisspelt);
    EXPECT_EQ(findings[0].suggestion, "OutReferences");
    EXPECT_EQ(findings[1].rule, RuleId::TypeUnknown);
}

TEST(StreamRulesTest, FindsSectionsInTheWrongOrder) {
    ExpectOne(RuleId::SectionOrder,
              Header("<IsLastOnDev>0</IsLastOnDev><TamObjID>3</TamObjID><OutReferences/>"
                     "<^InReferences/>"));
    ExpectOne(RuleId::SectionOrder,
              Header("<IsLastOnDev>0</IsLastOnDev><OutReferences/><^TamObjID>3</TamObjID>"));
}

TEST(StreamRulesTest, FindsNumbersAndFlagsThatAreNone) {
    ExpectOne(RuleId::NumberForm, Header("<IsLastOnDev>0</IsLastOnDev><TamObjID>^three</TamObjID>"));
    ExpectOne(RuleId::NumberForm,
              Header("<IsLastOnDev>0</IsLastOnDev><TamObjID>3</TamObjID><CDB>\n ^128 bytes</CDB>"), "128");
    ExpectOne(RuleId::NumberRange, Header("<IsLastOnDev>0</IsLastOnDev><TamObjID>^40000</TamObjID>"));
    ExpectOne(RuleId::NumberRange,
              Header("<IsLastOnDev>0</IsLastOnDev><TamObjID>3</TamObjID><DDB>^99999999999999999999</DDB>"));
    ExpectOne(RuleId::FlagValue, Header("<IsLastOnDev>^yes</IsLastOnDev><TamObjID>3</TamObjID>"), "1");
    ExpectOne(RuleId::FlagValue, Header("<IsLastOnDev>^2</IsLastOnDev><TamObjID>3</TamObjID>"));
    ExpectOne(RuleId::FlagPresence, WithOutput("<AI1_Out><VISIBLE>^0</VISIBLE><SNVTTYPE>105</SNVTTYPE>"
                                               "<LOGICALADDRESS>2</LOGICALADDRESS></AI1_Out>"));
    ExpectOne(RuleId::FlagValue, WithOutput("<AI1_Out><ISWRITABLE>^2</ISWRITABLE><SNVTTYPE>105</SNVTTYPE>"
                                            "<LOGICALADDRESS>2</LOGICALADDRESS></AI1_Out>"));
}

TEST(StreamRulesTest, FindsWhatStandsBetweenElements) {
    ExpectOne(
        RuleId::TextStray,
        WithOutput("<AI1_Out> ^105 <SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>2</LOGICALADDRESS></AI1_Out>"));
    ExpectOne(RuleId::TextStray, WithOutput("^105"));
    ExpectOne(
        RuleId::InstructionInside,
        WithOutput(
            "<AI1_Out><SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>2</LOGICALADDRESS><?^VISIBLE 1?></AI1_Out>"));
    ExpectOne(RuleId::TextSplit, WithValue("105", "^<!-- default -->5"));
    ExpectOne(RuleId::TextSplit, WithValue("36", "a<![CDATA[^b]]>"));
    ExpectOne(RuleId::ElementInText, WithValue("36", "<^B>a</B>c"));
    ExpectOne(RuleId::BlankAround, WithValue("105", " ^5 "));
}

TEST(StreamRulesTest, FindsAttributesThatMeanNothing) {
    ExpectOne(RuleId::AttributeUnknown,
              "<Tam ^Version=\"2\"><Name>H</Name><DevKey>K</DevKey><IsLastOnDev>0</IsLastOnDev>"
              "<TamObjID>3</TamObjID></Tam>");
    ExpectOne(RuleId::AttributeMisspelt,
              WithOutput("<AI1_Out ^TypeDependant=\"1\"><SNVTTYPE>105</SNVTTYPE>"
                         "<LOGICALADDRESS>2</LOGICALADDRESS></AI1_Out>"),
              "TypeDependent");
}

TEST(StreamRulesTest, FindsMisspeltMisplacedAndRepeatedPartsOfPoints) {
    ExpectOne(RuleId::ElementMisspelt,
              WithOutput("<AI1_Out><SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>2</LOGICALADDRESS>"
                         "<^ISMAPASO>1</ISMAPASO></AI1_Out>"),
              "ISMAPASOO");
    ExpectOne(RuleId::ElementMisplaced,
              WithOutput("<AI1_Out><SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>2</LOGICALADDRESS>"
                         "<^VALUE>1</VALUE></AI1_Out>"));
    ExpectOne(RuleId::ElementRepeated,
              WithOutput("<AI1_Out><SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>2</LOGICALADDRESS>"
                         "<^SnvtType>105</SnvtType></AI1_Out>"));
}
