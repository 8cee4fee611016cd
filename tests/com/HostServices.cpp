#include "tests/com/HostServices.h"

#include "tests/Places.h"

#include <stdexcept>

namespace contract {

namespace {

constexpr const wchar_t* kDefinitionXml =
    L"<AppObject><NAME>Channel</NAME><ID>o_tam_ai_id</ID>"
    L"<InReferences>"
    L"<In1><VISIBLE>1</VISIBLE><SNVTCOMPATIBILITYLIST>105,95</SNVTCOMPATIBILITYLIST></In1>"
    L"<In2><VISIBLE>1</VISIBLE><SNVTCOMPATIBILITYLIST>95</SNVTCOMPATIBILITYLIST></In2>"
    L"</InReferences><OutReferences>"
    L"<Value><VISIBLE>1</VISIBLE><SNVTTYPE>105</SNVTTYPE></Value>"
    L"<Alarm><VISIBLE>1</VISIBLE><SNVTTYPE>95</SNVTTYPE></Alarm>"
    L"</OutReferences><Attributes>"
    L"<Offset><VISIBLE>1</VISIBLE><SNVTTYPE>105</SNVTTYPE><VALUE>2.5</VALUE></Offset>"
    L"<Setup><VISIBLE>1</VISIBLE><SNVTTYPE>8</SNVTTYPE><VALUE>0</VALUE></Setup>"
    L"</Attributes></AppObject>";

template <class F>
F Export(HMODULE module, const char* name) {
    const FARPROC address = GetProcAddress(module, name);
    if (address == nullptr) {
        throw std::runtime_error(std::string("the host services lack ") + name);
    }
    return reinterpret_cast<F>(reinterpret_cast<void*>(address));
}

} // namespace

HostServices::HostServices()
    : module_(LoadLibraryW(DllPath().c_str()))
    , definition_(support::Component::Folder() + kDefinition + L".xml", kDefinitionXml) {
    if (module_ == nullptr) {
        throw std::runtime_error("the host services cannot be loaded");
    }
    generic_.emplace(__uuidof(::GenericObject), L"O_Generic.CDBAppObject", [this](REFIID iid, void** out) {
        return Create<IUnknown>(__uuidof(::GenericObject))->QueryInterface(iid, out);
    });
    library_.emplace(__uuidof(::LibraryService), L"OrvHost.LibraryService", [this](REFIID iid, void** out) {
        return Create<IUnknown>(__uuidof(::LibraryService))->QueryInterface(iid, out);
    });
    ResetSettings();
}

HostServices::~HostServices() {
    generic_.reset();
    library_.reset();
    FreeLibrary(module_);
}

std::wstring HostServices::DllPath() {
    return (tests::BinFolder() / L"OrvHost.dll").native();
}

HRESULT HostServices::ClassObject(REFCLSID clsid, REFIID iid, void** out) const {
    using Function = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    return Export<Function>(module_, "DllGetClassObject")(clsid, iid, out);
}

HRESULT HostServices::CanUnload() const {
    using Function = HRESULT(STDAPICALLTYPE*)();
    return Export<Function>(module_, "DllCanUnloadNow")();
}

void HostServices::ResetSettings() const {
    const auto library = Create<ILibraryFolder>(__uuidof(::LibraryService));
    com::Check(library->put_Folder(com::Bstr(support::Component::Folder()).Get()));
    const auto units = Create<IUnitSettings>(__uuidof(::UnitConverter));
    com::Check(units->put_UnitSystem(com::Bstr(L"metric").Get()));
}

} // namespace contract
