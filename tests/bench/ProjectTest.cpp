// save, load and interop.

#include "tests/bench/BenchRun.h"

#include <gtest/gtest.h>

#include <string>

namespace benchtest {

namespace {

const std::wstring& ProjectFile() {
    static const std::wstring file = ScratchFolder() + L"project.xml";
    return file;
}

Json SavePlaced() {
    return Bench({L"save", L"channels", L"--name", L"Lesesaal \u00C4", L"--at", L"12.5", L"4", L"--display",
                  L"ai1_out", L"--output", ProjectFile()});
}

std::string SavedElement() {
    return "<O_Tam_id>\n"
           "  <UserName>Lesesaal \u00C4</UserName>\n"
           "  <X_Position>" +
           Local("12.5") +
           "</X_Position>\n"
           "  <Y_Position>4</Y_Position>\n"
           "  <DevKey>K7</DevKey>\n"
           "  <TamObjID>1</TamObjID>\n"
           "  <Outputs>\n"
           "    <AI1_Out IsDisplayable=\"1\"/>\n"
           "  </Outputs>\n"
           "</O_Tam_id>\n";
}

TEST(ProjectSaveTest, ShowsWhatTheComponentWrote) {
    const Json saved = SavePlaced();
    EXPECT_EQ(Json(SavedElement()), saved["element"]);
    EXPECT_EQ(Json::array(), saved["boxes"]);
}

TEST(ProjectSaveTest, WritesAProject) {
    SavePlaced();
    const std::string file = ReadFileBytes(ProjectFile());
    EXPECT_EQ(0U, file.find("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Project>\n  <O_Tam_id>\n"));
    EXPECT_NE(std::string::npos, file.find("<UserName>Lesesaal \u00C4</UserName>"));
}

TEST(ProjectSaveTest, WritesNoOutputsWhenNoneIsDisplayed) {
    const std::string element = Bench({L"save", L"channels"})["element"];
    EXPECT_EQ(std::string::npos, element.find("Outputs"));
    EXPECT_NE(std::string::npos, element.find("<UserName>Reading room</UserName>"));
}

TEST(ProjectSaveTest, RefusesToDisplayAnOutputThatIsNotThere) {
    const Json failed = Bench({L"save", L"channels", L"--display", L"Nope"}, 1);
    EXPECT_EQ("there is no output \"Nope\"", failed["error"]["description"]);
}

TEST(ProjectLoadTest, RestoresWhatAProjectKeeps) {
    SavePlaced();
    const Json loaded = Bench({L"load", L"channels", ProjectFile()});
    EXPECT_EQ((Json{{"userName", "Reading room"},
                    {"x", 0.0},
                    {"y", 0.0},
                    {"deviceKey", ""},
                    {"objectId", 1},
                    {"displayedOutputs", Json::array()}}),
              loaded["before"]);
    // Positions are written in the user's form and read with a point alone;
    // which outputs are displayed is not read back.
    EXPECT_EQ((Json{{"userName", "Lesesaal \u00C4"},
                    {"x", IsCommaUser() ? 12.0 : 12.5},
                    {"y", 4.0},
                    {"deviceKey", "K7"},
                    {"objectId", 1},
                    {"displayedOutputs", Json::array()}}),
              loaded["after"]);
    EXPECT_EQ(Json::array(), loaded["boxes"]);
}

TEST(ProjectLoadTest, FailsOnAFileThatIsNoProject) {
    const Json none = Bench({L"load", L"channels", ScratchFolder() + L"none.xml"}, 1);
    EXPECT_EQ("0x80070002", none["error"]["hresult"]);
    const Json other = Bench({L"load", L"channels", SamplesFolder() + L"catalogue.xml"}, 1);
    EXPECT_EQ("0x80070057", other["error"]["hresult"]);
}

TEST(ProjectInteropTest, DescribesEveryPoint) {
    const Json full = Bench({L"interop", L"full"});
    EXPECT_EQ((Json{{"inputs", 13}, {"outputs", 25}, {"attributes", 65}}), full["counts"]);
}

TEST(ProjectInteropTest, WritesTheElementsOfThePoints) {
    const std::string element = Bench({L"interop", L"channels"})["element"];
    EXPECT_EQ(0U, element.find("<O_Tam_id>\n"
                               "  <UserName>Reading room</UserName>\n"
                               "  <Key>PROJECT\\SHEET1\\MODULE1</Key>\n"
                               "  <Inputs>\n"
                               "    <AO1_In1>\n"
                               "      <Reference>0000</Reference>\n"
                               "      <LogicalAddress>1</LogicalAddress>\n"
                               "      <isPermanent>True</isPermanent>\n"
                               "      <SNVTType>81</SNVTType>\n"
                               "    </AO1_In1>\n"));
    EXPECT_NE(std::string::npos, element.find("    <AI1_Out>\n"
                                              "      <SNVT_Type>105</SNVT_Type>\n"
                                              "      <LogicalAddress>4</LogicalAddress>\n"
                                              "    </AI1_Out>\n"));
    EXPECT_NE(std::string::npos, element.find("    <AI1_Offset>\n"
                                              "      <Value>-0.50</Value>\n"
                                              "    </AI1_Offset>\n"));
}

} // namespace

} // namespace benchtest
