#include "performance/Floor.h"

#include <OrvDBFaces.h>

#include "com/Creation.h"
#include "com/Dom.h"
#include "com/LateBound.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

namespace benchmark {

namespace {

namespace dom = tam::dom;

constexpr std::size_t kKinds = 3;

void ReadEntry(const support::Document& catalogue, const std::wstring& id) {
    const dom::Node entry = dom::Select(dom::Node(support::Root(catalogue)), L"SNVT_" + id);
    dom::ForEachAttribute(entry, [](const std::wstring&, const std::wstring&) {});
    dom::ForEachChildButComments(entry, [](const dom::Node& child) {
        dom::BaseName(child);
        dom::TextOf(child);
    });
}

/// Looks for a file as it is looked for when nothing fits.
void LookFor(const std::wstring& pattern) {
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW(pattern.c_str(), &found);
    if (search != INVALID_HANDLE_VALUE) {
        FindClose(search);
    }
}

/// Text of the type's child; empty for an input, whose type is only kept.
void ReadPoint(const dom::Node& point, std::size_t kind, const support::Document& catalogue) {
    dom::BaseName(point);
    if (kind == 1) {
        dom::ForEachAttribute(point, [](const std::wstring&, const std::wstring&) {});
    }
    dom::ForEachChildButComments(point, [&](const dom::Node& child) {
        const std::wstring name = dom::BaseName(child);
        const std::wstring text = dom::FirstChildTextOrEmpty(child);
        if (kind > 0 && name == L"SNVTTYPE") {
            ReadEntry(catalogue, text);
        }
    });
}

void ReadDefaults(const support::Document& definition) {
    dom::ForEachByTagName(definition, L"Tam/Attributes/*/DefaultValue", [](const dom::Node& node) {
        dom::BaseName(dom::ParentOf(node));
        dom::FirstChildTextOrEmpty(node);
    });
}

dom::Node AppendNode(const support::Document& document, const dom::Node& parent, const wchar_t* name) {
    return dom::Node(dom::Append(document, parent, name));
}

} // namespace

void YieldTimes(long count) {
    MSG message;
    for (long i = 0; i < count; ++i) {
        PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);
    }
}

void ReadDefinition(const wchar_t* converter, const std::wstring& path) {
    com::CreateByProgId(converter);
    const support::Document document = dom::NewDocument(dom::kDefinitionDocumentClass);
    const com::Variant file{std::wstring_view(path)};
    VARIANT_BOOL done = VARIANT_FALSE;
    com::Check(document->load(file.Get(), &done));
    dom::ForEachChildButComments(dom::FirstByTagName(document, L"AppObject"), [](const dom::Node& child) {
        dom::BaseName(child);
        dom::TextOf(child);
    });
    const std::wstring folder = path.substr(0, path.rfind(L'\\') + 1);
    for (const wchar_t* stem : {L"*", L"..\\DataSheets\\pb_1_*"}) {
        for (const wchar_t* kind : {L".pdf", L".doc"}) {
            LookFor(folder + stem + kind);
        }
    }
}

void ReadStream(const std::wstring& stream, const support::Document& catalogue,
                const support::Document& definition, long points) {
    const support::Document document = dom::NewDocument(dom::kDocumentClass);
    const com::Bstr text(stream);
    VARIANT_BOOL done = VARIANT_FALSE;
    com::Check(document->loadXML(text.Get(), &done));
    for (const wchar_t* path : {L"Tam/Name", L"Tam/DevKey", L"Tam/IsLastOnDev", L"Tam/TamObjID"}) {
        dom::TextOf(dom::Select(dom::Node(document), path));
    }
    for (const wchar_t* path : {L"Tam/CDB", L"Tam/DDB"}) {
        dom::Select(dom::Node(document), path);
    }
    const std::array paths{L"Tam/InReferences", L"Tam/OutReferences", L"Tam/Attributes"};
    for (std::size_t kind = 0; kind < paths.size(); ++kind) {
        dom::ForEachChildButComments(dom::FirstByTagName(document, paths.at(kind)),
                                     [&](const dom::Node& point) { ReadPoint(point, kind, catalogue); });
    }
    ReadDefaults(definition);
    YieldTimes(points);
}

void BuildProject(const support::Document& document, const std::vector<std::wstring>& outputs) {
    const dom::Node element = AppendNode(document, dom::Node(support::Root(document)), L"O_Tam_id");
    for (const wchar_t* name : {L"UserName", L"X_Position", L"Y_Position", L"DevKey", L"TamObjID"}) {
        dom::AppendText(document, element, name, L"0");
    }
    const dom::Node container = AppendNode(document, element, L"Outputs");
    for (const std::wstring& name : outputs) {
        dom::SetAttribute(dom::Append(document, container, name), L"IsDisplayable", L"1");
    }
    dom::ForEachChildButComments(element, [&](const dom::Node& child) {
        if (dom::BaseName(child) != L"Outputs") {
            dom::FirstChildTextOrEmpty(child);
        }
    });
}

void ReadFlags(const com::Ref<IXMLDOMElement>& element) {
    dom::ForEachChildButComments(dom::FirstChild(dom::Node(element)), [](const dom::Node& child) {
        dom::BaseName(child);
        dom::OwnText(child);
        YieldTimes(1);
    });
}

