#pragma once

#include "com/Dom.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace orv {

/// What one element of a definition says, the object's own or a point's: the
/// texts of its children and attributes by their names in capitals. Where a
/// child and an attribute, or two children, share a name the later one counts.
class Definition {
  public:
    Definition() = default;
    explicit Definition(const tam::dom::Node& element);

    /// Name of the element, which is the name of the point.
    const std::wstring& Name() const noexcept { return name_; }
    bool Has(std::wstring_view keyword) const { return texts_.contains(keyword); }
    /// Empty for what is not there.
    std::wstring Text(std::wstring_view keyword) const;
    /// True when the text is exactly "1".
    bool Flag(std::wstring_view keyword) const;
    /// The number that the text begins with, 0 where there is none.
    long Number(std::wstring_view keyword) const;
    /// A point without "VISIBLE" is not shown, nor is one whose "VISIBLE" is "0".
    bool IsVisible() const { return Has(L"VISIBLE") && Text(L"VISIBLE") != L"0"; }

  private:
    std::wstring name_;
    std::map<std::wstring, std::wstring, std::less<>> texts_;
};

/// A whole definition document, points in document order.
struct GenericDefinition {
    Definition object;
    std::vector<Definition> inputs;
    std::vector<Definition> outputs;
    std::vector<Definition> attributes;
};

GenericDefinition ReadDefinition(const tam::dom::Document& document);

} // namespace orv
