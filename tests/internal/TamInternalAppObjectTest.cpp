#include "com/LateBound.h"
#include "tests/internal/Channel.h"

#include <string>
#include <vector>

namespace internal_tests {

namespace {

using Texts = std::vector<std::wstring>;

class TamInternalAppObjectTest : public InternalTest {
  protected:
    com::Ref<IAppObject> Fresh() { return NewChannel(L"AI3", Device().Get()); }
};

TEST_F(TamInternalAppObjectTest, TakesTheGenericObjectWhenItIsMadeAndAsksItNothing) {
    const auto object = Fresh();
    EXPECT_EQ(Said(L"generic"), Texts());
    EXPECT_EQ(Said(L"library service"), Texts());
    EXPECT_EQ(Said(L"device"), Texts());
}

TEST_F(TamInternalAppObjectTest, HasNoCollectionsBeforeCreate) {
    const auto object = Fresh();
    EXPECT_FALSE(support::Object(object, &IAppObject::get_Inputs));
    EXPECT_FALSE(support::Object(object, &IAppObject::get_Outputs));
    EXPECT_FALSE(support::Object(object, &IAppObject::get_Attributes));
}

TEST_F(TamInternalAppObjectTest, RegistersAsInterceptorThenCreatesTheGenericObjectThenWraps) {
    const auto object = Fresh();
    Calls().clear();
    EXPECT_EQ(object->Create(), S_OK);
    const Texts said = Said(L"generic");
    ASSERT_GE(said.size(), 6u);
    EXPECT_EQ(
        Texts(said.begin(), said.begin() + 6),
        (Texts{L"generic.RegisterInterceptor(object)", L"generic.Create()", L"generic.get Inputs()",
               L"generic.get Outputs()", L"generic.get Attributes()", L"generic.get UniqueIDString()"}));
}

TEST_F(TamInternalAppObjectTest, FetchesItsDefinitionByItsUniqueIdString) {
    const auto object = Fresh();
    Calls().clear();
    EXPECT_EQ(object->Create(), S_OK);
    EXPECT_EQ(Said(L"library service"), Texts{L"library service.get Library()"});
    EXPECT_EQ(Said(L"library"), Texts{L"library.DefinitionDocument(\"O_TAM_AI_ID\")"});
}

TEST_F(TamInternalAppObjectTest, ShowsCollectionsOfItsOwn) {
    const auto object = Created();
    const auto inputs = support::Object(object, &IAppObject::get_Inputs);
    const auto outputs = support::Object(object, &IAppObject::get_Outputs);
    const auto attributes = support::Object(object, &IAppObject::get_Attributes);
    EXPECT_EQ(Calls().size(), 0u) << "the generic object's collections are not asked for again";
    EXPECT_EQ(RecorderOf(inputs.Get()), nullptr);
    EXPECT_EQ(RecorderOf(outputs.Get()), nullptr);
    EXPECT_EQ(RecorderOf(attributes.Get()), nullptr);
    EXPECT_TRUE(com::SameObject(inputs.Get(), support::Object(object, &IAppObject::get_Inputs).Get()));
    EXPECT_TRUE(com::SameObject(outputs.Get(), support::Object(object, &IAppObject::get_Outputs).Get()));
    EXPECT_TRUE(
        com::SameObject(attributes.Get(), support::Object(object, &IAppObject::get_Attributes).Get()));
}

TEST_F(TamInternalAppObjectTest, AnswersFixedValuesWithoutAskingTheGenericObject) {
    const auto object = Created();
    EXPECT_EQ(support::Long(object, &IAppObject::get_CDBDimension), 0);
    EXPECT_EQ(support::Long(object, &IAppObject::get_DDBDimension), 0);
    EXPECT_EQ(support::Long(object, &IAppObject::get_SDBDimension), 0);
    EXPECT_EQ(support::Short(object, &IAppObject::get_NumObjects), 0);
    EXPECT_EQ(support::Text(object, &IAppObject::get_Stream), L"");
    EXPECT_FALSE(support::Flag(object, &IAppObject::get_IsHidden));
    EXPECT_TRUE(support::Flag(object, &IAppObject::get_IsVirtual));
    EXPECT_EQ(Said(), Texts());
}

TEST_F(TamInternalAppObjectTest, AnswersAnEmptyStreamAfterOneWasGiven) {
    const auto object = Created();
    EXPECT_EQ(support::Put(object, &IAppObject::put_Stream, L"data"), S_OK);
    EXPECT_EQ(generic.object->Value(L"Stream"), L"\"data\"");
    EXPECT_EQ(support::Text(object, &IAppObject::get_Stream), L"");
}

TEST_F(TamInternalAppObjectTest, ReadsTheExportIndexOfItsContainer) {
    const auto object = Created();
    container.object->Set(L"ExportIndex", 12L);
    generic.object->Set(L"ExportIndex", 5L);
    EXPECT_EQ(support::Short(object, &IAppObject::get_ExportIndex), 12);
    EXPECT_EQ(Said(), (Texts{L"device.Container(object)", L"container.get ExportIndex()"}));
}

TEST_F(TamInternalAppObjectTest, WritesTheExportIndexToTheGenericObject) {
    const auto object = Created();
    EXPECT_EQ(object->put_ExportIndex(7), S_OK);
    EXPECT_EQ(Said(), Texts{L"generic.put ExportIndex(7)"});
}

TEST_F(TamInternalAppObjectTest, TellsTheKeyThatTheDeviceReports) {
    const auto internal = InternalOf(Created());
    EXPECT_EQ(support::Text(internal, &ITamInternalAppObject::get_TamDeviceKey), L"DEV7");
    device->Set(L"DeviceKey", L"DEV8");
    EXPECT_EQ(support::Text(internal, &ITamInternalAppObject::get_TamDeviceKey), L"DEV8");
}

TEST_F(TamInternalAppObjectTest, AsksTheDeviceForItsContainerAsAnInternalObject) {
    const auto internal = InternalOf(Created());
    bool wasThis = false;
    device->On(L"Container", [&](const Invocation& call) {
        wasThis = call.Input(0).pdispVal == internal.Get();
        return call.Answer(container.object->As<IUnknown>().Get());
    });
    const auto found = support::Object(internal, &ITamInternalAppObject::get_TamObjectContainer);
    EXPECT_EQ(RecorderOf(found.Get()), container.object.Get());
    EXPECT_TRUE(wasThis);
}

TEST_F(TamInternalAppObjectTest, HasNoDeviceKeyAndNoContainerWithoutADevice) {
    const auto internal = InternalOf(CreatedWithoutDevice());
    EXPECT_EQ(support::Text(internal, &ITamInternalAppObject::get_TamDeviceKey), L"");
    EXPECT_FALSE(support::Object(internal, &ITamInternalAppObject::get_TamObjectContainer));
    EXPECT_FALSE(support::Object(internal, &ITamInternalAppObject::get_TamDevice));
    EXPECT_EQ(support::Text(internal, &ITamInternalAppObject::get_TamInternalObjectKey), L"AI3");
}

TEST_F(TamInternalAppObjectTest, HasNoContainerWhereTheDeviceReportsNone) {
    const auto internal = InternalOf(Created());
    device->On(L"Container", [](const Invocation& call) { return call.Answer(nullptr); });
    EXPECT_FALSE(support::Object(internal, &ITamInternalAppObject::get_TamObjectContainer));
}

TEST_F(TamInternalAppObjectTest, NeedsAContainerForItsExportIndex) {
    const auto object = Created();
    device->On(L"Container", [](const Invocation& call) { return call.Answer(nullptr); });
    short index = 3;
    ExpectRaised(object->get_ExportIndex(&index), kObjectNotSet);
    EXPECT_EQ(index, 0);
    const auto alone = CreatedWithoutDevice();
    ExpectRaised(alone->get_ExportIndex(&index), kObjectNotSet);
}

TEST_F(TamInternalAppObjectTest, KeepsTheTemporaryKeysForTheHost) {
    const auto internal = InternalOf(Created());
    EXPECT_EQ(support::Text(internal, &ITamInternalAppObject::get_TempTamDeviceKey), L"");
    EXPECT_EQ(support::Text(internal, &ITamInternalAppObject::get_TempTamInternalObjectKey), L"");
    EXPECT_EQ(support::Put(internal, &ITamInternalAppObject::put_TempTamDeviceKey, L"TD"), S_OK);
    EXPECT_EQ(support::Put(internal, &ITamInternalAppObject::put_TempTamInternalObjectKey, L"TK"), S_OK);
    EXPECT_EQ(support::Text(internal, &ITamInternalAppObject::get_TempTamDeviceKey), L"TD");
    EXPECT_EQ(support::Text(internal, &ITamInternalAppObject::get_TempTamInternalObjectKey), L"TK");
    EXPECT_EQ(support::Text(internal, &ITamInternalAppObject::get_TamDeviceKey), L"DEV7");
    EXPECT_EQ(support::Text(internal, &ITamInternalAppObject::get_TamInternalObjectKey), L"AI3");
    EXPECT_EQ(internal->put_TempTamDeviceKey(nullptr), S_OK);
    EXPECT_EQ(support::Text(internal, &ITamInternalAppObject::get_TempTamDeviceKey), L"");
}

TEST_F(TamInternalAppObjectTest, KeepsTheStatus) {
    const auto internal = InternalOf(Created());
    EXPECT_EQ(support::Long(internal, &ITamInternalAppObject::get_Status), 0);
    for (const long status : {1L, 2L, -1L, 2147483647L}) {
        EXPECT_EQ(internal->put_Status(status), S_OK);
        EXPECT_EQ(support::Long(internal, &ITamInternalAppObject::get_Status), status);
    }
    EXPECT_EQ(Said(), Texts());
}

TEST_F(TamInternalAppObjectTest, WantsAPlaceForEachResultOfItsOwn) {
    const auto object = Created();
    const auto internal = InternalOf(object);
    EXPECT_EQ(object->get_CDBDimension(nullptr), E_POINTER);
    EXPECT_EQ(object->get_DDBDimension(nullptr), E_POINTER);
    EXPECT_EQ(object->get_SDBDimension(nullptr), E_POINTER);
    EXPECT_EQ(object->get_NumObjects(nullptr), E_POINTER);
    EXPECT_EQ(object->get_Stream(nullptr), E_POINTER);
    EXPECT_EQ(object->get_Inputs(nullptr), E_POINTER);
    EXPECT_EQ(object->get_Outputs(nullptr), E_POINTER);
    EXPECT_EQ(object->get_Attributes(nullptr), E_POINTER);
    EXPECT_EQ(object->get_ExportIndex(nullptr), E_POINTER);
    EXPECT_EQ(object->get_IsHidden(nullptr), E_POINTER);
    EXPECT_EQ(object->get_IsVirtual(nullptr), E_POINTER);
    EXPECT_EQ(internal->get_TamDeviceKey(nullptr), E_POINTER);
    EXPECT_EQ(internal->get_TamInternalObjectKey(nullptr), E_POINTER);
    EXPECT_EQ(internal->get_TamObjectContainer(nullptr), E_POINTER);
    EXPECT_EQ(internal->get_TempTamDeviceKey(nullptr), E_POINTER);
    EXPECT_EQ(internal->get_TempTamInternalObjectKey(nullptr), E_POINTER);
    EXPECT_EQ(internal->get_TamDevice(nullptr), E_POINTER);
    EXPECT_EQ(internal->get_Status(nullptr), E_POINTER);
    EXPECT_EQ(Said(), Texts());
}

TEST_F(TamInternalAppObjectTest, PassesErrorsOfTheDeviceBackUnchanged) {
    constexpr auto kCode = static_cast<HRESULT>(0x80041111u);
    const auto object = Created();
    const auto internal = InternalOf(object);
    device->Fail(L"", kCode, L"the device is away");
    com::Bstr text;
    ExpectPassedBack(internal->get_TamDeviceKey(text.Put()), kCode, L"the device is away");
    EXPECT_EQ(text.Get(), nullptr);
    com::Ref<IDispatch> found;
    ExpectPassedBack(internal->get_TamObjectContainer(found.Put()), kCode, L"the device is away");
    short index = 9;
    ExpectPassedBack(object->get_ExportIndex(&index), kCode, L"the device is away");
    EXPECT_EQ(index, 0);
    device->FailNoMore();
    container.object->Fail(L"get ExportIndex", kCode, L"no export yet");
    ExpectPassedBack(object->get_ExportIndex(&index), kCode, L"no export yet");
}

TEST_F(TamInternalAppObjectTest, PassesEachErrorOfItsCreationBackUnchanged) {
    constexpr auto kCode = static_cast<HRESULT>(0x80042222u);
    const struct {
        Double at;
        const wchar_t* member;
    } steps[] = {{generic.object, L"RegisterInterceptor"},
                 {generic.object, L"Create"},
                 {generic.object, L"get Inputs"},
                 {generic.object, L"get Outputs"},
                 {generic.object, L"get Attributes"},
                 {generic.object, L"get UniqueIDString"},
                 {generic.inputs, L"get NewEnum"},
                 {generic.outputs, L"get NewEnum"},
                 {generic.attributes, L"get NewEnum"},
                 {in2, L"get Name"},
                 {alarm, L"get Name"},
                 {setup, L"get Name"},
                 {libraryService, L"get Library"},
                 {library, L"DefinitionDocument"}};
    for (const auto& step : steps) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(step.member)));
        const auto object = Fresh();
        step.at->Fail(step.member, kCode, L"the callee's words");
        ExpectPassedBack(object->Create(), kCode, L"the callee's words");
        step.at->FailNoMore();
    }
}

