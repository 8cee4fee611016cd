#include "tests/com/Subjects.h"

#include <algorithm>

namespace contract {

using namespace support;

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

STDMETHODIMP Context::get_Document(IDispatch** value) {
    return Get(value, [] {
        return com::Ref<IDispatch>(Parse(L"<Device><FWVersion><V1><Objects><Library><O_Tam_ID/></Library></"
                                         L"Objects></V1></FWVersion></Device>"));
    });
}

STDMETHODIMP Context::get_FirmwareVersion(BSTR* value) {
    return Answer(value, std::wstring(L"V1"));
}

void ContractTest::SetUp() {
    ComponentTest::SetUp();
    own_.emplace(Component::DllPath(), 1);
    host_.emplace(Component::DllPath(), 2);
    UseCompiler();
    UseDatabaseLocation();
}

com::Ref<IAppObject> ContractTest::Module() {
    SetCatalogue(kCatalogue); // shared by all modules: a call before may have replaced it
    return Loaded(Stream(kInputs, kOutputs, kAttributes));
}

com::Ref<ITamObjectManager> ContractTest::Manager() {
    const auto manager = Dll().Create<ITamObjectManager>(__uuidof(::TamObjectManager));
    const auto context = Context::Make();
    com::Check(manager->Init(static_cast<IDeviceContext*>(context.Get())));
    return manager;
}

std::vector<Subject> ContractTest::Subjects() {
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

std::vector<Subject> ContractTest::Scriptables() {
    auto subjects = Subjects();
    std::erase_if(subjects, [](const Subject& subject) { return !subject.classId; });
    return subjects;
}

const std::vector<Interface>& ContractTest::InterfacesOf(const Subject& subject) {
    return Own().ClassOf(*subject.classId).interfaces;
}

} // namespace contract
