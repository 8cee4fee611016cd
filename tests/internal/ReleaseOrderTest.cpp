#include "tests/support/ReleaseOrder.h"
#include "com/LateBound.h"
#include "tests/internal/Channel.h"

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// A channel object holds the generic object, which holds its interceptor,
// which is the channel object: whoever lets go first, all of it must end.

namespace internal_tests {

namespace {

using Texts = std::vector<std::wstring>;

/// What a host may hold of one channel.
enum Held : std::size_t { kWrapper, kGeneric, kCollections, kItems, kInterceptor, kHeldCount };
constexpr std::array<const char*, kHeldCount> kHeldNames = {"wrapper", "generic object", "collections",
                                                            "items", "interceptor"};

class ReleaseOrderTest : public InternalTest {
  protected:
    using References = support::HeldByKind<kHeldCount>;

    /// Every reference that a host can get at, by kind. The doubles are then
    /// held by nothing else than these.
    References TakeAll() {
        References held;
        const auto object = Created();
        held[kWrapper] = {object, InternalOf(object)};
        held[kGeneric] = {generic.object->As<IUnknown>()};
        const auto inputs = support::Object(object, &IAppObject::get_Inputs);
        const auto outputs = support::Object(object, &IAppObject::get_Outputs);
        const auto attributes = support::Object(object, &IAppObject::get_Attributes);
        held[kCollections] = {inputs, outputs, attributes, support::Object(inputs, &IInputs::get_NewEnum),
                              support::Object(attributes, &IAttributes::get_NewEnum)};
        held[kItems] = {InputOf(object, L"In1"), OutputOf(object, L"Out"),
                        OutputOf(object, L"Out").As<IDisplayItem>(), AttributeOf(object, L"Gain")};
        held[kInterceptor] = {Interceptor()};
        ForgetDoubles();
        return held;
    }
    /// What is still held knows its channel, and the channel answers.
    static void ExpectAnswered(const References& held) {
        std::vector<com::Ref<IAppObject>> parents;
        for (const auto& item : held[kItems]) {
            if (const auto input = item.As<IInput>()) {
                parents.push_back(support::Object(input, &IInput::get_Parent));
            } else if (const auto output = item.As<IOutput>()) {
                parents.push_back(support::Object(output, &IOutput::get_Parent));
            } else {
                parents.push_back(support::Object(item.As<IAttribute>(), &IAttribute::get_Parent));
            }
        }
        if (!held[kCollections].empty()) {
            const auto inputs = held[kCollections].front().As<IInputs>();
            parents.push_back(
                support::Object(support::Item(inputs, &IInputs::get_Item, L"In1"), &IInput::get_Parent));
        }
        for (const auto& parent : parents) {
            ASSERT_TRUE(parent);
            EXPECT_EQ(support::Text(InternalOf(parent), &ITamInternalAppObject::get_TamInternalObjectKey),
                      L"AI3");
        }
    }
    void ExpectAllGone() {
        EXPECT_EQ(Dll().CanUnload(), S_OK) << "an object of the component is still alive";
        EXPECT_EQ(DoublesAlive(), 0) << "an object of the host is still held";
    }
    /// The doubles once more, for a second round in one test.
    void Renew() {
        InternalTest::TearDown();
        InternalTest::SetUp();
    }
};

TEST_F(ReleaseOrderTest, EverythingEndsInEveryOrderOfRelease) {
    const std::size_t rounds = support::ReleaseInEveryOrder(
        kHeldNames, [this]() -> support::Component& { return Dll(); }, [this] { return TakeAll(); },
        ExpectAnswered,
        [this] {
            ExpectAllGone();
            Renew();
        });
    EXPECT_EQ(rounds, 120u);
}

TEST_F(ReleaseOrderTest, TheRegisteredInterceptorDoesNotKeepTheObjectAlive) {
    auto object = Created();
    const auto interceptor = Interceptor();
    object.Reset();
    VARIANT_BOOL handled = VARIANT_TRUE;
    EXPECT_EQ(interceptor->InterceptTypeChanged(gain->As<IAttribute>().Get(), &handled),
              CO_E_OBJNOTCONNECTED);
}

TEST_F(ReleaseOrderTest, AnInterceptorWhoseObjectIsGoneAnswersThatItIsNotConnected) {
    auto object = Created();
    const auto interceptor = Interceptor();
    object.Reset();
    Calls().clear();
    const auto attribute = gain->As<IAttribute>();
    using Told = HRESULT (STDMETHODCALLTYPE IAttributeInterceptor::*)(IAttribute*, VARIANT_BOOL*);
    for (const Told member : {&IAttributeInterceptor::InterceptGetDataFromDevice,
                              &IAttributeInterceptor::InterceptAttributeValueChanged,
                              &IAttributeInterceptor::InterceptTypeChanged}) {
        VARIANT_BOOL handled = VARIANT_TRUE;
        EXPECT_EQ((interceptor.Get()->*member)(attribute.Get(), &handled), CO_E_OBJNOTCONNECTED);
        EXPECT_EQ(handled, VARIANT_FALSE);
        EXPECT_EQ((interceptor.Get()->*member)(attribute.Get(), nullptr), E_POINTER);
    }
    using Asked =
        HRESULT (STDMETHODCALLTYPE IAttributeInterceptor::*)(IAttribute*, VARIANT_BOOL*, VARIANT_BOOL*);
    VARIANT_BOOL answer = VARIANT_TRUE;
    for (const Asked member : {&IAttributeInterceptor::InterceptIsUnitsDependent,
                               &IAttributeInterceptor::InterceptIsDifferential}) {
        VARIANT_BOOL handled = VARIANT_TRUE;
        EXPECT_EQ((interceptor.Get()->*member)(attribute.Get(), &answer, &handled), CO_E_OBJNOTCONNECTED);
        EXPECT_EQ(handled, VARIANT_FALSE);
        EXPECT_EQ((interceptor.Get()->*member)(attribute.Get(), &answer, nullptr), E_POINTER);
    }
    EXPECT_EQ(answer, VARIANT_TRUE);
    EXPECT_EQ(Said(), Texts());

    UINT count = 7;
    EXPECT_EQ(interceptor->GetTypeInfoCount(&count), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(count, 0u);
    ITypeInfo* info = reinterpret_cast<ITypeInfo*>(&count);
    EXPECT_EQ(interceptor->GetTypeInfo(0, 0, &info), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(info, nullptr);
    com::Bstr name(L"InterceptTypeChanged");
    BSTR text = name.Get();
    DISPID id = 0;
    EXPECT_EQ(interceptor->GetIDsOfNames(IID_NULL, &text, 1, 0, &id), CO_E_OBJNOTCONNECTED);
    DISPPARAMS none{};
    EXPECT_EQ(interceptor->Invoke(0x1202, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
              CO_E_OBJNOTCONNECTED);
}

TEST_F(ReleaseOrderTest, AnInterceptorWhoseObjectIsGoneIsStillAnObject) {
    auto object = Created();
    const auto interceptor = Interceptor();
    object.Reset();
    const auto identity = interceptor.As<IUnknown>();
    ASSERT_TRUE(identity);
    EXPECT_TRUE(com::SameObject(identity.Get(), interceptor.As<IDispatch>().Get()));
    EXPECT_TRUE(interceptor.As<IAttributeInterceptor>());
    EXPECT_FALSE(interceptor.As<IAppObject>());
    EXPECT_EQ(interceptor->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(ReleaseOrderTest, TheInterceptorIsTheObjectItselfForCom) {
    const auto object = Created();
    const auto interceptor = Interceptor();
    EXPECT_TRUE(com::SameObject(interceptor.Get(), object.Get()));
    const auto own = object.As<IAttributeInterceptor>();
    EXPECT_TRUE(com::SameObject(own.Get(), object.Get()));
    EXPECT_TRUE(com::SameObject(interceptor.As<ITamInternalAppObject>().Get(), object.Get()));
    EXPECT_TRUE(com::SameObject(interceptor.As<IAttributeInterceptor>().Get(), object.Get()));
    EXPECT_TRUE(interceptor.As<ISupportErrorInfo>());
    EXPECT_FALSE(interceptor.As<IInput>());
}

TEST_F(ReleaseOrderTest, AReferenceThroughTheInterceptorKeepsTheObject) {
    auto object = Created();
    auto again = Interceptor().As<IAppObject>();
    object.Reset();
    EXPECT_EQ(
        support::Text(again.As<ITamInternalAppObject>(), &ITamInternalAppObject::get_TamInternalObjectKey),
        L"AI3");
    again.Reset();
    EXPECT_EQ(Dll().CanUnload(), S_FALSE) << "the generic object still has its interceptor";
    ForgetDoubles();
    ExpectAllGone();
}

TEST_F(ReleaseOrderTest, TheObjectMayEndInACallThatTheInterceptorPassesOn) {
    auto object = Created();
    const auto interceptor = Interceptor();
    gain->On(L"get Name", [&](const Invocation& call) {
        object.Reset(); // the host lets go while it is asked
        return call.Answer(com::Variant(L"Gain").Get());
    });
    VARIANT_BOOL handled = VARIANT_FALSE;
    EXPECT_EQ(interceptor->InterceptGetDataFromDevice(gain->As<IAttribute>().Get(), &handled), S_OK);
    EXPECT_EQ(handled, VARIANT_TRUE);
    EXPECT_EQ(interceptor->InterceptGetDataFromDevice(gain->As<IAttribute>().Get(), &handled),
              CO_E_OBJNOTCONNECTED);
}

TEST_F(ReleaseOrderTest, EachItemKeepsItsObject) {
    auto object = Created();
    const auto input = InputOf(object, L"In1");
    const auto output = OutputOf(object, L"Out");
    const auto attribute = AttributeOf(object, L"Gain");
    object.Reset();
    for (const auto& parent :
         {support::Object(input, &IInput::get_Parent), support::Object(output, &IOutput::get_Parent),
          support::Object(attribute, &IAttribute::get_Parent)}) {
        ASSERT_TRUE(parent);
        EXPECT_EQ(support::Text(InternalOf(parent), &ITamInternalAppObject::get_TamInternalObjectKey),
                  L"AI3");
    }
    EXPECT_EQ(support::Text(input, &IInput::get_Name), L"In1");
    EXPECT_EQ(support::Text(output, &IOutput::get_Name), L"Out");
    EXPECT_EQ(support::Text(attribute, &IAttribute::get_Name), L"Gain");
}

TEST_F(ReleaseOrderTest, ItemsMirrorAfterTheHostLetGoOfTheirObject) {
    const Double input = NewInput(L"AI3_In1", L"AI3_In1");
    const Double output = NewOutput(L"AI3_Out", L"AI3_Out");
    const Double attribute = NewAttribute(L"AI3_Gain", L"AI3_Gain");
    output->Set(L"Reference", L"4203");
    container.Fill(L"container", {input}, {output}, {attribute});
    auto object = Created();
    const auto ownInput = InputOf(object, L"In1");
    const auto ownOutput = OutputOf(object, L"Out");
    const auto ownAttribute = AttributeOf(object, L"Gain");
    object.Reset();
    EXPECT_EQ(support::Put(ownInput, &IInput::put_Value, L"1"), S_OK);
    EXPECT_EQ(input->Value(L"Value"), L"\"1\"");
    EXPECT_EQ(support::Put(ownAttribute, &IAttribute::put_Value, L"2"), S_OK);
    EXPECT_EQ(attribute->Value(L"Value"), L"\"2\"");
    EXPECT_EQ(ownOutput->put_IsDisplayable(VARIANT_FALSE), S_OK);
    EXPECT_EQ(output->Value(L"IsDisplayable"), L"False");
    long index = 5;
    EXPECT_EQ(ownOutput->get_Index(&index), S_OK);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(support::Text(ownOutput.As<IDisplayItem>(), &IDisplayItem::get_Reference), L"4203");
}

TEST_F(ReleaseOrderTest, AnItemKeepsItsObjectForTheInterceptor) {
    auto object = Created();
    auto input = InputOf(object, L"In1");
    const auto interceptor = Interceptor();
    object.Reset();
    VARIANT_BOOL handled = VARIANT_TRUE;
    EXPECT_EQ(interceptor->InterceptTypeChanged(gain->As<IAttribute>().Get(), &handled), S_OK);
    input.Reset();
    EXPECT_EQ(interceptor->InterceptTypeChanged(gain->As<IAttribute>().Get(), &handled),
              CO_E_OBJNOTCONNECTED);
}

TEST_F(ReleaseOrderTest, ACollectionKeepsItsObject) {
    auto object = Created();
    const auto inputs = support::Object(object, &IAppObject::get_Inputs);
    object.Reset();
    EXPECT_EQ(support::Long(inputs, &IInputs::get_Count), 2);
    const auto input = support::Item(inputs, &IInputs::get_Item, L"In2");
    ASSERT_TRUE(input);
    EXPECT_TRUE(support::Object(input, &IInput::get_Parent));
}

TEST_F(ReleaseOrderTest, AnEnumeratorKeepsTheObjectOfItsItems) {
    auto object = Created();
    const auto walk = support::Object(support::Object(object, &IAppObject::get_Inputs), &IInputs::get_NewEnum)
                          .As<IEnumVARIANT>();
    object.Reset();
    com::Variant item;
    ASSERT_EQ(walk->Next(1, item.Put(), nullptr), S_OK);
    EXPECT_EQ(Print(com::GetMember(*item.Get().pdispVal, L"Name").Get()), L"\"In1\"");
    EXPECT_TRUE(support::Object(com::Query<IInput>(item.Get().pdispVal), &IInput::get_Parent));
}

TEST_F(ReleaseOrderTest, ItemsOfAnEarlierCreationKeepTheirObject) {
    auto object = Created();
    const auto inputs = support::Object(object, &IAppObject::get_Inputs);
    auto attribute = AttributeOf(object, L"Gain");
    EXPECT_EQ(object->Create(), S_OK);
    EXPECT_FALSE(com::SameObject(attribute.Get(), AttributeOf(object, L"Gain").Get()));
    object.Reset();
    EXPECT_TRUE(support::Object(attribute, &IAttribute::get_Parent));
    attribute.Reset();
    EXPECT_TRUE(support::Object(support::Item(inputs, &IInputs::get_Item, L"In1"), &IInput::get_Parent));
}

TEST_F(ReleaseOrderTest, AnObjectThatWasNeverCreatedEnds) {
    { const auto object = NewChannel(L"AI3", Device().Get()); }
    ForgetDoubles();
    ExpectAllGone();
}

TEST_F(ReleaseOrderTest, AnObjectWhoseCreationFailedEnds) {
    for (const wchar_t* member : {L"RegisterInterceptor", L"Create", L"get Outputs", L"get UniqueIDString"}) {
        generic.object->Fail(member, E_FAIL);
        EXPECT_EQ(NewChannel(L"AI3", Device().Get())->Create(), E_FAIL);
        generic.object->FailNoMore();
    }
    ForgetDoubles();
    ExpectAllGone();
}

TEST_F(ReleaseOrderTest, AnObjectThatWasCreatedTwiceEnds) {
    {
        const auto object = Created();
        EXPECT_EQ(object->Create(), S_OK);
    }
    ForgetDoubles();
    ExpectAllGone();
}

TEST_F(ReleaseOrderTest, AnObjectEndsWhoseDeviceHoldsItUntilItsOwnEnd) {
    {
        const auto object = Created();
        device->Set(L"Held", object.Get());
    }
    EXPECT_EQ(Dll().CanUnload(), S_FALSE);
    device->Set(L"Held", false);
    ForgetDoubles();
    ExpectAllGone();
}

TEST_F(ReleaseOrderTest, TheManagerEndsBeforeOrAfterItsObjects) {
    auto manager = NewManager();
    com::Ref<IAppObject> object;
    EXPECT_EQ(manager->CreateTemplateTamInternalObject(object.Put()), S_OK);
    manager.Reset();
    generic.object->Set(L"Name", L"Level");
    EXPECT_EQ(support::Text(object, &IAppObject::get_Name), L"Level");
    object.Reset();
    ForgetDoubles();
    ExpectAllGone();
}

TEST_F(ReleaseOrderTest, TheInterceptorWorksByNameWhileItsObjectLives) {
    const auto object = Created();
    const auto interceptor = Interceptor();
    const com::Variant attribute(gain->As<IDispatch>().Get());
    VARIANT arguments[2] = {attribute.Get(), {}};
    IDispatch& script = *interceptor.Get();
    for (const wchar_t* member : {L"InterceptGetDataFromDevice", L"InterceptAttributeValueChanged"}) {
        EXPECT_EQ(Print(com::CallMember(script, member, std::span(arguments, 1)).Get()), L"True");
    }
    EXPECT_EQ(Print(com::CallMember(script, L"InterceptTypeChanged", std::span(arguments, 1)).Get()),
              L"False");

    SetDefinition(L"<AppObject><TAMConfig><Attributes><Attrib Name='Gain' UnitDependent='1'/></Attributes>"
                  L"</TAMConfig></AppObject>");
    for (const wchar_t* member : {L"InterceptIsUnitsDependent", L"InterceptIsDifferential"}) {
        const bool isUnits = std::wstring_view(member) == L"InterceptIsUnitsDependent";
        VARIANT_BOOL answer = isUnits ? VARIANT_FALSE : VARIANT_TRUE;
        arguments[1].vt = VT_BYREF | VT_BOOL;
        arguments[1].pboolVal = &answer;
        EXPECT_EQ(Print(com::CallMember(script, member, arguments).Get()), L"True");
        EXPECT_EQ(answer, isUnits ? VARIANT_TRUE : VARIANT_FALSE);
    }
}

} // namespace

} // namespace internal_tests
