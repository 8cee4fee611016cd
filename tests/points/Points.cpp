#include "tests/points/Points.h"

namespace points {

using namespace support;

namespace {

constexpr const wchar_t* kCatalogue =
    L"<SNVT_105 Factor='100' Z3Region='4'><Name>Temperature</Name><Type>SignedNumeric</Type><Unit>degC</Unit>"
    L"<Min>-273.17</Min><Max>327.66</Max><Length>2</Length></SNVT_105>"
    L"<SNVT_8><Name>Count</Name><Type>UnsignedNumeric</Type><Unit>pcs</Unit><Length>2</Length></SNVT_8>"
    L"<SNVT_51><Name>Level</Name><Type>Float</Type><Unit>percent</Unit><Length>4</Length></SNVT_51>"
    L"<SNVT_95><Name>Switch</Name><Type>Enum</Type></SNVT_95>"
    L"<SNVT_83><Name>State</Name><Type>Bitfield</Type><Length>2</Length></SNVT_83>"
    L"<SNVT_36><Name>String</Name><Type>Textual</Type><Length>31</Length></SNVT_36>"
    L"<SNVT_84><Name>Time</Name><Type>Struct</Type></SNVT_84>"
    L"<SNVT_900><Name>Odd</Name><Type>Strange</Type></SNVT_900>";

com::Ref<IXMLDOMNode> NodeAt(const Document& document, const std::wstring& path) {
    const com::Bstr text(path);
    com::Ref<IXMLDOMNode> node;
    com::Check(document->selectSingleNode(text.Get(), node.Put()));
    return node;
}

} // namespace

com::Ref<IInputs> Inputs(const com::Ref<IAppObject>& module) {
    return Object(module, &IAppObject::get_Inputs);
}
com::Ref<IOutputs> Outputs(const com::Ref<IAppObject>& module) {
    return Object(module, &IAppObject::get_Outputs);
}
com::Ref<IAttributes> Attributes(const com::Ref<IAppObject>& module) {
    return Object(module, &IAppObject::get_Attributes);
}

com::Ref<IInput> Input(const com::Ref<IAppObject>& module, const std::wstring& index) {
    return Item(Inputs(module), &IInputs::get_Item, index);
}
com::Ref<IOutput> Output(const com::Ref<IAppObject>& module, const std::wstring& index) {
    return Item(Outputs(module), &IOutputs::get_Item, index);
}
com::Ref<IAttribute> Attribute(const com::Ref<IAppObject>& module, const std::wstring& index) {
    return Item(Attributes(module), &IAttributes::get_Item, index);
}

HRESULT Load(const com::Ref<IAppObject>& module, const std::wstring& stream) {
    const com::Bstr text(stream);
    return module.As<ITamObject>()->LoadFromXmlStream(text.Get());
}

std::wstring Named(std::initializer_list<const wchar_t*> names, const std::wstring& content) {
    std::wstring section;
    for (const std::wstring name : names) {
        section += L"<" + name + L">" + content + L"</" + name + L">";
    }
    return section;
}

std::wstring Interop(const com::Ref<IAppObject>& module, const std::wstring& kind, const std::wstring& point,
                     const std::wstring& child) {
    const Document document = Parse(L"<Host/>");
    com::Check(module->XMLSaveForInteroperability(Root(document).Get(), document.Get()));
    return TextAt(document, L"Host/O_Tam_id/" + kind + L"/" + point + L"/" + child);
}

com::Ref<IXMLDOMElement> Saved(const std::wstring& xml) {
    return Root(Parse(xml));
}

std::vector<std::wstring> ChildNames(const Document& document, const std::wstring& path) {
    std::vector<std::wstring> names;
    const com::Ref<IXMLDOMNode> parent = NodeAt(document, path);
    com::CheckSet(parent.Get());
    com::Ref<IXMLDOMNode> child;
    com::Check(parent->get_firstChild(child.Put()));
    while (child) {
        names.push_back(Text(child, &IXMLDOMNode::get_nodeName));
        com::Ref<IXMLDOMNode> next;
        com::Check(child->get_nextSibling(next.Put()));
        child = next;
    }
    return names;
}

std::wstring TextAt(const Document& document, const std::wstring& path) {
    const com::Ref<IXMLDOMNode> node = NodeAt(document, path);
    return node ? Text(node, &IXMLDOMNode::get_text) : L"(none)";
}

void PointsTest::SetUp() {
    ComponentTest::SetUp();
    SetCatalogue(kCatalogue);
}

void PointsTest::TearDown() {
    module.Reset();
    ComponentTest::TearDown();
}

com::Ref<IAppObject> PointsTest::WithAttributes(const std::wstring& attributes) {
    return Loaded(Stream({}, {}, attributes));
}
com::Ref<IAppObject> PointsTest::WithInputs(const std::wstring& inputs) {
    return Loaded(Stream(inputs));
}
com::Ref<IAppObject> PointsTest::WithOutputs(const std::wstring& outputs) {
    return Loaded(Stream({}, outputs));
}

std::wstring PointsTest::Exported(const com::Ref<IAppObject>& from, const std::wstring& path) {
    UseDatabaseLocation();
    Compiler& compiler = UseCompiler();
    Text(from, &IAppObject::get_Stream);
    return TextAt(Parse(compiler.givenXml), L"O_Tam_id/" + path);
}

} // namespace points
