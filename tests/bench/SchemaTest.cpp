// The schemas of docs/json refuse what the bench does not answer. That they take what it
// answers is shown by every test that asks it for JSON.

#include "tests/bench/Schema.h"
#include "tests/bench/HelpText.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace benchtest {

namespace {

Json Answer() {
    return Bench({L"inspect", L"channels"});
}

std::string FaultOf(const Json& answer) {
    const auto faults = SchemaFaults(answer);
    EXPECT_GE(1U, faults.size());
    return faults.empty() ? "none" : faults.front();
}

TEST(SchemaTest, TakesAnAnswer) {
    EXPECT_EQ("none", FaultOf(Answer()));
}

TEST(SchemaTest, ThereIsOneForEachCommand) {
    const std::string help = RunBench({L"--help"}).out;
    const std::string devices = RunBench({L"device", L"--help"}).out;
    std::size_t count = 0;
    for (const auto& [text, before] : {std::pair(help, ""), std::pair(devices, "device-")}) {
        for (const std::string& command : CommandsIn(text)) {
            ++count;
            if (before + command != "device") {
                const std::string file = before + command + ".schema.json";
                EXPECT_NE("", ReadFileBytes(SamplesFolder() + L"..\\docs\\json\\" +
                                            std::wstring(file.begin(), file.end())));
            }
        }
    }
    EXPECT_LE(25U, count) << "the help lists them all";
}

TEST(SchemaTest, MissesAMember) {
    Json answer = Answer();
    answer.erase("boxes");
    EXPECT_EQ(": lacks boxes", FaultOf(answer));
    answer = Answer();
    answer.erase("outputs");
    EXPECT_EQ(": lacks outputs", FaultOf(answer)) << "nothing failed";
    answer["error"] = {{"step", "Init"}, {"hresult", "0x80004005"}, {"description", ""}};
    EXPECT_EQ("none", FaultOf(answer)) << "a failed run may lack it";
}

TEST(SchemaTest, RefusesAMemberThatItDoesNotName) {
    Json answer = Answer();
    answer["outputs"][2]["color"] = "red";
    EXPECT_EQ("/outputs/2/color: no schema names it", FaultOf(answer));
}

TEST(SchemaTest, RefusesAnotherType) {
    Json answer = Answer();
    answer["inputs"][0]["index"] = "0";
    EXPECT_EQ("/inputs/0/index: is no \"integer\"", FaultOf(answer));
    answer = Answer();
    answer["attributes"][0]["display"] = 1;
    EXPECT_EQ("/attributes/0/display: is no [\"string\",\"null\"]", FaultOf(answer));
}

TEST(SchemaTest, RefusesAValueThatIsNotAmongThem) {
    Json answer = Answer();
    answer["status"] = 3;
    EXPECT_EQ("/status: 3 is not allowed", FaultOf(answer));
    answer = Answer();
    answer["error"] = {{"step", "Init"}, {"hresult", "E_FAIL"}, {"description", ""}};
    EXPECT_EQ("/error: fits none of 2 forms, the first for /error/hresult: \"E_FAIL\" does not match "
              "\"^0x[0-9A-F]{8}$\"",
              FaultOf(answer));
}

} // namespace

} // namespace benchtest
