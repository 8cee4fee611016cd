#include "performance/Jobs.h"

#include "com/Dom.h"
#include "performance/Floor.h"
#include "performance/Material.h"
#include "tests/fuzz/HeapBlocks.h"

#include <cstddef>
#include <memory>
#include <stdexcept>

namespace benchmark {

using namespace support;

namespace {

constexpr const wchar_t* kDefinition = L"Bench";
constexpr const wchar_t* kKey = L"PROJECT\\SHEET\\MODULE";
/// A reference that connects every input.
constexpr const wchar_t* kReference = L"P1_V";
constexpr long kLookUps = 10000;
/// As many inputs as the smallest size has: each size asks for as many
/// different ones, spread over the collection. So a figure that grows is the
/// look-up's own, not that of a processor whose cache holds fewer points.
constexpr long kAsked = 33;

std::wstring DefinitionPath() {
    return Component::Folder() + kDefinition + L".xml";
}

void Succeed(HRESULT result) {
    com::Check(result);
}

Document EmptyParent() {
    return Parse(L"<p/>");
}

template <class I, class Collection>
std::vector<com::Ref<I>> ItemsOf(const com::Ref<Collection>& collection) {
    long count = 0;
    Succeed(collection->get_Count(&count));
    std::vector<com::Ref<I>> items;
    for (long i = 1; i <= count; ++i) {
        items.push_back(Item(collection, &Collection::get_Item, std::to_wstring(i)));
    }
    return items;
}

template <class I>
void ReadKeys(const std::vector<com::Ref<I>>& items) {
    com::Bstr key;
    for (const com::Ref<I>& item : items) {
        Succeed(item->get_GlobalKey(key.Put()));
        Succeed(item->get_ExtendedKey(key.Put()));
    }
}

} // namespace

struct Jobs::Size {
    long points;
    std::wstring stream = StreamText(points);
    TextFile definitionFile{DefinitionPath(), DefinitionText(points)};
    Document definition = Parse(DefinitionText(points));
    std::vector<std::wstring> names;
    std::vector<std::wstring> outputs;
    long inputs = 0;

    explicit Size(long count) : points(count) {
        for (long i = 0; i < points; ++i) {
            names.push_back(PointName(i));
            if (i % 3 == 1) {
                outputs.push_back(PointName(i));
            }
            inputs += i % 3 == 0 ? 1 : 0;
        }
    }
};

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
    Succeed(dll_.NewModule()->putref_XmlSNVTDoc(catalogue_.Get()));
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
                Succeed(reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(entry))(
                    __uuidof(::CDBAppObject), IID_IClassFactory, factory.PutVoid()));
                Succeed(factory->CreateInstance(nullptr, __uuidof(IAppObject), module.PutVoid()));
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
    Succeed(loaded_->put_GlobalKey(key.Get()));
    Succeed(loaded_->put_ExtendedKey(key.Get()));
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
        Succeed(module->Init(name.Get(), &done));
        if (done == VARIANT_FALSE) {
            throw std::runtime_error("the definition does not load");
        }
    }
    return module;
}

