// What an export document may hold stands twice: in the host's compiler, which stops at the
// first fault, and in the checks, which tell all. Both are asked of the same documents.

#include "check/Check.h"
#include "core/RunTimeError.h"
#include "host/ExportDocument.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <regex>
#include <string>
#include <vector>

namespace {

constexpr const char* kGood =
    R"(<O_Tam_id DevAddr="5" AppID="a" DevKey="K7" TamObjectID="3" IsLastOnDev="0"><Inputs>)"
    R"(<AO1_In1 LinkReference="0000" LogicalAddress="1" SNVTType="81" isPermanent="1" IsConnected="0"/>)"
    R"(</Inputs><Outputs><AI1_Out LogicalAddress="2" SNVTType="105" isMapAsOO="0" ObjOffset="" )"
    R"(AbsoluteObjectIndex="7" IsConnected="0" IsWritable="False" DisplayWritable="0"/></Outputs><Attributes>)"
    R"(<AI1_Offset LogicalAddress="3" SNVTType="105" Value="1.5" isPermanent="True" IsConnected="1" )"
    R"(EnumDesc="0,Off;1,On;"/></Attributes></O_Tam_id>)";

bool IsCompiled(const std::string& document) {
    try {
        orv::ReadExportDocument(std::wstring(document.begin(), document.end()));
        return true;
    } catch (const tam::RunTimeError&) {
        return false;
    }
}

/// The document with each match of a pattern, one at a time, in this other form.
std::vector<std::string> Changed(const char* pattern, const std::string& form) {
    const std::string good = kGood;
    const std::regex piece(pattern);
    std::vector<std::string> documents;
    for (auto match = std::sregex_iterator(good.begin(), good.end(), piece); match != std::sregex_iterator();
         ++match) {
        documents.push_back(good.substr(0, static_cast<std::size_t>(match->position())) +
                            match->format(form) + match->suffix().str());
    }
    return documents;
}

void ExpectAgreement(const std::vector<std::string>& documents) {
    EXPECT_FALSE(documents.empty());
    for (const std::string& document : documents) {
        EXPECT_EQ(IsCompiled(document), !check::CheckText(document, {}).HasErrors()) << document;
    }
}

// Of an enumeration's description the checks know more: the compiler takes any text.
constexpr const char* kValue = R"re( (?!EnumDesc)(\w+=)"[^"]*")re";

} // namespace

TEST(ExportAgreementTest, TheChecksRefuseTheValuesThatTheCompilerRefuses) {
    EXPECT_TRUE(IsCompiled(kGood));
    for (const std::string value : {"",
                                    "0",
                                    "1",
                                    "2",
                                    "x",
                                    "True",
                                    "False",
                                    "true",
                                    "-1",
                                    "-32768",
                                    "-32769",
                                    "32767",
                                    "32768",
                                    "65535",
                                    "65536",
                                    " 1",
                                    "1 ",
                                    "+1",
                                    "01",
                                    "1.0",
                                    "1,5",
                                    "0000",
                                    "99999999999999999999"}) {
        SCOPED_TRACE(value);
        ExpectAgreement(Changed(kValue, " $1\"" + value + "\""));
    }
}

TEST(ExportAgreementTest, TheChecksRefuseTheAttributesThatTheCompilerRefuses) {
    ExpectAgreement(Changed(R"( \w+="[^"]*")", ""));
    ExpectAgreement(Changed(R"( (\w+)=("[^"]*"))", " $1x=$2"));
    ExpectAgreement(Changed(R"( \w+="[^"]*")", "$& Colour=\"red\""));
    ExpectAgreement(Changed(R"(<\w+)", "$& Colour=\"red\""));
}

TEST(ExportAgreementTest, TheChecksRefuseTheElementsThatTheCompilerRefuses) {
    ExpectAgreement(Changed(R"(<(Inputs|Outputs|Attributes)>.*?</\1>)", ""));
    ExpectAgreement(Changed(R"(<(Inputs|Outputs|Attributes)>.*?</\1>)", "$&$&"));
    ExpectAgreement(Changed(R"((<(Inputs|Outputs)>.*?</\2>)(<(Outputs|Attributes)>.*?</\4>))", "$3$1"));
    ExpectAgreement(Changed(R"(<(Inputs|Outputs|Attributes)>(.*?)</\1>)", "<Extra>$2</Extra>"));
    ExpectAgreement(Changed(R"(<(\w+)([^>]*)/>)", "<$1$2><X/></$1>"));
    for (const char* between :
         {"$&text", "$&<!-- a comment -->", "$&\n", "$&<![CDATA[]]>", "$&<?note it?>"}) {
        SCOPED_TRACE(between);
        ExpectAgreement(Changed("[^/]>(?=<)", between));
        ExpectAgreement(Changed("/>", between));
    }
}
