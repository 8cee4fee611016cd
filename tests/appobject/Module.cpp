#include "tests/appobject/Module.h"

#include <windows.h>

#include <psapi.h>

#include <cstddef>

namespace modules {

using namespace support;

namespace {

constexpr const wchar_t* kCatalogue =
    L"<SNVT_105><Name>Temperature</Name><Type>SignedNumeric</Type><Unit>degC</Unit><Length>2</Length></"
    L"SNVT_105>"
    L"<SNVT_36><Name>String</Name><Type>Textual</Type><Length>31</Length></SNVT_36>"
    L"<SNVT_95><Name>Switch</Name><Type>Enum</Type></SNVT_95>";

} // namespace

std::wstring Bare(std::wstring xml) {
    std::wstring bare;
    for (std::size_t i = 0; i < xml.size(); ++i) {
        const bool breaks = (xml[i] == L'\r' || xml[i] == L'\n') && (bare.empty() || bare.back() == L'>');
        const std::size_t end = breaks ? xml.find_first_not_of(L" \t\r\n", i) : i;
        if (breaks && (end == std::wstring::npos || xml[end] == L'<')) {
            i = (end == std::wstring::npos ? xml.size() : end) - 1;
        } else {
            bare += xml[i];
        }
    }
    return bare;
}

std::size_t PeakMemory() {
    PROCESS_MEMORY_COUNTERS memory{};
    memory.cb = sizeof memory;
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    return memory.PeakWorkingSetSize;
}

std::wstring BareXml(IUnknown* node) {
    return Bare(Xml(node));
}

bool Init(const com::Ref<IAppObject>& module, const std::wstring& name) {
    const com::Bstr text(name);
    VARIANT_BOOL done = VARIANT_FALSE;
    com::Check(module->Init(text.Get(), &done));
    return done != VARIANT_FALSE;
}

HRESULT Load(const com::Ref<IAppObject>& module, const std::wstring& stream) {
    const com::Bstr text(stream);
    return module.As<ITamObject>()->LoadFromXmlStream(text.Get());
}

void LoadProject(const com::Ref<IAppObject>& module, const std::wstring& xml) {
    EXPECT_EQ(module->XmlLoad(Root(Parse(xml)).Get()), S_OK);
}

com::Ref<IInput> Input(const com::Ref<IAppObject>& module, const std::wstring& index) {
    return Item(Object(module, &IAppObject::get_Inputs), &IInputs::get_Item, index);
}
com::Ref<IOutput> Output(const com::Ref<IAppObject>& module, const std::wstring& index) {
    return Item(Object(module, &IAppObject::get_Outputs), &IOutputs::get_Item, index);
}
com::Ref<IAttribute> Attribute(const com::Ref<IAppObject>& module, const std::wstring& index) {
    return Item(Object(module, &IAppObject::get_Attributes), &IAttributes::get_Item, index);
}
long InputCount(const com::Ref<IAppObject>& module) {
    return Long(Object(module, &IAppObject::get_Inputs), &IInputs::get_Count);
}
long OutputCount(const com::Ref<IAppObject>& module) {
    return Long(Object(module, &IAppObject::get_Outputs), &IOutputs::get_Count);
}
long AttributeCount(const com::Ref<IAppObject>& module) {
    return Long(Object(module, &IAppObject::get_Attributes), &IAttributes::get_Count);
}

void ModuleTest::SetUp() {
    ComponentTest::SetUp();
    SetCatalogue(kCatalogue);
}

void ModuleTest::Define(const std::wstring& name, const std::wstring& content) {
    DefineWhole(name, L"<Definition><AppObject>" + content + L"</AppObject></Definition>");
}

void ModuleTest::DefineWhole(const std::wstring& name, const std::wstring& xml) {
    definitions_.emplace_back(Component::Folder() + name + L".xml", xml);
}

com::Ref<IAppObject> ModuleTest::Defined(const std::wstring& content, const std::wstring& name) {
    Define(name, content);
    auto module = NewModule();
    EXPECT_TRUE(Init(module, name)) << "the definition does not load";
    return module;
}

void ModuleTest::ExpectOneReport(const std::wstring& description, const std::wstring& callingObject,
                                 const std::wstring& callingFunction, const std::wstring& source) {
    ExpectOnlyReport(Boxes(), description, callingObject, callingFunction, source);
}

} // namespace modules