TEST_F(TamInternalAppObjectTest, DoesNotCreateTheGenericObjectWhenItCannotRegister) {
    const auto object = Fresh();
    Calls().clear();
    generic.object->Fail(L"RegisterInterceptor", E_FAIL);
    EXPECT_EQ(object->Create(), E_FAIL);
    EXPECT_EQ(Said(L"generic"), Texts{L"generic.RegisterInterceptor(object)"});
}

TEST_F(TamInternalAppObjectTest, RefusesAGenericObjectWithTwoPointsOfOneName) {
    const struct {
        Double point;
        const wchar_t* before;
        const wchar_t* twin;
    } cases[] = {{in2, L"In2", L"IN1"}, {alarm, L"Alarm", L"OUT"}, {setup, L"Setup", L"gain"}};
    for (const auto& one : cases) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(one.twin)));
        one.point->Set(L"Name", one.twin);
        ExpectRaised(Fresh()->Create(), kDuplicateKey);
        one.point->Set(L"Name", one.before);
    }
    EXPECT_EQ(Fresh()->Create(), S_OK);
}

TEST_F(TamInternalAppObjectTest, RaisesWhereTheLibraryHasNoDefinition) {
    const auto object = Fresh();
    library->On(L"DefinitionDocument", [](const Invocation& call) { return call.Answer(nullptr); });
    ExpectRaised(object->Create(), kObjectNotSet);
}

