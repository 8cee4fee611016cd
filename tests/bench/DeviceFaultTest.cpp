// What the commands of the group "device" refuse: nothing is done by halves.

#include "tests/bench/DeviceRun.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace benchtest {

namespace {

/// The error of a command that fails with status 1 and no data beside it.
Json Error(const std::vector<std::wstring>& arguments) {
    const Json document = Bench(arguments, 1);
    for (const char* const member : {"module", "channels", "channel", "loaded", "changes", "attributes",
                                     "elements", "file", "streamText"}) {
        EXPECT_FALSE(document.contains(member)) << member << " in " << document.dump(2);
    }
    return document["error"];
}

/// The saved device with one part of its text replaced.
std::wstring DamagedDevice(const wchar_t* name, std::string_view part, std::string_view by) {
    static const std::string whole = ReadFileBytes(SavedDevice(L"whole.xml", {}));
    return WrittenFile(name, Replaced(whole, part, by));
}

Json LoadError(const std::wstring& file) {
    return Error({L"device", L"load", file});
}

std::string About(const std::wstring& file, const std::string& text) {
    return Narrow(file) + " " + text;
}

TEST(DeviceFaultTest, NamesAFirmwareWithoutChannelObjects) {
    EXPECT_EQ(
        "firmware V1_00 of the device has no objects for channels: its library does not list the module",
        Error({L"device", L"tree", L"--firmware", L"V1_00"})["description"]);
    for (const wchar_t* const firmware : {L"V3_00", L"V9_99"}) {
        EXPECT_EQ("0x800A005B", Error({L"device", L"tree", L"--firmware", firmware})["hresult"]);
    }
}

TEST(DeviceFaultTest, RefusesAnUnknownKindOfChannel) {
    const Json unknown = Error({L"device", L"place", L"o_tam_xx_id", L"X1"});
    EXPECT_EQ("0x80070057", unknown["hresult"]);
    EXPECT_EQ(
        "there is no kind of channel \"o_tam_xx_id\": it is ai, ao, di, do, ctx or an identifier such as "
        "o_tam_ai_id",
        unknown["description"]);
    EXPECT_EQ("\"O_Tam_id\" is the module itself, not a channel",
              Error({L"device", L"place", L"O_Tam_id", L"X1"})["description"]);
}

TEST(DeviceFaultTest, RefusesAKeyThatIsTakenOrEmpty) {
    EXPECT_EQ("the device has a channel object \"ai1\" already",
              Error({L"device", L"place", L"ai", L"ai1"})["description"]);
    EXPECT_EQ("a channel object needs a key", Error({L"device", L"place", L"ai", L""})["description"]);
}

TEST(DeviceFaultTest, NamesTheKeyOrPointThatIsNotThere) {
    EXPECT_EQ("the device has no channel object \"AI9\"",
              Error({L"device", L"fetch", L"AI9"})["description"]);
    EXPECT_EQ("there is no attribute or input \"AI1.Nope\"",
              Error({L"device", L"set", L"AI1", L"Offset=1", L"Nope=1"})["description"]);
    EXPECT_EQ("the device has no channel object \"AI9\"",
              Error({L"device", L"export", L"AI9.Offset=1"})["description"]);
    EXPECT_EQ("there is no output \"AI1.Nope\"",
              Error({L"device", L"save", L"--display", L"AI1.Nope"})["description"]);
}

TEST(DeviceFaultTest, LeavesAFileAsItIsWhenSavingFails) {
    const std::wstring file = WrittenFile(L"kept.xml", "kept");
    Error({L"device", L"save", L"AI1.Offset=1", L"AI1.Nope=1", L"-o", file});
    EXPECT_EQ("kept", ReadFileBytes(file));
}

TEST(DeviceFaultTest, FailsWithoutAFile) {
    const std::wstring none = ScratchFolder() + L"none.xml";
    const Json error = LoadError(none);
    EXPECT_EQ("reading the project", error["step"]);
    EXPECT_EQ("0x80070002", error["hresult"]);
    for (const std::wstring command : {L"tree", L"export", L"save"}) {
        EXPECT_EQ("0x80070002", Error({L"device", command, L"--project", none})["hresult"]);
    }
    EXPECT_EQ("0x80070003",
              Bench({L"device", L"save", L"-o", ScratchFolder() + L"none\\d.xml"}, 1)["error"]["hresult"]);
}

TEST(DeviceFaultTest, RefusesWhatIsNoXml) {
    const std::wstring cut = DamagedDevice(L"cut.xml", "</Project>", "");
    const std::string text = LoadError(cut)["description"];
    EXPECT_EQ(0U, text.find(Narrow(cut) + " is no XML document")) << text;
}

TEST(DeviceFaultTest, RefusesADocumentWithoutTheModule) {
    const std::wstring catalogue = SamplesFolder() + L"catalogue.xml";
    EXPECT_EQ(Json(About(catalogue, "holds no module of device K7")), LoadError(catalogue)["description"]);
    EXPECT_EQ("reading the project", LoadError(catalogue)["step"]);
    const std::wstring other = DamagedDevice(L"other.xml", "<DevKey>K7</DevKey>\n    <TamObjID>",
                                             "<DevKey>K8</DevKey>\n    <TamObjID>");
    EXPECT_EQ(Json(About(other, "holds no module of device K7")), LoadError(other)["description"]);
    const std::wstring two =
        DamagedDevice(L"two.xml", "<O_Tam_id>", "<O_Tam_id><DevKey>K7</DevKey></O_Tam_id><O_Tam_id>");
    EXPECT_EQ(Json(About(two, "holds two modules of device K7")), LoadError(two)["description"]);
}

TEST(DeviceFaultTest, RefusesADocumentWithADamagedChannel) {
    const std::wstring noDevice =
        DamagedDevice(L"nodev.xml", "<DevKey>K7</DevKey>\n    <TamObjectKey>AO1", "<TamObjectKey>AO1");
    EXPECT_EQ(Json(About(noDevice, "is damaged: an element o_tam_ao_id names no device")),
              LoadError(noDevice)["description"]);
    const std::wstring noKey = DamagedDevice(L"nokey.xml", "<TamObjectKey>AO1</TamObjectKey>", "");
    EXPECT_EQ(Json(About(noKey, "is damaged: an element o_tam_ao_id names no channel")),
              LoadError(noKey)["description"]);
    const std::wstring twice = DamagedDevice(L"twice.xml", "<TamObjectKey>AO1<", "<TamObjectKey>ai1<");
    EXPECT_EQ(Json(About(twice, "has the channel ai1 twice")), LoadError(twice)["description"]);
    const std::string whole = ReadFileBytes(SavedDevice(L"whole.xml", {}));
    const std::wstring unknown =
        WrittenFile(L"unknown.xml", Replaced(Replaced(whole, "<o_tam_di_id>", "<o_tam_xx_id>"),
                                             "</o_tam_di_id>", "</o_tam_xx_id>"));
    EXPECT_EQ(Json(About(unknown,
                         "has the channel DI1 of a kind that the firmware of the device lacks: o_tam_xx_id")),
              LoadError(unknown)["description"]);
}

TEST(DeviceFaultTest, GoesNoFurtherThanTheComponentsErrorReport) {
    for (const auto& [part, by] : {std::pair{"<TamObjID>1</TamObjID>", "<TamObjID>70000</TamObjID>"},
                                   {"<UserName>Reading room</UserName>", "<UserName/>"}}) {
        const std::wstring file = DamagedDevice(L"reported.xml", part, by);
        const Outcome run = RunBench({L"device", L"load", file, L"--json"});
        const Json document = Json::parse(run.out);
        EXPECT_EQ(1U, run.status);
        EXPECT_EQ(Json(About(file, "is damaged: the component could not read the module to its end")),
                  document["error"]["description"]);
        EXPECT_EQ(1U, document["boxes"].size());
        EXPECT_FALSE(document.contains("channels"));
        EXPECT_EQ(Json::array(), document["liveObjectsIn"]);
    }
}

TEST(DeviceFaultTest, GoesOnAfterAReportThatIsTolerated) {
    const std::wstring file =
        DamagedDevice(L"tolerated.xml", "<TamObjID>1</TamObjID>", "<TamObjID>70000</TamObjID>");
    const Json loaded = Bench({L"device", L"load", file, L"--tolerate-boxes"});
    EXPECT_EQ(1U, loaded["boxes"].size());
    EXPECT_EQ(nullptr, loaded["error"]);
    EXPECT_EQ(6U, loaded["loaded"].size()) << "the module and its five channels";
    EXPECT_EQ(5U, loaded["channels"].size());
    EXPECT_EQ("Reading room", loaded["module"]["userName"]);
}

TEST(DeviceFaultTest, CallsWrongUsageSo) {
    for (const std::vector<std::wstring>& arguments : {std::vector<std::wstring>{L"device"},
                                                       {L"device", L"nope"},
                                                       {L"device", L"load"},
                                                       {L"device", L"place", L"ai"},
                                                       {L"device", L"set", L"AI1"},
                                                       {L"device", L"set", L"AI1", L"Offset"},
                                                       {L"device", L"save", L"AI1Filter=4"},
                                                       {L"device", L"export", L".Filter=4"},
                                                       {L"device", L"save", L"--display", L"AI1."}}) {
        const Outcome run = RunBench(arguments);
        EXPECT_EQ(2U, run.status) << Narrow(arguments.back());
        EXPECT_EQ("", run.out);
        EXPECT_EQ(0U, run.err.find("tambench: ")) << run.err;
    }
}

} // namespace

} // namespace benchtest
