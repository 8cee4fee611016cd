#include "tests/points/Points.h"
#include "tests/support/MacroDoubles.h"

#include <cstddef>
#include <string>

using namespace support;
using namespace points;

namespace {

class MacroConnectionsTest : public PointsTest {
  protected:
    ConnectionsDouble host;

    void SetUp() override {
        PointsTest::SetUp();
        const std::wstring type = L"<SNVTTYPE>105</SNVTTYPE>";
        module = Loaded(Stream(Named({L"In1"}), Named({L"Out1"}, type), Named({L"Gain"}, type)));
        Put(module, &IAppObject::put_GlobalKey, L"K");
        BeParent();
    }
    void BeParent() { EXPECT_EQ(module->putref_Parent(host.object->As<IDispatch>().Get()), S_OK); }
    GroupDouble Group(std::initializer_list<const wchar_t*> keys) { return host.Add(keys); }
    static std::size_t Reads(const GroupDouble& group, std::size_t item) {
        return group.Item(item)->Times(L"get Key");
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

TEST_F(MacroConnectionsTest, BearsAHostThatDropsTheLastReference) {
    Group({kGain});
    auto gain = Attribute(module, L"Gain");
    host.object->On(L"get Groups", [&](const Invocation& call) {
        gain.Reset();
        module.Reset();
        return call.Answer(host.groups.object);
    });
    IAttribute* const asked = gain.Get();
    VARIANT_BOOL connected = VARIANT_FALSE;
    EXPECT_EQ(asked->get_IsMacroConnected(&connected), S_OK);
    EXPECT_FALSE(gain);
    EXPECT_EQ(connected, VARIANT_TRUE);
    EXPECT_EQ(Dll().CanUnload(), S_OK);
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
    BeParent();
    Group({L"K\\RIN\\In1"});
    EXPECT_FALSE(Flag(Input(module, L"In1"), &IInput::get_IsMacroConnected));
    Group({L""});
    EXPECT_TRUE(Flag(Input(module, L"In1"), &IInput::get_IsMacroConnected));
}

TEST_F(MacroConnectionsTest, LooksThroughAllGroupsAndStopsAtTheFirstMatch) {
    const auto first = Group({L"a", L"b"});
    const auto second = Group({L"c", kGain, L"d"});
    const auto third = Group({kGain});
    EXPECT_TRUE(GainIsConnected());
    EXPECT_EQ(Reads(first, 0), 1u);
    EXPECT_EQ(Reads(first, 1), 1u);
    EXPECT_EQ(Reads(second, 0), 1u);
    EXPECT_EQ(Reads(second, 1), 1u);
    EXPECT_EQ(Reads(second, 2), 0u);
    EXPECT_EQ(Reads(third, 0), 0u);
}

TEST_F(MacroConnectionsTest, PassesOverAnItemThatFails) {
    const auto group = Group({kGain, kGain});
    group.Item(0)->Refuse(L"get Key", E_FAIL);
    EXPECT_TRUE(GainIsConnected());
    EXPECT_EQ(Reads(group, 1), 1u);
    group.Item(1)->Refuse(L"get Key", E_FAIL);
    EXPECT_FALSE(GainIsConnected());
}

TEST_F(MacroConnectionsTest, PassesOverAnItemThatIsNotThere) {
    Group({L"a", kGain}).Item(0).Reset();
    EXPECT_TRUE(GainIsConnected());
}

TEST_F(MacroConnectionsTest, PassesOverAGroupThatFails) {
    Group({kGain}).object->Refuse(L"get Items", E_FAIL);
    EXPECT_FALSE(GainIsConnected());
    Group({kGain}).items.object->Refuse(L"get Count", E_FAIL);
    EXPECT_FALSE(GainIsConnected());
    *Group({kGain}).items.itemCode = E_FAIL;
    EXPECT_FALSE(GainIsConnected());
    Group({kGain});
    EXPECT_TRUE(GainIsConnected());
}

TEST_F(MacroConnectionsTest, PassesOverAGroupThatIsNotThere) {
    Group({});
    host.groups.members->at(0).Reset();
    Group({}).object->Set(L"Items", com::Ref<IUnknown>());
    EXPECT_FALSE(GainIsConnected());
    Group({kGain});
    EXPECT_TRUE(GainIsConnected());
}

TEST_F(MacroConnectionsTest, IsFalseWhenTheGroupsCannotBeRead) {
    Group({kGain});
    host.object->Refuse(L"get Groups", E_FAIL);
    EXPECT_FALSE(GainIsConnected());
    host.object->FailNoMore();
    host.groups.object->Refuse(L"get Count", E_FAIL);
    EXPECT_FALSE(GainIsConnected());
    host.object->Set(L"Groups", com::Ref<IUnknown>());
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
    Group({kGain}).object->Refuse(L"get Items", E_FAIL);
    VARIANT_BOOL value = VARIANT_TRUE;
    EXPECT_EQ(Attribute(module, L"Gain")->get_IsMacroConnected(&value), S_OK);
    EXPECT_EQ(value, VARIANT_FALSE);
    com::Ref<IErrorInfo> info;
    EXPECT_EQ(GetErrorInfo(0, info.Put()), S_FALSE);
}

} // namespace
