#include "tests/appobject/Module.h"
#include "tests/support/Recorder.h"

#include <string>

using namespace support;
using namespace modules;

namespace {

/// A channel object that fails to give one of its two texts.
com::Ref<ITamInternalAppObject> FailingItem(HRESULT device, HRESULT object) {
    const auto item = Recorder::Make(L"item", {&__uuidof(ITamInternalAppObject)});
    item->Set(L"TamDeviceKey", L"K7");
    item->Set(L"TamInternalObjectKey", L"K7");
    item->Refuse(L"get TamDeviceKey", device);
    item->Refuse(L"get TamInternalObjectKey", object);
    return item->As<ITamInternalAppObject>();
}

class CDBAppObjectContainsTest : public ModuleTest {
  protected:
    /// The answer for an object of the device K7, whose device key the streams here have.
    static bool Contains(const com::Ref<IAppObject>& module, const std::wstring& objectKey,
                         const std::wstring& deviceKey = L"K7") {
        const auto item = ChannelItem(deviceKey, objectKey);
        VARIANT_BOOL contained = VARIANT_FALSE;
        com::Check(module.As<ITamObject>()->Contains(item.Get(), &contained));
        return contained != VARIANT_FALSE;
    }
};

TEST_F(CDBAppObjectContainsTest, FindsTheKeyInAnInputsName) {
    const auto module = Loaded(Stream(L"<Other/><_AI1_Value/>", L"<Out1/>"));
    EXPECT_TRUE(Contains(module, L"AI1"));
    EXPECT_FALSE(Contains(module, L"AI2"));
}

TEST_F(CDBAppObjectContainsTest, BearsAnItemThatDropsTheLastReference) {
    for (const wchar_t* const member : {L"get TamDeviceKey", L"get TamInternalObjectKey"}) {
        auto module = Loaded(Stream(L"<_AI1_Value/>", L"<Out1/>")).As<ITamObject>();
        const auto item = Recorder::Make(L"item", {&__uuidof(ITamInternalAppObject)});
        item->Set(L"TamDeviceKey", L"K7");
        item->Set(L"TamInternalObjectKey", L"AI1");
        item->On(member, [&](const Invocation& call) {
            module.Reset();
            return call.Answer(std::wstring(member == std::wstring(L"get TamDeviceKey") ? L"K7" : L"AI1"));
        });
        ITamObject* const asked = module.Get();
        VARIANT_BOOL contained = VARIANT_FALSE;
        EXPECT_EQ(asked->Contains(item->As<ITamInternalAppObject>().Get(), &contained), S_OK);
        EXPECT_FALSE(module);
        EXPECT_EQ(contained, VARIANT_TRUE);
    }
}

TEST_F(CDBAppObjectContainsTest, FindsTheKeyInAnOutputsName) {
    const auto module = Loaded(Stream(L"<In1/>", L"<Out1/><_AO1_Value/>"));
    EXPECT_TRUE(Contains(module, L"AO1"));
    EXPECT_FALSE(Contains(module, L"AO2"));
}

TEST_F(CDBAppObjectContainsTest, FindsTheKeyInAnAttributesName) {
    const auto module = Loaded(Stream({}, {}, L"<_DI1_Mode><SNVTTYPE>36</SNVTTYPE></_DI1_Mode>"));
    EXPECT_TRUE(Contains(module, L"DI1"));
    EXPECT_FALSE(Contains(module, L"DI2"));
}

TEST_F(CDBAppObjectContainsTest, WantsTheSameDevice) {
    const auto module = Loaded(Stream(L"<_AI1_Value/>"));
    EXPECT_FALSE(Contains(module, L"AI1", L"K8"));
    EXPECT_FALSE(Contains(module, L"AI1", L"k7"));
    EXPECT_FALSE(Contains(module, L"AI1", L""));
}

TEST_F(CDBAppObjectContainsTest, ComparesWithTheStreamsDeviceKeyAlone) {
    const auto module = Loaded(Stream(L"<_AI1_Value/>"));
    Put(module.As<ITamObject>(), &ITamObject::put_DeviceKey, L"D1");
    EXPECT_TRUE(Contains(module, L"AI1", L"K7"));
    EXPECT_FALSE(Contains(module, L"AI1", L"D1"));
}

TEST_F(CDBAppObjectContainsTest, ComparesTheBeginningOfANameAlone) {
    const auto module = Loaded(Stream(L"<_AI12_Value/><X_AI3_Value/><AI4_Value/>"));
    EXPECT_TRUE(Contains(module, L"AI1")) << "a longer key begins with it";
    EXPECT_FALSE(Contains(module, L"AI3"));
    EXPECT_FALSE(Contains(module, L"AI4"));
    EXPECT_FALSE(Contains(module, L"AI12_Value_More"));
    EXPECT_TRUE(Contains(module, L"AI12_Value"));
}

TEST_F(CDBAppObjectContainsTest, ComparesLetterCase) {
    EXPECT_FALSE(Contains(Loaded(Stream(L"<_ai1_Value/>")), L"AI1"));
}

TEST_F(CDBAppObjectContainsTest, TakesAnEmptyKeyForABareUnderscore) {
    EXPECT_TRUE(Contains(Loaded(Stream(L"<_Any/>")), L""));
    EXPECT_FALSE(Contains(Loaded(Stream(L"<Any/>")), L""));
}

TEST_F(CDBAppObjectContainsTest, ContainsNothingBeforeItIsLoaded) {
    EXPECT_FALSE(Contains(NewModule(), L"AI1", L""));
}

TEST_F(CDBAppObjectContainsTest, ContainsNothingAfterDestroy) {
    const auto module = Loaded(Stream(L"<_AI1_Value/>"));
    module->Destroy();
    EXPECT_FALSE(Contains(module, L"AI1"));
}

TEST_F(CDBAppObjectContainsTest, HandsAFailureOfTheItemToTheHost) {
    const auto tam = Loaded(Stream(L"<_K7_Value/>")).As<ITamObject>();
    VARIANT_BOOL contained = VARIANT_TRUE;
    EXPECT_EQ(tam->Contains(FailingItem(E_ACCESSDENIED, S_OK).Get(), &contained), E_ACCESSDENIED);
    EXPECT_EQ(contained, VARIANT_FALSE);
    EXPECT_EQ(tam->Contains(FailingItem(S_OK, E_ABORT).Get(), &contained), E_ABORT);
    EXPECT_EQ(tam->Contains(FailingItem(S_OK, S_OK).Get(), &contained), S_OK);
    EXPECT_EQ(contained, VARIANT_TRUE);
}

TEST_F(CDBAppObjectContainsTest, AsksAnItemOfAnotherDeviceForNothingMore) {
    VARIANT_BOOL contained = VARIANT_TRUE;
    const auto item = FailingItem(S_OK, E_ABORT);
    EXPECT_EQ(NewModule().As<ITamObject>()->Contains(item.Get(), &contained), S_OK);
    EXPECT_EQ(contained, VARIANT_FALSE);
}

TEST_F(CDBAppObjectContainsTest, FailsWithoutAnItem) {
    const auto tam = NewModule().As<ITamObject>();
    VARIANT_BOOL contained = VARIANT_TRUE;
    EXPECT_EQ(tam->Contains(nullptr, &contained), kObjectNotSet);
    EXPECT_EQ(contained, VARIANT_FALSE);
    EXPECT_EQ(LastError().description, kObjectNotSetText);
}

} // namespace
