#include "host/GenericDefinition.h"

#include "core/Case.h"
#include "core/Numbers.h"

namespace orv {

namespace {

namespace dom = tam::dom;

constexpr const wchar_t* kInputs = L"InReferences";
constexpr const wchar_t* kOutputs = L"OutReferences";
constexpr const wchar_t* kAttributes = L"Attributes";

std::vector<Definition> ReadPoints(const dom::Node& root, const wchar_t* section) {
    std::vector<Definition> points;
    if (const dom::Node list = dom::Select(root, section)) {
        dom::ForEachChild(list, [&](const dom::Node& child) {
            if (dom::IsElement(child)) {
                points.emplace_back(child);
            }
        });
    }
    return points;
}

} // namespace

Definition::Definition(const dom::Node& element) : name_(dom::BaseName(element)) {
    dom::ForEachAttribute(element, [&](const std::wstring& name, const std::wstring& text) {
        texts_[tam::UpperCase(name)] = text;
    });
    dom::ForEachChild(element, [&](const dom::Node& child) {
        if (dom::IsElement(child)) {
            texts_[tam::UpperCase(dom::BaseName(child))] = dom::FirstChildTextOrEmpty(child);
        }
    });
}

std::wstring Definition::Text(std::wstring_view keyword) const {
    const auto found = texts_.find(keyword);
    return found != texts_.end() ? found->second : std::wstring();
}

bool Definition::Flag(std::wstring_view keyword) const {
    return Text(keyword) == L"1";
}

long Definition::Number(std::wstring_view keyword) const {
    return tam::ToInt32(tam::Val(Text(keyword)));
}

GenericDefinition ReadDefinition(const dom::Document& document) {
    dom::Element root;
    com::Call(document, &IXMLDOMDocument::get_documentElement, root.Put());
    com::CheckSet(root.Get());
    const dom::Node node(root);
    return {Definition(node), ReadPoints(node, kInputs), ReadPoints(node, kOutputs),
            ReadPoints(node, kAttributes)};
}

} // namespace orv
