// inspect and types: what the bench shows of the samples follows from them.

#include "tests/bench/BenchRun.h"
#include "tests/bench/DeviceRun.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

namespace benchtest {

namespace {

TEST(ReadingInspectTest, TellsWhatTheModuleIs) {
    const Json module = Bench({L"inspect", L"channels"})["module"];
    EXPECT_EQ("O_Tam_id.CDBAppObject", module["programmaticId"]);
    EXPECT_EQ("O_Tam_id", module["definition"]);
    EXPECT_EQ("Reading room", module["name"]);
    EXPECT_EQ("Reading room", module["userName"]);
    EXPECT_EQ("TAM24", module["id"]);
    EXPECT_EQ("Remote I/O", module["category"]);
    EXPECT_EQ("K7", module["deviceKey"]);
    EXPECT_EQ(1, module["objectId"]);
    EXPECT_EQ(0, module["cdbSize"]);
    EXPECT_EQ(0, module["ddbSize"]);
    EXPECT_EQ(6, module["nodeType"]);
    EXPECT_EQ(true, module["datasheetAvailable"]);
}

TEST(ReadingInspectTest, ShowsTheInputsOfTheStream) {
    const Json inputs = Bench({L"inspect", L"channels"})["inputs"];
    EXPECT_EQ((Json{"AO1_In1", "DO1_In1", "CTX1_In1"}), Pluck(inputs, "name"));
    EXPECT_EQ((Json{0, 1, 2}), Pluck(inputs, "index"));
    EXPECT_EQ((Json{"0000", "DI1_Out", "000000"}), Pluck(inputs, "reference"));
    EXPECT_EQ((Json{"1", "2", "3"}), Pluck(inputs, "logicalAddress"));
    EXPECT_EQ((Json{true, false, false}), Pluck(inputs, "permanent"));
    EXPECT_EQ((Json{false, false, false}), Pluck(inputs, "connected"));
    EXPECT_EQ((Json{"81", "21", "55"}), inputs[0]["accepts"]);
    EXPECT_EQ((Json{{"id", "81"}, {"name", "SNVT_lev_percent"}}), inputs[0]["type"]);
    EXPECT_EQ("SHEET1\\MODULE1\\RIN\\AO1_In1", inputs[0]["globalKey"]);
    EXPECT_EQ("PROJECT\\SHEET1\\MODULE1\\RIN\\AO1_In1", inputs[0]["extendedKey"]);
}

TEST(ReadingInspectTest, ShowsTheOutputsWithTheirTypes) {
    const Json outputs = Bench({L"inspect", L"channels"})["outputs"];
    EXPECT_EQ((Json{"AI1_Out", "AO1_Out", "DI1_Out", "DO1_Out", "CTX1_Out"}), Pluck(outputs, "name"));
    EXPECT_EQ((Json{"4000", "4001", "4002", "4003", "4004"}), Pluck(outputs, "reference"));
    EXPECT_EQ((Json{"4", "5", "6", "7", "8"}), Pluck(outputs, "logicalAddress"));
    const Json type = outputs[0]["type"];
    EXPECT_EQ("105", type["id"]);
    EXPECT_EQ("SNVT_temp_p", type["name"]);
    EXPECT_EQ("SignedNumeric", type["generalType"]);
    EXPECT_EQ("Numeric", type["luiType"]);
    EXPECT_EQ(2, type["length"]);
    EXPECT_EQ(Json(Local("-273.17")), type["min"]);
    EXPECT_EQ(Json(Local("327.66")), type["max"]);
    EXPECT_EQ("degrees C", type["unit"]);
    EXPECT_EQ("SHEET1\\MODULE1\\ROU\\AI1_Out", outputs[0]["globalKey"]);
}

TEST(ReadingInspectTest, ShowsAttributesAsAUserSeesThem) {
    const Json attributes = Bench({L"inspect", L"channels"})["attributes"];
    ASSERT_EQ(11U, attributes.size());
    EXPECT_EQ("-0.50", Named(attributes, "AI1_Offset")["value"]);
    EXPECT_EQ(Json(Local("-0.50 \u00B0C")), Named(attributes, "AI1_Offset")["display"]);
    EXPECT_EQ("1 units", Named(attributes, "AI1_Channel")["display"]);
    EXPECT_EQ(Json(Local("5.0 s")), Named(attributes, "DO1_MinOn")["display"]);
    // A type without a unit leaves the blank that stands before it.
    EXPECT_EQ(Json(Local("1.0000 ")), Named(attributes, "AO1_Gain")["display"]);
    // The host, here the bench, has given the texts of the enumeration.
    EXPECT_EQ("ST_OFF", Named(attributes, "DI1_Invert")["display"]);
    EXPECT_EQ("DCM_LINEAR", Named(attributes, "AO1_Setup")["display"]);
    EXPECT_EQ("SHEET1\\MODULE1\\ATT\\AI1_Offset", Named(attributes, "AI1_Offset")["globalKey"]);
}

TEST(ReadingInspectTest, ShowsValuesInUsUnits) {
    const Json attributes = Bench({L"inspect", L"channels", L"--us"})["attributes"];
    EXPECT_EQ("-0.50", Named(attributes, "AI1_Offset")["value"]);
    EXPECT_EQ(Json(Local("-0.9 \u00B0F")), Named(attributes, "AI1_Offset")["display"]);
}

TEST(ReadingInspectTest, LoadsAFullModuleSilently) {
    const Json full = Bench({L"inspect", L"full"});
    EXPECT_EQ(13U, full["inputs"].size());
    EXPECT_EQ(25U, full["outputs"].size());
    EXPECT_EQ(65U, full["attributes"].size());
    EXPECT_EQ(426, full["module"]["cdbSize"]);
    EXPECT_EQ(160, full["module"]["ddbSize"]);
    EXPECT_EQ(Json::array(), full["boxes"]);
    std::set<std::string> kinds;
    for (const Json& attribute : full["attributes"]) {
        kinds.insert(attribute["type"]["generalType"]);
    }
    EXPECT_EQ((std::set<std::string>{"Bitfield", "Enum", "Float", "SignedNumeric", "Struct", "Textual",
                                     "UnsignedNumeric"}),
              kinds);
}

TEST(ReadingInspectTest, WiresWhatFitsAndRefusesTheRest) {
    const Json full = Bench({L"inspect", L"full", L"--wire"});
    std::map<std::string, std::string> results;
    for (const Json& wire : full["wires"]) {
        results[wire["input"]] = wire["result"];
    }
    EXPECT_EQ("refused", results["AO1_In1"]); // a temperature for a position
    EXPECT_EQ("wired", results["AO2_In1"]);   // another object's output
    EXPECT_EQ("left open", results["AO3_In1"]);
    EXPECT_EQ("wired", results["DO1_In1"]);
    EXPECT_EQ("wired", results["DO2_In1"]); // di2_out: letter case does not count

    const Json inputs = full["inputs"];
    EXPECT_EQ(false, Named(inputs, "AO1_In1")["connected"]);
    EXPECT_EQ(true, Named(inputs, "AO2_In1")["connected"]);
    EXPECT_EQ("K4_Supply_Out", Named(inputs, "AO2_In1")["value"]);
    EXPECT_EQ("95", Named(inputs, "DO1_In1")["connectedType"]);
    EXPECT_EQ("", Named(inputs, "AO3_In1")["value"]);
}

TEST(ReadingInspectTest, TakesSevenZerosForAReferenceAsTheComponentDoes) {
    const auto resultOf = [](const std::string& reference) {
        const std::wstring stream = WrittenFile(
            L"zeros.xml", "<Tam><Name>N</Name><DevKey>K9</DevKey><IsLastOnDev>1</IsLastOnDev>"
                          "<TamObjID>7</TamObjID><InReferences><A><SNVTTYPE>105</SNVTTYPE>"
                          "<SNVTCOMPATIBILITYLIST>105</SNVTCOMPATIBILITYLIST><PROTOCOLREFERENCE>" +
                              reference + "</PROTOCOLREFERENCE></A></InReferences></Tam>");
        return Bench({L"inspect", stream, L"--wire"})["wires"][0]["result"].get<std::string>();
    };
    EXPECT_EQ("left open", resultOf("000000"));
    EXPECT_EQ("wired", resultOf("0000000"));
}

TEST(ReadingInspectTest, TellsTheBoxesOfAFaultyStreamInTheirOrder) {
    const Json oddities = Bench({L"inspect", L"oddities"}, 1);
    EXPECT_EQ(7U, oddities["inputs"].size());
    EXPECT_EQ(7U, oddities["outputs"].size());
    EXPECT_EQ(8U, oddities["attributes"].size());
    const std::string list =
        ": SNVT Compatibility list not defined into the XML file of the object Odds and ends.";
    const std::string node = "Can't find the node related to SNVT ID ";
    EXPECT_EQ((Json{"AO1_In1" + list, "AO2_In1" + list, node + "9999", "AI2_Out" + list, node + "140",
                    node + "0105", node + "9999", node + "9999"}),
              Pluck(oddities["boxes"], "text"));
    const std::string lookUp = "O_Tam_id-CSNVTType::ID [Property Let]";
    EXPECT_EQ((Json{"Warning", "Warning", lookUp, "Warning", lookUp, lookUp, lookUp, lookUp}),
              Pluck(oddities["boxes"], "caption"));
    for (const Json& box : oddities["boxes"]) {
        EXPECT_EQ("message", box["kind"]);
        EXPECT_EQ("stop", box["icon"]);
        EXPECT_EQ(Json{"OK"}, box["buttons"]);
        EXPECT_EQ("LoadFromXmlStream", box["during"]);
        EXPECT_EQ("bench", box["answeredBy"]);
    }
}

TEST(ReadingInspectTest, TakesTheFileOfAStream) {
    const Json channels = Bench({L"inspect", SamplesFolder() + L"streams\\channels.xml"});
    EXPECT_EQ("Reading room", channels["module"]["name"]);
}

TEST(ReadingInspectTest, FailsOnAStreamThatIsNoXml) {
    for (const wchar_t* const stream : {L"damaged", L"missing_name"}) {
        const Json failed = Bench({L"inspect", stream}, 1);
        EXPECT_EQ("LoadFromXmlStream", failed["error"]["step"]);
        EXPECT_EQ("0x800A005B", failed["error"]["hresult"]);
        EXPECT_EQ("Object variable or With block variable not set", failed["error"]["description"]);
    }
}

TEST(ReadingInspectTest, FailsOnTwoAttributesOfOneName) {
    const Json error = Bench({L"inspect", L"duplicate_attribute"}, 1)["error"];
    EXPECT_EQ("0x800A01C9", error["hresult"]);
    EXPECT_EQ("This key is already associated with an element of this collection", error["description"]);
}

TEST(ReadingTypesTest, ListsEveryTypeOfTheCatalogue) {
    const Json types = Bench({L"types"});
    EXPECT_EQ(221, types["inCatalogue"]);
    EXPECT_EQ(221U, types["types"].size());
    EXPECT_EQ("1", types["types"][0]["id"]);
    EXPECT_EQ("SNVT_amp", types["types"][0]["name"]);
    EXPECT_EQ(Json::array(), types["boxes"]);
}

TEST(ReadingTypesTest, FiltersByNumberNameKindAndUnit) {
    const Json byName = Bench({L"types", L"--filter", L"TEMP_P"})["types"];
    EXPECT_EQ(Json{"105"}, Pluck(byName, "id"));
    EXPECT_EQ(Json{"213"}, Pluck(Bench({L"types", L"--filter", L"213"})["types"], "id"));
    for (const Json& type : Bench({L"types", L"--filter", L"Bitfield"})["types"]) {
        EXPECT_EQ("Bitfield", type["generalType"]);
    }
    EXPECT_EQ(Json::array(), Bench({L"types", L"--filter", L"no such type"})["types"]);
}

TEST(ReadingTypesTest, ShowsTheTextsOfEnumerations) {
    const Json type = Named(Bench({L"types"})["types"], "SNVT_lev_disc");
    EXPECT_EQ("22", type["id"]);
    EXPECT_EQ("Enum", type["generalType"]);
    EXPECT_EQ("Logic", type["luiType"]);
    EXPECT_EQ(1, type["length"]);
    EXPECT_EQ("0,ST_OFF;1,ST_LOW;2,ST_MED;3,ST_HIGH;4,ST_ON;-1,ST_NUL;", type["enumDesc"]);
}

TEST(ReadingInspectTest, ShowsTypesWhoseTextIsNoName) {
    const std::wstring stream =
        WrittenFile(L"types.xml",
                    "<Tam><Name>N</Name><DevKey>K9</DevKey><IsLastOnDev>1</IsLastOnDev><TamObjID>7</TamObjID>"
                    "<InReferences><A><SNVTTYPE>105'</SNVTTYPE></A><B><SNVTTYPE>105/..</SNVTTYPE></B>"
                    "<or><SNVTTYPE>105</SNVTTYPE></or></InReferences></Tam>");
    const Json inputs = Bench({L"inspect", stream})["inputs"];
    EXPECT_EQ((Json{{"id", "105'"}, {"name", ""}}), Named(inputs, "A")["type"]);
    EXPECT_EQ((Json{{"id", "105/.."}, {"name", ""}}), Named(inputs, "B")["type"]);
    EXPECT_EQ((Json{{"id", "105"}, {"name", "SNVT_temp_p"}}), Named(inputs, "or")["type"]);
}

TEST(ReadingInspectTest, RefusesDocumentsWithADocumentType) {
    // Two and a half gigabytes, read as text.
    std::string references;
    for (int i = 0; i < 50000; ++i) {
        references += "&a;";
    }
    const std::string type = "<!DOCTYPE Tam [<!ENTITY a \"" + std::string(50000, 'a') + "\">]>";
    const std::wstring stream =
        WrittenFile(L"growing.xml", type + "<Tam><Name>" + references + "</Name><DevKey>" + references +
                                        "</DevKey><IsLastOnDev>1</IsLastOnDev><TamObjID>7</TamObjID></Tam>");
    const Json failed = Bench({L"inspect", stream}, 1);
    EXPECT_EQ("0x800A005B", failed["error"]["hresult"]);
    EXPECT_EQ("LoadFromXmlStream", failed["error"]["step"]);
    const std::wstring catalogue =
        WrittenFile(L"growing.cat", type + "<C><SNVT_105><Name>" + references + "</Name></SNVT_105></C>");
    const auto told =
        Bench({L"types", L"--catalogue", catalogue}, 1)["error"]["description"].get<std::string>();
    // Some parsers refuse entities that grow before the bench can, in words of their own.
    const bool byParser = told.starts_with(Narrow(catalogue) + " is no XML document: ");
    EXPECT_TRUE(byParser || told == Narrow(catalogue) + " has a document type (DTD), which is not accepted")
        << told;
}

TEST(ReadingTypesTest, ReadsAnotherCatalogue) {
    const Json types = Bench({L"types", L"--catalogue", SamplesFolder() + L"catalogue.xml"});
    EXPECT_EQ(221, types["inCatalogue"]);
    const Json missing = Bench({L"types", L"--catalogue", ScratchFolder() + L"none.xml"}, 1);
    EXPECT_EQ("0x80070002", missing["error"]["hresult"]);
}

} // namespace

} // namespace benchtest
