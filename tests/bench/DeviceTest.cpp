// The commands of the group "device".

#include "tests/bench/BenchRun.h"

#include <gtest/gtest.h>

namespace benchtest {

namespace {

Json Channel(const Json& document, const std::string& key) {
    for (const Json& channel : document.at("channels")) {
        if (channel.at("objectKey") == key) {
            return channel;
        }
    }
    ADD_FAILURE() << "no channel " << key;
    return nullptr;
}

std::vector<std::string> Hidden(const Json& points) {
    std::vector<std::string> names;
    for (const Json& point : points) {
        if (point.at("visible") == false) {
            names.push_back(point.at("name"));
        }
    }
    return names;
}

/// A file of this name that the bench has saved a device in.
std::wstring SavedDevice(const wchar_t* name, std::vector<std::wstring> arguments) {
    const std::wstring file = ScratchFolder() + name;
    arguments.insert(arguments.begin(), {L"device", L"save"});
    arguments.insert(arguments.end(), {L"-o", file});
    Bench(arguments);
    return file;
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
    EXPECT_EQ(Names{"Channel"}, Hidden(Channel(tree, "AI1")["points"]));
    EXPECT_EQ((Names{"In2", "Channel"}), Hidden(Channel(tree, "AO1")["points"]));
    EXPECT_EQ(Names(), Hidden(Channel(tree, "CTX1")["points"]));
}

TEST(DeviceTreeTest, FailsForAFirmwareWithoutChannelObjects) {
    EXPECT_EQ("the firmware of the device has no objects for channels",
              Bench({L"device", L"tree", L"--firmware", L"V1_00"}, 1)["error"]["description"]);
    EXPECT_EQ("0x800A005B", Bench({L"device", L"tree", L"--firmware", L"V3_00"}, 1)["error"]["hresult"]);
}

TEST(DeviceFetchTest, FillsChannelAndSetupAndTheModulesItems) {
    const Json attributes = Bench({L"device", L"fetch", L"ai1"})["attributes"];
    const Json channel = Named(attributes, "Channel");
    EXPECT_EQ("0", channel["before"]["value"]);
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

TEST(DeviceSetTest, FailsForWhatIsNotThere) {
    for (const std::vector<std::wstring>& arguments :
         {std::vector<std::wstring>{L"device", L"set", L"AI1", L"Nope=1"}, {L"device", L"fetch", L"AI9"}}) {
        EXPECT_EQ("0x80070057", Bench(arguments, 1)["error"]["hresult"]);
    }
}

TEST(DeviceProjectTest, RestoresWhatWasSaved) {
    const std::wstring file =
        SavedDevice(L"device.xml", {L"--fetch", L"AI1.Filter=4", L"--name", L"Two", L"--at", L"12.5", L"4"});
    const std::string text = ReadFileBytes(file);
    EXPECT_NE(std::string::npos, text.find("<o_tam_ai_id>\n    <DevKey>K7</DevKey>\n"
                                           "    <TamObjectKey>AI1</TamObjectKey>"))
        << text;
    const Json loaded = Bench({L"device", L"load", file});
    EXPECT_EQ("Two", loaded["module"]["userName"]);
    // The module writes positions in the user's form and reads them with a point alone.
    EXPECT_NE(std::string::npos, text.find("<X_Position>" + Local("12.5") + "</X_Position>")) << text;
    EXPECT_EQ(IsCommaUser() ? 12.0 : 12.5, loaded["module"]["x"]);
    EXPECT_EQ(4.0, loaded["module"]["y"]);
    // The generic block of a channel has a point in both directions.
    EXPECT_EQ((Json{30.0, 30.0, 30.0, 30.0, 30.0}), Pluck(loaded["channels"], "x"));
    EXPECT_EQ((Json{0.0, 10.0, 20.0, 30.0, 40.0}), Pluck(loaded["channels"], "y"));
    EXPECT_EQ((Json{"", "AI1", "AO1", "DI1", "DO1", "CTX1"}), Pluck(loaded["loaded"], "objectKey"));
    EXPECT_EQ(Json::array(), loaded["passedOver"]);
    const Json points = Channel(loaded, "AI1")["points"];
    EXPECT_EQ("4", Named(points, "Filter")["value"]);
    EXPECT_EQ("2", Named(points, "Setup")["value"]);
    EXPECT_EQ("2,Ni1000;1,Pt1000;3,0-10 V", Named(points, "Setup")["type"]["enumDesc"]);
    EXPECT_EQ((std::vector<std::string>{"Channel"}), Hidden(points));
}

TEST(DeviceExportTest, ExportsTheModuleWithWhatTheChannelsSet) {
    const Json plain = Bench({L"export", L"channels", L"--no-compiler"});
    const Json device = Bench({L"device", L"export", L"--no-compiler"});
    EXPECT_EQ("export document", device["kind"]);
    EXPECT_EQ(plain["streamText"], device["streamText"]);
    const Json changed = Bench({L"device", L"export", L"AI1.Offset=1.5", L"--no-compiler"});
    EXPECT_NE(plain["streamText"], changed["streamText"]);
    EXPECT_EQ("image", Bench({L"device", L"export"})["kind"]);
}

TEST(DeviceHelpTest, EveryCommandHasExamples) {
    for (const std::wstring command : {L"tree", L"fetch", L"set", L"save", L"load", L"export"}) {
        const Outcome run = RunBench({L"device", command, L"--help"});
        EXPECT_EQ(0U, run.status);
        EXPECT_NE(std::string::npos, run.out.find("\n  tambench device " + Narrow(command))) << run.out;
    }
    EXPECT_EQ(2U, RunBench({L"device"}).status);
}

} // namespace

} // namespace benchtest
