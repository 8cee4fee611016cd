#include "tests/fuzz/Expected.h"

#include "core/Case.h"
#include "core/Numbers.h"
#include "core/RunTimeError.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace component_fuzz {

using namespace support;
using tam::EqualIgnoringCase;
using tam::RunTime;
using tam::RunTimeError;

namespace {

using Node = com::Ref<IXMLDOMNode>;

std::wstring BaseName(const Node& node) {
    com::Bstr name;
    com::Check(node->get_baseName(name.Put()));
    return std::wstring(name.View());
}

std::wstring TextOf(const Node& node) {
    com::Bstr text;
    com::Check(node->get_text(text.Put()));
    return std::wstring(text.View());
}

DOMNodeType TypeOf(const Node& node) {
    DOMNodeType type = NODE_INVALID;
    com::Check(node->get_nodeType(&type));
    return type;
}

bool IsText(const Node& node) {
    return TypeOf(node) == NODE_TEXT || TypeOf(node) == NODE_CDATA_SECTION;
}

std::wstring ValueOf(const Node& node) {
    com::Variant value;
    com::Check(node->get_nodeValue(value.Put()));
    return value.Get().vt == VT_BSTR ? com::Text(value.Get().bstrVal) : std::wstring();
}

std::vector<Node> Children(const Node& node) {
    std::vector<Node> children;
    Node child;
    com::Check(node->get_firstChild(child.Put()));
    while (child) {
        children.push_back(child);
        Node next;
        com::Check(child->get_nextSibling(next.Put()));
        child = std::move(next);
    }
    return children;
}

std::vector<Node> ChildrenButComments(const Node& node) {
    auto children = Children(node);
    std::erase_if(children, [](const Node& child) { return TypeOf(child) == NODE_COMMENT; });
    return children;
}

bool HasValue(const Node& node) {
    return IsText(node) || TypeOf(node) == NODE_COMMENT || TypeOf(node) == NODE_PROCESSING_INSTRUCTION;
}

/// "Object not set" without a first child that has a value.
std::wstring FirstValue(const Node& node) {
    const auto children = Children(node);
    if (children.empty() || !HasValue(children.front())) {
        throw RunTimeError(RunTime::ObjectNotSet);
    }
    return ValueOf(children.front());
}

std::wstring OwnText(const Node& node) {
    std::wstring text;
    for (const Node& child : Children(node)) {
        text += IsText(child) ? ValueOf(child) : L"";
    }
    return text;
}

Node Select(const Document& document, const wchar_t* path) {
    Node node;
    document->selectSingleNode(com::Bstr(path).Get(), node.Put());
    return node;
}

std::wstring Required(const Document& document, const wchar_t* path) {
    const Node node = Select(document, path);
    if (!node) {
        throw RunTimeError(RunTime::ObjectNotSet);
    }
    return TextOf(node);
}

void ReadHeader(const Document& document, ExpectedStream& expected) {
    expected.name = Required(document, L"Tam/Name");
    expected.devKey = Required(document, L"Tam/DevKey");
    tam::Val(Required(document, L"Tam/IsLastOnDev"));
    expected.objectId = tam::ToInt16(tam::Val(Required(document, L"Tam/TamObjID")));
    if (const Node cdb = Select(document, L"Tam/CDB")) {
        expected.cdb = tam::ToInt32(tam::Val(TextOf(cdb)));
    }
    if (const Node ddb = Select(document, L"Tam/DDB")) {
        expected.ddb = tam::ToInt32(tam::Val(TextOf(ddb)));
    }
}

void ReadSection(const Document& document, const wchar_t* path, std::vector<std::wstring>& names,
                 const std::function<void(const Node&)>& behind) {
    com::Ref<IXMLDOMNodeList> list;
    com::Check(document->getElementsByTagName(com::Bstr(path).Get(), list.Put()));
    Node section;
    com::Check(list->nextNode(section.Put()));
    if (!section) {
        return;
    }
    for (const Node& child : Children(section)) {
        if (TypeOf(child) != NODE_ELEMENT) {
            continue;
        }
        const std::wstring name = BaseName(child);
        const bool isKnown = std::any_of(names.begin(), names.end(), [&](const std::wstring& known) {
            return EqualIgnoringCase(known, name);
        });
        if (isKnown) {
            throw RunTimeError(RunTime::DuplicateKey);
        }
        names.push_back(name);
        behind(child);
    }
}

/// An attribute without a type stays in the collection and fails the call.
void RequireType(const Node& attribute) {
    const auto children = ChildrenButComments(attribute);
    const bool hasType = std::any_of(children.begin(), children.end(), [](const Node& child) {
        return tam::UpperCase(BaseName(child)) == L"SNVTTYPE";
    });
    if (!hasType) {
        throw RunTimeError(RunTime::ObjectNotSet);
    }
}

void ApplyChild(const Node& child, const std::vector<std::wstring>& outputs, ExpectedProject& expected) {
    const std::wstring keyword = tam::UpperCase(BaseName(child));
    if (keyword == L"USERNAME") {
        expected.userName = FirstValue(child);
    } else if (keyword == L"X_POSITION") {
        expected.x = tam::Val(FirstValue(child));
    } else if (keyword == L"Y_POSITION") {
        expected.y = tam::Val(FirstValue(child));
    } else if (keyword == L"DEVKEY") {
        expected.deviceKey = FirstValue(child);
    } else if (keyword == L"TAMOBJID") {
        expected.objectId = tam::ToInt16(tam::Val(FirstValue(child)));
    } else if (keyword == L"OUTREFERENCES") {
        for (const Node& flag : ChildrenButComments(child)) {
            if (OwnText(flag) != L"1") {
                continue;
            }
            const auto output = std::find_if(outputs.begin(), outputs.end(), [&](const std::wstring& name) {
                return EqualIgnoringCase(name, BaseName(flag));
            });
            if (output == outputs.end()) {
                throw RunTimeError(RunTime::ObjectNotSet);
            }
            expected.displayed.insert(*output);
        }
    }
}

} // namespace

