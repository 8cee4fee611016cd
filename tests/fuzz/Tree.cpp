#include "tests/fuzz/Tree.h"

namespace component_fuzz {

namespace {

using Node = com::Ref<IXMLDOMNode>;

std::wstring ValueOf(const Node& node) {
    com::Variant value;
    com::Check(node->get_nodeValue(value.Put()));
    return value.Get().vt == VT_BSTR ? com::Text(value.Get().bstrVal) : std::wstring();
}

std::wstring NameOf(const Node& node) {
    com::Bstr name;
    com::Check(node->get_nodeName(name.Put()));
    return std::wstring(name.View());
}

Tree::Kind KindOf(DOMNodeType type) {
    switch (type) {
    case NODE_ELEMENT:
        return Tree::Kind::Element;
    case NODE_CDATA_SECTION:
        return Tree::Kind::CData;
    case NODE_COMMENT:
        return Tree::Kind::Comment;
    case NODE_PROCESSING_INSTRUCTION:
        return Tree::Kind::Instruction;
    default:
        return Tree::Kind::Text;
    }
}

void ReadAttributes(const Node& node, Tree& tree) {
    com::Ref<IXMLDOMNamedNodeMap> attributes;
    com::Check(node->get_attributes(attributes.Put()));
    for (Node attribute; attributes && attributes->nextNode(attribute.Put()) == S_OK;) {
        tree.attributes.emplace_back(NameOf(attribute), ValueOf(attribute));
    }
}

std::wstring Escaped(const std::wstring& text) {
    std::wstring escaped;
    for (const wchar_t c : text) {
        switch (c) {
        case L'&':
            escaped += L"&amp;";
            break;
        case L'<':
            escaped += L"&lt;";
            break;
        case L'>':
            escaped += L"&gt;";
            break;
        case L'"':
            escaped += L"&quot;";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

void Write(const Tree& tree, std::wstring& out) {
    switch (tree.kind) {
    case Tree::Kind::Text:
        out += Escaped(tree.text);
        return;
    case Tree::Kind::CData:
        out += L"<![CDATA[" + tree.text + L"]]>";
        return;
    case Tree::Kind::Comment:
        out += L"<!--" + tree.text + L"-->";
        return;
    case Tree::Kind::Instruction:
        out += L"<?x " + tree.text + L"?>";
        return;
    case Tree::Kind::Element:
        break;
    }
    out += L"<" + tree.name;
    for (const auto& [name, value] : tree.attributes) {
        out += L" " + name + L"=\"" + Escaped(value) + L"\"";
    }
    out += L">";
    for (const Tree& child : tree.children) {
        Write(child, out);
    }
    out += L"</" + tree.name + L">";
}

/// A node of the DOM for a leaf; empty when the DOM refuses it.
Node BuildLeaf(const support::Document& document, const Tree& tree) {
    const com::Bstr text(tree.text);
    Node node;
    switch (tree.kind) {
    case Tree::Kind::CData: {
        com::Ref<IXMLDOMCDATASection> section;
        document->createCDATASection(text.Get(), section.Put());
        node = Node(section.Get());
        break;
    }
    case Tree::Kind::Comment: {
        com::Ref<IXMLDOMComment> comment;
        document->createComment(text.Get(), comment.Put());
        node = Node(comment.Get());
        break;
    }
    case Tree::Kind::Instruction: {
        com::Ref<IXMLDOMProcessingInstruction> instruction;
        document->createProcessingInstruction(com::Bstr(L"x").Get(), text.Get(), instruction.Put());
        node = Node(instruction.Get());
        break;
    }
    default: {
        com::Ref<IXMLDOMText> plain;
        document->createTextNode(text.Get(), plain.Put());
        node = Node(plain.Get());
    }
    }
    return node;
}

} // namespace

Tree TreeOf(const Node& node) {
    DOMNodeType type = NODE_INVALID;
    com::Check(node->get_nodeType(&type));
    Tree tree;
    tree.kind = KindOf(type);
    if (tree.kind != Tree::Kind::Element) {
        tree.text = ValueOf(node);
        return tree;
    }
    tree.name = NameOf(node);
    ReadAttributes(node, tree);
    Node child;
    com::Check(node->get_firstChild(child.Put()));
    while (child) {
        tree.children.push_back(TreeOf(child));
        Node next;
        com::Check(child->get_nextSibling(next.Put()));
        child = std::move(next);
    }
    return tree;
}

std::wstring TextOf(const Tree& tree) {
    std::wstring text;
    Write(tree, text);
    return text;
}

com::Ref<IXMLDOMElement> Build(const support::Document& document, const Tree& tree) {
    com::Ref<IXMLDOMElement> element;
    document->createElement(com::Bstr(tree.name).Get(), element.Put());
    if (!element) {
        return element;
    }
    for (const auto& [name, value] : tree.attributes) {
        element->setAttribute(com::Bstr(name).Get(), com::Variant(value).Get());
    }
    for (const Tree& child : tree.children) {
        Node node = child.kind == Tree::Kind::Element ? Node(Build(document, child).Get())
                                                      : BuildLeaf(document, child);
        if (node) {
            Node appended;
            element->appendChild(node.Get(), appended.Put());
        }
    }
    return element;
}

std::vector<Tree*> Elements(Tree& tree) {
    std::vector<Tree*> all;
    if (tree.kind == Tree::Kind::Element) {
        all.push_back(&tree);
        for (Tree& child : tree.children) {
            for (Tree* element : Elements(child)) {
                all.push_back(element);
            }
        }
    }
    return all;
}

} // namespace component_fuzz