void BuildInterop(const support::Document& document, const std::vector<std::wstring>& names) {
    static const std::array<const wchar_t*, kKinds> kContainers{L"Inputs", L"Outputs", L"Attributes"};
    static const std::array<std::vector<const wchar_t*>, kKinds> kFields{{
        {L"Reference", L"LogicalAddress", L"isPermanent", L"SNVTType"},
        {L"SNVT_Type", L"LogicalAddress"},
        {L"Value"},
    }};
    const dom::Node element = AppendNode(document, dom::Node(support::Root(document)), L"O_Tam_id");
    dom::AppendText(document, element, L"UserName", L"Bench");
    dom::AppendText(document, element, L"Key", L"");
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
        const dom::Node container = AppendNode(document, element, kContainers.at(kind));
        for (std::size_t i = kind; i < names.size(); i += kKinds) {
            const dom::Node node(dom::Append(document, container, names[i]));
            for (const wchar_t* field : kFields.at(kind)) {
                dom::AppendText(document, node, field, L"1234");
            }
        }
    }
}

void BuildExport(const wchar_t* compilerProgId, REFCLSID locationClass,
                 const std::vector<std::wstring>& names, const std::wstring& reference) {
    static const std::array<const wchar_t*, kKinds> kContainers{L"Inputs", L"Outputs", L"Attributes"};
    static const std::array<std::vector<const wchar_t*>, kKinds> kFields{{
        {L"LogicalAddress", L"SNVTType", L"isPermanent", L"IsConnected"},
        {L"LogicalAddress", L"SNVTType", L"isMapAsOO", L"ObjOffset", L"AbsoluteObjectIndex", L"IsConnected",
         L"IsWritable"},
        {L"LogicalAddress", L"SNVTType", L"Value", L"isPermanent", L"IsConnected"},
    }};
    com::Ref<IDatabaseLocation> location;
    com::Check(CoCreateInstance(locationClass, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IDatabaseLocation),
                                location.PutVoid()));
    com::Bstr path;
    com::Check(location->get_Path(path.Put()));
    const com::Ref<IDispatch> compiler = com::CreateByProgId(compilerProgId);
    const com::Variant where{path.View()};
    std::array<VARIANT, 1> argument{where.Get()};
    com::CallMember(*compiler.Get(), L"SetDBPath", argument);
    const support::Document document = dom::NewDocument(dom::kDocumentClass);
    const dom::Element root = dom::Append(document, dom::Node(document), L"O_Tam_id");
    for (const wchar_t* name : {L"DevAddr", L"AppID", L"DevKey", L"TamObjectID", L"IsLastOnDev"}) {
        dom::SetAttribute(root, name, L"1");
    }
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
        const dom::Node container = AppendNode(document, dom::Node(root), kContainers.at(kind));
        for (std::size_t i = kind; i < names.size(); i += kKinds) {
            const dom::Element node = dom::Append(document, container, names[i]);
            if (kind == 0) {
                dom::SetAttribute(node, L"LinkReference", reference);
            }
            for (const wchar_t* field : kFields.at(kind)) {
                dom::SetAttribute(node, field, L"1");
            }
        }
    }
    com::Bstr xml;
    com::Check(document->get_xml(xml.Put()));
    com::Bstr code;
    com::Bstr data;
    std::array<VARIANT, 3> arguments{com::ByReference(xml), com::ByReference(code), com::ByReference(data)};
    com::CallMember(*compiler.Get(), L"CompileTamObject", arguments);
}

class KeyedObjects::Object final : public Keyed {
  public:
    Object(const CollectionKeys& keys, std::wstring name) : keys_(&keys), name_(std::move(name)) {}

    HRESULT STDMETHODCALLTYPE get_GlobalKey(BSTR* key) override { return Join(keys_->global, key); }
    HRESULT STDMETHODCALLTYPE get_ExtendedKey(BSTR* key) override { return Join(keys_->extended, key); }

  private:
    HRESULT Join(const std::wstring& collectionKey, BSTR* key) const {
        if (key == nullptr) {
            return E_POINTER;
        }
        *key = SysAllocStringLen(nullptr, static_cast<UINT>(collectionKey.size() + 1 + name_.size()));
        if (*key == nullptr) {
            return E_OUTOFMEMORY;
        }
        wchar_t* end = std::copy(collectionKey.begin(), collectionKey.end(), *key);
        *end++ = L'\\';
        std::copy(name_.begin(), name_.end(), end);
        return S_OK;
    }

    const CollectionKeys* keys_;
    std::wstring name_;
};

KeyedObjects::KeyedObjects(const std::vector<std::wstring>& names) {
    for (std::size_t i = 0; i < names.size(); ++i) {
        objects_.push_back(std::make_unique<Object>(keys_.at(i % keys_.size()), names[i]));
    }
}

void KeyedObjects::Set(const std::wstring& key) {
    static const std::array<std::wstring, kKinds> kEnds{L"\\RIN", L"\\ROU", L"\\ATT"};
    for (auto text : {&CollectionKeys::global, &CollectionKeys::extended}) {
        std::array<std::wstring, kKinds> made;
        std::transform(kEnds.begin(), kEnds.end(), made.begin(),
                       [&](const std::wstring& end) { return key + end; });
        for (std::size_t kind = 0; kind < kKinds; ++kind) {
            (keys_.at(kind).*text).swap(made.at(kind));
        }
    }
}

void KeyedObjects::Read() const {
    com::Bstr key;
    for (const auto& object : objects_) {
        com::Check(object->get_GlobalKey(key.Put()));
        com::Check(object->get_ExtendedKey(key.Put()));
    }
}

void ReadNames(const com::Ref<IXMLDOMElement>& element) {
    dom::ForEachChildButComments(dom::Node(element), [](const dom::Node& child) {
        dom::BaseName(child);
        YieldTimes(1);
    });
}

} // namespace benchmark
