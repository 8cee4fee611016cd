#include "tests/check/Documents.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace checking {

using namespace check;

namespace {

constexpr std::string_view kCatalogue = R"(<SNVTCatalogue>
<SNVT_7><Name>SNVT_char_ascii</Name><Type>Textual</Type><Length>1</Length></SNVT_7>
<SNVT_8 Factor="1"><Name>SNVT_count</Name><Type>UnsignedNumeric</Type><Min>0</Min><Max>65535</Max><Length>2</Length></SNVT_8>
<SNVT_10><Name>SNVT_date_cal</Name><Type>Struct</Type><Length>4</Length></SNVT_10>
<SNVT_22><Name>SNVT_other_disc</Name><Type>Enum</Type><Length>1</Length><EnumDesc>0,ST_OFF;1,ST_LOW;4,ST_ON;-1,ST_NUL;</EnumDesc></SNVT_22>
<SNVT_36><Name>SNVT_str_asc</Name><Type>Textual</Type><Length>31</Length></SNVT_36>
<SNVT_51><Name>SNVT_count_f</Name><Type>Float</Type><Min>0</Min><Max>340282000000000000000000000000000000000</Max><Length>4</Length></SNVT_51>
<SNVT_81><Name>SNVT_lev_percent</Name><Type>SignedNumeric</Type><Unit>%</Unit><Min>-163.84</Min><Max>163.83</Max><Length>2</Length><A_Coef>5</A_Coef><B_Coef>-3</B_Coef><C_Coef>0</C_Coef></SNVT_81>
<SNVT_83><Name>SNVT_state</Name><Type>Bitfield</Type><Length>2</Length></SNVT_83>
<SNVT_95><Name>SNVT_switch</Name><Type>Struct</Type><Length>2</Length></SNVT_95>
<SNVT_105><Name>SNVT_temp_p</Name><Type>SignedNumeric</Type><Unit>degrees C</Unit><Min>-273.17</Min><Max>327.66</Max><Length>2</Length><A_Coef>1</A_Coef><B_Coef>-2</B_Coef><C_Coef>0</C_Coef><InvalidValue>327.67</InvalidValue></SNVT_105>
<SNVT_216><Name>SNVT_stat_control</Name></SNVT_216>
<SNVT_300><Name>SNVT_odd</Name><Type>Signed</Type><Length>2</Length></SNVT_300>
</SNVTCatalogue>)";

constexpr std::string_view kInput =
    "<AO1_In1><LOGICALADDRESS>1</LOGICALADDRESS><SNVTCOMPATIBILITYLIST>81,8</SNVTCOMPATIBILITYLIST>"
    "<PROTOCOLREFERENCE>0000</PROTOCOLREFERENCE><SNVTTYPE>81</SNVTTYPE></AO1_In1>";
constexpr std::string_view kOutput =
    "<AI1_Out><SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>2</LOGICALADDRESS></AI1_Out>";
constexpr std::string_view kAttribute =
    "<AI1_Offset><SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>3</LOGICALADDRESS><VALUE>0.50</VALUE></AI1_Offset>";

struct Marked {
    std::string text;
    std::size_t line = 1;
    std::size_t column = 1;
};

Marked Unmark(std::string_view marked) {
    Marked result;
    const std::size_t mark = marked.find('^');
    EXPECT_NE(mark, std::string_view::npos) << "a document without a mark";
    for (const char c : marked.substr(0, mark)) {
        result.column =
            c == '\n' ? 1 : result.column + ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U ? 1U : 0U);
        result.line += c == '\n' ? 1U : 0U;
    }
    result.text = marked;
    result.text.erase(std::min(mark, result.text.size()), 1);
    return result;
}

std::string Shown(const std::vector<Finding>& findings) {
    std::string text;
    for (const Finding& finding : findings) {
        text += std::to_string(finding.line) + ":" + std::to_string(finding.column) + " " +
                std::string(RuleOf(finding.rule).name) + ": " + finding.message + "; " + finding.expected +
                "; " + finding.suggestion + "\n";
    }
    return text;
}

} // namespace

std::ostream& operator<<(std::ostream& out, const Place& place) {
    return out << RuleOf(place.rule).name << " at " << place.line << ":" << place.column;
}

const Surroundings& Types() {
    static const Catalogue catalogue = ReadCatalogue(std::string(kCatalogue));
    static const Surroundings surroundings(&catalogue);
    return surroundings;
}

std::vector<Finding> Find(std::string_view document) {
    return CheckBytes(std::string(document), Types()).findings;
}

std::vector<Place> Places(const std::vector<Finding>& findings) {
    std::vector<Place> places;
    for (const Finding& finding : findings) {
        places.push_back({finding.rule, finding.line, finding.column});
    }
    return places;
}

std::string Stream(std::string_view inputs, std::string_view outputs, std::string_view attributes) {
    return "<Tam><Name>Hall</Name><DevKey>K7</DevKey><IsLastOnDev>0</IsLastOnDev><TamObjID>3</TamObjID>"
           "<InReferences>" +
           std::string(inputs) + "</InReferences><OutReferences>" + std::string(outputs) +
           "</OutReferences><Attributes>" + std::string(attributes) + "</Attributes></Tam>";
}

std::string WithValue(std::string_view type, std::string_view value) {
    return WithAttribute("<AI1_Value><SNVTTYPE>" + std::string(type) +
                         "</SNVTTYPE><LOGICALADDRESS>3</LOGICALADDRESS><VALUE>" + std::string(value) +
                         "</VALUE></AI1_Value>");
}
std::string WithAttribute(std::string_view attribute) {
    return Stream(kInput, kOutput, attribute);
}
std::string WithOutput(std::string_view output) {
    return Stream(kInput, output, kAttribute);
}
std::string WithInput(std::string_view input) {
    return Stream(input, kOutput, kAttribute);
}

void ExpectOne(RuleId rule, std::string_view marked, std::string_view suggestion,
               const Surroundings& surroundings) {
    SCOPED_TRACE(marked);
    const Marked document = Unmark(marked);
    const std::vector<Finding> findings = CheckBytes(document.text, surroundings).findings;
    EXPECT_EQ(Places(findings), (std::vector<Place>{{rule, document.line, document.column}}))
        << Shown(findings);
    if (!findings.empty()) {
        EXPECT_EQ(findings.front().suggestion, suggestion);
    }
}

void ExpectAmong(RuleId rule, std::string_view marked, std::string_view suggestion,
                 const Surroundings& surroundings) {
    SCOPED_TRACE(marked);
    const Marked document = Unmark(marked);
    const std::vector<Finding> findings = CheckBytes(document.text, surroundings).findings;
    const Place wanted{rule, document.line, document.column};
    const std::vector<Place> places = Places(findings);
    const auto found = std::find(places.begin(), places.end(), wanted);
    ASSERT_NE(found, places.end()) << wanted << "\nfound:\n" << Shown(findings);
    EXPECT_EQ(findings[static_cast<std::size_t>(found - places.begin())].suggestion, suggestion);
}

void ExpectClean(std::string_view document, const Surroundings& surroundings) {
    SCOPED_TRACE(document.substr(0, 2000));
    const std::vector<Finding> findings = CheckBytes(std::string(document), surroundings).findings;
    EXPECT_TRUE(findings.empty()) << Shown(findings);
}

} // namespace checking
