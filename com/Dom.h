#pragma once

#include "com/Boundary.h"
#include "com/Conversion.h"
#include "com/Msxml.h"
#include "com/Ref.h"

#include <windows.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tam::dom {

using Node = com::Ref<IXMLDOMNode>;
using Element = com::Ref<IXMLDOMElement>;
using Document = com::Ref<IXMLDOMDocument2>;

/// The document class that the definition file is loaded with.
extern const CLSID kDefinitionDocumentClass;
/// MSXML 6, for every other document that the component makes.
extern const CLSID kDocumentClass;

/// A new document: synchronous, XPath selection, no DTD. Throws CallError.
Document NewDocument(REFCLSID documentClass);

/// The node that an argument of the host stands for. "Object not set" for a null one,
/// "type mismatch" for an object that is no DOM node.
Node NodeOf(IDispatch* object);
/// The same for a document.
Document DocumentOf(IDispatch* object);

/// Local name; empty for nodes that have none.
std::wstring BaseName(const Node& node);
/// Text of the node with all below it, as the DOM gives it.
std::wstring TextOf(const Node& node);
/// The node's own text nodes as they stand: the DOM's text is trimmed.
std::wstring OwnText(const Node& node);
/// Value of a node of its own, such as a text; empty where it has none.
std::wstring ValueOf(const Node& node);
/// Text of the node's first child. "Object not set" when it has no child.
std::wstring FirstChildText(const Node& node);
/// Text of the node's first child; empty when it has no child.
std::wstring FirstChildTextOrEmpty(const Node& node);
/// Value of the node's first child, of whatever kind. "Object not set" when it has
/// no child or one without a value, such as an element.
std::wstring FirstChildValue(const Node& node);

/// A text node's own value; of any other node its text, as the DOM gives it.
std::wstring PlainText(const Node& node);

DOMNodeType TypeOf(const Node& node);
inline bool IsComment(const Node& node) {
    return TypeOf(node) == NODE_COMMENT;
}
inline bool IsElement(const Node& node) {
    return TypeOf(node) == NODE_ELEMENT;
}

/// True for an element that has a namespace or a prefix.
bool HasNamespace(const Node& node);

// Empty when there is none.
Node ParentOf(const Node& node);
Node FirstChild(const Node& node);
Node NextSibling(const Node& node);

/// Whether a child fits. Asks in document order and goes no further than the
/// first that does.
bool AnyChild(const Node& parent, const std::function<bool(const Node&)>& fits);
/// Calls visit for each child in document order. The next sibling is read
/// after the visit, so a visit may append after the child that it is given.
void ForEachChild(const Node& parent, const std::function<void(const Node&)>& visit);
/// The same without the comments.
void ForEachChildButComments(const Node& parent, const std::function<void(const Node&)>& visit);
/// Calls visit with the local name and the text of each attribute.
void ForEachAttribute(const Node& element,
                      const std::function<void(const std::wstring&, const std::wstring&)>& visit);

/// Text of an attribute of a node; nothing when the node has no such attribute.
std::optional<std::wstring> Attribute(const Node& element, const std::wstring& name);

/// First node that the element-by-tag-name query of the document returns for
/// a name or a path; empty when there is none.
Node FirstByTagName(const Document& document, const std::wstring& path);
/// Calls visit for each node that this query returns, in document order.
void ForEachByTagName(const Document& document, const std::wstring& path,
                      const std::function<void(const Node&)>& visit);
/// Single node selected by a path from a node; empty when there is none.
Node Select(const Node& from, const std::wstring& path);

/// Appends an empty element.
Element Append(const Document& document, const Node& parent, const std::wstring& name);
/// Appends an element with a text node, which may be empty.
Element AppendText(const Document& document, const Node& parent, const std::wstring& name,
                   const std::wstring& text);
/// Appends an element as the export writes them: with a text node, or without
/// one when the text is exactly the marker "NoTextField".
Element AppendField(const Document& document, const Node& parent, const std::wstring& name,
                    const std::wstring& text);
inline constexpr std::wstring_view kNoTextField = L"NoTextField";

/// Sets an attribute of an element.
void SetAttribute(const Element& element, const std::wstring& name, const std::wstring& text);

} // namespace tam::dom
