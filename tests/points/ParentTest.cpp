#include "tests/points/Points.h"

#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

/// Points that the host holds longer than their module.
class ParentTest : public PointsTest {
  protected:
    com::Ref<IInput> input;
    com::Ref<IOutput> output;
    com::Ref<IAttribute> gain;

    void SetUp() override {
        PointsTest::SetUp();
        const std::wstring type = L"<SNVTTYPE>105</SNVTTYPE>";
        module = Loaded(Stream(L"<In1><SNVTCOMPATIBILITYLIST>8,9</SNVTCOMPATIBILITYLIST></In1>",
                               Named({L"Out1"}, type), Named({L"Gain"}, type)));
        Put(module, &IAppObject::put_GlobalKey, L"K");
        input = Input(module, L"In1");
        output = Output(module, L"Out1");
        gain = Attribute(module, L"Gain");
    }
    void TearDown() override {
        input.Reset();
        output.Reset();
        gain.Reset();
        PointsTest::TearDown();
    }
};

TEST_F(ParentTest, PointsDoNotKeepTheirModuleAlive) {
    module->AddRef();
    EXPECT_EQ(module->Release(), 1u);
}

TEST_F(ParentTest, EveryPointLeadsToItsModule) {
    EXPECT_TRUE(com::SameObject(Object(input, &IInput::get_Parent).Get(), module.Get()));
    EXPECT_TRUE(com::SameObject(Object(output, &IOutput::get_Parent).Get(), module.Get()));
    EXPECT_TRUE(com::SameObject(Object(gain, &IAttribute::get_Parent).Get(), module.Get()));
}

TEST_F(ParentTest, AnswersNoneOnceTheModuleIsGone) {
    module.Reset();
    EXPECT_FALSE(Object(input, &IInput::get_Parent));
    EXPECT_FALSE(Object(output, &IOutput::get_Parent));
    EXPECT_FALSE(Object(gain, &IAttribute::get_Parent));
}

TEST_F(ParentTest, LeavesAPointItsOwnValuesOnceTheModuleIsGone) {
    module.Reset();
    EXPECT_EQ(Text(input, &IInput::get_GlobalKey), L"K\\RIN\\In1");
    EXPECT_EQ(Text(Object(input, &IInput::get_SNVTCompatibles), &ICompatibleSNVTs::ToString), L"8,9");
    EXPECT_EQ(Text(Object(output, &IOutput::get_SNVTType), &ISNVType::get_Name), L"Temperature");
    EXPECT_EQ(Put(gain, &IAttribute::put_Value, L"3"), S_OK);
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), L"3");
}

TEST_F(ParentTest, RefusesWhatNeedsTheModuleOnceItIsGone) {
    module.Reset();
    com::Bstr text;
    EXPECT_EQ(output.As<IDisplayItem>()->get_Reference(text.Put()), kObjectNotSet);
    EXPECT_EQ(gain->get_DispValue(text.Put()), kObjectNotSet);
    com::Ref<IDispatch> manager;
    EXPECT_EQ(gain.As<_CDBAttribute>()->get_UnitsManager(manager.Put()), kObjectNotSet);
}

TEST_F(ParentTest, StaysWhileTheModuleLivesWithoutItsCollections) {
    EXPECT_EQ(module->Destroy(), S_OK);
    EXPECT_FALSE(Inputs(module));
    EXPECT_TRUE(com::SameObject(Object(input, &IInput::get_Parent).Get(), module.Get()));
    module.Reset();
    EXPECT_FALSE(Object(input, &IInput::get_Parent));
}

TEST_F(ParentTest, StaysForPointsThatALaterStreamReplaced) {
    EXPECT_EQ(Load(module, Stream(Named({L"In1"}))), S_OK);
    EXPECT_FALSE(com::SameObject(input.Get(), Input(module, L"In1").Get()));
    EXPECT_TRUE(com::SameObject(Object(input, &IInput::get_Parent).Get(), module.Get()));
}

TEST_F(ParentTest, LetsCollectionsOutliveTheModule) {
    const auto inputs = Inputs(module);
    const auto attributes = Attributes(module);
    module.Reset();
    EXPECT_EQ(Names(inputs), std::vector<std::wstring>{L"In1"});
    EXPECT_EQ(Names(attributes), std::vector<std::wstring>{L"Gain"});
    EXPECT_FALSE(Object(Item(inputs, &IInputs::get_Item, L"In1"), &IInput::get_Parent));
}

TEST_F(ParentTest, LetsATypeOutliveItsPoint) {
    const auto type = Object(gain, &IAttribute::get_SNVTType);
    module.Reset();
    gain.Reset();
    EXPECT_EQ(Text(type, &ISNVType::get_ID), L"105");
    EXPECT_EQ(Long(type, &ISNVType::get_Factor), 100);
}

} // namespace
