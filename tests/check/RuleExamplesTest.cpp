// Each rule's example, put where such a piece stands in a good document, breaks its rule.

#include "tests/check/Documents.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

using namespace check;
using namespace checking;

namespace {

/// What an example is put in place of.
constexpr std::string_view kPlace = "@";

/// Good documents but for the place.
std::vector<std::string> Frames() {
    const std::string good = Stream({}, {}, {});
    const auto inPlaceOf = [&](std::string_view piece) {
        std::string document = good;
        return document.replace(document.find(piece), piece.size(), kPlace);
    };
    const std::string point = "<LOGICALADDRESS>9</LOGICALADDRESS>@";
    const std::string definition = "<AppObject><Name>n</Name>";
    const std::string entry = "<SNVTCatalogue><SNVT_1><Name>x</Name><Type>SignedNumeric</Type>";
    const std::string project = "<Project><O_Tam_id><UserName>u</UserName><X_Position>1</X_Position>"
                                "<Y_Position>1</Y_Position><DevKey>K7</DevKey>";
    return {
        "@",
        "@" + good,
        inPlaceOf("<Tam>"),
        inPlaceOf("<Name>Hall</Name>"),
        inPlaceOf("<TamObjID>3</TamObjID>"),
        inPlaceOf("<InReferences>"),
        inPlaceOf("<OutReferences></OutReferences>"),
        WithInput("@"),
        WithInput("<AO1_In1>" + point + "<SNVTTYPE>81</SNVTTYPE></AO1_In1>"),
        WithInput("<AO1_In1>" + point + "</AO1_In1>"),
        WithOutput("@"),
        WithOutput("<AI1_Out><SNVTTYPE>105</SNVTTYPE>" + point + "</AI1_Out>"),
        WithOutput("<AI1_Out>" + point + "</AI1_Out>"),
        WithAttribute("@"),
        WithAttribute("<AI1_Offset><SNVTTYPE>105</SNVTTYPE>" + point + "</AI1_Offset>"),
        WithAttribute("<AI1_Offset><VALUE>1</VALUE>" + point + "</AI1_Offset>"),
        WithAttribute("<AI1_Offset>" + point + "</AI1_Offset>"),
        definition + "@</AppObject>",
        definition + "<DataSizes>@</DataSizes></AppObject>",
        definition + "<Tam><Attributes><A_B>@</A_B></Attributes></Tam></AppObject>",
        definition + "<Tam><Attributes>@</Attributes></Tam></AppObject>",
        "<AppObject><Name>n</Name><Inputs/><Outputs/><Attributes><Offset><NAME>Offset</NAME></Offset></"
        "Attributes>"
        "<TAMConfig><Attributes>@</Attributes></TAMConfig></AppObject>",
        "<SNVTCatalogue>@</SNVTCatalogue>",
        entry + "<Length>2</Length>@</SNVT_1></SNVTCatalogue>",
        entry + "@</SNVT_1></SNVTCatalogue>",
        "<SNVTCatalogue><SNVT_1><Name>x</Name><Type>Enum</Type><Length>1</Length>@</SNVT_1></SNVTCatalogue>",
        "<SNVTCatalogue><SNVT_1><Name>x</Name>@</SNVT_1></SNVTCatalogue>",
        "<Device><FWVersion>@</FWVersion></Device>",
        "<Device><FWVersion><V1><Objects>@</Objects></V1></FWVersion></Device>",
        "<Device><FWVersion><V1><Objects><Library><o_tam_id/>@</Library></Objects></V1></FWVersion></Device>",
        project + "@</O_Tam_id></Project>",
        project + "<TamObjID>3</TamObjID>@</O_Tam_id></Project>",
        "<Project><O_Tam_id>@</O_Tam_id></Project>",
        "<Project><o_tam_ai_id><DevKey>K7</DevKey>@<UserName>u</UserName></o_tam_ai_id></Project>",
        "<O_Tam_id DevAddr=\"5\" AppID=\"a\" DevKey=\"K7\" TamObjectID=\"3\" IsLastOnDev=\"0\">"
        "@<Outputs/><Attributes/></O_Tam_id>",
        "<O_Tam_id DevAddr=\"5\" AppID=\"a\" DevKey=\"K7\" TamObjectID=\"3\" IsLastOnDev=\"0\"><Inputs>"
        "<AO1_In1 LogicalAddress=\"1\" SNVTType=\"105\" isPermanent=\"1\" @/></Inputs>"
        "<Outputs/><Attributes/></O_Tam_id>",
    };
}

std::string Repeated(std::string_view text, std::size_t times) {
    std::string all;
    for (std::size_t i = 0; i < times; ++i) {
        all += text;
    }
    return all;
}

/// Rules whose example says in words what it is, or that have none: what the words mean.
std::map<RuleId, std::string> InWords() {
    const std::string good = Stream({}, {}, {});
    return {
        {RuleId::FileEmpty, " \r\n"},
        {RuleId::EncodingInvalid, "<Tam><Name>B\xFCro</Name></Tam>"},
        {RuleId::EncodingMismatch, R"(<?xml version="1.0" encoding="UTF-16"?>)" + good},
        {RuleId::XmlCharacter, "<Tam><Name>\x07</Name></Tam>"},
        {RuleId::XmlTooDeep, Repeated("<a>", 257) + Repeated("</a>", 257)},
        {RuleId::XmlTooLong, "<Tam><" + std::string(50'001, 'n') + "/></Tam>"},
        {RuleId::ElementMissing, "<Tam><Name>Hall</Name></Tam>"},
        {RuleId::SectionOrder, "<Tam><Name>Hall</Name><DevKey>K</DevKey><IsLastOnDev>0</IsLastOnDev>"
                               "<TamObjID>3</TamObjID><Attributes/><InReferences/></Tam>"},
        {RuleId::TypeFaulty, WithValue("300", "1")},
        {RuleId::AddressTwice, WithOutput("<AI1_Out><LOGICALADDRESS>4</LOGICALADDRESS></AI1_Out>"
                                          "<AI2_Out><LOGICALADDRESS>4</LOGICALADDRESS></AI2_Out>")},
        {RuleId::EntryLimitMissing, "<SNVTCatalogue><SNVT_1><Name>x</Name><Type>SignedNumeric</Type>"
                                    "<Length>2</Length><Min>0</Min></SNVT_1></SNVTCatalogue>"},
        {RuleId::ProjectKey,
         "<Project>" +
             Repeated("<o_tam_ai_id><DevKey>K7</DevKey><TamObjectKey>AI1</TamObjectKey></o_tam_ai_id>", 2) +
             "</Project>"},
        {RuleId::TooManyFindings, WithOutput(Repeated("<X/>", 10'001))},
    };
}

bool Breaks(RuleId rule, const std::string& document) {
    static const Surroundings run = [] {
        Surroundings surroundings = Types();
        StreamSummary stream;
        CheckText(WithAttribute("<DI1_Invert><SNVTTYPE>22</SNVTTYPE></DI1_Invert>"), Types(), &stream);
        surroundings.Add(stream);
        return surroundings;
    }();
    const auto findings = CheckBytes(document, run).findings;
    return std::ranges::any_of(findings, [&](const Finding& finding) { return finding.rule == rule; });
}

} // namespace

TEST(RuleExamplesTest, EachExampleBreaksItsRule) {
    const std::vector<std::string> frames = Frames();
    const auto inWords = InWords();
    for (const Rule& rule : AllRules()) {
        if (const auto told = inWords.find(rule.id); told != inWords.end()) {
            EXPECT_TRUE(Breaks(rule.id, told->second)) << rule.name;
            continue;
        }
        EXPECT_TRUE(std::ranges::any_of(
            frames,
            [&](std::string_view frame) {
                const std::size_t place = frame.find(kPlace);
                const auto with = [&](std::string_view piece) {
                    return std::string(frame.substr(0, place)).append(piece).append(frame.substr(place + 1));
                };
                return Breaks(rule.id, with(rule.example)) && !Breaks(rule.id, with(""));
            }))
            << rule.name << ": " << rule.example;
    }
}
