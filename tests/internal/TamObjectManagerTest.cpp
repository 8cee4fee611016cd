#include "com/LateBound.h"
#include "tests/internal/Channel.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace internal_tests {

namespace {

using Texts = std::vector<std::wstring>;

class TamObjectManagerTest : public InternalTest {
  protected:
    static bool IsInternal(const com::Ref<ITamObjectManager>& manager, const std::wstring& identifier) {
        VARIANT_BOOL answer = VARIANT_FALSE;
        com::Check(manager->IsTamInternalObject(com::Bstr(identifier).Get(), &answer));
        return answer != VARIANT_FALSE;
    }
    static bool IsModule(const com::Ref<ITamObjectManager>& manager, const std::wstring& identifier) {
        VARIANT_BOOL answer = VARIANT_FALSE;
        com::Check(manager->IsTamObject(com::Bstr(identifier).Get(), &answer));
        return answer != VARIANT_FALSE;
    }
    static com::Ref<IAppObject> Template(const com::Ref<ITamObjectManager>& manager) {
        com::Ref<IAppObject> object;
        com::Check(manager->CreateTemplateTamInternalObject(object.Put()));
        return object;
    }
    com::Ref<IAppObject> Channel(const com::Ref<ITamObjectManager>& manager) {
        com::Bstr key(L"AI3");
        com::Ref<IAppObject> object;
        com::Check(manager->CreateTamInternalAppObject(key.Address(), Device().Get(), object.Put()));
        return object;
    }
    /// A manager of a device whose library has this content.
    com::Ref<ITamObjectManager> WithLibrary(const std::wstring& content) {
        SetDocument(L"<Device><FWVersion><V12><Objects><Library>" + content +
                    L"</Library></Objects></V12></FWVersion></Device>");
        return NewManager();
    }
    void SetDocument(const std::wstring& xml) { context->Set(L"Document", support::Parse(xml).Get()); }
    com::Ref<ITamObjectManager> WithoutInit() {
        return Dll().Create<ITamObjectManager>(__uuidof(::TamObjectManager));
    }
};

TEST_F(TamObjectManagerTest, TellsTheModuleObjectInAnyLetterCaseBeforeInit) {
    const auto manager = WithoutInit();
    EXPECT_TRUE(IsModule(manager, L"o_tam_id"));
    EXPECT_TRUE(IsModule(manager, L"O_TAM_ID"));
    EXPECT_TRUE(IsModule(manager, L"O_Tam_id"));
}

TEST_F(TamObjectManagerTest, TellsNothingElseForTheModuleObject) {
    const auto manager = WithoutInit();
    for (const wchar_t* identifier : {L"", L"o_tam_ai_id", L"o_tam_ao_id", L"o_tam_di_id", L"o_tam_do_id",
                                      L"o_inpcntx_id", L"o_tam_id ", L" o_tam_id", L"o_tam"}) {
        EXPECT_FALSE(IsModule(manager, identifier)) << com::Bstr(identifier).Get();
    }
    VARIANT_BOOL answer = VARIANT_TRUE;
    EXPECT_EQ(manager->IsTamObject(nullptr, &answer), S_OK);
    EXPECT_EQ(answer, VARIANT_FALSE);
}

TEST_F(TamObjectManagerTest, DoesNotSearchTheLibraryForTheModuleObject) {
    const auto manager = WithLibrary(L"");
    EXPECT_TRUE(IsModule(manager, L"O_TAM_ID"));
    EXPECT_EQ(Said(), Texts());
}

TEST_F(TamObjectManagerTest, TellsTheFiveInternalObjectsInAnyLetterCase) {
    const auto manager = NewManager();
    for (const wchar_t* identifier : {L"o_tam_ao_id", L"o_tam_ai_id", L"o_tam_di_id", L"o_tam_do_id",
                                      L"o_inpcntx_id", L"O_INPCNTX_ID", L"O_Tam_AI_id", L"O_TAM_DO_ID"}) {
        EXPECT_TRUE(IsInternal(manager, identifier)) << com::Bstr(identifier).Get();
    }
}

TEST_F(TamObjectManagerTest, TellsNothingElseForAnInternalObject) {
    const auto manager = NewManager();
    for (const wchar_t* identifier :
         {L"o_tam_id", L"O_TAM_ID", L"", L"o_tam_xx_id", L"o_tam_ai_id ", L"inpcntx"}) {
        EXPECT_FALSE(IsInternal(manager, identifier)) << com::Bstr(identifier).Get();
    }
}

TEST_F(TamObjectManagerTest, MakesAChannelObjectWithItsKeyAndDevice) {
    const auto manager = NewManager();
    const auto object = Channel(manager);
    ASSERT_TRUE(object);
    const auto internal = InternalOf(object);
    EXPECT_EQ(support::Text(internal, &ITamInternalAppObject::get_TamInternalObjectKey), L"AI3");
    EXPECT_TRUE(com::SameObject(support::Object(internal, &ITamInternalAppObject::get_TamDevice).Get(),
                                Device().Get()));
}

TEST_F(TamObjectManagerTest, LeavesTheKeyThatItWasGiven) {
    const auto manager = NewManager();
    com::Bstr key(L"DO11");
    com::Ref<IAppObject> object;
    EXPECT_EQ(manager->CreateTamInternalAppObject(key.Address(), Device().Get(), object.Put()), S_OK);
    EXPECT_EQ(key.View(), L"DO11");
}

TEST_F(TamObjectManagerTest, MakesDistinctObjects) {
    const auto manager = NewManager();
    const auto first = Channel(manager);
    const auto second = Channel(manager);
    EXPECT_FALSE(com::SameObject(first.Get(), second.Get()));
}

TEST_F(TamObjectManagerTest, MakesATemplateThatIsNotSetUp) {
    const auto object = Template(NewManager());
    ASSERT_TRUE(object);
    const auto internal = InternalOf(object);
    EXPECT_EQ(support::Text(internal, &ITamInternalAppObject::get_TamInternalObjectKey), L"");
    EXPECT_FALSE(support::Object(internal, &ITamInternalAppObject::get_TamDevice));
    EXPECT_EQ(support::Text(object, &IAppObject::get_UniqueIDString), L"O_TAM_AI_ID");
}

TEST_F(TamObjectManagerTest, GivesNothingWhereTheLibraryLacksTheModuleObject) {
    const auto manager =
        WithLibrary(L"<o_tam_ai_id/><o_tam_ao_id/><o_tam_di_id/><o_tam_do_id/><o_inpcntx_id/>");
    EXPECT_FALSE(IsInternal(manager, L"o_tam_ai_id"));
    EXPECT_FALSE(Channel(manager));
    EXPECT_FALSE(Template(manager));
    EXPECT_TRUE(IsModule(manager, L"o_tam_id"));
}

TEST_F(TamObjectManagerTest, GivesNothingForAnEmptyLibrary) {
    const auto manager = WithLibrary(L"");
    EXPECT_FALSE(Channel(manager));
    EXPECT_FALSE(Template(manager));
    EXPECT_FALSE(IsInternal(manager, L"o_tam_ai_id"));
}

TEST_F(TamObjectManagerTest, FindsTheModuleObjectInMixedCaseAfterOthers) {
    EXPECT_TRUE(IsInternal(WithLibrary(L"<Other/><O_TaM_iD/><More/>"), L"o_tam_ai_id"));
}

TEST_F(TamObjectManagerTest, PassesOverCommentsAndTexts) {
    EXPECT_TRUE(IsInternal(WithLibrary(L"<!--o_tam_id-->o_tam_id<?o_tam_id x?><o_tam_id/>"), L"o_tam_ai_id"));
    EXPECT_FALSE(IsInternal(WithLibrary(L"<!--o_tam_id-->o_tam_id<?o_tam_id x?>"), L"o_tam_ai_id"));
}

TEST_F(TamObjectManagerTest, LooksAtTheChildrenOfTheLibraryAlone) {
    EXPECT_FALSE(IsInternal(WithLibrary(L"<Folder><o_tam_id/></Folder>"), L"o_tam_ai_id"));
}

TEST_F(TamObjectManagerTest, LooksAtTheCurrentFirmwareVersionAlone) {
    SetDocument(L"<Device><FWVersion><V11><Objects><Library><o_tam_id/></Library></Objects></V11>"
                L"<V12><Objects><Library><other/></Library></Objects></V12></FWVersion></Device>");
    EXPECT_FALSE(IsInternal(NewManager(), L"o_tam_ai_id"));
    context->Set(L"FirmwareVersion", L"V11");
    EXPECT_TRUE(IsInternal(NewManager(), L"o_tam_ai_id"));
}

TEST_F(TamObjectManagerTest, SearchesAtMostOnceWhenItFound) {
    const auto manager = NewManager();
    EXPECT_EQ(Said(), Texts()) << "Init searches nothing";
    EXPECT_TRUE(IsInternal(manager, L"o_tam_ai_id"));
    EXPECT_EQ(Said(L"context"), (Texts{L"context.get Document()", L"context.get FirmwareVersion()"}));
    SetDocument(L"<Device/>");
    EXPECT_TRUE(IsInternal(manager, L"o_tam_ai_id"));
    EXPECT_TRUE(Template(manager));
    EXPECT_TRUE(Channel(manager));
    EXPECT_EQ(Said(L"context").size(), 2u);
}

TEST_F(TamObjectManagerTest, NeverRetriesWhenItFoundNothing) {
    const auto manager = WithLibrary(L"");
    EXPECT_FALSE(IsInternal(manager, L"o_tam_ai_id"));
    const std::size_t asked = Calls().size();
    SetDocument(L"<Device><FWVersion><V12><Objects><Library><o_tam_id/></Library></Objects></V12></"
                L"FWVersion></Device>");
    EXPECT_FALSE(IsInternal(manager, L"o_tam_ai_id"));
    EXPECT_FALSE(Template(manager));
    EXPECT_FALSE(Channel(manager));
    EXPECT_EQ(Calls().size(), asked);
}

TEST_F(TamObjectManagerTest, DoesNotSearchAgainForALaterDevice) {
    const auto manager = WithLibrary(L"");
    EXPECT_FALSE(IsInternal(manager, L"o_tam_ai_id"));
    const auto other = Recorder::Make(L"other context", {&__uuidof(IDeviceContext)});
    EXPECT_EQ(manager->Init(other->As<IDispatch>().Get()), S_OK);
    EXPECT_FALSE(IsInternal(manager, L"o_tam_ai_id"));
    EXPECT_EQ(Said(L"other context"), Texts());
}

TEST_F(TamObjectManagerTest, TakesTheDeviceOfTheLastInitBeforeTheSearch) {
    const auto manager = WithLibrary(L"");
    const auto other = Recorder::Make(L"other context", {&__uuidof(IDeviceContext)});
    other->Set(L"FirmwareVersion", L"A");
    other->Set(L"Document",
               support::Parse(L"<Device><FWVersion><A><Objects><Library><o_tam_id/></Library></Objects>"
                              L"</A></FWVersion></Device>")
                   .Get());
    EXPECT_EQ(manager->Init(other->As<IDispatch>().Get()), S_OK);
    EXPECT_TRUE(IsInternal(manager, L"o_tam_ai_id"));
    EXPECT_EQ(Said(L"context"), Texts());
}

TEST_F(TamObjectManagerTest, SearchesOncePerManager) {
    const auto first = WithLibrary(L"");
    EXPECT_FALSE(IsInternal(first, L"o_tam_ai_id"));
    const auto second = WithLibrary(L"<o_tam_id/>");
    EXPECT_TRUE(IsInternal(second, L"o_tam_ai_id"));
    EXPECT_FALSE(IsInternal(first, L"o_tam_ai_id"));
}

TEST_F(TamObjectManagerTest, RaisesForAMissingLibraryOnceAndAnswersFalseFromThenOn) {
    SetDocument(L"<Device><FWVersion><V12/></FWVersion></Device>");
    const auto manager = NewManager();
    VARIANT_BOOL answer = VARIANT_TRUE;
    ExpectRaised(manager->IsTamInternalObject(com::Bstr(L"o_tam_ai_id").Get(), &answer), kObjectNotSet);
    EXPECT_EQ(answer, VARIANT_FALSE);
    const std::size_t asked = Calls().size();
    EXPECT_FALSE(IsInternal(manager, L"o_tam_ai_id"));
    EXPECT_FALSE(Template(manager));
    EXPECT_FALSE(Channel(manager));
    EXPECT_EQ(Calls().size(), asked);
}

TEST_F(TamObjectManagerTest, PassesTheErrorOfTheDeviceContextBackAndSearchesNoMore) {
    constexpr auto kCode = static_cast<HRESULT>(0x80045678u);
    for (const wchar_t* member : {L"get Document", L"get FirmwareVersion"}) {
        context->FailNoMore();
        const auto manager = NewManager();
        context->Fail(member, kCode, L"no line to the device");
        com::Ref<IAppObject> object;
        ExpectPassedBack(manager->CreateTemplateTamInternalObject(object.Put()), kCode,
                         L"no line to the device");
        EXPECT_FALSE(object);
        context->FailNoMore();
        EXPECT_FALSE(Template(manager));
        EXPECT_FALSE(IsInternal(manager, L"o_tam_ai_id"));
    }
}

TEST_F(TamObjectManagerTest, PassesTheErrorOfAMissingGenericClassBack) {
    Unregister(kGenericProgId);
    com::Ref<IAppObject> object;
    EXPECT_EQ(NewManager()->CreateTemplateTamInternalObject(object.Put()), CO_E_CLASSSTRING);
    EXPECT_EQ(support::LastError().description,
              std::wstring(kGenericProgId) + L" is not registered: no class has this name");
    EXPECT_FALSE(object);
}

TEST_F(TamObjectManagerTest, PassesTheErrorOfAMissingLibraryServiceBack) {
    Unregister(kLibraryProgId);
    com::Ref<IAppObject> object;
    EXPECT_EQ(NewManager()->CreateTemplateTamInternalObject(object.Put()), CO_E_CLASSSTRING);
    EXPECT_EQ(support::LastError().description,
              std::wstring(kLibraryProgId) + L" is not registered: no class has this name");
    EXPECT_FALSE(object);
}

TEST_F(TamObjectManagerTest, WantsAPlaceForEachResult) {
    const auto manager = NewManager();
    com::Bstr key(L"AI3");
    EXPECT_EQ(manager->IsTamInternalObject(key.Get(), nullptr), E_POINTER);
    EXPECT_EQ(manager->IsTamObject(key.Get(), nullptr), E_POINTER);
    EXPECT_EQ(manager->CreateTamInternalAppObject(key.Address(), Device().Get(), nullptr), E_POINTER);
    EXPECT_EQ(manager->CreateTemplateTamInternalObject(nullptr), E_POINTER);
    EXPECT_EQ(Said(), Texts());
}

TEST_F(TamObjectManagerTest, WantsAPlaceForTheKey) {
    const auto manager = NewManager();
    support::LeaveError(L"an earlier call's");
    int left = 0;
    auto* object = reinterpret_cast<IAppObject*>(&left); // by the caller
    EXPECT_EQ(manager->CreateTamInternalAppObject(nullptr, Device().Get(), &object), E_POINTER);
    EXPECT_FALSE(support::HasLastError()) << "a refusal has no error object";
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(Said(), Texts()) << "nothing is searched for";
}

TEST_F(TamObjectManagerTest, WorksByName) {
    const auto manager = WithoutInit();
    const com::Variant with(context->As<IDispatch>().Get());
    VARIANT arguments[2] = {with.Get(), {}};
    com::CallMember(*manager.Get(), L"Init", std::span(arguments, 1));

    const com::Variant identifier(L"O_TAM_AO_ID");
    arguments[0] = identifier.Get();
    EXPECT_EQ(Print(com::CallMember(*manager.Get(), L"IsTamInternalObject", std::span(arguments, 1)).Get()),
              L"True");
    EXPECT_EQ(Print(com::CallMember(*manager.Get(), L"istamobject", std::span(arguments, 1)).Get()),
              L"False");

    com::Bstr key(L"AO1");
    const com::Variant ofDevice(Device().Get());
    arguments[0] = com::ByReference(key);
    arguments[1] = ofDevice.Get();
    const com::Variant made =
        com::CallMember(*manager.Get(), L"CreateTamInternalAppObject", std::span(arguments, 2));
    ASSERT_EQ(made.Get().vt, VT_DISPATCH);
    EXPECT_EQ(Print(com::GetMember(*made.Get().pdispVal, L"TamInternalObjectKey").Get()), L"\"AO1\"");

    const com::Variant plain = com::GetMember(*manager.Get(), L"CreateTemplateTamInternalObject");
    ASSERT_EQ(plain.Get().vt, VT_DISPATCH);
    EXPECT_EQ(Print(com::GetMember(*plain.Get().pdispVal, L"TamInternalObjectKey").Get()), L"\"\"");
}

} // namespace

} // namespace internal_tests
