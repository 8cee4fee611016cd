#pragma once

#include "com/Dom.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

namespace tam {

/// The default values of attributes in a definition document: for each name
/// the text of the first child of the first node that the document's
/// element-by-tag-name query returns for "Tam/Attributes/<name>/DefaultValue".
///
/// One query over all names, at the first question, stands for a query per
/// name, each of which would search the whole document. The document belongs to
/// the component: nobody changes it once it is loaded.
class DefaultValues {
  public:
    DefaultValues() = default;
    explicit DefaultValues(dom::Document definition) noexcept : definition_(std::move(definition)) {}

    /// Empty without a document, without a node or when the node has no child.
    std::optional<std::wstring> Find(const std::wstring& name);

  private:
    using Index = std::unordered_map<std::wstring, std::optional<std::wstring>>;

    /// Nothing when the query over all names cannot stand for the single ones.
    static std::optional<Index> MakeIndex(const dom::Document& definition);
    std::optional<std::wstring> Query(const std::wstring& name) const;

    dom::Document definition_;
    bool isIndexed_ = false;
    std::optional<Index> index_;
};

} // namespace tam
