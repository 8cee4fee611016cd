#include "tests/check/Documents.h"

#include <gtest/gtest.h>

#include <string>

using namespace check;
using namespace checking;

namespace {

std::string Library(std::string_view objects) {
    return "<Device><FWVersion><V1><Objects><Library>" + std::string(objects) +
           "</Library></Objects></V1></FWVersion></Device>";
}

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

std::string Interop(std::string_view inputs) {
    return "<O_Tam_id><UserName>u</UserName><Key>k</Key><Inputs>" + std::string(inputs) +
           "</Inputs></O_Tam_id>";
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

TEST(KindsTest, RecognisesADocumentByWhatItHolds) {
    const auto kind = [](std::string text) { return CheckBytes(std::move(text), Types()).kind; };
    EXPECT_EQ(kind(Stream("", "", "")), Kind::DeviceStream);
    EXPECT_EQ(kind("<Tan><DevKey/><TamObjID/></Tan>"), Kind::DeviceStream);
    EXPECT_EQ(kind("<AppObject><NAME>n</NAME><DataSizes/></AppObject>"), Kind::ModuleDefinition);
    EXPECT_EQ(kind("<AppObject><NAME>n</NAME><InReferences/><TAMConfig/></AppObject>"),
              Kind::ChannelDefinition);
    EXPECT_EQ(kind(Library("")), Kind::DeviceLibrary);
    EXPECT_EQ(kind("<x><SNVT_1/><SNVT_2/></x>"), Kind::Catalogue);
    EXPECT_EQ(kind("<Project/>"), Kind::Project);
    EXPECT_EQ(kind("<O_Tam_id><UserName/><X_Position/><DevKey/></O_Tam_id>"), Kind::Project);
    EXPECT_EQ(kind(Interop("")), Kind::Interoperability);
    EXPECT_EQ(kind(Export("")), Kind::ExportDocument);
    EXPECT_EQ(kind("<html/>"), Kind::Unknown);
}
