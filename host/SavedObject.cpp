#include "host/SavedObject.h"

#include "core/Case.h"
#include "core/Numbers.h"

#include <array>
#include <charconv>

namespace orv {

namespace {

namespace dom = tam::dom;

constexpr const wchar_t* kUserName = L"UserName";
constexpr const wchar_t* kX = L"X_Position";
constexpr const wchar_t* kY = L"Y_Position";
constexpr const wchar_t* kKey = L"Key";
constexpr const wchar_t* kInputs = L"Inputs";
constexpr const wchar_t* kOutputs = L"Outputs";
constexpr const wchar_t* kAttributes = L"Attributes";
constexpr const wchar_t* kVisible = L"Visible";
constexpr const wchar_t* kDisplayable = L"IsDisplayable";
constexpr const wchar_t* kValue = L"Value";
constexpr const wchar_t* kType = L"SNVT_Type";
constexpr const wchar_t* kEnumDesc = L"EnumDesc";

/// The shortest text that is read back as the same number.
std::wstring NumberText(double number) {
    std::array<char, 32> text{};
    auto* const end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
    return {text.data(), end};
}

std::optional<std::wstring> FlagText(const std::optional<bool>& flag) {
    return flag ? std::optional<std::wstring>(*flag ? L"1" : L"0") : std::nullopt;
}

void WriteAttribute(const dom::Element& element, const wchar_t* name,
                    const std::optional<std::wstring>& text) {
    if (text) {
        dom::SetAttribute(element, name, *text);
    }
}

void WritePoints(const std::vector<SavedPoint>& points, const wchar_t* section, const dom::Node& object,
                 const dom::Document& document) {
    if (points.empty()) {
        return;
    }
    const dom::Node list(dom::Append(document, object, section));
    for (const SavedPoint& point : points) {
        const dom::Element element = dom::Append(document, list, point.name);
        WriteAttribute(element, kVisible, FlagText(point.visible));
        WriteAttribute(element, kDisplayable, FlagText(point.displayable));
        WriteAttribute(element, kValue, point.value);
        WriteAttribute(element, kType, point.type);
        WriteAttribute(element, kEnumDesc, point.enumDesc);
    }
}

void WriteText(const std::optional<std::wstring>& text, const wchar_t* name, const dom::Node& object,
               const dom::Document& document) {
    if (text) {
        dom::AppendText(document, object, name, *text);
    }
}

bool IsNamed(const std::wstring& name, const wchar_t* wanted) {
    return tam::EqualIgnoringCase(name, wanted);
}

std::optional<std::wstring> ReadAttribute(const dom::Element& element, const wchar_t* name) {
    // By its value: the text of blanks alone is nothing to some parsers.
    com::Variant value;
    const HRESULT found =
        com::Call(element, &IXMLDOMElement::getAttribute, com::Bstr(name).Get(), value.Put());
    return found == S_OK && value.Get().vt == VT_BSTR ? std::optional(com::Text(value.Get().bstrVal))
                                                      : std::nullopt;
}

std::optional<bool> ReadFlag(const dom::Element& element, const wchar_t* name) {
    const auto text = ReadAttribute(element, name);
    return text ? std::optional(*text == L"1") : std::nullopt;
}

std::vector<SavedPoint> ReadPoints(const dom::Node& list) {
    std::vector<SavedPoint> points;
    dom::ForEachChild(list, [&](const dom::Node& child) {
        if (const dom::Element element = child.As<IXMLDOMElement>()) {
            points.push_back({dom::BaseName(child), ReadFlag(element, kVisible),
                              ReadFlag(element, kDisplayable), ReadAttribute(element, kValue),
                              ReadAttribute(element, kType), ReadAttribute(element, kEnumDesc)});
        }
    });
    return points;
}

} // namespace

void WriteSaved(const SavedObject& object, const std::wstring& name, const dom::Node& parent,
                const dom::Document& document) {
    dom::Element element;
    com::Call(document, &IXMLDOMDocument::createElement, com::Bstr(name).Get(), element.Put());
    const dom::Node node(element);
    WriteText(object.userName, kUserName, node, document);
    WriteText(object.x ? std::optional(NumberText(*object.x)) : std::nullopt, kX, node, document);
    WriteText(object.y ? std::optional(NumberText(*object.y)) : std::nullopt, kY, node, document);
    WriteText(object.key, kKey, node, document);
    WritePoints(object.inputs, kInputs, node, document);
    WritePoints(object.outputs, kOutputs, node, document);
    WritePoints(object.attributes, kAttributes, node, document);
    com::Call(parent, &IXMLDOMNode::appendChild, element.Get(), nullptr);
}

SavedObject ReadSaved(const dom::Node& element) {
    SavedObject object;
    dom::ForEachChild(element, [&](const dom::Node& child) {
        const std::wstring name = dom::IsElement(child) ? dom::BaseName(child) : std::wstring();
        if (IsNamed(name, kUserName)) {
            object.userName = dom::FirstChildTextOrEmpty(child);
        } else if (IsNamed(name, kX)) {
            object.x = tam::Val(dom::FirstChildTextOrEmpty(child));
        } else if (IsNamed(name, kY)) {
            object.y = tam::Val(dom::FirstChildTextOrEmpty(child));
        } else if (IsNamed(name, kInputs)) {
            object.inputs = ReadPoints(child);
        } else if (IsNamed(name, kOutputs)) {
            object.outputs = ReadPoints(child);
        } else if (IsNamed(name, kAttributes)) {
            object.attributes = ReadPoints(child);
        }
    });
    return object;
}

} // namespace orv
