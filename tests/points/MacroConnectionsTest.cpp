#include "tests/points/Points.h"
#include "tests/support/MacroDoubles.h"

#include <string>

using namespace support;
using namespace points;

namespace {

class MacroConnectionsTest : public PointsTest {
  protected:
    com::Ref<Connections> host;

    void SetUp() override {
        PointsTest::SetUp();
        const std::wstring type = L"<SNVTTYPE>105</SNVTTYPE>";
        module = Loaded(Stream(Named({L"In1"}), Named({L"Out1"}, type), Named({L"Gain"}, type)));
        Put(module, &IAppObject::put_GlobalKey, L"K");
        host = Connections::Make();
        EXPECT_EQ(module->putref_Parent(host.Get()), S_OK);
    }
    void TearDown() override {
        host.Reset();
        PointsTest::TearDown();
    }
    ConnectionGroup& Group(std::initializer_list<const wchar_t*> keys) {
        auto group = GroupOf(keys);
        host->groups->groups.push_back(group);
        return *group.Get();
    }
    bool GainIsConnected() { return Flag(Attribute(module, L"Gain"), &IAttribute::get_IsMacroConnected); }
};

constexpr const wchar_t* kGain = L"K\\ATT\\Gain";

TEST_F(MacroConnectionsTest, FindsAnAttributesKey) {
    Group({L"other", kGain});
    EXPECT_TRUE(GainIsConnected());
}

TEST_F(MacroConnectionsTest, FindsAnInputsAndAnOutputsKey) {
    const auto in1 = Input(module, L"In1");
    const auto out1 = Output(module, L"Out1");
    EXPECT_FALSE(Flag(in1, &IInput::get_IsMacroConnected));
    EXPECT_FALSE(Flag(out1, &IOutput::get_IsMacroConnected));
    Group({L"K\\RIN\\In1"});
    EXPECT_TRUE(Flag(in1, &IInput::get_IsMacroConnected));
    EXPECT_FALSE(Flag(out1, &IOutput::get_IsMacroConnected));
    Group({L"K\\ROU\\Out1"});
    EXPECT_TRUE(Flag(out1, &IOutput::get_IsMacroConnected));
    EXPECT_FALSE(GainIsConnected());
}

TEST_F(MacroConnectionsTest, IsFalseWithoutGroupsOrItems) {
    EXPECT_FALSE(GainIsConnected());
    Group({});
    EXPECT_FALSE(GainIsConnected());
}

TEST_F(MacroConnectionsTest, ComparesKeysExactly) {
    Group({L"K\\ATT\\gain", L"K\\ATT\\Gain ", L"K\\ATT", L"Gain", L"", L"K\\ATT\\Gain2"});
    EXPECT_FALSE(GainIsConnected());
}

TEST_F(MacroConnectionsTest, ComparesWithTheKeyOfNow) {
    Group({L"L\\ATT\\Gain"});
    EXPECT_FALSE(GainIsConnected());
    Put(module, &IAppObject::put_GlobalKey, L"L");
    EXPECT_TRUE(GainIsConnected());
}

TEST_F(MacroConnectionsTest, FindsAnEmptyKeyForAPointThatHasNone) {
    module = Loaded(Stream(Named({L"In1"})));
    EXPECT_EQ(module->putref_Parent(host.Get()), S_OK);
    Group({L"K\\RIN\\In1"});
    EXPECT_FALSE(Flag(Input(module, L"In1"), &IInput::get_IsMacroConnected));
    Group({L""});
    EXPECT_TRUE(Flag(Input(module, L"In1"), &IInput::get_IsMacroConnected));
}

TEST_F(MacroConnectionsTest, LooksThroughAllGroupsAndStopsAtTheFirstMatch) {
    auto& first = Group({L"a", L"b"});
    auto& second = Group({L"c", kGain, L"d"});
    auto& third = Group({kGain});
    EXPECT_TRUE(GainIsConnected());
    EXPECT_EQ(first.items->items[0]->reads, 1);
    EXPECT_EQ(first.items->items[1]->reads, 1);
    EXPECT_EQ(second.items->items[0]->reads, 1);
    EXPECT_EQ(second.items->items[1]->reads, 1);
    EXPECT_EQ(second.items->items[2]->reads, 0);
    EXPECT_EQ(third.items->items[0]->reads, 0);
}

TEST_F(MacroConnectionsTest, PassesOverAnItemThatFails) {
    auto& group = Group({kGain, kGain});
    group.items->items[0]->result = E_FAIL;
    EXPECT_TRUE(GainIsConnected());
    EXPECT_EQ(group.items->items[1]->reads, 1);
    group.items->items[1]->result = E_FAIL;
    EXPECT_FALSE(GainIsConnected());
}

TEST_F(MacroConnectionsTest, PassesOverAnItemThatIsNotThere) {
    Group({L"a", kGain}).items->items[0].Reset();
    EXPECT_TRUE(GainIsConnected());
}

TEST_F(MacroConnectionsTest, PassesOverAGroupThatFails) {
    Group({kGain}).result = E_FAIL;
    EXPECT_FALSE(GainIsConnected());
    Group({kGain}).items->countResult = E_FAIL;
    EXPECT_FALSE(GainIsConnected());
    Group({kGain}).items->itemResult = E_FAIL;
    EXPECT_FALSE(GainIsConnected());
    Group({kGain});
    EXPECT_TRUE(GainIsConnected());
}

TEST_F(MacroConnectionsTest, PassesOverAGroupThatIsNotThere) {
    Group({});
    host->groups->groups[0].Reset();
    Group({}).items.Reset();
    EXPECT_FALSE(GainIsConnected());
    Group({kGain});
    EXPECT_TRUE(GainIsConnected());
}

TEST_F(MacroConnectionsTest, IsFalseWhenTheGroupsCannotBeRead) {
    Group({kGain});
    host->result = E_FAIL;
    EXPECT_FALSE(GainIsConnected());
    host->result = S_OK;
    host->groups->countResult = E_FAIL;
    EXPECT_FALSE(GainIsConnected());
    host->groups.Reset();
    EXPECT_FALSE(GainIsConnected());
}

TEST_F(MacroConnectionsTest, IsFalseForAParentWithoutMacroConnections) {
    Group({kGain});
    const auto other = Held::Make();
    EXPECT_EQ(module->putref_Parent(other.Get()), S_OK);
    EXPECT_FALSE(GainIsConnected());
    EXPECT_EQ(module->putref_Parent(nullptr), S_OK);
    EXPECT_FALSE(GainIsConnected());
}

TEST_F(MacroConnectionsTest, IsKnownWhenOnlyThePointsAreHeld) {
    Group({kGain, L"K\\RIN\\In1", L"K\\ROU\\Out1"});
    const auto gain = Attribute(module, L"Gain");
    const auto in1 = Input(module, L"In1");
    const auto out1 = Output(module, L"Out1");
    module.Reset();
    EXPECT_TRUE(Flag(gain, &IAttribute::get_IsMacroConnected));
    EXPECT_TRUE(Flag(in1, &IInput::get_IsMacroConnected));
    EXPECT_TRUE(Flag(out1, &IOutput::get_IsMacroConnected));
}

TEST_F(MacroConnectionsTest, LeavesNoErrorBehind) {
    Group({kGain}).result = E_FAIL;
    VARIANT_BOOL value = VARIANT_TRUE;
    EXPECT_EQ(Attribute(module, L"Gain")->get_IsMacroConnected(&value), S_OK);
    EXPECT_EQ(value, VARIANT_FALSE);
    com::Ref<IErrorInfo> info;
    EXPECT_EQ(GetErrorInfo(0, info.Put()), S_FALSE);
}

} // namespace
