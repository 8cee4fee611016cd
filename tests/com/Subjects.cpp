#include "tests/com/Subjects.h"

#include <algorithm>
#include <iterator>

namespace contract {

namespace {

constexpr const wchar_t* kCatalogue =
    L"<SNVT_105 Factor='100' Z3Region='4'><Name>Temperature</Name><Type>SignedNumeric</Type><Unit>degC</Unit>"
    L"<Min>-273.17</Min><Max>327.66</Max><Length>2</Length></SNVT_105>"
    L"<SNVT_95><Name>Switch</Name><Type>Enum</Type></SNVT_95>";

constexpr const wchar_t* kInputs =
    L"<AI1_Value><SNVTCOMPATIBILITYLIST>105,95</SNVTCOMPATIBILITYLIST></AI1_Value>"
    L"<AI2_Value><SNVTCOMPATIBILITYLIST>95</SNVTCOMPATIBILITYLIST></AI2_Value>";
constexpr const wchar_t* kOutputs = L"<AO1_Value><SNVTTYPE>105</SNVTTYPE></AO1_Value>"
                                    L"<AO2_Value><SNVTTYPE>95</SNVTTYPE></AO2_Value>";
constexpr const wchar_t* kAttributes = L"<AI1_Offset><SNVTTYPE>105</SNVTTYPE></AI1_Offset>"
                                       L"<CONFIG><SNVTTYPE>95</SNVTTYPE></CONFIG>";

template <class I>
com::Ref<IUnknown> EnumeratorOf(const com::Ref<I>& collection) {
    return Object(collection, &I::get_NewEnum);
}

} // namespace

void ContractTest::SetUp() {
    ComponentTest::SetUp();
    UseCompiler();
    UseDatabaseLocation();
    host_.emplace();
}

void ContractTest::TearDown() {
    EXPECT_EQ(host_->CanUnload(), S_OK) << "objects of the host services are still alive";
    ComponentTest::TearDown();
    host_.reset();
}

const TypeLibrary& ContractTest::Services() {
    static const TypeLibrary library(HostServices::DllPath(), 1);
    return library;
}

com::Ref<IAppObject> ContractTest::Module() {
    SetCatalogue(kCatalogue); // shared by all modules: a call before may have replaced it
    return Loaded(Stream(kInputs, kOutputs, kAttributes));
}

com::Ref<ITamObjectManager> ContractTest::Manager() {
    const auto manager = Dll().Create<ITamObjectManager>(__uuidof(::TamObjectManager));
    com::Check(manager->Init(HostContext().Get()));
    return manager;
}

std::vector<Subject> ContractTest::ModuleSubjects() {
    const auto module = Module();
    const auto inputs = Object(module, &IAppObject::get_Inputs);
    const auto outputs = Object(module, &IAppObject::get_Outputs);
    const auto attributes = Object(module, &IAppObject::get_Attributes);
    const auto input = Item(inputs, &IInputs::get_Item, L"1");
    const auto output = Item(outputs, &IOutputs::get_Item, L"1");
    const auto attribute = Item(attributes, &IAttributes::get_Item, L"1");
    const auto list = Object(input, &IInput::get_SNVTCompatibles);
    com::Ref<ICompatibleSNVT> entry;
    com::Check(list->get_Item(1, entry.Put()));
    const auto type = Object(attribute, &IAttribute::get_SNVTType);
    com::CheckSet(type.Get());
    com::CheckSet(entry.Get());
    return {
        {"module", __uuidof(::CDBAppObject), module},
        {"inputs", __uuidof(::CDBInputs), inputs},
        {"input", __uuidof(::CDBInput), input},
        {"outputs", __uuidof(::CDBOutputs), outputs},
        {"output", __uuidof(::CDBOutput), output},
        {"attributes", __uuidof(::CDBAttributes), attributes},
        {"attribute", __uuidof(::CDBAttribute), attribute},
        {"compatible list", __uuidof(::CCompatibleSNVTs), list},
        {"compatible entry", __uuidof(::CCompatibleSNVT), entry},
        {"type", __uuidof(::CSNVTType), type},
        {"manager", __uuidof(::TamObjectManager), Manager()},
        {"enumerator of inputs", {}, EnumeratorOf(inputs)},
        {"enumerator of outputs", {}, EnumeratorOf(outputs)},
        {"enumerator of attributes", {}, EnumeratorOf(attributes)},
        {"enumerator of a compatible list", {}, EnumeratorOf(list)},
    };
}

com::Ref<IDevice> ContractTest::Device() {
    const auto setup = Host().Create<IDeviceSetup>(__uuidof(::Device));
    com::Check(setup->put_DeviceKey(com::Bstr(L"K7").Get()));
    com::Ref<IChannel> channel;
    com::Check(setup->AddChannel(com::Bstr(L"AI1").Get(), com::Bstr(L"1").Get(),
                                 com::Bstr(L"0,Off;1,On;").Get(), channel.Put()));
    return setup.As<IDevice>();
}

com::Ref<IAppObject> ContractTest::Channel() {
    const auto device = Device();
    com::Check(device.As<IDeviceSetup>()->SetContainer(Module().Get()));
    com::Ref<IAppObject> channel;
    com::Bstr key(L"AI1");
    com::Check(Manager()->CreateTamInternalAppObject(key.Address(), device.Get(), channel.Put()));
    com::CheckSet(channel.Get());
    VARIANT_BOOL done = VARIANT_FALSE;
    com::Check(channel->Init(com::Bstr(HostServices::kDefinition).Get(), &done));
    com::Check(channel->Create());
    return channel;
}

std::vector<Subject> ContractTest::ChannelSubjects() {
    const auto channel = Channel();
    const auto inputs = Object(channel, &IAppObject::get_Inputs);
    const auto outputs = Object(channel, &IAppObject::get_Outputs);
    const auto attributes = Object(channel, &IAppObject::get_Attributes);
    return {
        {"channel", __uuidof(::TamInternalAppObject), channel},
        {"channel's inputs", __uuidof(::TamInternalInputs), inputs},
        {"channel's input", __uuidof(::TamInternalInput), Item(inputs, &IInputs::get_Item, L"1")},
        {"channel's outputs", __uuidof(::TamInternalOutputs), outputs},
        {"channel's output", __uuidof(::TamInternalOutput), Item(outputs, &IOutputs::get_Item, L"1")},
        {"channel's attributes", __uuidof(::TamInternalAttributes), attributes},
        {"channel's attribute", __uuidof(::TamInternalAttribute),
         Item(attributes, &IAttributes::get_Item, L"1")},
        {"enumerator of a channel's inputs", {}, EnumeratorOf(inputs)},
        {"enumerator of a channel's outputs", {}, EnumeratorOf(outputs)},
        {"enumerator of a channel's attributes", {}, EnumeratorOf(attributes)},
    };
}

std::vector<Subject> ContractTest::HostSubjects() {
    Host().ResetSettings(); // a call before may have written them
    const auto project = Host().Create<IProject>(__uuidof(::Project));
    com::Ref<IProjectGroup> group;
    for (int i = 0; i < 2; ++i) {
        com::Check(project->AddGroup(group.Put()));
        com::Check(group->AddItem(com::Bstr(L"K7\\RIN\\AI1_Value").Get()));
        com::Check(group->AddItem(com::Bstr(L"K7\\RIN\\AI2_Value").Get()));
    }
    const auto view = Object(project.As<IHostDocument>(), &IHostDocument::get_View);
    const auto groups = Object(project.As<IMacroConnections>(), &IMacroConnections::get_Groups);
    const auto items = Object(group.As<IMacroConnectionGroup>(), &IMacroConnectionGroup::get_Items);
    com::Ref<IMacroConnectedItem> item;
    com::Check(items->get_Item(1, item.Put()));
    const auto context = Host().Create<IDeviceContextSetup>(__uuidof(::DeviceContext));
    com::Check(context->LoadXml(com::Bstr(L"<Device/>").Get()));
    const auto device = Device();
    com::Ref<IChannel> channel;
    com::Check(device->Channel(com::Bstr(L"AI1").Get(), channel.Put()));
    return {
        {"converter", __uuidof(::UnitConverter), Host().Create<IUnknown>(__uuidof(::UnitConverter))},
        {"location", __uuidof(::DatabaseLocation), Host().Create<IUnknown>(__uuidof(::DatabaseLocation))},
        {"compiler", __uuidof(::CompilersInterop), Host().Create<IUnknown>(__uuidof(::CompilersInterop))},
        {"library", __uuidof(::LibraryService), Host().Create<IUnknown>(__uuidof(::LibraryService))},
        {"project", __uuidof(::Project), project},
        {"view", __uuidof(::ProjectView), view},
        {"macro groups", __uuidof(::MacroGroups), groups},
        {"macro group", __uuidof(::MacroGroup), group},
        {"macro items", __uuidof(::MacroItems), items},
        {"macro item", __uuidof(::MacroItem), item},
        {"device context", __uuidof(::DeviceContext), context},
        {"device", __uuidof(::Device), device},
        {"device's channel", __uuidof(::DeviceChannel), channel},
        {"enumerator of macro groups", {}, EnumeratorOf(groups)},
        {"enumerator of macro items", {}, EnumeratorOf(items)},
    };
}

std::vector<Subject> ContractTest::GenericSubjects() {
    Host().ResetSettings();
    const auto object = Host().Create<IAppObject>(__uuidof(::GenericObject));
    VARIANT_BOOL done = VARIANT_FALSE;
    com::Check(object->Init(com::Bstr(HostServices::kDefinition).Get(), &done));
    com::Check(object->Create());
    const auto inputs = Object(object, &IAppObject::get_Inputs);
    const auto outputs = Object(object, &IAppObject::get_Outputs);
    const auto attributes = Object(object, &IAppObject::get_Attributes);
    const auto input = Item(inputs, &IInputs::get_Item, L"1");
    const auto attribute = Item(attributes, &IAttributes::get_Item, L"1");
    const auto list = Object(input, &IInput::get_SNVTCompatibles);
    com::Ref<ICompatibleSNVT> entry;
    com::Check(list->get_Item(1, entry.Put()));
    return {
        {"generic object", __uuidof(::GenericObject), object},
        {"generic object's inputs", __uuidof(::GenericInputs), inputs},
        {"generic object's input", __uuidof(::GenericInput), input},
        {"generic object's outputs", __uuidof(::GenericOutputs), outputs},
        {"generic object's output", __uuidof(::GenericOutput), Item(outputs, &IOutputs::get_Item, L"1")},
        {"generic object's attributes", __uuidof(::GenericAttributes), attributes},
        {"generic object's attribute", __uuidof(::GenericAttribute), attribute},
        {"generic object's type", __uuidof(::HostType), Object(attribute, &IAttribute::get_SNVTType)},
        {"generic object's compatible list", __uuidof(::CompatibleTypes), list},
        {"generic object's compatible entry", __uuidof(::CompatibleType), entry},
        {"enumerator of a generic object's inputs", {}, EnumeratorOf(inputs)},
        {"enumerator of a generic object's outputs", {}, EnumeratorOf(outputs)},
        {"enumerator of a generic object's attributes", {}, EnumeratorOf(attributes)},
        {"enumerator of a generic object's compatible list", {}, EnumeratorOf(list)},
    };
}

std::vector<Subject> ContractTest::Subjects(Family family) {
    auto subjects = family == Family::Module    ? ModuleSubjects()
                    : family == Family::Channel ? ChannelSubjects()
                    : family == Family::Host    ? HostSubjects()
                                                : GenericSubjects();
    for (const Subject& subject : subjects) {
        com::CheckSet(subject.object.Get());
    }
    return subjects;
}

std::vector<Subject> ContractTest::Subjects() {
    std::vector<Subject> all;
    for (const Family family : kFamilies) {
        std::ranges::move(Subjects(family), std::back_inserter(all));
    }
    return all;
}

std::vector<Subject> ContractTest::Scriptables(Family family) {
    auto subjects = Subjects(family);
    std::erase_if(subjects, [](const Subject& subject) { return !subject.classId; });
    return subjects;
}

std::vector<Subject> ContractTest::Scriptables() {
    auto subjects = Subjects();
    std::erase_if(subjects, [](const Subject& subject) { return !subject.classId; });
    return subjects;
}

const Class& ContractTest::ClassOf(const Subject& subject) {
    return (Own().Has(*subject.classId) ? Own() : Services()).ClassOf(*subject.classId);
}

const std::vector<Interface>& ContractTest::InterfacesOf(const Subject& subject) {
    return ClassOf(subject).interfaces;
}

} // namespace contract
