#include "tests/internal/Channel.h"

#include "com/Enumerator.h"

#include <algorithm>
#include <cwchar>
#include <ios>
#include <utility>

namespace internal_tests {

namespace {

constexpr CLSID kGenericClass = {
    0x2F0C8A11, 0x7C1E, 0x4E0A, {0x9E, 0x55, 0x31, 0x0B, 0x6A, 0x44, 0x90, 0x01}};
constexpr CLSID kLibraryClass = {
    0x2F0C8A12, 0x7C1E, 0x4E0A, {0x9E, 0x55, 0x31, 0x0B, 0x6A, 0x44, 0x90, 0x01}};

Double Named(const std::wstring& name, const std::wstring& label, std::initializer_list<const IID*> faces) {
    Double point = Recorder::Make(label, faces);
    point->Set(L"Name", name);
    return point;
}

bool SameName(const Double& item, const std::wstring& name) {
    const std::wstring printed = item->Value(L"Name");
    return _wcsicmp(printed.c_str(), (L"\"" + name + L"\"").c_str()) == 0;
}

Double Find(const Doubles& items, const std::wstring& index) {
    const auto found =
        std::find_if(items.begin(), items.end(), [&](const Double& item) { return SameName(item, index); });
    if (found != items.end()) {
        return *found;
    }
    const long position = std::wcstol(index.c_str(), nullptr, 10);
    const bool isInRange = position >= 1 && static_cast<std::size_t>(position) <= items.size();
    return isInRange ? items[static_cast<std::size_t>(position) - 1] : Double();
}

com::Ref<IUnknown> Enumerator(const Doubles& items) {
    std::vector<com::Ref<IDispatch>> objects;
    for (const Double& item : items) {
        objects.push_back(item->As<IDispatch>());
    }
    return com::MakeEnumerator(std::move(objects));
}

void ExpectDone(HRESULT result) {
    EXPECT_EQ(result, S_OK) << std::hex << result << " " << com::Bstr(support::LastError().description).Get()
                            << testing::PrintToString(Said());
}

support::HostClass::Create Gives(const Double& object) {
    return [object](REFIID iid, void** out) { return object->QueryInterface(iid, out); };
}

} // namespace

Double NewInput(const std::wstring& name, const std::wstring& label) {
    return Named(name, label, {&__uuidof(IInput), &__uuidof(ISubItemConnable), &__uuidof(IVisibleItem)});
}

Double NewOutput(const std::wstring& name, const std::wstring& label) {
    Double point = Named(
        name, label,
        {&__uuidof(IOutput), &__uuidof(ISubItemConnable), &__uuidof(IDisplayItem), &__uuidof(IVisibleItem)});
    point->Set(L"IsConnected", false);
    return point;
}

Double NewAttribute(const std::wstring& name, const std::wstring& label) {
    return Named(name, label,
                 {&__uuidof(IAttribute), &__uuidof(IMutableTypeAttribute), &__uuidof(IVisibleItem)});
}

Double NewCollection(REFIID iid, const std::wstring& label, const Doubles& items) {
    Double collection = Recorder::Make(label, {&iid});
    collection->Set(L"Count", static_cast<long>(items.size()));
    collection->On(L"get Item", [items](const Invocation& call) {
        const Double item = Find(items, call.TextInput(0));
        return call.Answer(item);
    });
    collection->On(L"get NewEnum",
                   [items](const Invocation& call) { return call.Answer(Enumerator(items).Get()); });
    return collection;
}

void HostObject::Fill(const std::wstring& label, const Doubles& inputPoints, const Doubles& outputPoints,
                      const Doubles& attributePoints) {
    if (!object) {
        object = Recorder::Make(label, {&__uuidof(IAppObject), &__uuidof(IAttributeInterception)});
    }
    inputs = NewCollection(__uuidof(IInputs), label + L".Inputs", inputPoints);
    outputs = NewCollection(__uuidof(IOutputs), label + L".Outputs", outputPoints);
    attributes = NewCollection(__uuidof(IAttributes), label + L".Attributes", attributePoints);
    object->Set(L"Inputs", inputs);
    object->Set(L"Outputs", outputs);
    object->Set(L"Attributes", attributes);
}

void InternalTest::SetUp() {
    ComponentTest::SetUp();
    doublesBefore_ = com::ThisDll().Objects();
    Calls().clear();
    MakeDoubles();
}

void InternalTest::MakeDoubles() {
    in1 = NewInput(L"In1", L"In1");
    in2 = NewInput(L"In2", L"In2");
    out = NewOutput(L"Out", L"Out");
    alarm = NewOutput(L"Alarm", L"Alarm");
    gain = NewAttribute(L"Gain", L"Gain");
    channelAttribute = NewAttribute(L"Channel", L"Channel");
    setup = NewAttribute(L"Setup", L"Setup");
    generic = {};
    container = {};
    generic.Fill(L"generic", {in1, in2}, {out, alarm}, {gain, channelAttribute, setup});
    generic.object->Set(L"UniqueIDString", L"O_TAM_AI_ID");
    container.Fill(L"container", {}, {}, {});

    channel = Recorder::Make(L"channel", {&__uuidof(IChannel)});
    device = Recorder::Make(L"device", {&__uuidof(IDevice)});
    device->Set(L"DeviceKey", L"DEV7");
    device->On(L"Channel", [this](const Invocation& call) { return call.Answer(channel); });
    device->On(L"Container", [this](const Invocation& call) { return call.Answer(container.object); });

    context = Recorder::Make(L"context", {&__uuidof(IDeviceContext)});
    context->Set(L"FirmwareVersion", L"V12");
    context->Set(
        L"Document",
        support::Parse(L"<Device><FWVersion><V12><Objects><Library><O_Tam_id/></Library></Objects></V12>"
                       L"</FWVersion></Device>")
            .Get());
    library = Recorder::Make(L"library", {&__uuidof(ILibrary)});
    libraryService = Recorder::Make(L"library service", {&__uuidof(ILibraryService)});
    libraryService->Set(L"Library", library);
    SetDefinition(L"<AppObject/>");

    genericClass_.emplace(kGenericClass, kGenericProgId, Gives(generic.object));
    libraryClass_.emplace(kLibraryClass, kLibraryProgId, Gives(libraryService));
}

void InternalTest::TearDown() {
    ForgetDoubles();
    ComponentTest::TearDown();
    EXPECT_EQ(DoublesAlive(), 0) << "a host object is still held, or was released too often";
    Calls().clear();
}

std::vector<Double*> InternalTest::AllDoubles() {
    return {&in1,
            &in2,
            &out,
            &alarm,
            &gain,
            &channelAttribute,
            &setup,
            &generic.object,
            &generic.inputs,
            &generic.outputs,
            &generic.attributes,
            &container.object,
            &container.inputs,
            &container.outputs,
            &container.attributes,
            &device,
            &channel,
            &context,
            &libraryService,
            &library};
}

void InternalTest::ForgetDoubles() {
    genericClass_.reset();
    libraryClass_.reset();
    for (Double* held : AllDoubles()) {
        held->Reset();
    }
}

void InternalTest::ForgetWhatWasPut() {
    for (Double* held : AllDoubles()) {
        (*held)->Forget();
    }
}

void InternalTest::Unregister(const std::wstring& progId) {
    (progId == kGenericProgId ? genericClass_ : libraryClass_).reset();
}

com::Ref<ITamObjectManager> InternalTest::NewManager(const Double& with) {
    auto manager = Dll().Create<ITamObjectManager>(__uuidof(::TamObjectManager));
    EXPECT_EQ(manager->Init(with->As<IDispatch>().Get()), S_OK);
    return manager;
}

com::Ref<IAppObject> InternalTest::NewChannel(const std::wstring& key, IDispatch* ofDevice) {
    com::Ref<IAppObject> object;
    com::Bstr text(key);
    ExpectDone(NewManager()->CreateTamInternalAppObject(text.Address(), ofDevice, object.Put()));
    com::CheckSet(object.Get());
    return object;
}

com::Ref<IAppObject> InternalTest::Created() {
    auto object = NewChannel(L"AI3", Device().Get());
    ExpectDone(object->Create());
    Calls().clear();
    return object;
}

com::Ref<IAppObject> InternalTest::CreatedWithoutDevice() {
    auto object = NewChannel(L"AI3", nullptr);
    ExpectDone(object->Create());
    Calls().clear();
    return object;
}

com::Ref<IAttributeInterceptor> InternalTest::Interceptor() const {
    return generic.object->Kept<IAttributeInterceptor>(L"RegisterInterceptor");
}

void InternalTest::SetDefinition(const std::wstring& xml) {
    const support::Document document = support::Parse(xml);
    library->On(L"DefinitionDocument",
                [document](const Invocation& call) { return call.Answer(document.Get()); });
}

com::Ref<IInput> InputOf(const com::Ref<IAppObject>& object, const std::wstring& name) {
    return support::Item(support::Object(object, &IAppObject::get_Inputs), &IInputs::get_Item, name);
}

com::Ref<IOutput> OutputOf(const com::Ref<IAppObject>& object, const std::wstring& name) {
    return support::Item(support::Object(object, &IAppObject::get_Outputs), &IOutputs::get_Item, name);
}

com::Ref<IAttribute> AttributeOf(const com::Ref<IAppObject>& object, const std::wstring& name) {
    return support::Item(support::Object(object, &IAppObject::get_Attributes), &IAttributes::get_Item, name);
}

void ExpectRaised(HRESULT result, HRESULT code) {
    ExpectRaised(result, code, StandardText(code), L"O_Tam_id");
}

void ExpectRaised(HRESULT result, HRESULT code, const std::wstring& description, const std::wstring& source) {
    EXPECT_EQ(result, code);
    const support::ErrorTexts texts = support::LastError();
    EXPECT_EQ(texts.description, description);
    EXPECT_EQ(texts.source, source);
}

void ExpectPassedBack(HRESULT result, HRESULT code, const std::wstring& description) {
    EXPECT_EQ(result, code);
    const ErrorTexts texts = LastError();
    EXPECT_EQ(texts.description, description);
    EXPECT_EQ(texts.source, L"Double");
    EXPECT_EQ(texts.help, kRecorderHelp);
    EXPECT_EQ(texts.guid, kRecorderIid);
}

void ExpectPassedBackIf(bool fails, HRESULT result, HRESULT code, const std::wstring& description) {
    if (fails) {
        ExpectPassedBack(result, code, description);
    } else {
        EXPECT_EQ(result, S_OK);
        EXPECT_EQ(LastError().description, L"");
    }
}

} // namespace internal_tests
