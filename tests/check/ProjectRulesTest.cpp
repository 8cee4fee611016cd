#include "tests/check/Documents.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

using namespace check;
using namespace checking;

namespace {

Surroundings WithStream() {
    Surroundings surroundings = Types();
    StreamSummary stream;
    stream.objectId = "3";
    stream.outputs = {"AI1_Out", "AI2_Out"};
    surroundings.Add(stream);
    return surroundings;
}

std::string Module(std::string_view rest, std::string_view id = "3", std::string_view x = "12.5") {
    return "<Project><O_Tam_id><UserName>Hall</UserName><X_Position>" + std::string(x) +
           "</X_Position><Y_Position>0</Y_Position><DevKey>K7</DevKey><TamObjID>" + std::string(id) +
           "</TamObjID>" + std::string(rest) + "</O_Tam_id></Project>";
}

std::string Channel(std::string_view keys, std::string_view rest = "") {
    return "<o_tam_ai_id>" + std::string(keys) + "<UserName>u</UserName>" + std::string(rest) +
           "</o_tam_ai_id>";
}

constexpr std::string_view kKeys = "<DevKey>K7</DevKey><TamObjectKey>AI1</TamObjectKey>";

} // namespace

TEST(ProjectRulesTest, AGoodProjectHasNoFindings) {
    ExpectClean(Module("<Outputs><AI1_Out "
                       "IsDisplayable=\"1\"/></Outputs><OutReferences><ai2_out>1</ai2_out></OutReferences>"),
                WithStream());
    ExpectClean(
        "<Project>" +
            Channel(
                kKeys,
                "<Key>k</Key><Outputs><Out Visible=\"1\" IsDisplayable=\"0\"/></Outputs>"
                "<Attributes><Setup Value=\"1\" SNVT_Type=\"22\" EnumDesc=\"0,Off;1,On;\"/></Attributes>") +
            "<Other_Object><Anything/></Other_Object></Project>",
        WithStream());
}

TEST(ProjectRulesTest, ADeviceStreamInItIsNoObject) {
    std::string text = Module("<Outputs><AI1_Out IsDisplayable=\"1\"/></Outputs>");
    text.insert(text.find("</Project>"),
                "<Tam><Name>Hall</Name><DevKey>K7</DevKey><IsLastOnDev>1</IsLastOnDev><TamObjID>3</TamObjID>"
                "<Attributes><Gain><VALUE>1</VALUE></Gain></Attributes></Tam>");
    ExpectClean(text, WithStream());
}

TEST(ProjectRulesTest, FindsEmptyElements) {
    ExpectOne(RuleId::ElementEmpty,
              "<O_Tam_id><^UserName/><X_Position>1</X_Position><Y_Position>1</Y_Position>"
              "<DevKey>K</DevKey><TamObjID>3</TamObjID></O_Tam_id>");
}

TEST(ProjectRulesTest, FindsPositionsAndNumbersThatAreNone) {
    ExpectOne(RuleId::ValueDecimalMark, Module("", "3", "^12,5"), "12.5");
    ExpectOne(RuleId::NumberForm, Module("", "3", "^left"));
    ExpectOne(RuleId::NumberRange, Module("", "3", "^1e999"));
    // An object alone, under the name of another definition.
    ExpectOne(RuleId::NumberRange, "<V><UserName>u</UserName><X_Position>^1E309</X_Position></V>");
    ExpectOne(RuleId::NumberRange, Module("", "^70000"));
}

TEST(ProjectRulesTest, FindsModulesChannelsAndPointsThatAreNotThere) {
    ExpectOne(RuleId::ProjectModule, Module("", "^99"), "", WithStream());
    ExpectOne(RuleId::ProjectPoint, Module("<OutReferences><^AI1_Uot>1</AI1_Uot></OutReferences>"), "AI1_Out",
              WithStream());
    ExpectOne(RuleId::ProjectPoint, Module("<Outputs><^AI9_Low IsDisplayable=\"1\"/></Outputs>"), "",
              WithStream());
    ExpectOne(RuleId::ProjectChannel,
              "<Project>" + Channel("<DevKey>K7</DevKey><TamObjectKey>^AI77</TamObjectKey>") + "</Project>",
              "", WithStream());
    // Without a stream nobody knows.
    ExpectClean(Module("<OutReferences><AI1_Uot>1</AI1_Uot></OutReferences>"));
}

