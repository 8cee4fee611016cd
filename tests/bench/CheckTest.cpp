// The command that checks documents. What it finds is tested where the checks are; here is
// that the command is theirs.

#include "tests/bench/BenchRun.h"
#include "tests/bench/DeviceRun.h"
#include "tests/bench/Schema.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace benchtest {

namespace {

TEST(CheckTest, TellsLineAndColumnOfWhatIsWrong) {
    const std::wstring file =
        WrittenFile(L"check.xml", "<Tam>\r\n\t<Name>H</Name><DevKey>K</DevKey>"
                                  "<IsLastOnDev>0</IsLastOnDev><TamObjId>3</TamObjId></Tam>");
    const Outcome outcome = RunBench({L"check", file});
    EXPECT_EQ(outcome.status, 1u) << outcome.err;
    EXPECT_NE(outcome.out.find(":1:2: error: <Tam> has no <TamObjID>"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find(":2:63: error: <TamObjId> means nothing"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("did you mean TamObjID? [element-misspelt]"), std::string::npos)
        << outcome.out;
}

TEST(CheckTest, AnswersTheStatusesOfTheChecks) {
    EXPECT_EQ(RunBench({L"check", SamplesFolder() + L"streams\\full.xml"}).status, 0u);
    EXPECT_EQ(RunBench({L"check", SamplesFolder() + L"streams\\damaged.xml"}).status, 1u);
    EXPECT_EQ(RunBench({L"check", SamplesFolder() + L"nowhere.xml"}).status, 2u);
    EXPECT_EQ(RunBench({L"check"}).status, 2u);
    EXPECT_EQ(RunBench({L"check", SamplesFolder(), L"--format", L"markdown"}).status, 2u);
    EXPECT_EQ(RunBench({L"check", L"--rules", SamplesFolder()}).status, 2u);
    EXPECT_EQ(RunBench({L"check", SamplesFolder(), L"--format", L"xml"}).status, 2u);
    EXPECT_EQ(RunBench({L"check", SamplesFolder() + L"streams\\oddities.xml", L"--catalogue",
                        SamplesFolder() + L"streams\\full.xml"})
                  .status,
              2u);
}

TEST(CheckTest, AnswersJsonAndSarif) {
    const std::wstring file = SamplesFolder() + L"streams\\missing_name.xml";
    const Outcome outcome = RunBench({L"check", file, L"--json"});
    EXPECT_EQ(outcome.status, 1u) << outcome.err;
    const Json json = Json::parse(outcome.out);
    EXPECT_EQ(SchemaFaults(json, "check"), std::vector<std::string>());
    EXPECT_EQ(json["program"], "tambench");
    EXPECT_EQ(json["files"][0]["kind"], "device stream");
    EXPECT_EQ(json["files"][0]["findings"][0]["rule"], "element-missing");
    EXPECT_EQ(json["files"][0]["findings"][0]["line"], 3);
    EXPECT_EQ(json["files"][0]["findings"][0]["column"], 2);
    const Json sarif = Json::parse(RunBench({L"check", file, L"--format", L"sarif"}).out);
    EXPECT_EQ(SchemaFaults(sarif, "check-sarif"), std::vector<std::string>());
    EXPECT_EQ(sarif["runs"][0]["results"][0]["ruleId"], "element-missing");
    // With a blank in its name, and not there.
    const Json missing =
        Json::parse(RunBench({L"check", ScratchFolder() + L"not here.xml", L"--format", L"sarif"}).out);
    EXPECT_EQ(SchemaFaults(missing, "check-sarif"), std::vector<std::string>());
    EXPECT_EQ(missing["runs"][0]["invocations"][0]["toolExecutionNotifications"].size(), 1u);
}

TEST(CheckTest, AnswersTheExitStatusInJson) {
    const std::wstring folder = SamplesFolder();
    EXPECT_EQ(0, Bench({L"check", folder + L"streams\\full.xml"})["summary"]["errors"]);
    EXPECT_EQ(1, Bench({L"check", folder + L"streams\\full.xml", folder + L"nowhere.xml"},
                       2)["summary"]["unreadable"]);
    EXPECT_EQ("file-empty", Bench({L"check", L"--rules"})["rules"][0]["rule"]);
}

TEST(CheckTest, TakesSeveralFilesAtATime) {
    const Outcome one = RunBench({L"check", SamplesFolder()});
    EXPECT_EQ(one.out, RunBench({L"check", SamplesFolder(), L"--jobs", L"4"}).out);
    EXPECT_EQ(one.out, RunBench({L"check", SamplesFolder(), L"--jobs", L"0"}).out);
    EXPECT_EQ(2u, RunBench({L"check", SamplesFolder(), L"--jobs", L"many"}).status);
}

TEST(CheckTest, ListsItsRules) {
    const Outcome outcome = RunBench({L"check", L"--rules"});
    EXPECT_EQ(outcome.status, 0u);
    EXPECT_NE(outcome.out.find("value-decimal-mark (error)"), std::string::npos);
}

} // namespace

} // namespace benchtest
