#include "tests/internal/Channel.h"

// Whose error object a host gets with a failure that a channel object passes
// on: that of the object which failed, and none where it set none.

namespace internal_tests {

namespace {

constexpr auto kCode = static_cast<HRESULT>(0x8004BBBBu);
constexpr const wchar_t* kTheirs = L"Theirs alone";

/// Succeeds, and leaves an error object all the same.
HRESULT SucceedWithAnError(const Invocation&) {
    LeaveError(kTheirs);
    return S_OK;
}
/// Fails without a word.
HRESULT FailInSilence(const Invocation&) {
    return kCode;
}

class ErrorObjectsTest : public InternalTest {
  protected:
    static void ExpectSilent(HRESULT result, HRESULT code = kCode) {
        EXPECT_EQ(result, code);
        EXPECT_FALSE(support::HasLastError());
    }
};

TEST_F(ErrorObjectsTest, TellsNoFailureInTheWordsOfACallThatSucceeded) {
    const auto object = Created();
    in1->On(L"put Value", &SucceedWithAnError);
    container.object->On(L"get Inputs", &FailInSilence);
    ExpectSilent(support::Put(InputOf(object, L"In1"), &IInput::put_Value, L"1"));

    gain->On(L"put Value", &SucceedWithAnError);
    container.object->On(L"get Attributes", &FailInSilence);
    ExpectSilent(support::Put(AttributeOf(object, L"Gain"), &IAttribute::put_Value, L"1"));

    out->On(L"put IsDisplayable", &SucceedWithAnError);
    container.object->On(L"get Outputs", &FailInSilence);
    ExpectSilent(OutputOf(object, L"Out")->put_IsDisplayable(VARIANT_TRUE));

    channel->On(L"get ChannelValue", [](const Invocation& call) {
        LeaveError(kTheirs);
        return call.Answer(com::Variant(L"8").Get());
    });
    channelAttribute->On(L"put Value", &FailInSilence);
    VARIANT_BOOL handled = VARIANT_TRUE;
    ExpectSilent(
        Interceptor()->InterceptGetDataFromDevice(channelAttribute->As<IAttribute>().Get(), &handled));
}

TEST_F(ErrorObjectsTest, TellsNoFailureOfACreationInTheWordsOfACallThatSucceeded) {
    generic.object->On(L"RegisterInterceptor", &SucceedWithAnError);
    generic.object->On(L"Create", &FailInSilence);
    ExpectSilent(NewChannel(L"AI3", Device().Get())->Create());
}

TEST_F(ErrorObjectsTest, PassesTheErrorObjectOfTheObjectThatFailed) {
    const auto object = Created();
    in1->On(L"put Value", &SucceedWithAnError);
    container.object->Fail(L"get Inputs", kCode, L"no inputs");
    ExpectPassedBack(support::Put(InputOf(object, L"In1"), &IInput::put_Value, L"1"), kCode, L"no inputs");
    gain->Fail(L"put Value", kCode, L"no value");
    ExpectPassedBack(support::Put(AttributeOf(object, L"Gain"), &IAttribute::put_Value, L"1"), kCode,
                     L"no value");
}

TEST_F(ErrorObjectsTest, PassesTheErrorObjectThroughTheChannelsOwnMembers) {
    const auto object = Created();
    device->Fail(L"Container", kCode, L"no container");
    ExpectPassedBack(support::Put(InputOf(object, L"In1"), &IInput::put_Value, L"1"), kCode, L"no container");
    device->FailNoMore();
    device->On(L"Container", &FailInSilence);
    ExpectSilent(support::Put(InputOf(object, L"In1"), &IInput::put_Value, L"1"));
}

TEST_F(ErrorObjectsTest, BelievesNoErrorObjectOfAnObjectThatPromisesNone) {
    const auto object = Created();
    in1->Fail(L"put Value", kCode, L"whose?");
    in1->HideFace(IID_ISupportErrorInfo);
    ExpectSilent(support::Put(InputOf(object, L"In1"), &IInput::put_Value, L"1"));
    gain->Fail(L"put Value", kCode, L"whose?");
    gain->DenyErrorsOf(__uuidof(IAttribute));
    ExpectSilent(support::Put(AttributeOf(object, L"Gain"), &IAttribute::put_Value, L"1"));
}

TEST_F(ErrorObjectsTest, AsksOfTheInterfaceThatWasCalled) {
    const auto object = Created();
    gain->DenyErrorsOf(__uuidof(IMutableTypeAttribute));
    gain->Fail(L"put Value", kCode, L"no value");
    ExpectPassedBack(support::Put(AttributeOf(object, L"Gain"), &IAttribute::put_Value, L"1"), kCode,
                     L"no value");
}

TEST_F(ErrorObjectsTest, AForwardedFailureHasNoOlderErrorObject) {
    const auto object = Created();
    const auto input = InputOf(object, L"In1");
    in1->On(L"get GlobalKey", &FailInSilence);
    LeaveError(kTheirs);
    com::Bstr text;
    ExpectSilent(input->get_GlobalKey(text.Put()));
    generic.object->On(L"Destroy", &FailInSilence);
    LeaveError(kTheirs);
    ExpectSilent(object->Destroy());
}

TEST_F(ErrorObjectsTest, AForwardedFailureHasItsErrorObjectUntouched) {
    const auto object = Created();
    in1->Fail(L"get GlobalKey", kCode, L"no key");
    com::Bstr text;
    ExpectPassedBack(InputOf(object, L"In1")->get_GlobalKey(text.Put()), kCode, L"no key");
}

TEST_F(ErrorObjectsTest, AForwardedFailureOfAnObjectThatPromisesNoneHasNone) {
    const auto object = Created();
    in1->Fail(L"get GlobalKey", kCode, L"whose?");
    in1->HideFace(IID_ISupportErrorInfo);
    com::Bstr text;
    ExpectSilent(InputOf(object, L"In1")->get_GlobalKey(text.Put()));
    generic.object->Fail(L"Destroy", kCode, L"whose?");
    generic.object->DenyErrorsOf(__uuidof(IAppObject));
    ExpectSilent(object->Destroy());
}

TEST_F(ErrorObjectsTest, ARefusalHasNoOlderErrorObject) {
    const auto object = Created();
    const auto attribute = gain->As<IAttribute>();
    const auto interceptor = Interceptor();
    VARIANT_BOOL value = VARIANT_FALSE;
    LeaveError(kTheirs);
    ExpectSilent(InputOf(object, L"In1")->get_Name(nullptr), E_POINTER);
    LeaveError(kTheirs);
    ExpectSilent(InputOf(object, L"In1")->get_Extended(nullptr), E_POINTER);
    LeaveError(kTheirs);
    ExpectSilent(interceptor->InterceptIsUnitsDependent(attribute.Get(), nullptr, &value), E_POINTER);
    LeaveError(kTheirs);
    ExpectSilent(interceptor->InterceptIsDifferential(attribute.Get(), nullptr, &value), E_POINTER);
}

TEST_F(ErrorObjectsTest, ARefusedInterfaceTellsNothingThatItDidNotSay) {
    const auto object = Created();
    LeaveError(kTheirs);
    device->HideFace(__uuidof(IDevice), kCode);
    com::Bstr key;
    ExpectSilent(InternalOf(object)->get_TamDeviceKey(key.Put()));
}

TEST_F(ErrorObjectsTest, AnExceptionOfACallByNameIsToldWhole) {
    const auto object = Created();
    out->Fail(L"set CallBack", kCode, L"no callback");
    EXPECT_EQ(OutputOf(object, L"Out")->putref_CallBack(nullptr), kCode);
    com::Ref<IErrorInfo> info;
    ASSERT_EQ(GetErrorInfo(0, info.Put()), S_OK);
    com::Bstr text;
    info->GetDescription(text.Put());
    EXPECT_EQ(text.View(), L"no callback");
    info->GetSource(text.Put());
    EXPECT_EQ(text.View(), L"Double");
    info->GetHelpFile(text.Put());
    EXPECT_EQ(text.View(), kRecorderHelpFile);
    DWORD topic = 0;
    info->GetHelpContext(&topic);
    EXPECT_EQ(topic, kRecorderHelpContext);
}

TEST_F(ErrorObjectsTest, AnExceptionWithoutWordsIsToldWithoutWords) {
    const auto object = Created();
    out->On(L"set CallBack", &FailInSilence);
    LeaveError(kTheirs);
    ExpectSilent(OutputOf(object, L"Out")->putref_CallBack(nullptr));
}

TEST_F(ErrorObjectsTest, OwnErrorsHaveTheirWords) {
    const auto object = CreatedWithoutDevice();
    LeaveError(kTheirs);
    ExpectRaised(support::Put(InputOf(object, L"In1"), &IInput::put_Value, L"1"), kObjectNotSet);
}

} // namespace

} // namespace internal_tests
