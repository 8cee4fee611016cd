// A missing end tag is one finding, and what stands after it is checked.

#include "tests/check/Documents.h"
#include "tests/Places.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

using namespace check;
using namespace checking;

namespace {

/// The document has a "^" before each thing that breaks a rule, in the order of the rules.
void ExpectAll(const std::vector<RuleId>& rules, std::string_view marked) {
    SCOPED_TRACE(marked);
    std::string text;
    std::vector<Place> expected;
    std::size_t line = 1;
    std::size_t column = 1;
    for (const char c : marked) {
        if (c == '^') {
            ASSERT_LT(expected.size(), rules.size());
            expected.push_back({rules[expected.size()], line, column});
            continue;
        }
        text += c;
        line += c == '\n' ? 1U : 0U;
        column = c == '\n' ? 1 : column + 1;
    }
    ASSERT_EQ(expected.size(), rules.size());
    EXPECT_EQ(Places(Find(text)), expected);
}

constexpr RuleId kUnclosed = RuleId::XmlUnclosed;

constexpr std::string_view kHead =
    "<Tam><Name>Hall</Name><DevKey>K7</DevKey><IsLastOnDev>0</IsLastOnDev><TamObjID>3</TamObjID>";
constexpr std::string_view kInput =
    "<AO1_In1><LOGICALADDRESS>1</LOGICALADDRESS><SNVTCOMPATIBILITYLIST>105</SNVTCOMPATIBILITYLIST>"
    "<SNVTTYPE>105</SNVTTYPE></AO1_In1>";
constexpr std::string_view kOutput =
    "<AI1_Out><SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>2</LOGICALADDRESS></AI1_Out>";
constexpr std::string_view kWarm =
    "<AI1_Offset><SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>3</LOGICALADDRESS><VALUE>^warm</VALUE></AI1_Offset>";

/// All sections of a stream, with a value that is no number.
std::string Sections() {
    return "<InReferences>" + std::string(kInput) + "</InReferences>\n<OutReferences>" +
           std::string(kOutput) + "</OutReferences>\n<Attributes>" + std::string(kWarm) +
           "</Attributes></Tam>";
}

std::string Definition(std::string_view identity, std::string_view rows, std::string_view defaults) {
    return "<AppObject>" + std::string(identity) + "\n<!-- one row for each -->\n<DataSizes>" +
           std::string(rows) + "\n<!-- defaults -->\n<Tam><Attributes>" + std::string(defaults) +
           "</Attributes></Tam></AppObject>";
}

constexpr std::string_view kEntry1 =
    "<SNVT_1><Name>SNVT_amp</Name><Type>SignedNumeric</Type><Min>0</Min><Max>5</Max><Length>2</Length>";
constexpr std::string_view kEntry3 =
    "\n<SNVT_3><Name>SNVT_angle</Name><Type>UnsignedNumeric</Type><Min>0</Min><Max>^65,535</Max>"
    "<Length>2</Length></SNVT_3>";

} // namespace

TEST(MissingEndTagsTest, OfAPartOfAStreamHidesNothing) {
    const std::vector<RuleId> kRules = {kUnclosed, RuleId::ValueNotNumber};
    ExpectAll(kRules, "<Tam><^Name>Hall\n<DevKey>K7</DevKey><IsLastOnDev>0</IsLastOnDev>"
                      "<TamObjID>3</TamObjID>" +
                          Sections());
    ExpectAll(kRules, "<Tam><Name>Hall</Name><^DevKey>K7\n<IsLastOnDev>0</IsLastOnDev>"
                      "<TamObjID>3</TamObjID>" +
                          Sections());
    ExpectAll(kRules, "<Tam><Name>Hall</Name><DevKey>K7</DevKey><^IsLastOnDev>0\n"
                      "<TamObjID>3</TamObjID>" +
                          Sections());
    ExpectAll(kRules, "<Tam><Name>Hall</Name><DevKey>K7</DevKey><IsLastOnDev>0</IsLastOnDev>"
                      "<^TamObjID>3\n<CDB>128</CDB>" +
                          Sections());
    ExpectAll(kRules, std::string(kHead) + "<^CDB>128\n<!-- points -->\n" + Sections());
}

