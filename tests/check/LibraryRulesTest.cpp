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
