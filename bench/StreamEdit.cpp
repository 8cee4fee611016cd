#include "bench/StreamEdit.h"

#include "bench/Text.h"
#include "bench/Xml.h"
#include "com/Boundary.h"
#include "com/Conversion.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

namespace {

constexpr const wchar_t* kInputs = L"Tam/InReferences";
constexpr const wchar_t* kAttributes = L"Tam/Attributes";
constexpr const wchar_t* kInputValue = L"PROTOCOLREFERENCE";
constexpr const wchar_t* kAttributeValue = L"VALUE";

xml::Node PointIn(const xml::Document& document, const PointValue& wanted) {
    const xml::Node section = xml::Select(xml::Node(document), wanted.isInput ? kInputs : kAttributes);
    xml::Node point;
    if (section) {
        xml::ForEachElement(section, [&](const xml::Node& element) {
            if (!point && xml::NameOf(element) == wanted.name) {
                point = element;
            }
        });
    }
    if (!point) {
        throw BenchError(E_INVALIDARG,
                         "the stream has no point \"" + Utf8(wanted.name) + "\" to write a value to");
    }
    return point;
}

/// The blanks before the first child, which the other children have too.
std::wstring IndentIn(const xml::Node& point) {
    xml::Node first;
    com::Call(point, &IXMLDOMNode::get_firstChild, first.Put());
    const std::wstring text = first ? xml::TextOf(first) : std::wstring();
    return text.find_first_not_of(L" \t\r\n") == std::wstring::npos ? text : std::wstring();
}

/// A new element before the blanks that end its parent.
xml::Node Append(const xml::Document& document, const xml::Node& point, const wchar_t* name) {
    const std::wstring indent = IndentIn(point);
    xml::Node last;
    com::Call(point, &IXMLDOMNode::get_lastChild, last.Put());
    xml::Node element = xml::Append(document, point, name);
    if (!indent.empty() && last) {
        // The element first: blanks beside blanks may become one text.
        com::Ref<IXMLDOMText> blanks;
        com::Call(document, &IXMLDOMDocument::createTextNode, com::Bstr(indent).Get(), blanks.Put());
        com::Call(point, &IXMLDOMNode::insertBefore, element.Get(), com::Variant(last.Get()).Get(), nullptr);
        com::Call(point, &IXMLDOMNode::insertBefore, blanks.Get(), com::Variant(element.Get()).Get(),
                  nullptr);
    }
    return element;
}

void SetValue(const xml::Document& document, const PointValue& wanted) {
    const xml::Node point = PointIn(document, wanted);
    const wchar_t* const name = wanted.isInput ? kInputValue : kAttributeValue;
    bool isSet = false;
    const com::Bstr value(wanted.value);
    xml::ForEachElement(point, [&](const xml::Node& child) {
        if (SameKey(xml::NameOf(child), name)) {
            com::Call(child, &IXMLDOMNode::put_text, value.Get());
            isSet = true;
        }
    });
    if (!isSet) {
        com::Call(Append(document, point, name), &IXMLDOMNode::put_text, value.Get());
    }
}

void Replace(std::wstring& text, std::wstring_view from, std::wstring_view to) {
    for (std::size_t at = text.find(from); at != std::wstring::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

} // namespace

std::wstring WithValues(const std::wstring& stream, const std::vector<PointValue>& values) {
    const xml::Document document = xml::New();
    com::Call(document, &IXMLDOMDocument::put_preserveWhiteSpace, VARIANT_TRUE);
    VARIANT_BOOL done = VARIANT_FALSE;
    com::Call(document, &IXMLDOMDocument::loadXML, com::Bstr(stream).Get(), &done);
    for (const PointValue& value : values) {
        SetValue(document, value);
    }
    com::Bstr text;
    com::Call(document, &IXMLDOMNode::get_xml, text.Put());
    std::wstring written(text.View());
    if (written.starts_with(L"<?xml")) {
        written.erase(0, written.find(L"?>") + 2);
    }
    written.erase(0, std::min(written.find(L'<'), written.size()));
    written = L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + written;
    Replace(written, L"\r\n", L"\n");
    if (stream.find(L"\r\n") != std::wstring::npos) {
        Replace(written, L"\n", L"\r\n");
    }
    return written.ends_with(L'\n') ? written : written + L'\n';
}

} // namespace bench