void Jobs::LoadStream(const com::Ref<IAppObject>& module, const std::wstring& stream) const {
    const com::Bstr text(stream);
    Succeed(module.As<ITamObject>()->LoadFromXmlStream(text.Get()));
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

Trial Jobs::Create(const Size& size) {
    return {"create and Init",
            size.points,
            {[this] { module_.Reset(); }, [this] { module_ = NewModule(true); }},
            {{}, [] { ReadDefinition(kConverterProgId, DefinitionPath()); }},
            {[this] { document_ = NewDocument(); },
             [this] {
                 const com::Bstr path(DefinitionPath());
                 CallScript(L"LoadDefinition", {Argument(document_.Get()), Argument(path)});
             }},
            0,
            0,
            true};
}

Trial Jobs::Load(const Size& size) {
    return {"LoadFromXmlStream",
            size.points,
            {[this] { module_ = NewModule(true); }, [&, this] { LoadStream(module_, size.stream); }},
            {{}, [&, this] { ReadStream(size.stream, catalogue_, size.definition, size.points); }},
            {[this] {
                 module_.Reset();
                 const com::Bstr path(DefinitionPath());
                 CallScript(L"LoadDefinition", {Argument(NewDocument().Get()), Argument(path)});
                 document_ = NewDocument();
             },
             [&, this] {
                 const com::Bstr text(size.stream);
                 CallScript(L"LoadStream", {Argument(document_.Get()), Argument(text)});
             }},
            size.points,
            size.points,
            true};
}

Trial Jobs::Save(const Size& size) {
    const auto outputs = Object(loaded_, &IAppObject::get_Outputs);
    for (const std::wstring& name : size.outputs) {
        Succeed(Item(outputs, &IOutputs::get_Item, name)->put_IsDisplayable(VARIANT_TRUE));
    }
    CallScript(L"ShowOutputs", {});
    const auto prepare = [this] {
        document_ = EmptyParent();
        root_ = Root(document_);
    };
    return {"XMLSave and XmlLoad",
            size.points,
            {prepare,
             [this] {
                 Succeed(loaded_->XMLSave(root_.Get(), document_.Get()));
                 com::Ref<IXMLDOMNode> saved;
                 Succeed(root_->get_firstChild(saved.Put()));
                 Succeed(loaded_->XmlLoad(saved.Get()));
             }},
            {prepare, [&, this] { BuildProject(document_, size.outputs); }},
            {prepare, [this] {
                 CallScript(L"SaveAndLoad", {Argument(document_.Get()), Argument(root_.Get())});
             }}};
}

Trial Jobs::Flags(const Size& size) {
    std::wstring flags;
    for (const std::wstring& name : size.outputs) {
        flags += L"<" + name + L">1</" + name + L">";
    }
    const Document saved = Parse(L"<O_Tam_id><OutReferences>" + flags + L"</OutReferences></O_Tam_id>");
    const auto root = Root(saved);
    return {"XmlLoad of display flags",
            size.points,
            {{}, [this, root] { Succeed(loaded_->XmlLoad(root.Get())); }},
            {{}, [root] { ReadFlags(root); }},
            {{}, [this, root] { CallScript(L"LoadFlags", {Argument(root.Get())}); }},
            size.points,
            static_cast<long>(size.outputs.size()),
            true};
}

Trial Jobs::Interop(const Size& size) {
    const auto prepare = [this] {
        document_ = EmptyParent();
        root_ = Root(document_);
    };
    return {"interoperability save",
            size.points,
            {prepare, [this] { Succeed(loaded_->XMLSaveForInteroperability(root_.Get(), document_.Get())); }},
            {prepare, [&, this] { BuildInterop(document_, size.names); }},
            {prepare, [this] {
                 CallScript(L"SaveInterop", {Argument(document_.Get()), Argument(root_.Get())});
             }}};
}

Trial Jobs::Export(const Size& size) {
    const auto inputs = Object(loaded_, &IAppObject::get_Inputs);
    for (long i = 1; i <= size.inputs; ++i) {
        Succeed(Put(Item(inputs, &IInputs::get_Item, std::to_wstring(i)), &IInput::put_Value, kReference));
    }
    return {"Stream",
            size.points,
            {[this] { compiler_->calls.clear(); },
             [this] {
                 com::Bstr stream;
                 Succeed(loaded_->get_Stream(stream.Put()));
             }},
            {{}, [&] { BuildExport(kCompilerProgId, kDatabaseLocationClass, size.names, kReference); }},
            {[this] { document_ = NewDocument(); },
             [this] {
                 const com::Bstr reference(kReference);
                 CallScript(L"Export", {Argument(document_.Get()), Argument(reference)});
             }}};
}

Trial Jobs::Keys(const Size& size) {
    const auto inputs = ItemsOf<IInput>(Object(loaded_, &IAppObject::get_Inputs));
    const auto outputs = ItemsOf<IOutput>(Object(loaded_, &IAppObject::get_Outputs));
    const auto attributes = ItemsOf<IAttribute>(Object(loaded_, &IAppObject::get_Attributes));
    return {"keys set and read",
            size.points,
            {{},
             [=, this] {
                 const com::Bstr key(kKey);
                 Succeed(loaded_->put_GlobalKey(key.Get()));
                 Succeed(loaded_->put_ExtendedKey(key.Get()));
                 ReadKeys(inputs);
                 ReadKeys(outputs);
                 ReadKeys(attributes);
             }},
            {{}, [&size] { MakeKeys(std::wstring(kKey) + L"\\RIN", size.names); }},
            {{}, [this] {
                 const com::Bstr key(kKey);
                 CallScript(L"SetKeys", {Argument(key)});
             }}};
}

Trial Jobs::LookUps(const Size& size, bool byKey) {
    const auto texts = std::make_shared<std::vector<com::Bstr>>();
    std::wstring asked;
    for (long i = 0; i < kAsked; ++i) {
        const long at = i * size.inputs / kAsked;
        const std::wstring text = byKey ? PointName(at * 3) : std::to_wstring(at + 1);
        texts->emplace_back(text);
        asked += L"<t>" + text + L"</t>";
    }
    const Document document = Parse(L"<asked>" + asked + L"</asked>");
    CallScript(L"Ask", {Argument(Root(document).Get())});
    const auto inputs = Object(loaded_, &IAppObject::get_Inputs);
    const std::wstring procedure = byKey ? L"LookUpByKey" : L"LookUpByPosition";
    return {byKey ? "10,000 look-ups by key" : "10,000 look-ups by position",
            size.points,
            {{},
             [inputs, texts] {
                 std::size_t at = 0;
                 for (long i = 0; i < kLookUps; ++i) {
                     com::Ref<IInput> input;
                     Succeed(inputs->get_Item((*texts)[at].Get(), input.Put()));
                     com::CheckSet(input.Get());
                     at = at + 1 == texts->size() ? 0 : at + 1;
                 }
             }},
            {},
            {{}, [this, procedure] { CallScript(procedure, {Argument(kLookUps)}); }},
            kLookUps};
}

Trial Jobs::Visits(const Size& size) {
    const auto inputs = Object(loaded_, &IAppObject::get_Inputs);
    return {"10,000 by For Each",
            size.points,
            {{},
             [inputs] {
                 for (long left = kLookUps; left > 0;) {
                     com::Ref<IUnknown> unknown;
                     Succeed(inputs->get_NewEnum(unknown.Put()));
                     const auto items = unknown.As<IEnumVARIANT>();
                     for (com::Variant item; left > 0 && items->Next(1, item.Put(), nullptr) == S_OK;) {
                         --left;
                     }
                 }
             }},
            {},
            {{}, [this] { CallScript(L"VisitEach", {Argument(kLookUps)}); }},
            kLookUps};
}

Trial Jobs::Reorder(const Size& size) {
    std::wstring saved;
    for (long i = size.points - 1; i >= 0; --i) {
        saved += L"<" + PointName(i) + L"/>";
    }
    const auto document = Parse(L"<Inputs>" + saved + L"</Inputs>");
    const auto root = Root(document);
    const std::wstring stream = InputStreamText(size.points);
    // The first order is made again before each run.
    std::wstring order;
    for (const std::wstring& name : size.names) {
        order += L"<" + name + L"/>";
    }
    const Document forward = Parse(L"<Inputs>" + order + L"</Inputs>");
    module_ = NewModule(false);
    LoadStream(module_, stream);
    if (size.points < kMany) {
        LoadScript(stream);
    }
    const auto reorder = [](const com::Ref<IAppObject>& module, const com::Ref<IXMLDOMElement>& element) {
        Succeed(Object(module, &IAppObject::get_Inputs).As<_CDBInputs>()->XmlLoad(element.Get()));
    };
    return {"reorder, reversed",
            size.points,
            {[this, reorder, forward] { reorder(module_, Root(forward)); },
             [this, reorder, root] { reorder(module_, root); }},
            {{}, [root] { ReadNames(root); }},
            {{}, [this, root] { CallScript(L"Reorder", {Argument(root.Get())}); }},
            size.points,
            size.points,
            true};
}

} // namespace benchmark
