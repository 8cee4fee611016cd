// The commands "device save" and "device load", and --project.

#include "tests/bench/DeviceRun.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace benchtest {

namespace {

TEST(DeviceProjectTest, RestoresWhatWasSaved) {
    const std::wstring file =
        SavedDevice(L"device.xml", {L"--fetch", L"AI1.Filter=4", L"--name", L"Two", L"--at", L"12.5", L"4"});
    const std::string text = ReadFileBytes(file);
    EXPECT_NE(std::string::npos, text.find("<o_tam_ai_id>\n    <DevKey>K7</DevKey>\n"
                                           "    <TamObjectKey>AI1</TamObjectKey>"))
        << text;
    const Json loaded = Bench({L"device", L"load", file});
    EXPECT_EQ("Two", loaded["module"]["userName"]);
    EXPECT_EQ((Json{nullptr, "AI1", "AO1", "DI1", "DO1", "CTX1"}), Pluck(loaded["loaded"], "objectKey"));
    EXPECT_EQ(Json::array(), loaded["passedOver"]);
    const Json points = ChannelOf(loaded, "AI1")["points"];
    EXPECT_EQ("4", Named(points, "Filter")["value"]);
    EXPECT_EQ("2", Named(points, "Setup")["value"]);
    EXPECT_EQ("2,Ni1000;1,Pt1000;3,0-10 V", Named(points, "Setup")["type"]["enumDesc"]);
    EXPECT_EQ((std::vector<std::string>{"Channel"}), Hidden(points));
}

TEST(DeviceProjectTest, RestoresPositionsAsEachObjectReadsThem) {
    const std::wstring file = SavedDevice(L"position.xml", {L"--at", L"12.5", L"4"});
    const std::string text = ReadFileBytes(file);
    const Json loaded = Bench({L"device", L"load", file});
    // The module writes positions in the user's form and reads them with a point alone.
    EXPECT_NE(std::string::npos, text.find("<X_Position>" + Local("12.5") + "</X_Position>")) << text;
    EXPECT_EQ(IsCommaUser() ? 12.0 : 12.5, loaded["module"]["x"]);
    EXPECT_EQ(4.0, loaded["module"]["y"]);
    EXPECT_EQ(IsCommaUser()
                  ? (Json{"The module writes its position with the user's decimal mark and reads it "
                          "with a point alone: 12,5 came back as 12."})
                  : Json::array(),
              loaded["notes"]);
    // The generic block of a channel has a point in both directions.
    const std::wstring moved =
        WrittenFile(L"moved.xml", Replaced(text, "<X_Position>30<", "<X_Position>30.25<"));
    const Json again = Bench({L"device", L"load", moved});
    EXPECT_EQ((Json{30.25, 30.0, 30.0, 30.0, 30.0}), Pluck(again["channels"], "x"));
    EXPECT_EQ((Json{0.0, 10.0, 20.0, 30.0, 40.0}), Pluck(again["channels"], "y"));
}

TEST(DeviceProjectTest, BringsTheModulesItemsInLineWithTheChannels) {
    const std::wstring file = SavedDevice(
        L"inline.xml", {L"--display", L"ai1.out", L"AI1.Offset=1.5", L"AI1.Filter=4", L"DO1.In1=DI1_Out"});
    const Json loaded = Bench({L"device", L"load", file});
    EXPECT_EQ((Json{{{"objectKey", "AI1"},
                     {"name", "Out"},
                     {"moduleItem", "AI1_Out"},
                     {"before", false},
                     {"after", true}},
                    {{"objectKey", "AI1"},
                     {"name", "Offset"},
                     {"moduleItem", "AI1_Offset"},
                     {"before", "-0.50"},
                     {"after", "1.5"}},
                    {{"objectKey", "DO1"},
                     {"name", "In1"},
                     {"moduleItem", "DO1_In1"},
                     {"before", ""},
                     {"after", "DI1_Out"}}}),
              loaded["broughtInLine"]);
    const Json points = loaded["module"]["points"];
    EXPECT_EQ(true, Named(points, "AI1_Out")["displayable"]);
    EXPECT_EQ("1.5", Named(points, "AI1_Offset")["value"]);
    EXPECT_EQ("DI1_Out", Named(points, "DO1_In1")["value"]);
    EXPECT_EQ("1", Named(points, "AI1_Channel")["value"]);
}

TEST(DeviceProjectTest, LeavesTheModuleAloneWhereNothingWasChanged) {
    const std::wstring file = SavedDevice(L"plain.xml", {});
    const Json loaded = Bench({L"device", L"load", file});
    EXPECT_EQ(Json::array(), loaded["broughtInLine"]);
    EXPECT_EQ(Bench({L"device", L"tree"})["module"]["points"], loaded["module"]["points"]);
}

TEST(DeviceProjectTest, ExportsTheSameBeforeSavingAndAfterLoading) {
    const std::vector<std::wstring> values = {L"AI1.Offset=1.5", L"AO1.Gain=2", L"DO1.In1=DI1_Out"};
    const std::wstring file = SavedDevice(L"export.xml", values);
    std::vector<std::wstring> direct = {L"device", L"export", L"--no-compiler"};
    direct.insert(direct.end(), values.begin(), values.end());
    EXPECT_EQ(Bench(direct)["streamText"],
              Bench({L"device", L"export", L"--no-compiler", L"--project", file})["streamText"]);
}

TEST(DeviceProjectTest, KeepsEveryCharacterOfAValue) {
    const std::wstring value = L" <\u00C4 & \"b\">\r\n\t' ";
    const std::wstring file = SavedDevice(L"text.xml", {L"AI1.Filter=" + value, L"AI1.Offset=" + value});
    const Json loaded = Bench({L"device", L"load", file});
    const Json points = ChannelOf(loaded, "AI1")["points"];
    EXPECT_EQ(Json(Narrow(value)), Named(points, "Filter")["value"]);
    EXPECT_EQ(Json(Narrow(value)), Named(points, "Offset")["moduleItem"]["value"]);
}

TEST(DeviceProjectTest, IsOpenedByTheOtherCommandsAndSavedAgain) {
    const std::wstring first = SavedDevice(L"first.xml", {L"AI1.Offset=1.5"});
    const Json change = Bench({L"device", L"set", L"AI1", L"Offset=2", L"--project", first})["changes"][0];
    EXPECT_EQ("1.5", change["before"]["moduleItem"]);
    EXPECT_EQ("2", change["after"]["moduleItem"]);
    const std::wstring second = SavedDevice(L"second.xml", {L"--project", first});
    EXPECT_EQ(ReadFileBytes(first), ReadFileBytes(second));
}

TEST(DeviceProjectTest, LoadsTheChannelsThatItNamesAndNoOthers) {
    const std::wstring file = WrittenFile(
        L"few.xml", "<Project><O_Tam_id><UserName>Hall</UserName><DevKey>K7</DevKey></O_Tam_id>"
                    "<o_tam_ai_id><DevKey>K7</DevKey><TamObjectKey>AI9</TamObjectKey></o_tam_ai_id>"
                    "<o_tam_di_id><DevKey>K8</DevKey><TamObjectKey>DI1</TamObjectKey></o_tam_di_id>"
                    "<O_Clock><UserName>Clock</UserName></O_Clock></Project>");
    const Json loaded = Bench({L"device", L"load", file});
    EXPECT_EQ((Json{"AI9"}), Pluck(loaded["channels"], "objectKey"));
    EXPECT_EQ((Json{"o_tam_di_id", "O_Clock"}), Pluck(loaded["passedOver"], "element"));
    EXPECT_EQ(Json::array(), loaded["broughtInLine"]);
}

} // namespace

} // namespace benchtest
