#include "tests/internal/Channel.h"

#include <string>

// The channel object and the real module that contains it: each side by its own
// rules of names, where the other tests have doubles.

namespace internal_tests {

namespace {

class ModuleContainerTest : public InternalTest {
  protected:
    void SetUp() override {
        InternalTest::SetUp();
        SetCatalogue(
            L"<SNVT_105><Name>Temperature</Name><Type>SignedNumeric</Type><Length>2</Length></SNVT_105>");
        const std::wstring typed = L"<SNVTTYPE>105</SNVTTYPE>";
        module = Loaded(support::Stream(
            L"<ai3_In1/><AI3_In2/>",
            L"<AI1_Out>" + typed + L"</AI1_Out><AI2_Out/><AI3_Out>" + typed + L"</AI3_Out><AI3_Alarm/>",
            L"<AI3_Gain>" + typed + L"</AI3_Gain><ai3_setup>" + typed + L"</ai3_setup>"));
        device->On(L"Container", [this](const Invocation& call) { return call.Answer(module.Get()); });
        object = Created();
    }
    void TearDown() override {
        object.Reset();
        module.Reset();
        InternalTest::TearDown();
    }
    void Wire(const wchar_t* output) const {
        EXPECT_EQ(OutputOf(module, output).As<ISubItemConnable>()->put_IsConnected(VARIANT_TRUE), S_OK);
    }
    std::wstring ModulesValue(const wchar_t* attribute) const {
        return Text(AttributeOf(module, attribute), &IAttribute::get_Value);
    }

    com::Ref<IAppObject> module;
    com::Ref<IAppObject> object;
};

TEST_F(ModuleContainerTest, GivesAValueToTheInputOfItsExactName) {
    EXPECT_EQ(Put(InputOf(object, L"In1"), &IInput::put_Value, L"4203"), S_OK);
    EXPECT_EQ(Put(InputOf(object, L"In2"), &IInput::put_Value, L"4204"), S_OK);
    EXPECT_EQ(Text(InputOf(module, L"ai3_In1"), &IInput::get_Value), L"") << "in other letter case";
    EXPECT_EQ(Text(InputOf(module, L"AI3_In2"), &IInput::get_Value), L"4204");
}

TEST_F(ModuleContainerTest, GivesAValueToTheAttributeOfItsNameInAnyLetterCase) {
    EXPECT_EQ(Put(AttributeOf(object, L"Gain"), &IAttribute::put_Value, L"1.5"), S_OK);
    EXPECT_EQ(Put(AttributeOf(object, L"Setup"), &IAttribute::put_Value, L"2"), S_OK);
    EXPECT_EQ(Put(AttributeOf(object, L"Channel"), &IAttribute::put_Value, L"3"), S_OK)
        << "the module has none";
    EXPECT_EQ(ModulesValue(L"AI3_Gain"), L"1.5");
    EXPECT_EQ(ModulesValue(L"ai3_setup"), L"2");
}

TEST_F(ModuleContainerTest, GivesAChangedValueToTheModuleAndLeavesItsType) {
    gain->Set(L"Value", L"2.5");
    const auto type = Recorder::Make(L"type", {&__uuidof(ISNVType)});
    gain->Set(L"SNVTType", type);
    VARIANT_BOOL handled = VARIANT_FALSE;
    EXPECT_EQ(Interceptor()->InterceptAttributeValueChanged(gain->As<IAttribute>().Get(), &handled), S_OK);
    EXPECT_EQ(handled, VARIANT_TRUE);
    EXPECT_EQ(ModulesValue(L"AI3_Gain"), L"2.5");
    EXPECT_EQ(Interceptor()->InterceptTypeChanged(gain->As<IAttribute>().Get(), &handled), S_OK);
    EXPECT_EQ(handled, VARIANT_FALSE);
    const auto kept = Object(AttributeOf(module, L"AI3_Gain"), &IAttribute::get_SNVTType);
    EXPECT_EQ(Text(kept, &ISNVType::get_ID), L"105") << "a module's attribute keeps its type";
}

TEST_F(ModuleContainerTest, CountsTheModulesWiredOutputs) {
    EXPECT_EQ(Long(OutputOf(object, L"Out"), &IOutput::get_Index), 0);
    Wire(L"AI1_Out");
    Wire(L"AI3_Out");
    EXPECT_EQ(Long(OutputOf(object, L"Out"), &IOutput::get_Index), 1);
    EXPECT_EQ(Long(OutputOf(object, L"Alarm"), &IOutput::get_Index), 2);
}

TEST_F(ModuleContainerTest, HasTheModulesExportIndexAndReferences) {
    EXPECT_EQ(module->put_ExportIndex(2), S_OK);
    EXPECT_EQ(Short(object, &IAppObject::get_ExportIndex), 2);
    EXPECT_EQ(Text(OutputOf(object, L"Alarm").As<IDisplayItem>(), &IDisplayItem::get_Reference), L"4203");
}

TEST_F(ModuleContainerTest, ShowsAndHidesTheModulesOutput) {
    for (const bool shown : {true, false}) {
        EXPECT_EQ(OutputOf(object, L"Out")->put_IsDisplayable(shown ? VARIANT_TRUE : VARIANT_FALSE), S_OK);
        EXPECT_EQ(Flag(OutputOf(module, L"AI3_Out"), &IOutput::get_IsDisplayable), shown);
    }
}

TEST_F(ModuleContainerTest, RaisesWhenTheModuleIsDestroyed) {
    EXPECT_EQ(module->Destroy(), S_OK);
    ExpectRaised(Put(InputOf(object, L"In2"), &IInput::put_Value, L"4204"), kObjectNotSet);
    EXPECT_EQ(in2->Value(L"Value"), L"\"4204\"") << "the inner input has it by then";
    long index = 0;
    ExpectRaised(OutputOf(object, L"Out")->get_Index(&index), kObjectNotSet);
    ExpectRaised(Put(AttributeOf(object, L"Gain"), &IAttribute::put_Value, L"1"), kObjectNotSet);
}

TEST_F(ModuleContainerTest, IsAskedWhetherItContainsTheChannel) {
    const auto owner = Loaded(support::Stream(L"<_AI3_In1/>"));
    const auto contains = [](const com::Ref<IAppObject>& asked, const com::Ref<IAppObject>& channelObject) {
        VARIANT_BOOL answer = VARIANT_FALSE;
        EXPECT_EQ(asked.As<ITamObject>()->Contains(InternalOf(channelObject).Get(), &answer), S_OK);
        return answer != VARIANT_FALSE;
    };
    EXPECT_FALSE(contains(owner, object)) << "of another device";
    device->Set(L"DeviceKey", L"K7");
    EXPECT_TRUE(contains(owner, object));
    EXPECT_FALSE(contains(module, object)) << "no name begins with _AI3";
    EXPECT_FALSE(contains(owner, CreatedWithoutDevice()));
}

} // namespace

} // namespace internal_tests
