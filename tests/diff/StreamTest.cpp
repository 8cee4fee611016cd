// What is a change of a device stream and what is none.

#include "tests/diff/Changes.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace difftest {

namespace {

const std::string kOffset = Attribute("AI1_Offset", "147", "11", "-0.50");
const std::string kSetup = Attribute("AO1_Setup", "162", "13", "21");
const std::string kMin = Attribute("AO1_Min", "81", "14", "0.000");

TEST(StreamDiffTest, FindsNothingInADocumentAndItself) {
    EXPECT_EQ(Texts{}, Changes(Attributes(kOffset + kSetup), Attributes(kOffset + kSetup)));
}

TEST(StreamDiffTest, PassesOverForm) {
    EXPECT_EQ(
        Texts{},
        Changes(Attributes(kOffset),
                "<?xml version=\"1.0\"?>\r\n<!-- an attribute -->\r\n<Tam>\r\n <Name>Reading room</Name>"
                "<DevKey> K7 </DevKey>\r\n<TamObjID>1</TamObjID><IsLastOnDev>0</IsLastOnDev><Attributes>"
                "\r\n\t<ai1_offset>\r\n<Value>-0.5</Value><LogicalAddress>011</LogicalAddress>"
                "<SNVTType><![CDATA[147]]></SNVTType></ai1_offset></Attributes></Tam>"));
}

// A module finds its sections by their very names: such a stream has lost its points.
TEST(StreamDiffTest, TellsThePointsOfASectionThatIsMisspelt) {
    std::string lost = Attributes(kOffset);
    for (const std::string_view name : {"<Attributes>", "</Attributes>"}) {
        const std::size_t at = lost.find(name);
        ASSERT_NE(at, std::string::npos);
        lost.replace(at, name.size(), name.starts_with("</") ? "</ATTRIBUTES>" : "<ATTRIBUTES>");
    }
    EXPECT_EQ(Texts{"removed attribute AI1_Offset: type 147 temp_diff_p, address 11 -> "},
              Changes(Attributes(kOffset), lost));
}

TEST(StreamDiffTest, TellsBlanksAroundATextAlone) {
    EXPECT_EQ(Texts{"changed attribute A value: hall ->  hall"},
              Changes(Attributes(Attribute("A", "36", "1", "hall")),
                      Attributes(Attribute("A", "36", "1", " hall"))));
    EXPECT_EQ(Texts{}, Changes(Attributes(Attribute("A", "81", "1", "5")),
                               Attributes(Attribute("A", "81", "1", " 5 "))));
}

TEST(StreamDiffTest, TellsValuesWithUnitAndLabel) {
    EXPECT_EQ((Texts{"changed attribute AI1_Offset value: -0.50 degrees C -> 1.5 degrees C",
                     "changed attribute AO1_Setup value: 21 DCM_LINEAR -> 1 DCM_PRESS_CONST"}),
              Changes(Attributes(kOffset + kSetup), Attributes(Attribute("AI1_Offset", "147", "11", "1.5") +
                                                               Attribute("AO1_Setup", "162", "13", "1"))));
}

TEST(StreamDiffTest, TellsValuesOfTextsAsTheyStand) {
    EXPECT_EQ(
        (Texts{"changed attribute A value: 1.0 -> 1.00"}),
        Changes(Attributes(Attribute("A", "36", "1", "1.0")), Attributes(Attribute("A", "36", "1", "1.00"))));
}

TEST(StreamDiffTest, TellsTypesAndAddresses) {
    EXPECT_EQ((Texts{"changed attribute AO1_Min type: 81 lev_percent -> 147 temp_diff_p",
                     "changed attribute AO1_Min address: 14 -> 15",
                     "changed attribute AO1_Min value: 0.000 % -> 1 degrees C"}),
              Changes(Attributes(kMin), Attributes(Attribute("AO1_Min", "147", "15", "1"))));
}

TEST(StreamDiffTest, TellsAddedAndRemovedPoints) {
    EXPECT_EQ((Texts{"removed attribute AI1_Offset: type 147 temp_diff_p, address 11 -> ",
                     "added attribute AO1_Min:  -> type 81 lev_percent, address 14"}),
              Changes(Attributes(kOffset + kSetup), Attributes(kSetup + kMin)));
}

TEST(StreamDiffTest, TellsARenamedPointByTypeAndAddress) {
    EXPECT_EQ((Texts{"renamed attribute AI2_Offset: AI1_Offset -> AI2_Offset",
                     "changed attribute AI2_Offset value: -0.50 degrees C -> 2 degrees C"}),
              Changes(Attributes(kOffset + kSetup),
                      Attributes(Attribute("AI2_Offset", "147", "11", "2") + kSetup)));
}

TEST(StreamDiffTest, GuessesNoNameThatTwoCouldHave) {
    EXPECT_EQ((Texts{"removed attribute A: type 147 temp_diff_p, address 1 -> ",
                     "added attribute B:  -> type 147 temp_diff_p, address 1",
                     "added attribute C:  -> type 147 temp_diff_p, address 1"}),
              Changes(Attributes(Attribute("A", "147", "1", "0")),
                      Attributes(Attribute("B", "147", "1", "0") + Attribute("C", "147", "1", "0"))));
    EXPECT_EQ(
        (Texts{"removed attribute A: type 147 temp_diff_p, address 1 -> ",
               "added attribute B:  -> type 81 lev_percent, address 1"}),
        Changes(Attributes(Attribute("A", "147", "1", "0")), Attributes(Attribute("B", "81", "1", "0"))));
}

TEST(StreamDiffTest, TellsTheFewestPointsThatMoved) {
    const std::string a = Attribute("A", "147", "1", "0");
    const std::string b = Attribute("B", "147", "2", "0");
    const std::string c = Attribute("C", "147", "3", "0");
    const std::string d = Attribute("D", "147", "4", "0");
    EXPECT_EQ((Texts{"moved attribute D: 4 -> 1"}),
              Changes(Attributes(a + b + c + d), Attributes(d + a + b + c)));
    EXPECT_EQ((Texts{"moved attribute A: 1 -> 4"}),
              Changes(Attributes(a + b + c + d), Attributes(b + c + d + a)));
    // What stands elsewhere because another one came or went has not moved.
    EXPECT_EQ((Texts{"removed attribute A: type 147 temp_diff_p, address 1 -> "}),
              Changes(Attributes(a + b + c), Attributes(b + c)));
}

TEST(StreamDiffTest, TellsFlagsByWhatTheyMean) {
    const auto input = [](const std::string& fields) {
        return Inputs("<AO1_In1><SNVTTYPE>81</SNVTTYPE>" + fields + "</AO1_In1>");
    };
    // The element counts, whatever it holds; a flag that is absent is the flag that it begins as.
    EXPECT_EQ(Texts{}, Changes(input("<VISIBLE>1</VISIBLE>"), input("<VISIBLE>0</VISIBLE>")));
    EXPECT_EQ(Texts{}, Changes(input(""), input("<ISPERMANENT>0</ISPERMANENT>")));
    EXPECT_EQ((Texts{"changed input AO1_In1 permanent: no -> yes"}),
              Changes(input(""), input("<ISPERMANENT>1</ISPERMANENT>")));
    EXPECT_EQ((Texts{"changed input AO1_In1 visible: yes -> no",
                     "changed input AO1_In1 mandatory mark: no -> yes"}),
              Changes(input("<VISIBLE/>"), input("<MANDATORY/>")));
    const auto attribute = [](const std::string& fields) { return Attributes("<A>" + fields + "</A>"); };
    EXPECT_EQ(Texts{}, Changes(attribute(""), attribute("<ISPERMANENT>1</ISPERMANENT>")));
    EXPECT_EQ((Texts{"changed attribute A permanent: yes -> no"}),
              Changes(attribute(""), attribute("<ISPERMANENT>0</ISPERMANENT>")));
}

TEST(StreamDiffTest, TellsReferencesAndAcceptedTypes) {
    const auto input = [](const std::string& reference, const std::string& list) {
        return Inputs("<DO1_In1><SNVTCOMPATIBILITYLIST>" + list +
                      "</SNVTCOMPATIBILITYLIST><PROTOCOLREFERENCE>" + reference +
                      "</PROTOCOLREFERENCE></DO1_In1>");
    };
    EXPECT_EQ(Texts{}, Changes(input("0000", "95,81"), input("000000", "95,81")));
    EXPECT_EQ(Texts{}, Changes(input("DI1_Out", "95"), input("di1_out", "95,,81")));
    EXPECT_EQ((Texts{"changed input DO1_In1 accepted types: 95 switch -> 95 switch, 81 lev_percent",
                     "changed input DO1_In1 reference:  -> DI1_Out"}),
              Changes(input("0000", "95"), input("DI1_Out", "95,81")));
}

TEST(StreamDiffTest, TellsWhatTheModuleSaysOfItself) {
    EXPECT_EQ((Texts{"changed name: Reading room -> Reading room 2", "changed CDB size:  -> 426"}),
              Changes(Stream(""),
                      "<Tam><Name>Reading room 2</Name><DevKey>K7</DevKey><IsLastOnDev>0</IsLastOnDev>"
                      "<TamObjID>01</TamObjID><CDB>426</CDB></Tam>"));
    EXPECT_EQ((Texts{"changed last on the device: no -> yes"}),
              Changes(Stream(""),
                      "<Tam><Name>Reading room</Name><DevKey>K7</DevKey><IsLastOnDev>1</IsLastOnDev>"
                      "<TamObjID>1</TamObjID></Tam>"));
}

TEST(StreamDiffTest, TellsLinesOfBothDocuments) {
    const auto changes = diff::Compare(
        ModelOf("<Tam>\n<Name>A</Name>\n<Attributes>\n<X>\n<VALUE>1</VALUE></X></Attributes></Tam>"),
        ModelOf("<Tam><Name>A</Name><Attributes><X>\r\n\r\n<VALUE>2</VALUE></X></Attributes></Tam>"));
    ASSERT_EQ(1U, changes.size());
    EXPECT_EQ(5U, changes[0].lineBefore);
    EXPECT_EQ(3U, changes[0].lineAfter);
}

} // namespace

} // namespace difftest