TEST(MissingEndTagsTest, OfAnEmptyPartHidesNothing) {
    ExpectAll({kUnclosed, RuleId::ElementEmpty, RuleId::ValueNotNumber},
              "<Tam><Name>Hall</Name><^^DevKey><IsLastOnDev>0</IsLastOnDev><TamObjID>3</TamObjID>" +
                  Sections());
}

TEST(MissingEndTagsTest, OfASectionIsOneFinding) {
    const std::string outputs = "<OutReferences>" + std::string(kOutput) + "</OutReferences>";
    const std::string attributes = "<Attributes>" + std::string(kWarm) + "</Attributes></Tam>";
    ExpectAll({kUnclosed, RuleId::ValueNotNumber}, std::string(kHead) + "<^InReferences>" +
                                                       std::string(kInput) + "\n" + outputs + "\n" +
                                                       attributes);
    ExpectAll({kUnclosed, RuleId::ValueNotNumber},
              std::string(kHead) + "<InReferences>" + std::string(kInput) +
                  "</InReferences>\n<^OutReferences>" + std::string(kOutput) + "\n" + attributes);
    ExpectAll({kUnclosed, RuleId::ElementRepeated}, std::string(kHead) + "<^InReferences>" +
                                                        std::string(kInput) + "\n" + outputs +
                                                        "\n<^OutReferences/></Tam>");
}

TEST(MissingEndTagsTest, InAPointHidesNothing) {
    const auto stream = [](std::string_view points) {
        return std::string(kHead) + "<Attributes>" + std::string(points) + "</Attributes></Tam>";
    };
    ExpectAll(
        {kUnclosed, RuleId::NumberForm, RuleId::ValueNotNumber},
        stream("<AI1_A><^SNVTTYPE>105\n<LOGICALADDRESS>^x</LOGICALADDRESS><VALUE>^warm</VALUE></AI1_A>"));
    // An end tag that is a start tag, as of an empty element without its slash.
    ExpectAll({kUnclosed, RuleId::NumberForm, RuleId::ValueNotNumber},
              stream("<AI1_A><^VISIBLE>\n<SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>^x</LOGICALADDRESS>"
                     "<VALUE>^warm</VALUE></AI1_A>"));
    ExpectAll({kUnclosed, RuleId::ValueNotNumber},
              stream("<^AI1_A><SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>1</LOGICALADDRESS>"
                     "<VALUE>1</VALUE>\n" +
                     std::string(kWarm)));
}

TEST(MissingEndTagsTest, OfAPartOfADefinitionHidesNothing) {
    const std::string rows = "<T0 CDB_Size=\"^256\"/></DataSizes>";
    ExpectAll({kUnclosed, RuleId::SizeRange},
              Definition("<^NAME>Module\n<ID>T</ID><DESCRIPTION>D</DESCRIPTION>", rows, ""));
    ExpectAll({kUnclosed, RuleId::SizeRange},
              Definition("<NAME>Module</NAME><ID>T</ID><^DESCRIPTION>D", rows, ""));
}

TEST(MissingEndTagsTest, OfTheTableOfSizesHidesNoDefault) {
    const std::string text =
        Definition("<NAME>M</NAME>", "<T0 CDB_Size=\"1\"/>", "<A><DefaultValue>^warm</DefaultValue></A>");
    const std::size_t table = text.find("DataSizes");
    ExpectAll({kUnclosed, RuleId::DefaultNotNumber}, text.substr(0, table) + "^" + text.substr(table));
    ExpectAll({kUnclosed, RuleId::SizeRange},
              Definition("<NAME>M</NAME>", "<^T0 CDB_Size=\"1\">\n<T1 CDB_Size=\"^256\"/></DataSizes>", ""));
    ExpectAll({kUnclosed, RuleId::DefaultNotNumber},
              Definition("<NAME>M</NAME>", "</DataSizes>",
                         "<^A><DefaultValue>1</DefaultValue>\n<B><DefaultValue>^warm</DefaultValue></B>"));
}