TEST_F(TamInternalAppObjectTest, WrapsTheGenericObjectAgainAtASecondCreate) {
    const auto object = Created();
    const auto before = support::Object(object, &IAppObject::get_Inputs);
    generic.Fill(L"generic", {in2}, {}, {});
    EXPECT_EQ(object->Create(), S_OK);
    const auto after = support::Object(object, &IAppObject::get_Inputs);
    EXPECT_FALSE(com::SameObject(before.Get(), after.Get()));
    EXPECT_FALSE(InputOf(object, L"In1"));
    EXPECT_TRUE(InputOf(object, L"In2"));
}

TEST_F(TamInternalAppObjectTest, KeepsItsThreeCollectionsWhenASecondCreateFails) {
    const auto object = Created();
    const auto inputs = support::Object(object, &IAppObject::get_Inputs);
    const auto outputs = support::Object(object, &IAppObject::get_Outputs);
    const auto attributes = support::Object(object, &IAppObject::get_Attributes);
    const struct {
        Double at;
        const wchar_t* member;
    } steps[] = {{generic.object, L"get Inputs"},
                 {generic.inputs, L"get NewEnum"},
                 {generic.object, L"get Outputs"},
                 {generic.outputs, L"get NewEnum"},
                 {alarm, L"get Name"},
                 {generic.object, L"get Attributes"},
                 {generic.attributes, L"get NewEnum"},
                 {setup, L"get Name"}};
    for (const auto& step : steps) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(step.member)));
        step.at->Fail(step.member, E_FAIL);
        EXPECT_EQ(object->Create(), E_FAIL);
        step.at->FailNoMore();
        EXPECT_TRUE(com::SameObject(support::Object(object, &IAppObject::get_Inputs).Get(), inputs.Get()));
        EXPECT_TRUE(com::SameObject(support::Object(object, &IAppObject::get_Outputs).Get(), outputs.Get()));
        EXPECT_TRUE(
            com::SameObject(support::Object(object, &IAppObject::get_Attributes).Get(), attributes.Get()));
    }
}

