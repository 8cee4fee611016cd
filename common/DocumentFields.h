#pragma once

#include "com/Dom.h"
#include "core/ElementFields.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace tam {

/// The user's own rules, as the platform has them.
extern const LocaleRules kUserRules;

/// Reads a node's text, such as dom::TextOf.
using NodeText = std::wstring (*)(const dom::Node& node);

/// Lets the row of a child's name take it. False when there is none: its text was
/// not read then.
template <class Data, std::size_t N>
bool TakeNode(const ReadField<Data> (&fields)[N], std::wstring_view keyword, Data& data,
              const dom::Node& node, NodeText textOf) {
    const std::function<std::wstring()> text = [&] { return textOf(node); };
    return TakeElement(fields, keyword, data, {text, kUserRules});
}

/// Lets the row of an attribute's name take its text. False when there is none.
template <class Data, std::size_t N>
bool TakeAttribute(const ReadField<Data> (&fields)[N], std::wstring_view name, Data& data,
                   const std::wstring& text) {
    const std::function<std::wstring()> given = [&] { return text; };
    return TakeElement(fields, name, data, {given, kUserRules});
}

/// Appends an element with a text for each row.
template <class Data, std::size_t N>
void AppendFields(const dom::Document& document, const dom::Node& parent,
                  const WrittenField<Data> (&fields)[N], const Data& data) {
    GiveElements(fields, data, kUserRules, [&](const wchar_t* name, const std::wstring& text) {
        dom::AppendText(document, parent, name, text);
    });
}

/// Sets an attribute of an element for each row.
template <class Data, std::size_t N>
void SetFieldAttributes(const dom::Element& element, const WrittenField<Data> (&fields)[N],
                        const Data& data) {
    GiveElements(fields, data, kUserRules, [&](const wchar_t* name, const std::wstring& text) {
        dom::SetAttribute(element, name, text);
    });
}

} // namespace tam