TEST(ProjectRulesTest, FindsPointsThatAChannelDoesNotHave) {
    // The identifier names the channel, in whichever letter case; its attributes are the host's.
    const std::string definition =
        "<AppObject><NAME>n</NAME><ID>O_Tam_AI_id</ID><OutReferences><Out><SNVTTYPE>105</SNVTTYPE></Out>"
        "</OutReferences>ATTRIBUTES<TAMConfig/></AppObject>";
    const auto with = [&](const std::string& attributes) {
        std::string text = definition;
        StreamSummary summary;
        CheckBytes(text.replace(text.find("ATTRIBUTES"), 10, attributes), Types(), &summary);
        Surroundings surroundings = Types();
        surroundings.Add(summary);
        return surroundings;
    };
    const auto project = [](std::string_view rest) {
        return "<Project>" + Channel(kKeys, rest) + "</Project>";
    };
    const Surroundings known =
        with("<Attributes><Offset><SNVTTYPE>105</SNVTTYPE><VALUE>0</VALUE></Offset></Attributes>");
    ExpectClean(
        project("<Outputs><out Visible=\"1\"/></Outputs><Attributes><OFFSET Value=\"1\"/></Attributes>"),
        known);
    ExpectOne(RuleId::ProjectPoint, project("<Attributes><^Ofset Value=\"1\"/></Attributes>"), "Offset",
              known);
    ExpectOne(RuleId::ProjectPoint, project("<Outputs><^Uot Visible=\"1\"/></Outputs>"), "Out", known);
    ExpectOne(RuleId::ProjectPoint, project("<Attributes><^Out Value=\"1\"/></Attributes>"), "", known);
    // What follows a section without an end tag is no point of it.
    ExpectOne(RuleId::XmlUnclosed,
              "<Project><o_tam_ai_id><DevKey>K7</DevKey><^Outputs>\n<TamObjectKey>AI1</TamObjectKey>"
              "<Attributes></Attributes></o_tam_ai_id></Project>",
              "", known);
    ExpectOne(RuleId::XmlUnclosed,
              "<Project><O_Tam_id><DevKey>K7</DevKey><^Outputs>\n<UserName>Hall</UserName>"
              "<TamObjID>3</TamObjID></O_Tam_id></Project>",
              "", WithStream());
    // A section that the definition leaves out, and a definition that is not there, say nothing.
    ExpectClean(project("<Inputs><In1 Visible=\"1\"/></Inputs><Attributes><Ofset Value=\"1\"/></Attributes>"),
                with(""));
    ExpectClean(project("<Attributes><Ofset Value=\"1\"/></Attributes>"));
}

TEST(ProjectRulesTest, FindsKeysThatAreMissingOrThereTwice) {
    ExpectOne(RuleId::ProjectKey, "<Project>" + Channel(kKeys) +
                                      Channel("<DevKey>K7</DevKey><TamObjectKey>^ai1</TamObjectKey>") +
                                      "</Project>");
    ExpectOne(RuleId::ElementMissing, "<Project><^o_tam_ai_id><DevKey>K7</DevKey></o_tam_ai_id></Project>");
}

TEST(ProjectRulesTest, FindsFlagsValuesAndDescriptions) {
    ExpectOne(RuleId::FlagValue, Module("<OutReferences><AI1_Out>^true</AI1_Out></OutReferences>"), "1",
              WithStream());
    ExpectOne(RuleId::EnumDescription,
              "<Project>" + Channel(kKeys, "<Attributes><Setup EnumDesc=\"^0,Off\"/></Attributes>") +
                  "</Project>");
    ExpectOne(RuleId::ValueLimit,
              "<Project>" +
                  Channel(kKeys, "<Attributes><Offset Value=\"^999\" SNVT_Type=\"105\"/></Attributes>") +
                  "</Project>");
    ExpectOne(RuleId::ElementMisspelt, Module("<^TamObId>3</TamObId>"), "TamObjID");
}
