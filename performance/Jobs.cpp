#include "performance/Jobs.h"

#include "com/Dom.h"
#include "performance/Material.h"
#include "tests/fuzz/HeapBlocks.h"

#include <cstddef>
#include <stdexcept>

namespace benchmark {

using namespace support;

Jobs::Jobs(const std::wstring& script)
    : converter_(Converter::Make())
    , compiler_(com::Ref<Compiler>::Own(new Compiler))
    , location_(DatabaseLocation::Make())
    , converterClass_(kConverterClass, kConverterProgId,
                      [this](REFIID iid, void** out) { return converter_->QueryInterface(iid, out); })
    , compilerClass_(kCompilerClass, kCompilerProgId,
                     [this](REFIID iid, void** out) { return compiler_->QueryInterface(iid, out); })
    , locationClass_(kDatabaseLocationClass, L"",
                     [this](REFIID iid, void** out) { return location_->QueryInterface(iid, out); })
    , script_(script)
    , catalogue_(Parse(CatalogueText())) {
    com::Check(dll_.NewModule()->putref_XmlSNVTDoc(catalogue_.Get()));
    CallScript(L"UseCatalogue", {Argument(catalogue_.Get())});
}

std::vector<Row> Jobs::Run(long points) {
    const Size size(points);
    std::vector<Row> rows;
    rows.push_back(Measure(Create(size)));
    rows.push_back(Measure(Load(size)));
    // Each job has the module and the script's objects to itself.
    for (const auto job : {&Jobs::Save, &Jobs::Flags, &Jobs::Interop, &Jobs::Export, &Jobs::Keys}) {
        loaded_ = NewModule(false);
        LoadStream(loaded_, size.stream);
        if (points < kMany) {
            LoadScript(size.stream);
        }
        rows.push_back(Measure((this->*job)(size)));
    }
    rows.push_back(Measure(LookUps(size, true)));
    rows.push_back(Measure(LookUps(size, false)));
    rows.push_back(Measure(Visits(size)));
    loaded_.Reset();
    rows.push_back(Measure(Reorder(size)));
    module_.Reset();
    return rows;
}

StartCost Jobs::CostOfStart() {
    // A copy, because the DLL that the jobs use stays loaded.
    const std::wstring copy = Component::Folder() + L"Start.dll";
    if (CopyFileW(Component::DllPath().c_str(), copy.c_str(), FALSE) == FALSE) {
        throw std::runtime_error("the component cannot be copied");
    }
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    StartCost cost;
    constexpr int kRounds = 7;
    for (int round = 0; round < kRounds; ++round) {
        HMODULE dll = nullptr;
        MeasureOnce([&] { dll = LoadLibraryW(copy.c_str()); }, cost.load);
        const FARPROC entry = dll == nullptr ? nullptr : GetProcAddress(dll, "DllGetClassObject");
        if (entry == nullptr) {
            throw std::runtime_error("the component cannot be loaded");
        }
        com::Ref<IAppObject> module;
        MeasureOnce(
            [&] {
                com::Ref<IClassFactory> factory;
                com::Check(reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(entry))(
                    __uuidof(::CDBAppObject), IID_IClassFactory, factory.PutVoid()));
                com::Check(factory->CreateInstance(nullptr, __uuidof(IAppObject), module.PutVoid()));
            },
            cost.create);
        module.Reset();
        FreeLibrary(dll);
    }
    DeleteFileW(copy.c_str());
    return cost;
}

double Jobs::BytesPerPoint(long points) {
    const std::wstring stream = StreamText(points);
    const com::Bstr key(kKey);
    LoadStream(NewModule(false), stream); // what is made once is no point's
    loaded_ = NewModule(false);
    const std::size_t before = component_fuzz::HeapBlocks::Now().bytes;
    LoadStream(loaded_, stream);
    com::Check(loaded_->put_GlobalKey(key.Get()));
    com::Check(loaded_->put_ExtendedKey(key.Get()));
    const std::size_t after = component_fuzz::HeapBlocks::Now().bytes;
    loaded_.Reset();
    return static_cast<double>(after - before) / static_cast<double>(points);
}

unsigned long Jobs::DllSize() {
    WIN32_FILE_ATTRIBUTE_DATA file{};
    GetFileAttributesExW(Component::DllPath().c_str(), GetFileExInfoStandard, &file);
    return file.nFileSizeLow;
}

com::Ref<IAppObject> Jobs::NewModule(bool isDefined) const {
    auto module = dll_.NewModule();
    if (isDefined) {
        const com::Bstr name(kDefinition);
        VARIANT_BOOL done = VARIANT_FALSE;
        com::Check(module->Init(name.Get(), &done));
        if (done == VARIANT_FALSE) {
            throw std::runtime_error("the definition does not load");
        }
    }
    return module;
}

void Jobs::LoadStream(const com::Ref<IAppObject>& module, const std::wstring& stream) const {
    const com::Bstr text(stream);
    com::Check(module.As<ITamObject>()->LoadFromXmlStream(text.Get()));
}

void Jobs::LoadScript(const std::wstring& stream) {
    const com::Bstr path(DefinitionPath());
    const com::Bstr text(stream);
    const Document definition = NewDocument();
    const Document document = NewDocument();
    CallScript(L"LoadDefinition", {Argument(definition.Get()), Argument(path)});
    CallScript(L"LoadStream", {Argument(document.Get()), Argument(text)});
}

// cppcheck-suppress passedByValue; a call may change what it is given
void Jobs::CallScript(const std::wstring& procedure, std::vector<VARIANT> arguments) const {
    script_.Call(procedure, arguments);
}

} // namespace benchmark
