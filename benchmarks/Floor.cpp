#include "benchmarks/Floor.h"

#include "common/Dom.h"

namespace benchmark {

namespace {

namespace dom = tam::dom;

void ReadEntry(const support::Document& catalogue, const std::wstring& id) {
    const dom::Node root(support::Root(catalogue));
    if (const dom::Node entry = dom::Select(root, L"SNVT_" + id)) {
        ReadChildren(entry.Get());
    }
}

void ReadPoint(const dom::Node& point, const support::Document& catalogue) {
    dom::BaseName(point);
    dom::ForEachChildButComments(point, [&](const dom::Node& child) {
        const std::wstring name = dom::BaseName(child);
        const std::wstring text = dom::FirstChildTextOrEmpty(child);
        if (name == L"SNVTTYPE") {
            ReadEntry(catalogue, text);
        }
    });
}

} // namespace

void YieldTimes(long count) {
    MSG message;
    for (long i = 0; i < count; ++i) {
        PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);
    }
}

void ReadStream(const std::wstring& stream, const support::Document& catalogue, long yields) {
    const support::Document document = support::Parse(stream);
    for (const wchar_t* path : {L"Tam/Name", L"Tam/DevKey", L"Tam/IsLastOnDev", L"Tam/TamObjID"}) {
        dom::TextOf(dom::Select(dom::Node(document), path));
    }
    for (const wchar_t* path : {L"Tam/InReferences", L"Tam/OutReferences", L"Tam/Attributes"}) {
        const dom::Node section = dom::FirstByTagName(document, path);
        if (section) {
            dom::ForEachChildButComments(section,
                                         [&](const dom::Node& point) { ReadPoint(point, catalogue); });
        }
    }
    YieldTimes(yields);
}

void BuildElement(const support::Document& document, IXMLDOMNode* parent, const wchar_t* name, int children) {
    const dom::Node element(dom::Append(document, dom::Node(parent), name));
    for (int i = 0; i < children; ++i) {
        dom::AppendText(document, element, L"LogicalAddress", L"12");
    }
}

com::Ref<IXMLDOMElement> BuildAttributes(const support::Document& document, IXMLDOMNode* parent,
                                         const wchar_t* name, int attributes) {
    const dom::Element element = dom::Append(document, dom::Node(parent), name);
    static const wchar_t* const kNames[] = {L"LogicalAddress", L"SNVTType", L"isPermanent", L"IsConnected",
                                            L"ObjOffset",      L"Value",    L"IsWritable"};
    for (int i = 0; i < attributes; ++i) {
        dom::SetAttribute(element, kNames[i], L"12");
    }
    return element;
}

void ReadChildren(IXMLDOMNode* node) {
    dom::ForEachChildButComments(dom::Node(node), [](const dom::Node& child) {
        dom::BaseName(child);
        dom::TextOf(child);
    });
}

} // namespace benchmark
