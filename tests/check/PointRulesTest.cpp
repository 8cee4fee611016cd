#include "check/Points.h"
#include "core/PointData.h"
#include "tests/check/Documents.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

using namespace check;
using namespace checking;

namespace {

std::string Output(std::string_view name, std::string_view type, std::string_view address) {
    return "<" + std::string(name) + "><SNVTTYPE>" + std::string(type) + "</SNVTTYPE><LOGICALADDRESS>" +
           std::string(address) + "</LOGICALADDRESS></" +
           std::string(name.substr(name.starts_with('^') ? 1U : 0U)) + ">";
}

std::string InputWith(std::string_view list, std::string_view reference = "0000",
                      std::string_view type = "81") {
    return WithInput("<AO1_In1><LOGICALADDRESS>1</LOGICALADDRESS><SNVTCOMPATIBILITYLIST>" +
                     std::string(list) + "</SNVTCOMPATIBILITYLIST><PROTOCOLREFERENCE>" +
                     std::string(reference) + "</PROTOCOLREFERENCE><SNVTTYPE>" + std::string(type) +
                     "</SNVTTYPE></AO1_In1>");
}

} // namespace

namespace {

/// The keywords of a table of the component, and those that it reads without one.
template <class Table>
std::set<std::string> Keywords(const Table& table, std::set<std::string> besides) {
    for (const auto& field : table) {
        const std::wstring_view keyword = field.keyword;
        besides.emplace(keyword.begin(), keyword.end());
    }
    return besides;
}
std::set<std::string> Keywords(PointKind kind) {
    const auto& keywords = StreamWords(kind).keywords;
    return {keywords.begin(), keywords.end()};
}

} // namespace

TEST(PointRulesTest, KnowsTheKeywordsThatTheComponentReads) {
    EXPECT_EQ(Keywords(PointKind::Input), Keywords(tam::kInputDefinition, {"SNVTCOMPATIBILITYLIST"}));
    EXPECT_EQ(Keywords(PointKind::Output), Keywords(tam::kOutputDefinition, {"SNVTTYPE"}));
    EXPECT_EQ(Keywords(PointKind::Attribute), Keywords(tam::kAttributeDefinition, {"SNVTTYPE"}));
}

TEST(PointRulesTest, FindsPointsOfOneNameInAnyLetterCase) {
    ExpectOne(RuleId::PointTwice, WithOutput(Output("AI1_Out", "105", "2") + Output("^AI1_OUT", "105", "4")));
    ExpectOne(RuleId::PointTwice,
              WithOutput(Output("AI1_\xC3\xBC", "105", "2") + Output("^AI1_\xC3\x9C", "105", "4")));
    // An input and an output may share a name.
    ExpectClean(WithOutput(Output("AO1_In1", "105", "2")));
}

TEST(PointRulesTest, FindsNamesThatNoChannelCanMatch) {
    ExpectOne(RuleId::PointName, WithOutput(Output("^Out", "105", "2")));
    ExpectOne(RuleId::PointName, WithOutput(Output("^AI1_", "105", "2")));
    ExpectOne(RuleId::PointName, WithOutput(Output("^_Out", "105", "2")));
    ExpectClean(WithOutput(Output("_AI6_Out", "105", "2")));
    ExpectOne(RuleId::PointNameCase,
              WithOutput(Output("AI1_Out", "105", "2") + Output("^ai1_Low", "105", "4")), "AI1");
}

TEST(PointRulesTest, FindsPointsWithoutAType) {
    ExpectOne(RuleId::TypeMissing, WithOutput("<^AI1_Out><LOGICALADDRESS>2</LOGICALADDRESS></AI1_Out>"));
    ExpectOne(RuleId::TypeMissing,
              WithAttribute("<^AI1_A><LOGICALADDRESS>3</LOGICALADDRESS><VALUE>1</VALUE></AI1_A>"));
    ExpectOne(RuleId::InputUntyped, WithInput("<^AO1_In1><LOGICALADDRESS>1</LOGICALADDRESS>"
                                              "<SNVTCOMPATIBILITYLIST>81</SNVTCOMPATIBILITYLIST></AO1_In1>"));
    ExpectOne(RuleId::TypeEmpty,
              WithOutput("<AI1_Out><^SNVTTYPE/><LOGICALADDRESS>2</LOGICALADDRESS></AI1_Out>"));
    ExpectOne(RuleId::TypeEmpty,
              WithAttribute("<AI1_A><^SNVTTYPE></SNVTTYPE><LOGICALADDRESS>3</LOGICALADDRESS>"
                            "<VALUE>1</VALUE></AI1_A>"));
}

TEST(PointRulesTest, FindsTypesThatTheCatalogueDoesNotHave) {
    ExpectOne(RuleId::TypeUnknown, WithOutput(Output("AI1_Out", "^9999", "2")));
    ExpectOne(RuleId::TypeUnknown, WithOutput(Output("AI1_Out", "^0105", "2")), "105");
    ExpectOne(RuleId::TypeUnknown, WithOutput(Output("AI1_Out", "^l05", "2")), "105");
    ExpectOne(RuleId::TypeUnknown, WithOutput(Output("AI1_Out", "^SNVT_temp_p", "2")), "105");
    ExpectOne(RuleId::TypeUnknown, WithOutput(Output("AI1_Out", "^temp_p", "2")), "105");
    ExpectOne(RuleId::TypeUnknown, WithOutput(Output("AI1_Out", "^SNVT_tmep_p", "2")), "105");
    ExpectOne(RuleId::TypeUnknown, WithOutput(Output("AI1_Out", "^SNVT_105", "2")), "105");
    // An attribute takes its type as it stands; an output without the blanks around it.
    ExpectOne(RuleId::TypeUnknown, WithValue(" ^105", "1"), "105");
    ExpectOne(RuleId::BlankAround, WithOutput(Output("AI1_Out", " ^105", "2")));
}

