#include "tests/check/Documents.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

using namespace check;
using namespace checking;

namespace {

std::string Module(std::string_view sizes, std::string_view rest = "") {
    return "<AppObject><NAME>Module</NAME><ID>TAM</ID><DESCRIPTION>d</DESCRIPTION><CATEGORY>c</"
           "CATEGORY><DataSizes>" +
           std::string(sizes) + "</DataSizes>" + std::string(rest) + "</AppObject>";
}

std::string Default(std::string_view name, std::string_view value) {
    return "<Tam><Attributes><" + std::string(name) + "><DefaultValue>" + std::string(value) +
           "</DefaultValue></" + std::string(name.substr(name.starts_with('^') ? 1U : 0U)) +
           "></Attributes></Tam>";
}

std::string Channel(std::string_view configuration) {
    return "<AppObject><NAME>n</NAME><ID>o_tam_ai_id</ID><OutReferences><Out><SNVTTYPE>105</SNVTTYPE></Out>"
           "</OutReferences><Attributes><Offset><SNVTTYPE>105</SNVTTYPE><VALUE>0</VALUE></Offset></"
           "Attributes>"
           "<TAMConfig>" +
           std::string(configuration) + "</TAMConfig></AppObject>";
}

Surroundings WithStream() {
    Surroundings surroundings = Types();
    StreamSummary stream;
    stream.file = "stream.xml";
    stream.attributes = {{"AI1_Offset", "SignedNumeric"}, {"DI1_Invert", "Enum"}};
    surroundings.Add(stream);
    return surroundings;
}

} // namespace

TEST(DefinitionRulesTest, AGoodDefinitionHasNoFindings) {
    ExpectClean(Module("<T0 Name=\"Module\" CDB_Size=\"32\" Size_area_1=\"0\" Size_area_2=\"255\"/><T5/>",
                       Default("AI1_Offset", "0.00")),
                WithStream());
    ExpectClean("<Library><AppObject><name>m</name></AppObject>" + Default("A_B", "1") + "</Library>");
}

TEST(DefinitionRulesTest, FindsRowsThatAreNone) {
    ExpectOne(RuleId::RowName, Module("<^T6/>"));
    ExpectOne(RuleId::RowName, Module("<^Total/>"));
    ExpectOne(RuleId::RowTwice, Module("<T1/><^R1/>"));
    ExpectOne(RuleId::RowStray, Module("^<!-- bytes -->"));
    ExpectOne(RuleId::RowStray, Module("<T1/>^more"));
}

TEST(DefinitionRulesTest, FindsSizesThatAreNoBytes) {
    ExpectOne(RuleId::SizeRange, Module("<T0 CDB_Size=\"^256\"/>"));
    ExpectOne(RuleId::SizeRange, Module("<T0 Size_area_1=\"^-1\"/>"));
    ExpectOne(RuleId::SizeRange, Module("<T0 Size_area_2=\"^many\"/>"));
    ExpectOne(RuleId::SizeRange, Module("<T0 ^CDB_Size=\"\"/>"));
    ExpectOne(RuleId::AttributeMisspelt, Module("<T0 ^CDBSize=\"1\"/>"), "CDB_Size");
    ExpectOne(RuleId::AttributeMisspelt, Module("<T0 ^name=\"a\"/>"), "Name");
}

TEST(DefinitionRulesTest, FindsDefaultsThatAreNone) {
    ExpectOne(RuleId::DefaultNotNumber, Module("", Default("A_B", "^warm")));
    ExpectOne(RuleId::DefaultNotNumber, Module("", Default("A_B", "^1,5")), "1.5");
    ExpectOne(RuleId::DefaultNotTaken, Module("", Default("^DI1_Invert", "0")), "", WithStream());
    ExpectOne(RuleId::ElementMisspelt, Module("", Default("^ai1_offset", "0")), "AI1_Offset", WithStream());
}

TEST(DefinitionRulesTest, FindsWhatADefinitionLacks) {
    ExpectOne(RuleId::ElementMissing, "<^AppObject><ID>TAM</ID><DESCRIPTION>d</DESCRIPTION></AppObject>");
    ExpectOne(RuleId::RootName,
              "<^AppObjekt><NAME>n</NAME><DESCRIPTION>d</DESCRIPTION><CATEGORY>c</CATEGORY></AppObjekt>",
              "AppObject");
    ExpectOne(RuleId::ElementMisspelt, "<AppObject><NAME>n</NAME><^DataSises/></AppObject>", "DataSizes");
}

TEST(DefinitionRulesTest, FindsConfigurationsOfNothing) {
    ExpectClean(
        Channel("<Attributes><Attrib Name=\"Offset\" Visible=\"1\" UnitDependent=\"1\" Differential=\"0\"/>"
                "</Attributes><OutReferences><OutReference Name=\"Out\" Visible=\"0\"/></OutReferences>"));
    ExpectOne(RuleId::ConfigNothing,
              Channel("<Attributes><Attrib Name=\"^Ofset\" Visible=\"1\"/></Attributes>"), "Offset");
    ExpectOne(RuleId::ConfigNothing,
              Channel("<OutReferences><OutReference Name=\"^Offset\"/></OutReferences>"));
    ExpectOne(RuleId::AttributeMissing, Channel("<Attributes><^Attrib Visible=\"1\"/></Attributes>"));
    ExpectOne(RuleId::FlagValue,
              Channel("<Attributes><Attrib Name=\"Offset\" Visible=\"^true\"/></Attributes>"), "1");
    ExpectOne(RuleId::ElementMisspelt, Channel("<Attributes><^Attribs Name=\"Offset\"/></Attributes>"),
              "Attrib");
}

TEST(DefinitionRulesTest, FindsAttributesThatMeanNothingWhereverTheyStand) {
    ExpectOne(RuleId::AttributeUnknown, "<AppObject><NAME ^a=\"1\">n</NAME><DataSizes/></AppObject>");
    for (const std::string_view tags :
         {"<Tam ^a=\"1\"><Attributes><A><DefaultValue>1</DefaultValue></A></Attributes></Tam>",
          "<Tam><Attributes ^a=\"1\"><A><DefaultValue>1</DefaultValue></A></Attributes></Tam>",
          "<Tam><Attributes><A ^a=\"1\"><DefaultValue>1</DefaultValue></A></Attributes></Tam>",
          "<Tam><Attributes><A><DefaultValue ^a=\"1\">1</DefaultValue></A></Attributes></Tam>"}) {
        ExpectOne(RuleId::AttributeUnknown,
                  "<AppObject><NAME>n</NAME><DataSizes/>" + std::string(tags) + "</AppObject>");
    }
    ExpectOne(RuleId::AttributeUnknown,
              "<AppObject ^a=\"1\"><NAME>n</NAME><OutReferences/><TAMConfig/></AppObject>");
    ExpectOne(RuleId::AttributeUnknown,
              "<AppObject><NAME>n</NAME><OutReferences/><TAMConfig ^a=\"1\"/></AppObject>");
}
