#include "com/Dom.h"

#include "com/Required.h"

namespace tam::dom {

namespace {

using com::Bstr;
using com::Call;
using com::Check;
using com::CheckSet;
using com::Ref;

std::wstring VariantText(const VARIANT& value) {
    if (value.vt == VT_BSTR) {
        return com::Text(value.bstrVal);
    }
    return {};
}

void CheckFound(const Node& node) {
    CheckSet(node.Get());
}

bool IsText(const Node& node) {
    const DOMNodeType type = TypeOf(node);
    return type == NODE_TEXT || type == NODE_CDATA_SECTION;
}

} // namespace

const CLSID kDefinitionDocumentClass = {
    0xF6D90F11, 0x9C73, 0x11D3, {0xB3, 0x2E, 0x00, 0xC0, 0x4F, 0x99, 0x0B, 0xB4}};
const CLSID kDocumentClass = {0x88D96A05, 0xF192, 0x11D4, {0xA6, 0x5F, 0x00, 0x40, 0x96, 0x32, 0x51, 0xE5}};

Document NewDocument(REFCLSID documentClass) {
    Document document;
    Check(CoCreateInstance(documentClass, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IXMLDOMDocument2),
                           document.PutVoid()));
    Call(document, &IXMLDOMDocument::put_async, VARIANT_FALSE);
    com::Variant language(L"XPath");
    Call(document, &IXMLDOMDocument2::setProperty, Bstr(L"SelectionLanguage").Get(), language.Get());
    VARIANT yes{};
    yes.vt = VT_BOOL;
    yes.boolVal = VARIANT_TRUE;
    // Older parsers do not know the property. They would fetch what a document refers to.
    document->setProperty(Bstr(L"ProhibitDTD").Get(), yes);
    Call(document, &IXMLDOMDocument::put_resolveExternals, VARIANT_FALSE);
    return document;
}

Node NodeOf(IDispatch* object) {
    return Required<IXMLDOMNode>(object);
}

Document DocumentOf(IDispatch* object) {
    return Required<IXMLDOMDocument2>(object);
}

std::wstring BaseName(const Node& node) {
    Bstr name;
    Call(node, &IXMLDOMNode::get_baseName, name.Put());
    return std::wstring(name.View());
}

std::wstring TextOf(const Node& node) {
    Bstr text;
    Call(node, &IXMLDOMNode::get_text, text.Put());
    return std::wstring(text.View());
}

std::wstring OwnText(const Node& node) {
    std::wstring text;
    ForEachChild(node, [&](const Node& child) {
        if (IsText(child)) {
            text += ValueOf(child);
        }
    });
    return text;
}

std::wstring ValueOf(const Node& node) {
    com::Variant value;
    Call(node, &IXMLDOMNode::get_nodeValue, value.Put());
    return VariantText(value.Get());
}

// The DOM trims the text that it gives of a node; a text node's own value is
// what the document says.
std::wstring PlainText(const Node& node) {
    return IsText(node) ? ValueOf(node) : TextOf(node);
}

std::wstring FirstChildText(const Node& node) {
    const Node child = FirstChild(node);
    CheckFound(child);
    return PlainText(child);
}

std::wstring FirstChildTextOrEmpty(const Node& node) {
    const Node child = FirstChild(node);
    return child ? PlainText(child) : std::wstring();
}

std::wstring FirstChildValue(const Node& node) {
    const Node child = FirstChild(node);
    CheckFound(child);
    com::Variant value;
    Call(child, &IXMLDOMNode::get_nodeValue, value.Put());
    if (value.Get().vt != VT_BSTR) {
        throw RunTimeError(RunTime::ObjectNotSet);
    }
    return com::Text(value.Get().bstrVal);
}

DOMNodeType TypeOf(const Node& node) {
    DOMNodeType type = NODE_INVALID;
    Call(node, &IXMLDOMNode::get_nodeType, &type);
    return type;
}

bool HasNamespace(const Node& node) {
    Bstr text;
    Call(node, &IXMLDOMNode::get_namespaceURI, text.Put());
    if (!text.View().empty()) {
        return true;
    }
    Call(node, &IXMLDOMNode::get_prefix, text.Put());
    return !text.View().empty();
}

Node ParentOf(const Node& node) {
    Node parent;
    Call(node, &IXMLDOMNode::get_parentNode, parent.Put());
    return parent;
}

