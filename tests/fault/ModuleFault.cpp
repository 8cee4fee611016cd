#include "tests/fault/ModuleFault.h"

namespace fault {

namespace dom = tam::dom;

std::vector<std::wstring> NodesBelow(const dom::Node& node, const std::wstring& indent) {
    std::vector<std::wstring> nodes;
    dom::ForEachChild(node, [&](const dom::Node& child) {
        if (!dom::IsElement(child)) {
            nodes.push_back(indent + dom::ValueOf(child));
            return;
        }
        nodes.push_back(indent + L"<" + dom::BaseName(child) + L">");
        dom::ForEachAttribute(child, [&](const std::wstring& name, const std::wstring& text) {
            nodes.push_back(indent + L" " + name + L"=" + text);
        });
        const auto below = NodesBelow(child, indent + L"  ");
        nodes.insert(nodes.end(), below.begin(), below.end());
    });
    return nodes;
}

} // namespace fault
