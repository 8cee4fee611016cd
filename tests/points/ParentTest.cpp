#include "tests/points/Points.h"

#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

/// Points that the host holds longer than its reference on their module.
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

TEST_F(ParentTest, EveryPointLeadsToItsModule) {
    EXPECT_TRUE(com::SameObject(Object(input, &IInput::get_Parent).Get(), module.Get()));
    EXPECT_TRUE(com::SameObject(Object(output, &IOutput::get_Parent).Get(), module.Get()));
    EXPECT_TRUE(com::SameObject(Object(gain, &IAttribute::get_Parent).Get(), module.Get()));
}

TEST_F(ParentTest, EveryPointKeepsItsModule) {
    Put(module, &IAppObject::put_Tag, L"mine");
    module.Reset();
    for (const auto& parent : {Object(input, &IInput::get_Parent), Object(output, &IOutput::get_Parent),
                               Object(gain, &IAttribute::get_Parent)}) {
        ASSERT_TRUE(parent);
        EXPECT_EQ(Text(parent, &IAppObject::get_Tag), L"mine");
    }
}

TEST_F(ParentTest, TheLastPointEndsTheModule) {
    module.Reset();
    input.Reset();
    output.Reset();
    EXPECT_EQ(Dll().CanUnload(), S_FALSE);
    EXPECT_TRUE(Object(gain, &IAttribute::get_Parent));
    gain.Reset();
    EXPECT_EQ(Dll().CanUnload(), S_OK);
}

TEST_F(ParentTest, AnswersWhatNeedsTheModule) {
    Units().converted = L"20";
    Units().label = L"degC";
    EXPECT_EQ(module->put_ExportIndex(2), S_OK);
    module.Reset();
    EXPECT_EQ(Text(output.As<IDisplayItem>(), &IDisplayItem::get_Reference), L"4200");
    EXPECT_EQ(Text(gain, &IAttribute::get_DispValue), L"20 degC");
    EXPECT_TRUE(Object(gain.As<_CDBAttribute>(), &_CDBAttribute::get_UnitsManager));
    EXPECT_EQ(Text(input, &IInput::get_GlobalKey), L"K\\RIN\\In1");
    EXPECT_EQ(Put(gain, &IAttribute::put_Value, L"3"), S_OK);
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), L"3");
}

TEST_F(ParentTest, StaysForPointsOfADestroyedModule) {
    EXPECT_EQ(module->Destroy(), S_OK);
    EXPECT_FALSE(Inputs(module));
    EXPECT_TRUE(com::SameObject(Object(input, &IInput::get_Parent).Get(), module.Get()));
    module.Reset();
    EXPECT_TRUE(Object(input, &IInput::get_Parent));
}

TEST_F(ParentTest, StaysForPointsThatALaterStreamReplaced) {
    EXPECT_EQ(Load(module, Stream(Named({L"In1"}))), S_OK);
    EXPECT_FALSE(com::SameObject(input.Get(), Input(module, L"In1").Get()));
    EXPECT_TRUE(com::SameObject(Object(input, &IInput::get_Parent).Get(), module.Get()));
    module.Reset();
    EXPECT_EQ(Names(Inputs(Object(input, &IInput::get_Parent))), std::vector<std::wstring>{L"In1"});
}

TEST_F(ParentTest, ACollectionKeepsItsModule) {
    const auto inputs = Inputs(module);
    input.Reset();
    output.Reset();
    gain.Reset();
    module.Reset();
    EXPECT_EQ(Names(inputs), std::vector<std::wstring>{L"In1"});
    EXPECT_TRUE(Object(Item(inputs, &IInputs::get_Item, L"In1"), &IInput::get_Parent));
}

TEST_F(ParentTest, ACollectionThatALaterStreamReplacedKeepsItsModule) {
    const auto inputs = Inputs(module);
    input.Reset();
    output.Reset();
    gain.Reset();
    EXPECT_EQ(Load(module, Stream(Named({L"In2"}))), S_OK);
    module.Reset();
    EXPECT_EQ(Names(inputs), std::vector<std::wstring>{L"In1"});
    const auto parent = Object(Item(inputs, &IInputs::get_Item, L"In1"), &IInput::get_Parent);
    ASSERT_TRUE(parent);
    EXPECT_EQ(Names(Inputs(parent)), std::vector<std::wstring>{L"In2"});
}

TEST_F(ParentTest, AnEnumeratorKeepsTheModuleOfItsPoints) {
    const auto walk = Object(Outputs(module), &IOutputs::get_NewEnum).As<IEnumVARIANT>();
    input.Reset();
    output.Reset();
    gain.Reset();
    module.Reset();
    com::Variant item;
    ASSERT_EQ(walk->Next(1, item.Put(), nullptr), S_OK);
    EXPECT_TRUE(Object(com::Query<IOutput>(item.Get().pdispVal), &IOutput::get_Parent));
}

TEST_F(ParentTest, AHostThatForgetsDestroyLeavesNothing) {
    input.Reset();
    output.Reset();
    gain.Reset();
    module.Reset();
    EXPECT_EQ(Dll().CanUnload(), S_OK);
}

TEST_F(ParentTest, LetsATypeOutliveItsPoint) {
    const auto type = Object(gain, &IAttribute::get_SNVTType);
    module.Reset();
    gain.Reset();
    EXPECT_EQ(Text(type, &ISNVType::get_ID), L"105");
    EXPECT_EQ(Long(type, &ISNVType::get_Factor), 100);
}

} // namespace