TEST(MissingEndTagsTest, OfASectionOfAChannelIsOneFinding) {
    ExpectAll({kUnclosed, RuleId::FlagValue},
              "<AppObject><NAME>AI</NAME><^InReferences><In1><SNVTCOMPATIBILITYLIST>105"
              "</SNVTCOMPATIBILITYLIST><SNVTTYPE>105</SNVTTYPE></In1>\n<TAMConfig><InReferences>"
              "<InReference Name=\"In1\" Visible=\"^yes\"/></InReferences></TAMConfig></AppObject>");
}

TEST(MissingEndTagsTest, OfAPartThatHoldsSectionsIsOneFinding) {
    constexpr std::string_view kDefaults = "<AppObject><NAME>M</NAME><^Tam><Attributes><A><DefaultValue>^warm"
                                           "</DefaultValue></A></Attributes>\n";
    ExpectAll({kUnclosed, RuleId::DefaultNotNumber}, std::string(kDefaults) + "</AppObject>");
    ExpectAll({kUnclosed, RuleId::DefaultNotNumber, RuleId::SizeRange},
              std::string(kDefaults) + "<DataSizes><T0 CDB_Size=\"^256\"/></DataSizes></AppObject>");
    constexpr std::string_view kChannel =
        "<AppObject><NAME>AI</NAME><InReferences><In1><SNVTCOMPATIBILITYLIST>105</SNVTCOMPATIBILITYLIST>"
        "<SNVTTYPE>105</SNVTTYPE></In1></InReferences><OutReferences><Out><SNVTTYPE>105</SNVTTYPE></Out>"
        "</OutReferences>";
    ExpectAll({kUnclosed, RuleId::FlagValue}, std::string(kChannel) +
                                                  "<^TAMConfig><InReferences><InReference Name=\"In1\" "
                                                  "Visible=\"^yes\"/></InReferences>\n</AppObject>");
    ExpectAll({kUnclosed, RuleId::FlagValue},
              std::string(kChannel) + "<TAMConfig><^InReferences><InReference Name=\"In1\"/>\n"
                                      "<OutReferences><OutReference Name=\"Out\" Visible=\"^yes\"/>"
                                      "</OutReferences></TAMConfig></AppObject>");
}

TEST(MissingEndTagsTest, OfAPointBeforeOneWithTheNameOfAFieldIsOneFinding) {
    ExpectAll({kUnclosed, RuleId::ValueNotNumber},
              "<AppObject><NAME>AO</NAME><Attributes><^Gain><SNVTTYPE>105</SNVTTYPE><VALUE>1</VALUE>\n"
              "<Min><SNVTTYPE>105</SNVTTYPE><VALUE>^warm</VALUE></Min></Attributes><TAMConfig/></AppObject>");
}

TEST(MissingEndTagsTest, InACatalogueHidesNoEntry) {
    ExpectAll({kUnclosed, RuleId::EntryLimitForm},
              "<SNVTCatalogue><SNVT_1><Name>SNVT_amp</Name><^Unit><Type>SignedNumeric</Type>"
              "<Min>^0,5</Min><Max>5</Max><Length>2</Length></SNVT_1></SNVTCatalogue>");
    ExpectAll({kUnclosed, RuleId::EntryLimitForm},
              "<SNVTCatalogue><SNVT_1><Name>SNVT_amp</Name><Type>SignedNumeric</Type><^Unit>A\n"
              "<Min>0</Min><Max>5</Max><Length>2</Length></SNVT_1>" +
                  std::string(kEntry3) + "</SNVTCatalogue>");
    std::string entry(kEntry1);
    entry.insert(1, "^");
    ExpectAll({kUnclosed, RuleId::EntryLimitForm},
              "<SNVTCatalogue>" + entry + std::string(kEntry3) + "</SNVTCatalogue>");
}