ExpectedDefinition DefinitionOf(const Document& document) {
    ExpectedDefinition expected;
    com::Ref<IXMLDOMNodeList> list;
    com::Check(document->getElementsByTagName(com::Bstr(L"AppObject").Get(), list.Put()));
    Node object;
    com::Check(list->nextNode(object.Put()));
    if (!object) {
        return expected;
    }
    expected.hasObject = true;
    for (const Node& child : ChildrenButComments(object)) {
        const std::wstring keyword = tam::UpperCase(BaseName(child));
        if (keyword == L"NAME") {
            expected.name = TextOf(child);
            expected.userName = expected.userName.empty() ? expected.name : expected.userName;
        } else if (keyword == L"ID") {
            expected.id = TextOf(child);
        } else if (keyword == L"DESCRIPTION") {
            expected.description = TextOf(child);
        } else if (keyword == L"CATEGORY") {
            expected.category = TextOf(child);
        }
    }
    return expected;
}

ExpectedStream StreamOf(const Document& document, bool isXml) {
    ExpectedStream expected;
    try {
        if (!isXml) {
            throw RunTimeError(RunTime::ObjectNotSet);
        }
        ReadHeader(document, expected);
        const auto nothing = [](const Node&) {};
        ReadSection(document, L"Tam/InReferences", expected.inputs, nothing);
        ReadSection(document, L"Tam/OutReferences", expected.outputs, nothing);
        ReadSection(document, L"Tam/Attributes", expected.attributes, &RequireType);
    } catch (const RunTimeError& error) {
        expected.result = error.Code();
    }
    return expected;
}

void Apply(const com::Ref<IXMLDOMElement>& element, const std::vector<std::wstring>& outputs,
           ExpectedProject& expected) {
    try {
        for (const Node& child : Children(Node(element.Get()))) {
            if (TypeOf(child) == NODE_ELEMENT) { // an instruction has a name too
                ApplyChild(child, outputs, expected);
            }
        }
    } catch (const RunTimeError&) {
        expected.isFaulty = true;
    }
}

} // namespace component_fuzz
