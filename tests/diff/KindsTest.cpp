// The other kinds of documents.

#include "tests/diff/Changes.h"

#include <gtest/gtest.h>

#include <string>

namespace difftest {

namespace {

std::string Definition(const std::string& parts) {
    return "<AppObject><NAME>Remote I/O module</NAME><ID>TAM24</ID><CATEGORY>Remote I/O</CATEGORY>" + parts +
           "</AppObject>";
}

TEST(KindsDefinitionTest, TellsSizesAndDefaults) {
    const std::string before =
        Definition("<DataSizes><T0 Name=\"Module\" CDB_Size=\"32\"/></DataSizes><Tam><Attributes>"
                   "<A><DefaultValue>1.0</DefaultValue></A></Attributes></Tam>");
    EXPECT_EQ(Texts{}, Changes(before, before));
    EXPECT_EQ(
        (Texts{"changed category: Remote I/O -> I/O", "changed size row T0 CDB_Size: 32 -> 33",
               "changed default A value: 1.0 -> 2", "added default B:  -> 0"}),
        Changes(before,
                "<AppObject><NAME>Remote I/O module</NAME><ID>TAM24</ID><CATEGORY>I/O</CATEGORY>"
                "<DataSizes><T0 CDB_Size=\"33\" Name=\"Module\"/></DataSizes><Tam><Attributes><A>"
                "<DefaultValue>2</DefaultValue></A><B><DefaultValue>0</DefaultValue></B></Attributes></Tam>"
                "</AppObject>"));
}

TEST(KindsChannelTest, TellsPointsAndConfiguration) {
    const auto channel = [](const std::string& type, const std::string& visible) {
        return Definition(
            "<InReferences><In1><SNVTTYPE>" + type +
            "</SNVTTYPE></In1></InReferences><TAMConfig><InReferences><InReference Name=\"In1\" Visible=\"" +
            visible + "\"/></InReferences></TAMConfig>");
    };
    EXPECT_EQ(check::Kind::ChannelDefinition, ModelOf(channel("81", "1")).kind);
    EXPECT_EQ((Texts{"changed input In1 type: 81 lev_percent -> 95 switch",
                     "changed configuration InReference In1 Visible: 1 -> 0"}),
              Changes(channel("81", "1"), channel("95", "0")));
}

TEST(KindsCatalogueTest, TellsTypesLimitsAndLabels) {
    const std::string before =
        "<SNVTCatalogue><SNVT_1 Factor=\"1\"><Name>SNVT_a</Name><Type>SignedNumeric</Type><Max>1.50"
        "</Max></SNVT_1><SNVT_2><Name>SNVT_b</Name><Type>Enum</Type><EnumDesc>0,OFF;1,ON;</EnumDesc>"
        "</SNVT_2></SNVTCatalogue>";
    // In another order, with other blanks, and a number in another form.
    EXPECT_EQ(Texts{},
              Changes(before, "<SNVTCatalogue><SNVT_2><EnumDesc>0,OFF;1,ON;</EnumDesc><TYPE>Enum</TYPE><Name>"
                              "SNVT_b</Name></SNVT_2><SNVT_1 FACTOR=\"1.0\"><Max>1.5</Max><Name>SNVT_a</Name>"
                              "<Type>SignedNumeric</Type></SNVT_1></SNVTCatalogue>"));
    EXPECT_EQ(
        (Texts{"added type SNVT_3:  -> SNVT_c", "changed type SNVT_1 Max: 1.50 -> 2",
               "changed type SNVT_2 label of 1: ON -> RUN", "changed type SNVT_2 label of 2:  -> AUTO"}),
        Changes(before,
                "<SNVTCatalogue><SNVT_3><Name>SNVT_c</Name><Type>Textual</Type></SNVT_3><SNVT_1 Factor=\"1\">"
                "<Name>SNVT_a</Name><Type>SignedNumeric</Type><Max>2</Max></SNVT_1><SNVT_2><Name>SNVT_b"
                "</Name><Type>Enum</Type><EnumDesc>0,OFF;1,RUN;2,AUTO;</EnumDesc></SNVT_2></SNVTCatalogue>"));
}

TEST(KindsProjectTest, TellsElementsByTheirPaths) {
    const auto project = [](const std::string& parts) {
        return "<Project><O_Tam_id><UserName>Room</UserName>" + parts + "</O_Tam_id></Project>";
    };
    EXPECT_EQ(Texts{}, Changes(project("<X_Position>12.5</X_Position><TamObjID>3</TamObjID>"),
                               project("<TamObjID>3</TamObjID>\n<X_Position>12.50</X_Position>")));
    EXPECT_EQ(
        (Texts{"changed element Project/O_Tam_id X_Position: 12.5 -> 13",
               "added element Project/O_Tam_id/Outputs:  -> ",
               "added element Project/O_Tam_id/Outputs/AI1_Out:  -> "}),
        Changes(project("<X_Position>12.5</X_Position>"),
                project("<X_Position>13</X_Position><Outputs><AI1_Out IsDisplayable=\"1\"/></Outputs>")));
}

TEST(KindsProjectTest, ReadsTheValuesOfAChannelByTheirTypes) {
    const auto project = [](const std::string& value, const std::string& type) {
        return "<Project><O_Tam_AI_id><TamObjectKey>AI1</TamObjectKey><Attributes><P Visible=\"1\" Value=\"" +
               value + "\" SNVT_Type=\"" + type + "\"/></Attributes></O_Tam_AI_id></Project>";
    };
    const std::string point = "changed element Project/O_Tam_AI_id AI1/Attributes/P ";
    EXPECT_EQ((Texts{point + "Value: -0.50 degrees C -> -0.75 degrees C"}),
              Changes(project("-0.50", "147"), project("-0.75", "147")));
    EXPECT_EQ(Texts{}, Changes(project("-0.50", "147"), project("-0.5", "147")));
    EXPECT_EQ((Texts{point + "Value: 1 DCM_PRESS_CONST -> 21 DCM_LINEAR"}),
              Changes(project("1", "162"), project("21", "162")));
    EXPECT_EQ((Texts{point + "Value: 1.0 -> 1"}), Changes(project("1.0", "36"), project("1", "36")));
    EXPECT_EQ((Texts{point + "SNVT_Type: 81 lev_percent -> 147 temp_diff_p"}),
              Changes(project("1", "81"), project("1", "147")));
}

TEST(KindsLibraryTest, ComparesFirmwareAndStreamAsTexts) {
    const auto device = [](const std::string& stream, const std::string& firmware) {
        return "<Device><Stream>" + stream + "</Stream><Firmware>" + firmware + "</Firmware></Device>";
    };
    EXPECT_EQ((Texts{"changed element Device Firmware: 1.1 -> 1.10"}),
              Changes(device("hall", "1.1"), device("hall", "1.10")));
    EXPECT_EQ((Texts{"changed element Device Stream: 2 -> 02"}),
              Changes(device("2", "V1"), device("02", "V1")));
}

TEST(KindsProjectTest, KnowsChannelsByTheirKeys) {
    const auto channel = [](const std::string& key) {
        return "<O_Tam_AI_id><DevKey>K7</DevKey><TamObjectKey>" + key + "</TamObjectKey><UserName>of " + key +
               "</UserName></O_Tam_AI_id>";
    };
    const auto project = [](const std::string& channels) { return "<Project>" + channels + "</Project>"; };
    const std::string all = project(channel("AI1") + channel("AI2") + channel("AI3"));
    EXPECT_EQ(Texts{}, Changes(all, project(channel("AI3") + channel("AI1") + channel("AI2"))));
    EXPECT_EQ((Texts{"removed element Project/O_Tam_AI_id AI2:  -> "}),
              Changes(all, project(channel("AI1") + channel("AI3"))));
    EXPECT_EQ((Texts{"added element Project/O_Tam_AI_id 1:  -> "}),
              Changes(project(channel("01")), project(channel("1") + channel("01"))));
    const auto device = [](const std::string& channels) {
        return "<Device><Stream>hall.xml</Stream><Channels>" + channels + "</Channels></Device>";
    };
    EXPECT_EQ(
        (Texts{"changed element Device/Channels/Channel AI1 terminal: 1 -> 01"}),
        Changes(
            device("<Channel key=\"AI1\" kind=\"ai\" terminal=\"1\"/><Channel key=\"AI2\" kind=\"ai\"/>"),
            device("<Channel key=\"AI2\" kind=\"ai\"/><Channel key=\"AI1\" kind=\"ai\" terminal=\"01\"/>")));
}

TEST(KindsLibraryTest, TellsObjectsThatCameAndWent) {
    const auto library = [](const std::string& objects) {
        return "<Device><FWVersion><V2_10><Objects><Library>" + objects +
               "</Library></Objects></V2_10></FWVersion></Device>";
    };
    EXPECT_EQ(Texts{}, Changes(library("<o_tam_ai_id/><O_Tam_id/>"), library("<O_TAM_ID/><o_tam_ai_id/>")));
    EXPECT_EQ((Texts{"changed element Device/FWVersion/V2_10/Objects/Library o_tam_ai_id: empty -> ",
                     "changed element Device/FWVersion/V2_10/Objects/Library o_tam_di_id:  -> empty"}),
              Changes(library("<o_tam_ai_id/>"), library("<o_tam_di_id/>")));
}

TEST(KindsExportTest, TellsAttributesOfPoints) {
    const auto document = [](const std::string& name, const std::string& value) {
        return "<O_Tam_id DevAddr=\"1\" DevKey=\"K7\" TamObjectID=\"1\"><Inputs/><Attributes><" + name +
               " LogicalAddress=\"11\" SNVTType=\"147\" Value=\"" + value +
               "\" isPermanent=\"1\"/></Attributes></O_Tam_id>";
    };
    EXPECT_EQ(check::Kind::ExportDocument, ModelOf(document("A", "1")).kind);
    EXPECT_EQ(Texts{}, Changes(document("A", "1.0"), document("a", "1")));
    EXPECT_EQ((Texts{"renamed attribute B: A -> B", "changed attribute B Value: 1 degrees C -> 2 degrees C"}),
              Changes(document("A", "1"), document("B", "2")));
}

TEST(KindsExportTest, IdentifiersAndTextsAreNoNumbers) {
    const auto document = [](const std::string& application, const std::string& type,
                             const std::string& value) {
        return "<O_Tam_id DevAddr=\"1\" AppID=\"" + application +
               "\" DevKey=\"K7\" TamObjectID=\"1\"><Inputs/><Attributes><A LogicalAddress=\"11\" "
               "SNVTType=\"" +
               type + "\" Value=\"" + value + "\" isPermanent=\"1\"/></Attributes></O_Tam_id>";
    };
    EXPECT_EQ((Texts{"changed AppID: 007 -> 7"}),
              Changes(document("007", "147", "1"), document("7", "147", "1.0")));
    EXPECT_EQ((Texts{"changed attribute A SNVTType: 0147 -> 147 temp_diff_p",
                     "changed attribute A Value: 1 -> 1 degrees C"}),
              Changes(document("7", "0147", "1"), document("7", "147", "1")));
    EXPECT_EQ((Texts{"changed attribute A Value: 1.0 -> 1"}),
              Changes(document("7", "36", "1.0"), document("7", "36", "1")));
}

TEST(KindsInteroperabilityTest, IdentifiersAndTextsAreNoNumbers) {
    const auto document = [](const std::string& input, const std::string& attribute) {
        return "<O_Tam_id><UserName>u</UserName><Key>k</Key><Inputs><In><Reference>0000</Reference>"
               "<LogicalAddress>1</LogicalAddress>" +
               input + "</In></Inputs><Attributes><A>" + attribute + "</A></Attributes></O_Tam_id>";
    };
    EXPECT_EQ(check::Kind::Interoperability, ModelOf(document("", "")).kind);
    EXPECT_EQ(
        (Texts{"changed input In SNVTType: 0147 -> 147 temp_diff_p", "changed attribute A Value: 1.0 -> 1"}),
        Changes(document("<SNVTType>0147</SNVTType>", "<Value>1.0</Value>"),
                document("<SNVTType>147</SNVTType>", "<Value>1</Value>")));
}

TEST(KindsTest, TellsWhereADocumentIsBroken) {
    const diff::Reading reading = diff::Read("<Tam>\n<Name>A</Nam></Tam>", Types());
    ASSERT_FALSE(reading.faults.empty());
    EXPECT_EQ(2U, reading.faults[0].line);
    EXPECT_FALSE(reading.faults[0].message.empty());
    EXPECT_FALSE(diff::Read("", Types()).faults.empty());
    EXPECT_FALSE(diff::Read("MZ\x90", Types()).faults.empty());
}

} // namespace

} // namespace difftest
