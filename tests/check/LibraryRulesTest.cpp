#include "tests/check/Documents.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

using namespace check;
using namespace checking;

namespace {

std::string Library(std::string_view objects) {
    return "<Device><FWVersion><V1><Objects><Library>" + std::string(objects) +
           "</Library></Objects></V1></FWVersion></Device>";
}

} // namespace

TEST(LibraryRulesTest, FindsWhatALibraryLacks) {
    ExpectClean(Library("<o_tam_ai_id/><O_Tam_id/>"));
    ExpectOne(RuleId::LibraryMissing, "<Device><FWVersion><^V3_00><Objects/></V3_00></FWVersion></Device>");
    ExpectOne(RuleId::LibraryNoModule, "<Device><FWVersion><V1><Objects><^Library><o_tam_ai_id/></Library></"
                                       "Objects></V1></FWVersion></Device>");
    ExpectOne(RuleId::LibraryObject, Library("<^o_tam_ia_id/><o_tam_id/>"), "o_tam_ai_id");
    ExpectOne(RuleId::ElementMissing, "<^Device/>");
    ExpectOne(RuleId::ElementRepeated, Library("<o_tam_id/><^O_TAM_ID/>"));
    ExpectAmong(RuleId::ElementMisspelt,
                "<Device><FWVersion><V1><Objects><^Libary/></Objects></V1></FWVersion></Device>", "Library");
}

TEST(LibraryRulesTest, KnowsTheFileOfADevice) {
    const std::string versions = Library("<o_tam_id/>").substr(8);
    ExpectClean("<Device><Stream>hall.xml</Stream><Firmware>V1</Firmware><Channels><Channel key=\"AI1\" "
                "kind=\"ai\" terminal=\"5\" setup=\"2,Ni1000\"/></Channels>" +
                versions);
    ExpectClean("<Device><Stream>hall.xml</Stream></Device>");
    ExpectOne(RuleId::ElementMissing, "<^Device><Channels/></Device>");
    ExpectOne(RuleId::ElementEmpty, "<Device><^Stream/></Device>");
    ExpectOne(RuleId::AttributeMissing,
              "<Device><Stream>s</Stream><Channels><^Channel key=\"AI1\"/></Channels></Device>");
    ExpectOne(RuleId::AttributeMissing,
              "<Device><Stream>s</Stream><Channels><Channel ^key=\"\" kind=\"ai\"/></Channels></Device>");
    ExpectOne(RuleId::ProjectKey, "<Device><Stream>s</Stream><Channels><Channel key=\"A\" kind=\"ai\"/>"
                                  "<Channel key=\"^a\" kind=\"ai\"/></Channels></Device>");
    ExpectOne(RuleId::LibraryMissing, "<Device><Stream>s</Stream><Firmware>^V2</Firmware>" + versions, "V1");
    ExpectOne(RuleId::ElementRepeated, "<Device><Stream>s</Stream><^Stream>s</Stream></Device>");
}
