// set, clear-refs and contains.

#include "tests/bench/BenchRun.h"

#include <gtest/gtest.h>

namespace benchtest {

namespace {

TEST(PointsSetTest, ShowsValuesBeforeAndAfter) {
    const Json changes = Bench({L"set", L"channels", L"AI1_Offset=1.5", L"ao1_setup=2"})["changes"];
    ASSERT_EQ(2U, changes.size());
    EXPECT_EQ("AI1_Offset", changes[0]["name"]);
    EXPECT_EQ("attribute", changes[0]["kind"]);
    EXPECT_EQ((Json{{"value", "-0.50"}, {"display", Local("-0.50 \u00B0C")}}), changes[0]["before"]);
    EXPECT_EQ((Json{{"value", "1.5"}, {"display", Local("1.5 \u00B0C")}}), changes[0]["after"]);
    EXPECT_EQ((Json{{"value", "21"}, {"display", "DCM_LINEAR"}}), changes[1]["before"]);
    EXPECT_EQ((Json{{"value", "2"}, {"display", "DCM_PRESS_COMP"}}), changes[1]["after"]);
}

TEST(PointsSetTest, ConvertsForAUserWithUsUnits) {
    const Json changes = Bench({L"set", L"channels", L"AI1_Offset=1.5", L"--us"})["changes"];
    EXPECT_EQ((Json{{"value", "1.5"}, {"display", Local("2.7 \u00B0F")}}), changes[0]["after"]);
}

TEST(PointsSetTest, SetsInputsToo) {
    const Json changes = Bench({L"set", L"channels", L"DO1_In1=K4_Supply_Out"})["changes"];
    EXPECT_EQ("input", changes[0]["kind"]);
    EXPECT_EQ((Json{{"value", ""}, {"display", nullptr}}), changes[0]["before"]);
    EXPECT_EQ((Json{{"value", "K4_Supply_Out"}, {"display", nullptr}}), changes[0]["after"]);
}

TEST(PointsSetTest, AValueMayHoldAnythingAndBeEmpty) {
    const Json changes = Bench({L"set", L"channels", L"DO1_In1=a=b", L"AI1_Offset="})["changes"];
    EXPECT_EQ("a=b", changes[0]["after"]["value"]);
    EXPECT_EQ("", changes[1]["after"]["value"]);
}

TEST(PointsSetTest, SetsNothingWhenAPointIsNotThere) {
    const Json failed = Bench({L"set", L"channels", L"AI1_Offset=1", L"Nope=2"}, 1);
    EXPECT_EQ("0x80070057", failed["error"]["hresult"]);
    EXPECT_EQ("there is no attribute or input \"Nope\"; nothing was set", failed["error"]["description"]);
    EXPECT_EQ(0U, failed.count("changes"));
    // A number is a position for the component and no name for the bench.
    EXPECT_EQ("0x80070057", Bench({L"set", L"channels", L"1=2"}, 1)["error"]["hresult"]);
}

TEST(PointsClearRefsTest, GivesEveryInputTheReferenceToNothing) {
    const Json inputs = Bench({L"clear-refs", L"full", L"--wire"})["inputs"];
    ASSERT_EQ(13U, inputs.size());
    EXPECT_EQ("K4_Supply_Out", Named(inputs, "AO2_In1")["before"]);
    for (const Json& input : inputs) {
        EXPECT_EQ(true, input["extended"]);
        EXPECT_EQ("000000", input["after"]);
    }
}

TEST(PointsContainsTest, AsksForTheDeviceAndTheMarkOfTheObject) {
    EXPECT_EQ(true, Bench({L"contains", SmallStream(), L"K9", L"AI6"})["contains"]);
    EXPECT_EQ(false, Bench({L"contains", SmallStream(), L"K9", L"AI1"})["contains"]);
    EXPECT_EQ(false, Bench({L"contains", SmallStream(), L"K7", L"AI6"})["contains"]);
    EXPECT_EQ(false, Bench({L"contains", L"channels", L"K7", L"AI1"})["contains"]);
}

} // namespace

} // namespace benchtest
