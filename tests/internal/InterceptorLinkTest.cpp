#include "com/LateBound.h"
#include "tests/internal/Channel.h"

#include <span>
#include <string>

// What the generic object is given as its interceptor, and how it may keep it.

namespace internal_tests {

namespace {

constexpr const wchar_t* kRegister = L"RegisterInterceptor";

struct Keeping {
    const char* title;
    const IID* iid;
};

class InterceptorLinkTest : public InternalTest, public testing::WithParamInterface<Keeping> {
  protected:
    void SetUp() override {
        InternalTest::SetUp();
        // A generic object that asks for the interface that it keeps.
        Recorder* self = generic.object.Get();
        self->On(kRegister, [self](const Invocation& call) {
            com::Ref<IUnknown> kept;
            com::Check(call.Input(0).pdispVal->QueryInterface(*GetParam().iid, kept.PutVoid()));
            self->Set(kRegister, kept.Get());
            return S_OK;
        });
    }
    /// What the generic object keeps.
    com::Ref<IDispatch> Kept() const { return generic.object->Kept<IDispatch>(kRegister); }
};

TEST_P(InterceptorLinkTest, EverythingEndsWhenTheHostLetsGoOfTheObjectLast) {
    auto object = Created();
    ForgetDoubles();
    object.Reset();
    EXPECT_EQ(Dll().CanUnload(), S_OK) << "the object and the generic one keep each other alive";
    EXPECT_EQ(DoublesAlive(), 0);
}

TEST_P(InterceptorLinkTest, EverythingEndsWhenTheHostLetsGoOfTheGenericObjectLast) {
    auto object = Created();
    object.Reset();
    EXPECT_EQ(Dll().CanUnload(), S_FALSE) << "the generic object still has its interceptor";
    ForgetDoubles();
    EXPECT_EQ(Dll().CanUnload(), S_OK) << "the object and the generic one keep each other alive";
    EXPECT_EQ(DoublesAlive(), 0);
}

TEST_P(InterceptorLinkTest, IsCalledByNameWhileTheObjectLives) {
    auto object = Created();
    const auto kept = Kept();
    const com::Variant attribute(gain->As<IDispatch>().Get());
    VARIANT argument = attribute.Get();
    EXPECT_EQ(
        Print(com::CallMember(*kept.Get(), L"InterceptGetDataFromDevice", std::span(&argument, 1)).Get()),
        L"True");
    EXPECT_EQ(Print(com::CallMember(*kept.Get(), L"InterceptTypeChanged", std::span(&argument, 1)).Get()),
              L"False");
    EXPECT_EQ(Print(com::GetMember(*kept.Get(), L"TamInternalObjectKey").Get()), L"\"AI3\"");
    EXPECT_TRUE(com::SameObject(kept.Get(), object.Get()));

    object.Reset();
    DISPID id = DISPID_UNKNOWN;
    com::Bstr name(L"InterceptTypeChanged");
    BSTR text = name.Get();
    EXPECT_EQ(kept->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id), CO_E_OBJNOTCONNECTED);
}

TEST_P(InterceptorLinkTest, GoesFromEachOfItsInterfacesToTheOther) {
    auto object = Created();
    const auto face = Kept().As<IAttributeInterceptor>();
    const auto byName = face.As<IDispatch>();
    ASSERT_TRUE(byName);
    object.Reset();
    VARIANT_BOOL handled = VARIANT_TRUE;
    const auto attribute = gain->As<IAttribute>();
    EXPECT_EQ(face->InterceptTypeChanged(attribute.Get(), &handled), CO_E_OBJNOTCONNECTED)
        << "the interceptor kept the object alive";
    UINT count = 0;
    EXPECT_EQ(byName->GetTypeInfoCount(&count), CO_E_OBJNOTCONNECTED);
}

TEST_P(InterceptorLinkTest, IsRegisteredAgainAtASecondCreateAsTheSame) {
    const auto object = Created();
    const auto first = Kept();
    generic.object->Set(kRegister, false);
    EXPECT_EQ(object->Create(), S_OK);
    EXPECT_EQ(Kept().Get(), first.Get());
}

INSTANTIATE_TEST_SUITE_P(KeptAs, InterceptorLinkTest,
                         testing::Values(Keeping{"TheInterceptor", &__uuidof(IAttributeInterceptor)},
                                         Keeping{"Dispatch", &IID_IDispatch}),
                         [](const auto& one) { return std::string(one.param.title); });

class InterceptorLinkTypeTest : public InternalTest {};

TEST_F(InterceptorLinkTypeTest, IsThatOfTheObjectsInterface) {
    const auto object = Created();
    const auto interceptor = Interceptor();
    UINT count = 0;
    EXPECT_EQ(interceptor->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1u);
    com::Ref<ITypeInfo> info;
    EXPECT_EQ(interceptor->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Put()), S_OK);
    ASSERT_TRUE(info);
    com::Bstr name;
    EXPECT_EQ(info->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(name.View(), L"IAttributeInterceptor");
}

} // namespace

} // namespace internal_tests
