// icon, data sheet, and a definition that is not there.

#include "tests/bench/BenchRun.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace benchtest {

namespace {

/// The programs in a folder of their own, with the definition and the
/// catalogue, but without icon and data sheet.
std::wstring BareFolder() {
    const std::wstring folder = ScratchFolder() + L"bare\\";
    CreateDirectoryW(folder.c_str(), nullptr);
    for (const wchar_t* const file : {L"tambench.exe", L"O_Tam_id.dll", L"OrvHost.dll", L"O_Tam_id.xml"}) {
        EXPECT_TRUE(CopyFileW((ProgramFolder() + file).c_str(), (folder + file).c_str(), FALSE))
            << Narrow(file);
    }
    EXPECT_TRUE(
        CopyFileW((SamplesFolder() + L"catalogue.xml").c_str(), (folder + L"catalogue.xml").c_str(), FALSE));
    return folder;
}

Json BareBench(std::vector<std::wstring> arguments, DWORD expectedStatus = 0) {
    arguments.emplace_back(L"--json");
    const Outcome run = RunProgram(BareFolder() + L"tambench.exe", arguments);
    EXPECT_EQ(expectedStatus, run.status) << run.err;
    return Json::parse(run.out, nullptr, false);
}

TEST(ServicesIconTest, ShowsAndKeepsThePicture) {
    const std::wstring file = ScratchFolder() + L"module.ico";
    const Json icon = Bench({L"icon", L"-o", file});
    EXPECT_EQ((Json{{"kind", "icon"}, {"width", 32}, {"height", 32}}), icon["picture"]);
    const std::string bytes = ReadFileBytes(file);
    EXPECT_EQ(icon["bytes"], bytes.size());
    EXPECT_EQ(0U, bytes.find(std::string("\0\0\1\0", 4)));
}

TEST(ServicesIconTest, ThereIsOneInTheComponentItself) {
    EXPECT_EQ((Json{{"kind", "icon"}, {"width", 32}, {"height", 32}}), BareBench({L"icon"})["picture"]);
}

TEST(ServicesDatasheetTest, IsFoundBesideTheComponent) {
    const Json datasheet = Bench({L"datasheet"});
    EXPECT_EQ(true, datasheet["available"]);
    EXPECT_EQ(Json::array(), datasheet["boxes"]);
}

TEST(ServicesDatasheetTest, ABoxSaysWhenThereIsNone) {
    const Json datasheet = BareBench({L"datasheet", L"--open"}, 1);
    EXPECT_EQ(false, datasheet["available"]);
    ASSERT_EQ(1U, datasheet["boxes"].size());
    EXPECT_EQ("DataSheet not available", datasheet["boxes"][0]["text"]);
    EXPECT_EQ("Gateway Object", datasheet["boxes"][0]["caption"]);
    EXPECT_EQ("ViewDatasheet", datasheet["boxes"][0]["during"]);
}

TEST(ServicesDefinitionTest, OneThatIsNotThereIsReportedAndFails) {
    const Json failed = Bench({L"inspect", L"channels", L"--definition", L"Nope"}, 1);
    EXPECT_EQ("Init", failed["error"]["step"]);
    ASSERT_EQ(1U, failed["boxes"].size());
    const Json report = failed["boxes"][0];
    EXPECT_EQ("error report", report["kind"]);
    EXPECT_EQ("Gateway Object - Error report", report["caption"]);
    ASSERT_EQ(2U, report["fields"].size());
    const std::string advanced = report["fields"][1];
    EXPECT_NE(std::string::npos, advanced.find("Function IAppObject_Init"));
    EXPECT_NE(std::string::npos, advanced.find("IAppObject_Init Class Module CDBAppObject"));
}

/// What the programs say without one of the files that lie together.
std::string WithoutFile(const wchar_t* file) {
    const std::wstring folder = BareFolder();
    DeleteFileW((folder + file).c_str());
    const Outcome run = RunProgram(folder + L"tambench.exe", {L"types", L"switch"});
    EXPECT_EQ(1U, run.status);
    return run.err;
}

TEST(ServicesMissingPartTest, IsNamed) {
    const std::string folder = Narrow(ScratchFolder() + L"bare\\");
    EXPECT_EQ("tambench: activation: 0x80070002 OrvHost.dll is not beside tambench.exe, in " + folder +
                  ": it has the unit converter and the other services of a host\n",
              WithoutFile(L"OrvHost.dll"));
    EXPECT_EQ("tambench: activation: 0x80070002 O_Tam_id.dll is not beside tambench.exe, in " + folder +
                  ": it has the component\n",
              WithoutFile(L"O_Tam_id.dll"));
    const std::string definition = WithoutFile(L"O_Tam_id.xml");
    EXPECT_TRUE(
        definition.starts_with("tambench: Init: 0x80070002 O_Tam_id.xml is not beside tambench.exe, in " +
                               folder + ": it has the definition\n"))
        << definition;
}

} // namespace

} // namespace benchtest