TEST_F(TamInternalAppObjectTest, StaysUsableAfterDestroyWhichIsForwarded) {
    const auto object = Created();
    EXPECT_EQ(object->Destroy(), S_OK);
    EXPECT_EQ(Said(), Texts{L"generic.Destroy()"});
    EXPECT_TRUE(InputOf(object, L"In1"));
}

TEST_F(TamInternalAppObjectTest, IsReachedByNameThroughItsDefaultInterface) {
    const auto object = Created();
    IDispatch& script = *object.Get();
    EXPECT_EQ(Print(com::GetMember(script, L"NumObjects").Get()), L"0");
    EXPECT_EQ(Print(com::GetMember(script, L"IsVirtual").Get()), L"True");
    EXPECT_EQ(Print(com::GetMember(script, L"Stream").Get()), L"\"\"");
    EXPECT_EQ(Print(com::GetMember(script, L"TamDeviceKey").Get()), L"\"DEV7\"");
    EXPECT_EQ(Print(com::GetMember(script, L"TamInternalObjectKey").Get()), L"\"AI3\"");
    EXPECT_EQ(Print(com::GetMember(script, L"TamObjectContainer").Get()), L"container");
    EXPECT_EQ(Print(com::GetMember(script, L"TamDevice").Get()), L"device");
    com::PutMember(script, L"Status", com::Variant(2L).Get());
    EXPECT_EQ(Print(com::GetMember(script, L"status").Get()), L"2");
    com::PutMember(script, L"TempTamDeviceKey", com::Variant(L"T").Get());
    EXPECT_EQ(Print(com::GetMember(script, L"TempTamDeviceKey").Get()), L"\"T\"");
    com::PutMember(script, L"TempTamInternalObjectKey", com::Variant(L"U").Get());
    EXPECT_EQ(Print(com::GetMember(script, L"TempTamInternalObjectKey").Get()), L"\"U\"");
    container.object->Set(L"ExportIndex", 4L);
    EXPECT_EQ(Print(com::GetMember(script, L"ExportIndex").Get()), L"4");
    for (const wchar_t* collection : {L"Inputs", L"Outputs", L"Attributes"}) {
        const com::Variant found = com::GetMember(script, collection);
        ASSERT_EQ(found.Get().vt, VT_DISPATCH);
        EXPECT_EQ(RecorderOf(found.Get().pdispVal), nullptr);
    }
    com::CallMember(script, L"Create", {});
}

} // namespace

} // namespace internal_tests
