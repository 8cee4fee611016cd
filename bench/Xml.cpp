#include "bench/Xml.h"

#include "bench/Table.h"
#include "bench/Text.h"
#include "bench/TextFile.h"
#include "bench/WholeFile.h"
#include "com/Boundary.h"
#include "com/Conversion.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace bench::xml {

namespace {

constexpr CLSID kDocumentClass = {
    0x88D96A05, 0xF192, 0x11D4, {0xA6, 0x5F, 0x00, 0x40, 0x96, 0x32, 0x51, 0xE5}};

DOMNodeType TypeOf(const Node& node) {
    DOMNodeType type = NODE_INVALID;
    com::Call(node, &IXMLDOMNode::get_nodeType, &type);
    return type;
}

void ForEachChild(const Node& parent, const std::function<void(const Node&)>& visit) {
    Node child;
    com::Call(parent, &IXMLDOMNode::get_firstChild, child.Put());
    while (child) {
        visit(child);
        Node next;
        com::Call(child, &IXMLDOMNode::get_nextSibling, next.Put());
        child = next;
    }
}

std::string Escape(const std::wstring& text, bool isAttribute) {
    std::wstring result;
    for (const wchar_t c : text) {
        switch (c) {
        case L'&':
            result += L"&amp;";
            break;
        case L'<':
            result += L"&lt;";
            break;
        case L'>':
            result += L"&gt;";
            break;
        case L'"':
            result += isAttribute ? L"&quot;" : L"\"";
            break;
        case L'\r':
            result += L"&#13;";
            break;
        case L'\n': // in an attribute a reader makes blanks of these
            result += isAttribute ? L"&#10;" : L"\n";
            break;
        case L'\t':
            result += isAttribute ? L"&#9;" : L"\t";
            break;
        default:
            result += c;
        }
    }
    return Utf8(result);
}

std::string PrintAttributes(const Node& node, std::size_t longest) {
    std::string text;
    com::Ref<IXMLDOMNamedNodeMap> attributes;
    com::Call(node, &IXMLDOMNode::get_attributes, attributes.Put());
    Node attribute;
    while (attributes && attributes->nextNode(attribute.Put()) == S_OK) {
        text += " " + Utf8(NameOf(attribute)) + "=\"" + Cut(Escape(TextOf(attribute), true), longest) + "\"";
    }
    return text;
}

void PrintNode(const Node& node, std::size_t depth, std::size_t longest, std::string& out) {
    const std::string indent(depth * 2, ' ');
    const std::string name = Utf8(NameOf(node));
    std::string text;
    std::string below;
    ForEachChild(node, [&](const Node& child) {
        const DOMNodeType type = TypeOf(child);
        if (type == NODE_ELEMENT) {
            PrintNode(child, depth + 1, longest, below);
        } else if (type == NODE_TEXT || type == NODE_CDATA_SECTION) {
            text += Escape(TextOf(child), false);
        }
    });
    out += indent + "<" + name + PrintAttributes(node, longest);
    if (text.empty() && below.empty()) {
        out += "/>\n";
    } else if (below.empty()) {
        out += ">" + text + "</" + name + ">\n";
    } else {
        out += ">" + text + "\n" + below + indent + "</" + name + ">\n";
    }
}

[[noreturn]] void ThrowParseError(const Document& document, std::string bytes, const std::wstring& path) {
    com::Ref<IXMLDOMParseError> error;
    com::Call(document, &IXMLDOMDocument::get_parseError, error.Put());
    LONG code = 0;
    com::Bstr reason;
    com::Check(error->get_errorCode(&code));
    com::Check(error->get_reason(reason.Put()));
    // Not every parser tells where.
    const std::string why = WhyNoXml(std::move(bytes));
    throw BenchError(code, Utf8(path) + " is no XML document: " + (why.empty() ? Utf8(reason.View()) : why));
}

} // namespace

Document New() {
    Document document;
    com::Check(CoCreateInstance(kDocumentClass, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IXMLDOMDocument2),
                                document.PutVoid()));
    com::Call(document, &IXMLDOMDocument::put_async, VARIANT_FALSE);
    VARIANT yes{};
    yes.vt = VT_BOOL;
    yes.boolVal = VARIANT_TRUE;
    com::Call(document, &IXMLDOMDocument2::setProperty, com::Bstr(L"ProhibitDTD").Get(), yes);
    return document;
}

Document LoadFile(const std::wstring& path) {
    Document document = New();
    VARIANT_BOOL done = VARIANT_FALSE;
    std::string bytes = ReadBytes(path);
    if (path == kStandardInput) {
        com::Call(document, &IXMLDOMDocument::loadXML, com::Bstr(TextOfDocument(bytes, path)).Get(), &done);
    } else {
        com::Call(document, &IXMLDOMDocument::load, com::Variant(std::wstring_view(FullPath(path))).Get(),
                  &done);
    }
    if (done == VARIANT_FALSE) {
        ThrowParseError(document, std::move(bytes), path);
    }
    com::Ref<IXMLDOMDocumentType> type; // not every parser refuses it when told to
    com::Call(document, &IXMLDOMDocument::get_doctype, type.Put());
    if (type) {
        throw BenchError(E_FAIL, Utf8(path) + " has a document type (DTD), which is not accepted");
    }
    return document;
}

Document LoadText(const std::wstring& text) {
    Document document = New();
    VARIANT_BOOL done = VARIANT_FALSE;
    com::Call(document, &IXMLDOMDocument::loadXML, com::Bstr(text).Get(), &done);
    return document;
}

Node Append(const Document& document, const Node& parent, const std::wstring& name) {
    com::Ref<IXMLDOMElement> element;
    com::Call(document, &IXMLDOMDocument::createElement, com::Bstr(name).Get(), element.Put());
    Node appended;
    com::Call(parent, &IXMLDOMNode::appendChild, element.Get(), appended.Put());
    return appended;
}

Node Select(const Node& from, const std::wstring& path) {
    Node node;
    com::Call(from, &IXMLDOMNode::selectSingleNode, com::Bstr(path).Get(), node.Put());
    return node;
}

std::wstring TextAt(const Node& from, const std::wstring& path) {
    const Node node = Select(from, path);
    return node ? TextOf(node) : std::wstring();
}

std::wstring TextOf(const Node& node) {
    com::Bstr text;
    com::Call(node, &IXMLDOMNode::get_text, text.Put());
    return std::wstring(text.View());
}

std::wstring NameOf(const Node& node) {
    com::Bstr name;
    com::Call(node, &IXMLDOMNode::get_nodeName, name.Put());
    return std::wstring(name.View());
}

void ForEachElement(const Node& parent, const std::function<void(const Node&)>& visit) {
    ForEachChild(parent, [&](const Node& child) {
        if (TypeOf(child) == NODE_ELEMENT) {
            visit(child);
        }
    });
}

std::size_t CountElements(const Node& parent) {
    std::size_t count = 0;
    ForEachElement(parent, [&](const Node&) { ++count; });
    return count;
}

ElementIndex IndexOf(const Node& parent) {
    ElementIndex index;
    ForEachElement(parent, [&](const Node& child) { index.emplace(NameOf(child), child); });
    return index;
}

std::string Print(const Node& node, std::size_t longest) {
    std::string text;
    PrintNode(node, 0, longest, text);
    return text;
}

void Save(const Node& root, const std::wstring& path) {
    WriteWholeFile(path, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + Print(root));
}

} // namespace bench::xml
