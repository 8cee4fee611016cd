// The commands "device tree", "place", "fetch", "set" and "export".

#include "tests/bench/DeviceRun.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace benchtest {

namespace {

/// Name and item of the points of a channel that the module has an item for.
Json Items(const Json& points) {
    Json items = Json::array();
    for (const Json& point : points) {
        if (!point.at("moduleItem").is_null()) {
            items.push_back(point["moduleItem"]["name"]);
        }
    }
    return items;
}

TEST(DeviceTreeTest, ShowsTheModuleAndAnObjectOfEachKind) {
    const Json tree = Bench({L"device", L"tree"});
    EXPECT_EQ("K7", tree["module"]["deviceKey"]);
    EXPECT_EQ(19U, tree["module"]["points"].size());
    EXPECT_EQ((Json{"AI1", "AO1", "DI1", "DO1", "CTX1"}), Pluck(tree["channels"], "objectKey"));
    EXPECT_EQ((Json{"o_tam_ai_id", "o_tam_ao_id", "o_tam_di_id", "o_tam_do_id", "o_inpcntx_id"}),
              Pluck(tree["channels"], "definition"));
    EXPECT_EQ((Json{"K7", "K7", "K7", "K7", "K7"}), Pluck(tree["channels"], "deviceKey"));
    EXPECT_EQ(Json::array(), tree["boxes"]);
}

TEST(DeviceTreeTest, ShowsAndHidesByDefinition) {
    using Names = std::vector<std::string>;
    const Json tree = Bench({L"device", L"tree"});
    EXPECT_EQ(Names(), Hidden(tree["module"]["points"]));
    EXPECT_EQ(Names{"Channel"}, Hidden(ChannelOf(tree, "AI1")["points"]));
    EXPECT_EQ((Names{"In2", "Channel"}), Hidden(ChannelOf(tree, "AO1")["points"]));
    EXPECT_EQ(Names{"Channel"}, Hidden(ChannelOf(tree, "DI1")["points"]));
    EXPECT_EQ(Names(), Hidden(ChannelOf(tree, "CTX1")["points"]));
}

TEST(DeviceTreeTest, TellsWhatTheDefinitionSaysOfVisibility) {
    const Json tree = Bench({L"device", L"tree"});
    const auto visibility = [&](const char* key, const char* point) {
        return Named(ChannelOf(tree, key)["points"], point)["visibility"];
    };
    EXPECT_EQ((Json{{"VISIBLE", "1"}, {"TAMConfig", "0"}}), visibility("AO1", "In2"));
    EXPECT_EQ((Json{{"VISIBLE", "0"}, {"TAMConfig", "1"}}), visibility("DI1", "Debounce"));
    EXPECT_EQ((Json{{"VISIBLE", "1"}, {"TAMConfig", "1"}}), visibility("AI1", "Out"));
    EXPECT_EQ((Json{{"VISIBLE", "1"}, {"TAMConfig", nullptr}}), visibility("CTX1", "Mask"));
    const std::string text = RunBench({L"device", L"tree"}).out;
    EXPECT_NE(std::string::npos, text.find("yes (TAMConfig)")) << text;
    EXPECT_NE(std::string::npos, text.find("no (TAMConfig)")) << text;
}

TEST(DeviceTreeTest, OpensTheChannelsWithTheModulesValues) {
    const Json tree = Bench({L"device", L"tree"});
    for (const Json& channel : tree["channels"]) {
        for (const Json& point : channel["points"]) {
            if (!point["moduleItem"].is_null() && point.contains("value")) {
                EXPECT_EQ(point["moduleItem"]["value"], point["value"]) << point;
            }
        }
    }
    EXPECT_EQ("-0.50", Named(ChannelOf(tree, "AI1")["points"], "Offset")["value"]);
    EXPECT_EQ("2.5", Named(ChannelOf(tree, "AI1")["points"], "Filter")["value"]);
}

TEST(DeviceTreeTest, ShowsADifferenceInTheUsersUnit) {
    // 2.5 K are 4.5 degrees Fahrenheit apart; a filter's time follows no unit.
    const Json points = Bench({L"device", L"set", L"AI1", L"Offset=2.5", L"Filter=4", L"--us"})["changes"];
    EXPECT_EQ(Json(Local("4.5") + " \u00B0F"), points[0]["after"]["display"]);
    EXPECT_EQ(Json(Local("4") + " s"), points[1]["after"]["display"]);
}

TEST(DevicePlaceTest, MakesAnObjectOfAKind) {
    const Json placed = Bench({L"device", L"place", L"ai", L"AI2"});
    EXPECT_EQ("AI2", placed["channel"]["objectKey"]);
    EXPECT_EQ("K7", placed["channel"]["deviceKey"]);
    EXPECT_EQ("o_tam_ai_id", placed["channel"]["definition"]);
    EXPECT_EQ(true, placed["channel"]["virtual"]);
    EXPECT_EQ((Json{"Out", "Channel", "Setup", "Offset", "Filter"}),
              Pluck(placed["channel"]["points"], "name"));
    EXPECT_EQ(Json::array(), Items(placed["channel"]["points"]));
    EXPECT_EQ((Json{"AI1", "AO1", "DI1", "DO1", "CTX1", "AI2"}), placed["channels"]);
}

TEST(DevicePlaceTest, TakesAnIdentifierInAnyLetterCase) {
    const Json placed = Bench({L"device", L"place", L"O_TAM_do_ID", L"DO2"});
    EXPECT_EQ("Digital output", placed["channel"]["name"]);
}

TEST(DeviceFetchTest, FillsChannelAndSetupAndTheModulesItems) {
    const Json attributes = Bench({L"device", L"fetch", L"ai1"})["attributes"];
    const Json channel = Named(attributes, "Channel");
    EXPECT_EQ("1", channel["before"]["value"]);
    EXPECT_EQ("5", channel["after"]["value"]);
    EXPECT_EQ("", channel["after"]["enumDesc"]);
    EXPECT_EQ("AI1_Channel", channel["moduleItem"]);
    EXPECT_EQ("1", channel["before"]["moduleItem"]);
    EXPECT_EQ("5", channel["after"]["moduleItem"]);
    const Json setup = Named(attributes, "Setup");
    EXPECT_EQ("", setup["before"]["enumDesc"]);
    EXPECT_EQ("2,Ni1000;1,Pt1000;3,0-10 V", setup["after"]["enumDesc"]);
    EXPECT_EQ("2", setup["after"]["value"]);
    EXPECT_EQ("Ni1000", setup["after"]["display"]);
    EXPECT_EQ("3", setup["before"]["moduleItem"]);
    EXPECT_EQ("2", setup["after"]["moduleItem"]);
    const Json offset = Named(attributes, "Offset");
    EXPECT_EQ(offset["before"], offset["after"]);
}

TEST(DeviceFetchTest, ChangesNothingOfAnInputContext) {
    const Json attributes = Bench({L"device", L"fetch", L"CTX1"})["attributes"];
    ASSERT_EQ(1U, attributes.size());
    EXPECT_EQ("Mask", attributes[0]["name"]);
    EXPECT_EQ(attributes[0]["before"], attributes[0]["after"]);
}

TEST(DeviceSetTest, SetsTheChannelAndTheModulesItem) {
    const Json changes = Bench({L"device", L"set", L"AI1", L"Offset=1.5", L"filter=4"})["changes"];
    ASSERT_EQ(2U, changes.size());
    EXPECT_EQ("AI1_Offset", changes[0]["moduleItem"]);
    EXPECT_EQ("-0.50", changes[0]["before"]["moduleItem"]);
    EXPECT_EQ("1.5", changes[0]["after"]["moduleItem"]);
    EXPECT_EQ("4", changes[1]["after"]["value"]);
    EXPECT_EQ(nullptr, changes[1]["moduleItem"]);
    const Json input = Bench({L"device", L"set", L"DO1", L"In1=DI1_Out"})["changes"][0];
    EXPECT_EQ("input", input["kind"]);
    EXPECT_EQ("", input["before"]["moduleItem"]);
    EXPECT_EQ("DI1_Out", input["after"]["moduleItem"]);
}

TEST(DeviceExportTest, ExportsTheModuleWithWhatTheChannelsSet) {
    const Json plain = Bench({L"export", L"channels", L"--no-compiler"});
    const Json device = Bench({L"device", L"export", L"--no-compiler"});
    EXPECT_EQ(plain["streamText"], device["streamText"]);
    const Json changed = Bench({L"device", L"export", L"AI1.Offset=1.5", L"--no-compiler"});
    const std::string text = plain["streamText"];
    EXPECT_EQ(Json(Replaced(text, "Value=\"-0.50\"", "Value=\"1.5\"")), changed["streamText"]);
    EXPECT_EQ("export document", device["kind"]);
    EXPECT_EQ("image", Bench({L"device", L"export"})["kind"]);
}

TEST(DeviceHelpTest, EveryCommandHasExamples) {
    for (const std::wstring command : {L"tree", L"place", L"fetch", L"set", L"save", L"load", L"export"}) {
        const Outcome run = RunBench({L"device", command, L"--help"});
        EXPECT_EQ(0U, run.status);
        EXPECT_NE(std::string::npos, run.out.find("\n  tambench device " + Narrow(command))) << run.out;
        EXPECT_NE(std::string::npos, run.out.find("--firmware")) << run.out;
    }
    const std::string group = RunBench({L"device", L"--help"}).out;
    EXPECT_NE(std::string::npos, group.find("AI1_Offset is the offset of AI1")) << group;
}

} // namespace

} // namespace benchtest
