#pragma once

#include "com/Msxml.h"
#include "com/Ref.h"

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_map>

// The host's own documents: catalogue, project, interoperability.

namespace bench::xml {

using Node = com::Ref<IXMLDOMNode>;
using Document = com::Ref<IXMLDOMDocument2>;

/// An empty MSXML 6 document that refuses document types.
Document New();
/// Throws BenchError when the file is not there, no XML or has a document type.
Document LoadFile(const std::wstring& path);
/// Empty when the text is no XML.
Document LoadText(const std::wstring& text);

/// A new element below a node, which may be the document.
Node Append(const Document& document, const Node& parent, const std::wstring& name);
/// The first node at a path; empty when there is none.
Node Select(const Node& from, const std::wstring& path);
/// The text of the node at a path; empty when there is none.
std::wstring TextAt(const Node& from, const std::wstring& path);
std::wstring TextOf(const Node& node);
std::wstring NameOf(const Node& node);
void ForEachElement(const Node& parent, const std::function<void(const Node&)>& visit);
std::size_t CountElements(const Node& parent);
/// The child elements of a node by name, the first one of each name.
using ElementIndex = std::unordered_map<std::wstring, Node>;
ElementIndex IndexOf(const Node& parent);

/// A node with all below it, indented by two blanks a level; comments are left out.
/// Attribute values longer than `longest` are cut, with "…" as the sign of it.
std::string Print(const Node& node, std::size_t longest = std::string::npos);
/// Print with an XML declaration before it, written as UTF-8.
void Save(const Node& root, const std::wstring& path);

} // namespace bench::xml
