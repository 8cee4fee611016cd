#include "points/DefaultValues.h"

namespace tam {

namespace {

constexpr const wchar_t* kAttributes = L"Tam/Attributes";
constexpr const wchar_t* kAllDefaultValues = L"Tam/Attributes/*/DefaultValue";

std::optional<std::wstring> TextOfFirstChild(const dom::Node& node) {
    const dom::Node child = dom::FirstChild(node);
    return child ? std::optional(dom::PlainText(child)) : std::nullopt;
}

} // namespace

std::optional<std::wstring> DefaultValues::Find(const std::wstring& name) {
    if (!definition_) {
        return std::nullopt;
    }
    if (!isIndexed_) {
        // A failure leaves no index, and each name is asked for by itself.
        com::Attempt([&] { index_ = MakeIndex(definition_); });
        isIndexed_ = true;
    }
    if (!index_) {
        return Query(name);
    }
    const auto found = index_->find(name);
    return found != index_->end() ? found->second : std::nullopt;
}

std::optional<std::wstring> DefaultValues::Query(const std::wstring& name) const {
    const dom::Node node =
        dom::FirstByTagName(definition_, std::wstring(kAttributes) + L"/" + name + L"/DefaultValue");
    return node ? TextOfFirstChild(node) : std::nullopt;
}

std::optional<DefaultValues::Index> DefaultValues::MakeIndex(const dom::Document& definition) {
    Index index;
    bool isPlain = true;
    dom::ForEachByTagName(definition, kAllDefaultValues, [&](const dom::Node& node) {
        const dom::Node attribute = dom::ParentOf(node);
        const std::wstring name = dom::BaseName(attribute);
        // Parsers differ in what a name without a prefix means for an element
        // that has one, or a namespace.
        isPlain = isPlain && !dom::HasNamespace(attribute);
        if (isPlain && !index.contains(name)) {
            index.emplace(name, TextOfFirstChild(node));
        }
    });
    // A parser that takes the star for a name finds nothing where there is something.
    if (!isPlain || (index.empty() && dom::FirstByTagName(definition, kAttributes))) {
        return std::nullopt;
    }
    return index;
}

} // namespace tam
