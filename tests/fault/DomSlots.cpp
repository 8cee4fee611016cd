#include "tests/fault/DomSlots.h"

#include "tests/support/Read.h"

#include <initializer_list>
#include <utility>

namespace fault {

namespace {

using com::Bstr;
using com::Check;
using com::Ref;

template <class I>
void ReplaceNode(Slots& slots, I* node) {
    slots.Replace<Kind::Dom, &IXMLDOMNode::get_nodeName, &IXMLDOMNode::get_nodeValue,
                  &IXMLDOMNode::get_nodeType, &IXMLDOMNode::get_parentNode, &IXMLDOMNode::get_firstChild,
                  &IXMLDOMNode::get_lastChild, &IXMLDOMNode::get_nextSibling, &IXMLDOMNode::get_attributes,
                  &IXMLDOMNode::insertBefore, &IXMLDOMNode::removeChild, &IXMLDOMNode::appendChild,
                  &IXMLDOMNode::get_text, &IXMLDOMNode::get_xml, &IXMLDOMNode::selectNodes,
                  &IXMLDOMNode::selectSingleNode, &IXMLDOMNode::get_namespaceURI, &IXMLDOMNode::get_prefix,
                  &IXMLDOMNode::get_baseName>(node);
}

void ReplaceDocument(Slots& slots, IXMLDOMDocument2* document) {
    ReplaceNode(slots, document);
    slots.Replace<Kind::Dom, &IXMLDOMDocument::get_documentElement, &IXMLDOMDocument::createElement,
                  &IXMLDOMDocument::createTextNode, &IXMLDOMDocument::getElementsByTagName,
                  &IXMLDOMDocument::load, &IXMLDOMDocument::get_readyState, &IXMLDOMDocument::get_parseError,
                  &IXMLDOMDocument::get_doctype, &IXMLDOMDocument::put_async,
                  &IXMLDOMDocument::put_resolveExternals, &IXMLDOMDocument::loadXML, &IXMLDOMDocument::save,
                  &IXMLDOMDocument2::setProperty>(document);
}

void ReplaceMap(Slots& slots, IXMLDOMNode* element) {
    Ref<IXMLDOMNamedNodeMap> map;
    Check(element->get_attributes(map.Put()));
    slots.Replace<Kind::Dom, &IXMLDOMNamedNodeMap::getNamedItem, &IXMLDOMNamedNodeMap::nextNode,
                  &IXMLDOMNamedNodeMap::reset>(map.Get());
    Ref<IXMLDOMNode> attribute;
    Check(map->nextNode(attribute.Put()));
    ReplaceNode(slots, attribute.Get());
}

} // namespace

void ReplaceDom(Slots& slots) {
    for (REFCLSID documentClass : {tam::dom::kDefinitionDocumentClass, tam::dom::kDocumentClass}) {
        const support::Document document = tam::dom::NewDocument(documentClass);
        VARIANT_BOOL done = VARIANT_FALSE;
        Check(document->loadXML(Bstr(L"<a b='c'>d<![CDATA[e]]><!--f--><?g h?></a>").Get(), &done));
        const auto root = support::Root(document);
        ReplaceMap(slots, root.Get());
        Ref<IXMLDOMNode> child;
        Check(root->get_firstChild(child.Put()));
        while (child) {
            ReplaceNode(slots, child.Get());
            Ref<IXMLDOMNode> next;
            Check(child->get_nextSibling(next.Put()));
            child = std::move(next);
        }
        Ref<IXMLDOMNodeList> list;
        Check(document->getElementsByTagName(Bstr(L"a").Get(), list.Put()));
        slots.Replace<Kind::Dom, &IXMLDOMNodeList::nextNode>(list.Get());
        Check(document->selectNodes(Bstr(L"a").Get(), list.Put()));
        slots.Replace<Kind::Dom, &IXMLDOMNodeList::nextNode>(list.Get());
        Ref<IXMLDOMParseError> error;
        Check(document->get_parseError(error.Put()));
        slots.Replace<Kind::Dom, &IXMLDOMParseError::get_srcText, &IXMLDOMParseError::get_reason>(
            error.Get());
        ReplaceNode(slots, root.Get());
        slots.Replace<Kind::Dom, &IXMLDOMElement::setAttribute>(root.Get());
        ReplaceDocument(slots, document.Get());
    }
}

} // namespace fault