TEST(MissingEndTagsTest, InOtherDocumentsHidesNothing) {
    ExpectAll({kUnclosed, RuleId::NumberForm},
              "<Project><O_Tam_id><^UserName>Room\n<X_Position>^x</X_Position><TamObjID>3</TamObjID>"
              "</O_Tam_id></Project>");
    ExpectAll({kUnclosed, RuleId::ElementEmpty, RuleId::NumberForm},
              "<Project><O_Tam_id><^^UserName><X_Position>^x</X_Position><TamObjID>3</TamObjID>"
              "</O_Tam_id></Project>");
    ExpectAll({kUnclosed, RuleId::AttributeMissing},
              "<Device><Stream>s.xml</Stream><^Firmware><Channels><^Channel key=\"AI1\"/></Channels>"
              "</Device>");
    ExpectAll({kUnclosed, RuleId::LibraryObject},
              "<Device><FWVersion><^V1><Objects><Library><O_Tam_id/></Library></Objects>\n"
              "<V2><Objects><Library><O_Tam_id/><^x/></Library></Objects></V2></FWVersion></Device>");
    ExpectAll({kUnclosed, RuleId::AttributeMissing},
              "<Device><^Stream>hall.xml\n<Channels><^Channel key=\"AI1\"/></Channels></Device>");
}

TEST(MissingEndTagsTest, OfASectionAreNotJudgedAsItsContent) {
    const std::string version = "<Objects><Library><O_Tam_id/></Library></Objects>";
    const std::string parts = "\n<Stream>a.xml</Stream><Firmware>V1</Firmware>"
                              "<Channels><Channel key=\"AI1\" kind=\"AI\"/></Channels></Device>";
    ExpectAll({kUnclosed}, "<Device><^FWVersion><V1>" + version + "</V1>" + parts);
    ExpectAll({kUnclosed, kUnclosed}, "<Device><^FWVersion><^V1>" + version + parts);
    ExpectAll({kUnclosed}, "<Project><O_Tam_id><DevKey>K7</DevKey><^OutReferences><AI1_Out>1</AI1_Out>\n"
                           "<UserName>Hall</UserName><TamObjID>3</TamObjID></O_Tam_id></Project>");
    ExpectAll({kUnclosed}, "<Project><O_Tam_id><DevKey>K7</DevKey><^Outputs><AI1_Out IsDisplayable=\"1\"/>\n"
                           "<UserName>Hall</UserName><TamObjID>3</TamObjID></O_Tam_id></Project>");
}

TEST(MissingEndTagsTest, InASampleIsOneFindingWhicheverItIs) {
    for (const char* const name :
         {"O_Tam_id.xml", "device.xml", "streams/channels.xml", "channels/O_InpCntx_id.xml",
          "channels/O_Tam_AI_id.xml", "channels/O_Tam_AO_id.xml", "channels/O_Tam_DI_id.xml",
          "channels/O_Tam_DO_id.xml"}) {
        std::ifstream file(tests::TopFolder() / "samples" / name);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        const std::size_t known = Find(text).size();
        std::size_t tags = 0;
        for (std::size_t at = text.find("</"); at != std::string::npos; at = text.find("</", at + 1)) {
            std::string without = text;
            without.erase(at, text.find('>', at) + 1 - at);
            const auto findings = Find(without);
            EXPECT_EQ(findings.size(), known + 1) << name << ": " << text.substr(at, 20);
            EXPECT_TRUE(std::any_of(findings.begin(), findings.end(),
                                    [](const Finding& finding) { return finding.rule == kUnclosed; }))
                << name << ": " << text.substr(at, 20);
            ++tags;
        }
        EXPECT_GT(tags, 10U) << name;
    }
}

TEST(MissingEndTagsTest, OfAllElementsAtTheEndOfAFileHidesNothing) {
    ExpectAll({RuleId::FlagValue, kUnclosed},
              "<Tam><Name>Hall</Name><DevKey>K7</DevKey><IsLastOnDev>^yes</IsLastOnDev><^TamObjID>3");
}
