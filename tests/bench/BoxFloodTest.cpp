// A stream whose faults raise thousands of boxes.

#include "tests/bench/DeviceRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace benchtest {

namespace {

constexpr int kTypes = 1000;

/// Attributes of as many unknown types: each raises two boxes.
std::wstring Flood() {
    std::string attributes;
    for (int i = 0; i < kTypes; ++i) {
        const std::string number = std::to_string(i);
        attributes +=
            "<A" + number + "><SNVTTYPE>" + std::to_string(5000 + i) + "</SNVTTYPE></A" + number + ">";
    }
    return WrittenFile(L"flood.xml", "<Tam><Name>N</Name><DevKey>K9</DevKey><IsLastOnDev>1</IsLastOnDev>"
                                     "<TamObjID>7</TamObjID><Attributes>" +
                                         attributes + "</Attributes></Tam>");
}

TEST(BoxFloodTest, EveryBoxIsToldTheSameWay) {
    const Json flood = Bench({L"inspect", Flood()}, 1);
    ASSERT_EQ(2U * kTypes, flood["boxes"].size());
    Json expected = flood["boxes"][0];
    EXPECT_EQ("Can't find the node related to SNVT ID 5000", expected["text"]);
    for (int i = 0; i < kTypes; ++i) {
        expected["text"] = "Can't find the node related to SNVT ID " + std::to_string(5000 + i);
        ASSERT_EQ(expected, flood["boxes"][2U * static_cast<unsigned>(i)]);
        ASSERT_EQ(expected, flood["boxes"][2U * static_cast<unsigned>(i) + 1]);
    }
}

TEST(BoxFloodTest, IsAFailureThatFitsAScreen) {
    const Outcome run = RunBench({L"clear-refs", Flood()});
    EXPECT_EQ(1U, run.status);
    EXPECT_EQ("tambench: the component reported faults in 2000 boxes (--tolerate-boxes passes over them)\n",
              run.err);
    EXPECT_GT(60, std::count(run.out.begin(), run.out.end(), '\n')) << run.out;
    EXPECT_NE(std::string::npos,
              run.out.find("The component showed 2000 boxes:\n"
                           "  1. message box \"O_Tam_id-CSNVTType::ID [Property Let]\", sign: stop, during "
                           "LoadFromXmlStream (2 times)\n"
                           "     Can't find the node related to SNVT ID 5000\n"))
        << run.out;
    EXPECT_NE(
        std::string::npos,
        run.out.find("  and with other texts: message box \"O_Tam_id-CSNVTType::ID [Property Let]\", sign: "
                     "stop, during LoadFromXmlStream (1980 times)\n  (--json tells each of them)\n"))
        << run.out;
}

} // namespace

} // namespace benchtest