Node FirstChild(const Node& node) {
    Node child;
    Call(node, &IXMLDOMNode::get_firstChild, child.Put());
    return child;
}

Node NextSibling(const Node& node) {
    Node next;
    Call(node, &IXMLDOMNode::get_nextSibling, next.Put());
    return next;
}

bool AnyChild(const Node& parent, const std::function<bool(const Node&)>& fits) {
    Node child = FirstChild(parent);
    while (child) {
        if (fits(child)) {
            return true;
        }
        child = NextSibling(child);
    }
    return false;
}

void ForEachChild(const Node& parent, const std::function<void(const Node&)>& visit) {
    AnyChild(parent, [&](const Node& child) {
        visit(child);
        return false;
    });
}

void ForEachChildButComments(const Node& parent, const std::function<void(const Node&)>& visit) {
    ForEachChild(parent, [&](const Node& child) {
        if (!IsComment(child)) {
            visit(child);
        }
    });
}

void ForEachAttribute(const Node& element,
                      const std::function<void(const std::wstring&, const std::wstring&)>& visit) {
    Ref<IXMLDOMNamedNodeMap> attributes;
    Call(element, &IXMLDOMNode::get_attributes, attributes.Put());
    if (!attributes) {
        return;
    }
    Call(attributes, &IXMLDOMNamedNodeMap::reset); // where somebody else's walk has left it
    for (;;) {
        Node attribute;
        Call(attributes, &IXMLDOMNamedNodeMap::nextNode, attribute.Put());
        if (!attribute) {
            return;
        }
        visit(BaseName(attribute), TextOf(attribute));
    }
}

std::optional<std::wstring> Attribute(const Node& element, const std::wstring& name) {
    Ref<IXMLDOMNamedNodeMap> attributes;
    Call(element, &IXMLDOMNode::get_attributes, attributes.Put());
    Node attribute;
    if (attributes) {
        Call(attributes, &IXMLDOMNamedNodeMap::getNamedItem, Bstr(name).Get(), attribute.Put());
    }
    return attribute ? std::optional(TextOf(attribute)) : std::nullopt;
}

Node FirstByTagName(const Document& document, const std::wstring& path) {
    Ref<IXMLDOMNodeList> list;
    Call(document, &IXMLDOMDocument::getElementsByTagName, Bstr(path).Get(), list.Put());
    Node node;
    if (list) {
        Call(list, &IXMLDOMNodeList::nextNode, node.Put());
    }
    return node;
}

void ForEachByTagName(const Document& document, const std::wstring& path,
                      const std::function<void(const Node&)>& visit) {
    Ref<IXMLDOMNodeList> list;
    Call(document, &IXMLDOMDocument::getElementsByTagName, Bstr(path).Get(), list.Put());
    CheckSet(list.Get());
    for (;;) {
        Node node;
        Call(list, &IXMLDOMNodeList::nextNode, node.Put());
        if (!node) {
            return;
        }
        visit(node);
    }
}

Node Select(const Node& from, const std::wstring& path) {
    Node node;
    Call(from, &IXMLDOMNode::selectSingleNode, Bstr(path).Get(), node.Put());
    return node;
}

Element Append(const Document& document, const Node& parent, const std::wstring& name) {
    Element element;
    Call(document, &IXMLDOMDocument::createElement, Bstr(name).Get(), element.Put());
    Call(parent, &IXMLDOMNode::appendChild, element.Get(), nullptr);
    return element;
}

Element AppendText(const Document& document, const Node& parent, const std::wstring& name,
                   const std::wstring& text) {
    Element element = Append(document, parent, name);
    Ref<IXMLDOMText> content;
    Call(document, &IXMLDOMDocument::createTextNode, Bstr(text).Get(), content.Put());
    Call(element, &IXMLDOMNode::appendChild, content.Get(), nullptr);
    return element;
}

Element AppendField(const Document& document, const Node& parent, const std::wstring& name,
                    const std::wstring& text) {
    return text == kNoTextField ? Append(document, parent, name) : AppendText(document, parent, name, text);
}

void SetAttribute(const Element& element, const std::wstring& name, const std::wstring& text) {
    const com::Variant value{std::wstring_view(text)};
    Call(element, &IXMLDOMElement::setAttribute, Bstr(name).Get(), value.Get());
}

} // namespace tam::dom
