#include "tests/check/Documents.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

using namespace check;
using namespace checking;

namespace {

std::string Interop(std::string_view inputs) {
    return "<O_Tam_id><UserName>u</UserName><Key>k</Key><Inputs>" + std::string(inputs) +
           "</Inputs></O_Tam_id>";
}

} // namespace

TEST(InteroperabilityRulesTest, FindsWhatAnElementLacks) {
    const std::string good =
        "<Reference>0000</Reference><LogicalAddress>1</LogicalAddress><isPermanent>True</isPermanent>";
    ExpectClean(Interop("<AO1_In1>" + good + "<SNVTType>105</SNVTType></AO1_In1>"));
    ExpectOne(RuleId::ElementMissing, Interop("<^AO1_In1>" + good + "</AO1_In1>"));
    ExpectAmong(RuleId::ElementMisspelt,
                Interop("<AO1_In1>" + good + "<^SNVT_Type>105</SNVT_Type></AO1_In1>"), "SNVTType");
    ExpectOne(RuleId::TypeUnknown, Interop("<AO1_In1>" + good + "<SNVTType>^999</SNVTType></AO1_In1>"));
    ExpectOne(RuleId::SectionOrder, "<O_Tam_id><Key>k</Key><^UserName>u</UserName><Inputs/></O_Tam_id>");
}
