// A device of the user's own.

#include "tests/bench/DeviceRun.h"

#include <gtest/gtest.h>

#include <string>

namespace benchtest {

namespace {

constexpr const char* kStream =
    "<Tam><Name>Hall</Name><DevKey>H1</DevKey><IsLastOnDev>1</IsLastOnDev><TamObjID>3</TamObjID>"
    "<OutReferences><T7_Out><SNVTTYPE>105</SNVTTYPE></T7_Out></OutReferences>"
    "<Attributes><T7_Offset><SNVTTYPE>105</SNVTTYPE><VALUE>0.25</VALUE></T7_Offset></Attributes></Tam>";

/// A device file beside its stream; what is given stands after the stream's name.
std::wstring Device(const wchar_t* name, const std::string& rest) {
    WrittenFile(L"hall.xml", kStream);
    return WrittenFile(name, "<Device>\n  <Stream>hall.xml</Stream>\n" + rest + "</Device>\n");
}

std::wstring Hall() {
    return Device(
        L"hall_device.xml",
        "  <Channels>\n    <Channel key=\"T7\" kind=\"ai\" terminal=\"9\" setup=\"1,Pt1000;2,Ni1000\"/>\n"
        "    <Channel key=\"C\" kind=\"o_inpcntx_id\"/>\n  </Channels>\n");
}

TEST(DeviceFileTest, TheDeviceIsAsItsFileSays) {
    const Json tree = Bench({L"device", L"tree", L"--device", Hall()});
    EXPECT_EQ("H1", tree["deviceKey"]);
    EXPECT_EQ("hall.xml", tree["stream"]);
    EXPECT_EQ(Json(Narrow(Hall())), tree["device"]);
    EXPECT_EQ("V2_10", tree["firmware"]);
    EXPECT_EQ((Json{"T7", "C"}), Pluck(tree["channels"], "objectKey"));
    const Json offset = Named(ChannelOf(tree, "T7")["points"], "Offset");
    EXPECT_EQ("0.25", offset["value"]) << "as the module's T7_Offset";
    EXPECT_EQ("T7_Offset", offset["moduleItem"]["name"]);
}

TEST(DeviceFileTest, TerminalsAndSetupsComeFromTheFile) {
    const Json fetched = Bench({L"device", L"fetch", L"T7", L"--device", Hall()});
    EXPECT_EQ("9", Named(fetched["attributes"], "Channel")["after"]["value"]);
    EXPECT_EQ("1", Named(fetched["attributes"], "Setup")["after"]["value"]);
}

TEST(DeviceFileTest, EveryCommandTakesOne) {
    const std::wstring project = ScratchFolder() + L"hall_project.xml";
    EXPECT_EQ(0U,
              RunBench({L"device", L"save", L"T7.Offset=1.5", L"-o", project, L"--device", Hall()}).status);
    const Json loaded = Bench({L"device", L"load", project, L"--device", Hall()});
    EXPECT_EQ("1.5", Named(ChannelOf(loaded, "T7")["points"], "Offset")["value"]);
    const Json placed = Bench({L"device", L"place", L"ao", L"A2", L"--device", Hall()});
    EXPECT_EQ((Json{"T7", "C", "A2"}), placed["channels"]);
    const Json set = Bench({L"device", L"set", L"T7", L"Offset=1.5", L"--device", Hall()});
    EXPECT_EQ("1.5", set["changes"][0]["after"]["moduleItem"]);
    EXPECT_EQ("image", Bench({L"device", L"export", L"T7.Offset=1.5", L"--device", Hall()})["kind"]);
}

TEST(DeviceFileTest, MayHaveAFirmwareOfItsOwn) {
    const std::wstring file =
        Device(L"firmware_device.xml", "<Firmware>X</Firmware><FWVersion><X><Objects><Library><o_tam_ai_id/>"
                                       "</Library></Objects></X></FWVersion>"
                                       "<Channels><Channel key=\"T7\" kind=\"ai\"/></Channels>");
    EXPECT_EQ("firmware X of the device has no objects for channels: its library does not list the module",
              Bench({L"device", L"tree", L"--device", file}, 1)["error"]["description"]);
}

TEST(DeviceFileTest, TheSampleDeviceIsSuchAFile) {
    const Json sample = Bench({L"device", L"tree"});
    const Json given = Bench({L"device", L"tree", L"--device", SamplesFolder() + L"device.xml"});
    EXPECT_EQ(sample["channels"], given["channels"]);
    EXPECT_EQ("K7", given["deviceKey"]);
}

TEST(DeviceFileTest, WhatIsWrongIsNamed) {
    const auto error = [](const std::wstring& file) {
        return Bench({L"device", L"tree", L"--device", file}, 1)["error"]["description"].get<std::string>();
    };
    const std::wstring stream = WrittenFile(L"no_device.xml", kStream);
    EXPECT_EQ(Narrow(stream) + " is no device file: line 1: the root is Tam and should be Device",
              error(stream));
    const std::wstring empty = WrittenFile(L"empty_device.xml", "<Device/>");
    EXPECT_EQ(
        Narrow(empty) +
            " is no device file: line 1: no stream of the module is named; write <Stream>hall.xml</Stream>",
        error(empty));
    const std::string example =
        "; a channel is written as <Channel key=\"AI1\" kind=\"ai\" terminal=\"5\" setup=\"2,Ni1000\"/>";
    const std::wstring keyless =
        Device(L"keyless_device.xml",
               "<Channels><Channel key=\"A\" kind=\"ai\"/>\n<Channel kind=\"ai\"/></Channels>");
    EXPECT_EQ(Narrow(keyless) + " is no device file: line 4: a channel without key" + example,
              error(keyless));
    const std::wstring twice =
        Device(L"twice_device.xml",
               "<Channels><Channel key=\"A\" kind=\"ai\"/>\n<Channel key=\"a\" kind=\"ao\"/></Channels>");
    EXPECT_EQ(Narrow(twice) + " is no device file: line 4: the channel a is there already", error(twice));
    const Json missing = Bench({L"device", L"tree", L"--device", L"nowhere.xml"}, 1)["error"];
    EXPECT_EQ("0x80070002", missing["hresult"]);
}

} // namespace

} // namespace benchtest