TEST(PointRulesTest, FindsTypesThatAreNotWhole) {
    ExpectOne(RuleId::TypeFaulty, WithOutput(Output("AI1_Out", "^300", "2")));
    ExpectOne(RuleId::TypeIncomplete, WithOutput(Output("AI1_Out", "^216", "2")));
    ExpectOne(RuleId::TypeRetired, WithOutput(Output("AI1_Out", "^10", "2") + Output("AI2_Out", "10", "4")));
}

TEST(PointRulesTest, LooksUpNothingWithoutACatalogue) {
    ExpectClean(WithOutput(Output("AI1_Out", "9999", "2")), Surroundings());
}

TEST(PointRulesTest, FindsAddressesThatAreMissingOrThereTwice) {
    ExpectOne(RuleId::AddressMissing, WithOutput("<^AI1_Out><SNVTTYPE>105</SNVTTYPE></AI1_Out>"));
    ExpectOne(RuleId::AddressMissing,
              WithOutput("<AI1_Out><SNVTTYPE>105</SNVTTYPE><^LOGICALADDRESS/></AI1_Out>"));
    // Whichever section the points are in.
    ExpectOne(RuleId::AddressTwice, WithOutput(Output("AI1_Out", "105", "^1")));
    ExpectOne(RuleId::AddressTwice, WithOutput(Output("AI1_Out", "105", "^01")));
    ExpectOne(RuleId::NumberRange, WithOutput(Output("AI1_Out", "105", "^65536")));
    ExpectOne(RuleId::NumberForm, WithOutput(Output("AI1_Out", "105", "^12a")), "12");
    ExpectOne(RuleId::NumberForm, WithOutput(Output("AI1_Out", "105", "^1.5")));
}

TEST(PointRulesTest, FindsReferencesToNothing) {
    ExpectClean(InputWith("81", "AI1_Out"));
    ExpectClean(InputWith("81", "000000"));
    ExpectClean(InputWith("81", "K4_Supply_Out"));
    ExpectOne(RuleId::ReferenceNothing, InputWith("81", "^AI1_Uot"), "AI1_Out");
    ExpectOne(RuleId::ReferenceNothing, InputWith("81", "^AI9_Out"), "AI1_Out");
    ExpectOne(RuleId::ReferenceForm, InputWith("81", "^0000000"), "000000");
    ExpectOne(RuleId::ReferenceForm, InputWith("81", "^AI1"));
}

TEST(PointRulesTest, FindsListsThatLackSomething) {
    ExpectClean(InputWith("81,105,"));
    ExpectOne(RuleId::ListMissing,
              WithInput("<^AO1_In1><LOGICALADDRESS>1</LOGICALADDRESS><SNVTTYPE>81</SNVTTYPE></AO1_In1>"));
    ExpectOne(RuleId::ListEmpty,
              WithInput("<AO1_In1><LOGICALADDRESS>1</LOGICALADDRESS><^SNVTCOMPATIBILITYLIST/>"
                        "<SNVTTYPE>81</SNVTTYPE></AO1_In1>"));
    ExpectOne(RuleId::ListEmpty, InputWith("^,81"));
    ExpectOne(RuleId::ListEndsEarly, InputWith("81,^,105"));
    ExpectOne(RuleId::ListEntryUnknown, InputWith("81,^9999,105"));
    ExpectOne(RuleId::ListEntryUnknown, InputWith("81,^ 105"), "105");
    ExpectOne(RuleId::ListEntryTwice, InputWith("81,105,^81"));
    // A reference for a character does not move what follows it.
    ExpectOne(RuleId::ListEntryUnknown, InputWith("&#56;1,&#x31;05,^9999"));
    ExpectOne(RuleId::ListEntryTwice, InputWith("81,105,^&#56;1"));
    ExpectOne(RuleId::ListEntryUnknown, InputWith("^81&#44;9999")); // one that is a comma does
    ExpectOne(RuleId::ListOwnType, InputWith("^105"));
}

TEST(PointRulesTest, TakesNoTimeForSuggestionsThatNobodyReads) {
    std::string inputs;
    for (int i = 0; i < 1500; ++i) {
        const std::string name = "AO" + std::to_string(i) + "_In1";
        inputs += "<" + name + "><LOGICALADDRESS>" + std::to_string(i + 10) +
                  "</LOGICALADDRESS><SNVTCOMPATIBILITYLIST>81</SNVTCOMPATIBILITYLIST><PROTOCOLREFERENCE>"
                  "AI1_Uot</PROTOCOLREFERENCE><SNVTTYPE>81</SNVTTYPE></" +
                  name + ">";
    }
    const std::vector<Finding> findings = Find(WithInput(inputs));
    EXPECT_EQ(findings.size(), 1500U);
    EXPECT_EQ(std::count_if(findings.begin(), findings.end(),
                            [](const Finding& finding) { return finding.suggestion == "AI1_Out"; }),
              1000);
}
