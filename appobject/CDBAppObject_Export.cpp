// The module's stream. The component writes an export document and hands it to the host's
// compiler; without a compiler the document itself is the stream. An input's reference
// marks the outputs and attributes of the same key as connected.

#include "appobject/CDBAppObject.h"

#include "com/Creation.h"
#include "com/LateBound.h"
#include "common/ComponentState.h"
#include "common/DocumentFields.h"
#include "common/ErrorReport.h"
#include "common/MessageLoop.h"
#include "core/Case.h"
#include "core/Numbers.h"
#include "core/PointData.h"
#include "core/PointKeys.h"
#include "core/References.h"

#include <array>
#include <string_view>
#include <unordered_set>

namespace tam {

namespace {

constexpr const wchar_t* kCompilerProgId = L"ORV.QB.Interop.Compilers.CompilersInterop";
constexpr CLSID kDatabaseLocationClass = {
    0x1D816F43, 0xBC81, 0x46F7, {0xB1, 0x7D, 0xEE, 0x81, 0xB5, 0x59, 0xE7, 0x8F}};

// The export document, in its order.
constexpr const wchar_t* kRoot = L"O_Tam_id";
constexpr const wchar_t* kInputs = L"Inputs";
constexpr const wchar_t* kOutputs = L"Outputs";
constexpr const wchar_t* kAttributes = L"Attributes";
constexpr const wchar_t* kEnumDesc = L"EnumDesc";

/// Attributes of this key are part of the module's configuration and always in use.
constexpr const wchar_t* kConfigurationKey = L"CONFIG";

/// The value that ClearReferences gives an input: a reference to nothing, in
/// the long form for an extended input.
constexpr const wchar_t* kNoExtendedReference = L"000000";
constexpr const wchar_t* kNoReference = L"0000";

/// Reference keys, as parts of the inputs' references: nothing changes these while the
/// document is built.
using KeySet = std::unordered_set<std::wstring_view, FoldedHash, FoldedEqual>;

dom::Element AppendPoint(const dom::Document& document, const dom::Node& container,
                         const std::wstring& name) {
    return dom::AppendField(document, container, name, std::wstring(dom::kNoTextField));
}

void ExportInputs(const dom::Document& document, const dom::Node& root, const com::Ref<CDBInputs>& inputs,
                  KeySet& referenced) {
    const dom::Node container(AppendPoint(document, root, kInputs));
    if (!inputs) {
        return;
    }
    for (const auto& input : inputs->All()) {
        SetFieldAttributes(AppendPoint(document, container, input->PointName()), kExportedInput,
                           input->Data());
        const std::wstring& reference = input->Data().linkReference;
        if (LeadsToAnOutput(std::wstring_view(reference))) {
            referenced.insert(ReferenceKey(reference));
        }
    }
}

void ExportOutputs(const dom::Document& document, const dom::Node& root, const com::Ref<CDBOutputs>& outputs,
                   const KeySet& referenced) {
    const dom::Node container(AppendPoint(document, root, kOutputs));
    if (!outputs) {
        return;
    }
    for (const auto& output : outputs->All()) {
        const bool connected =
            output->Data().isConnected || referenced.contains(ReferenceKey(output->PointName()));
        SetFieldAttributes(AppendPoint(document, container, output->PointName()), kExportedOutput,
                           ExportedOutput{output->Data(), connected});
    }
}

void ExportAttributes(const dom::Document& document, const dom::Node& root,
                      const com::Ref<CDBAttributes>& attributes, const KeySet& referenced) {
    const dom::Node container(AppendPoint(document, root, kAttributes));
    if (!attributes) {
        return;
    }
    for (const auto& attribute : attributes->All()) {
        const std::wstring_view key = ReferenceKey(attribute->PointName());
        const bool connected = EqualIgnoringCase(key, kConfigurationKey) || referenced.contains(key);
        const dom::Element element = AppendPoint(document, container, attribute->PointName());
        SetFieldAttributes(element, kExportedAttribute,
                           ExportedAttribute{attribute->Data(), attribute->SNVTName(), connected});
        const auto& type = attribute->Type();
        if (type && type->IsEnum() && !type->Data().enumDescription.empty()) {
            dom::SetAttribute(element, kEnumDesc, type->Data().enumDescription);
        }
    }
}

/// The path of the controller's database, from the host's own class.
std::wstring DatabasePath() {
    const auto location =
        com::CreateByClass<IDatabaseLocation>(kDatabaseLocationClass, L"The host's database location");
    com::Bstr path;
    com::Call(location, &IDatabaseLocation::get_Path, path.Put());
    return std::wstring(path.View());
}

/// For whoever looks into an export: with DEBUG=1 the document is kept.
void DumpIfAsked(const dom::Document& document, const std::wstring& devKey, short objectId) {
    wchar_t debug[3] = {};
    if (GetEnvironmentVariableW(L"DEBUG", debug, 3) != 1 || debug[0] != L'1') {
        return;
    }
    com::Attempt([&] {
        const std::wstring path = L"C:\\interop_" + devKey + L"_" + std::to_wstring(objectId) + L".xml";
        com::Call(document, &IXMLDOMDocument::save, com::Variant(std::wstring_view(path)).Get());
    });
}

com::Bstr XmlOf(const dom::Document& document) {
    com::Bstr text;
    com::Call(document, &IXMLDOMNode::get_xml, text.Put());
    return text;
}

} // namespace

dom::Document CDBAppObject::BuildExport() const {
    dom::Document document = dom::NewDocument(dom::kDocumentClass);
    const dom::Element root = dom::Append(document, dom::Node(document), kRoot);
    SetFieldAttributes(root, kExportedModule, data_);
    KeySet referenced;
    ExportInputs(document, dom::Node(root), inputs_, referenced);
    ExportOutputs(document, dom::Node(root), outputs_, referenced);
    ExportAttributes(document, dom::Node(root), attributes_, referenced);
    return document;
}

STDMETHODIMP CDBAppObject::get_Stream(BSTR* value) {
    const auto kept = This<IAppObject>(); // the box and the compiler may drop the last reference
    return Get(value, [&] {
        const std::wstring path = DatabasePath();
        com::Ref<IDispatch> compiler;
        com::Attempt([&] { compiler = com::CreateByProgId(kCompilerProgId); });
        std::wstring stream;
        if (!compiler) {
            com::Attempt([] {
                ShowBox(L"Compiler.dll, necessary to exported Tam object hasn't been found",
                        ComponentTitle());
            });
            // Nothing compiles the document: it is the answer itself, and no size is known.
            com::Attempt([&] {
                const dom::Document document = BuildExport();
                DumpIfAsked(document, data_.device.streamKey, data_.placement.objectId);
                stream = XmlOf(document).View();
            });
            TakeSizes({}, {});
            return stream;
        }
        com::Attempt([&] {
            std::array<VARIANT, 1> arguments{};
            const com::Variant argument{std::wstring_view(path)};
            arguments[0] = argument.Get();
            com::CallMember(*compiler.Get(), L"SetDBPath", arguments);
            CompileExport(*compiler.Get(), stream);
        });
        return stream;
    });
}

void CDBAppObject::CompileExport(IDispatch& compiler, std::wstring& stream) {
    const dom::Document document = BuildExport();
    DumpIfAsked(document, data_.device.streamKey, data_.placement.objectId);
    com::Bstr text = XmlOf(document);
    com::Bstr cdb(L"");
    com::Bstr ddb(L"");
    std::array<VARIANT, 3> arguments{com::ByReference(text), com::ByReference(cdb), com::ByReference(ddb)};
    com::CallMember(compiler, L"CompileTamObject", arguments);
    TakeSizes(cdb.View(), ddb.View());
    stream = text.View();
}

void CDBAppObject::TakeSizes(std::wstring_view cdb, std::wstring_view ddb) {
    data_.device.cdbDimension = ToInt32(Val(cdb));
    data_.device.ddbDimension = ToInt32(Val(ddb));
}

STDMETHODIMP CDBAppObject::ClearReferences() {
    // A message of the host may drop the last reference to the object or to its collection.
    const auto kept = This<IAppObject>();
    return Do([&] {
        if (!inputs_) {
            return;
        }
        const com::Ref<CDBInputs> inputs = inputs_; // a message of the host may drop the collection meanwhile
        for (const com::Ref<CDBInput> input : inputs->All()) { // held over the yield
            YieldToHost();
            com::Attempt([&] {
                VARIANT_BOOL extended = VARIANT_FALSE;
                com::Check(input->get_Extended(&extended));
                const com::Bstr value(extended != VARIANT_FALSE ? kNoExtendedReference : kNoReference);
                com::Check(input->put_Value(value.Get()));
            });
        }
    });
}

} // namespace tam
