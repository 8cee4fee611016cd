#include "tests/check/Documents.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

using namespace check;
using namespace checking;

namespace {

constexpr std::string_view kRoot =
    "<O_Tam_id DevAddr=\"5\" AppID=\"a\" DevKey=\"K7\" TamObjectID=\"3\" IsLastOnDev=\"0\">";

std::string Export(std::string_view inputs) {
    return std::string(kRoot) + "<Inputs>" + std::string(inputs) +
           "</Inputs><Outputs/><Attributes/></O_Tam_id>";
}

std::string ExportInput(std::string_view address, std::string_view link, std::string_view connected) {
    return Export("<AO1_In1 LinkReference=\"" + std::string(link) + "\" LogicalAddress=\"" +
                  std::string(address) + "\" SNVTType=\"105\" isPermanent=\"1\" IsConnected=\"" +
                  std::string(connected) + "\"/>");
}

} // namespace

TEST(ExportRulesTest, FindsWhatTheCompilerRefuses) {
    ExpectClean(ExportInput("65535", "0000", "0"));
    ExpectClean(ExportInput("", "AI1_Out", "1"));
    ExpectOne(RuleId::NumberRange, ExportInput("^65536", "0000", "0"));
    ExpectOne(RuleId::NumberForm, ExportInput("^x", "0000", "0"));
    ExpectOne(RuleId::FlagValue, ExportInput("1", "0000", "^2"));
    ExpectOne(RuleId::ExportConnected, ExportInput("1", "0000", "^1"), "0");
    ExpectOne(RuleId::ExportForm, Export("<A LinkReference=\"\" LogicalAddress=\"\" SNVTType=\"\" "
                                         "isPermanent=\"0\" IsConnected=\"0\" ^Colour=\"red\"/>"));
    ExpectOne(RuleId::AttributeMissing,
              Export("<^A LinkReference=\"\" LogicalAddress=\"\" SNVTType=\"\" isPermanent=\"0\"/>"));
    ExpectOne(RuleId::ExportForm, Export("^text"));
    ExpectOne(RuleId::ElementMissing, "<^O_Tam_id DevAddr=\"5\" AppID=\"a\" DevKey=\"K7\" TamObjectID=\"3\" "
                                      "IsLastOnDev=\"0\"><Inputs/><Outputs/></O_Tam_id>");
    ExpectOne(RuleId::ExportForm, std::string(kRoot) + "<Outputs/><^Inputs/><Attributes/></O_Tam_id>");
}
