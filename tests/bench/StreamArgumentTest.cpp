// What STREAM may be, and what is set in it.

#include "tests/bench/DeviceRun.h"

#include <gtest/gtest.h>

#include <string>

namespace benchtest {

namespace {

std::wstring Channels() {
    return SamplesFolder() + L"streams\\channels.xml";
}

TEST(StreamArgumentTest, AnUnknownOneListsTheSamples) {
    const Json error = Bench({L"inspect", L"nowhere.xml"}, 1)["error"];
    EXPECT_EQ("0x80070002", error["hresult"]);
    EXPECT_EQ(
        "nowhere.xml cannot be read: there is no such file, and no sample of that name; the samples are "
        "channels, damaged, duplicate_attribute, full, missing_name, oddities",
        error["description"]);
}

TEST(StreamArgumentTest, ADashIsTheStandardInput) {
    const Outcome run = RunBench({L"inspect", L"-", L"--json"}, Channels());
    EXPECT_EQ(0U, run.status) << run.err;
    const Json document = Json::parse(run.out);
    EXPECT_EQ("-", document["stream"]);
    EXPECT_EQ("Reading room", document["module"]["name"]);
    const Outcome empty = RunBench({L"inspect", L"-"});
    EXPECT_EQ(1U, empty.status);
}

TEST(StreamArgumentTest, AProjectMayComeFromTheStandardInput) {
    const std::wstring project = ScratchFolder() + L"dash_project.xml";
    ASSERT_EQ(0U, RunBench({L"save", L"channels", L"--name", L"Two", L"-o", project}).status);
    const Outcome run = RunBench({L"load", L"channels", L"-", L"--json"}, project);
    EXPECT_EQ(0U, run.status) << run.err;
    EXPECT_EQ("Two", Json::parse(run.out)["after"]["userName"]);
}

TEST(StreamArgumentTest, TypesAreFilteredByAnArgument) {
    EXPECT_EQ(Json{"105"}, Pluck(Bench({L"types", L"TEMP_P"})["types"], "id"));
    EXPECT_EQ(Bench({L"types", L"--filter", L"temp"})["types"], Bench({L"types", L"Temp"})["types"]);
}

TEST(StreamArgumentTest, ValuesAreSetBeforeAnExport) {
    const Json plain = Bench({L"export", L"channels"});
    const Json set = Bench({L"export", L"channels", L"AI1_Offset=1.5"});
    EXPECT_NE(plain["streamText"], set["streamText"]);
    EXPECT_EQ("1.5", set["changes"][0]["after"]["value"].get<std::string>().substr(0, 3));
    EXPECT_EQ("export document",
              Bench({L"export", L"AI1_Offset=1.5", L"channels", L"--no-compiler"})["kind"]);
}

TEST(StreamArgumentTest, ValuesAreSetBeforeSavingAndDescribing) {
    EXPECT_EQ(1U, Bench({L"save", L"channels", L"AI1_Offset=1.5"})["changes"].size());
    const std::string described = Bench({L"interop", L"channels", L"AI1_Offset=1.5"})["element"];
    EXPECT_NE(std::string::npos, described.find("1.5")) << described;
    EXPECT_EQ(Json("there is no attribute or input \"Nope\"; nothing was set"),
              Bench({L"save", L"channels", L"Nope=1"}, 1)["error"]["description"]);
}

TEST(StreamArgumentTest, AValueAloneIsWrongUsage) {
    const Outcome run = RunBench({L"export", L"AI1_Offset=1.5"});
    EXPECT_EQ(2U, run.status);
    EXPECT_NE(std::string::npos, run.err.find("STREAM is required")) << run.err;
}

TEST(StreamArgumentTest, RowsAreNumberedAsItemCounts) {
    const std::string text = RunBench({L"inspect", L"channels"}).out;
    EXPECT_NE(std::string::npos, text.find("\n  1  AO1_In1")) << text;
    EXPECT_NE(std::string::npos, text.find("\n  5  CTX1_Out")) << text;
}

} // namespace

} // namespace benchtest
