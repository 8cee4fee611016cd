#include "host/XmlDocument.h"

#include "com/DocumentType.h"
#include "core/RunTimeError.h"

namespace orv {

namespace {

namespace dom = tam::dom;

[[noreturn]] void ThrowParseError(const dom::Document& document, const std::wstring& what, BlockError error) {
    com::Ref<IXMLDOMParseError> reason;
    com::Bstr text;
    long line = 0;
    com::Call(document, &IXMLDOMDocument::get_parseError, reason.Put());
    com::Call(reason, &IXMLDOMParseError::get_reason, text.Put());
    com::Call(reason, &IXMLDOMParseError::get_line, &line);
    std::wstring message = what + L" cannot be read as XML";
    // Some parsers know no line and end their reason with a line break.
    message += line > 0 ? L", line " + std::to_wstring(line) : std::wstring();
    message += L": " + std::wstring(text.View());
    while (!message.empty() && (message.back() == L'\n' || message.back() == L'\r')) {
        message.pop_back();
    }
    throw tam::RunTimeError(static_cast<HRESULT>(error), {}, message);
}

void RefuseDocumentType(const dom::Document& document, const std::wstring& what, BlockError error) {
    if (dom::HasDocumentType(document)) {
        throw tam::RunTimeError(static_cast<HRESULT>(error), {},
                                what + L" cannot be read as XML: DTD is prohibited.");
    }
}

} // namespace

dom::Document LoadXmlFile(const std::wstring& path, BlockError error) {
    dom::Document document = dom::NewDocument(dom::kDocumentClass);
    const com::Variant source{std::wstring_view(path)};
    VARIANT_BOOL loaded = VARIANT_FALSE;
    com::Call(document, &IXMLDOMDocument::load, source.Get(), &loaded);
    if (loaded == VARIANT_FALSE) {
        ThrowParseError(document, L"\"" + path + L"\"", error);
    }
    RefuseDocumentType(document, L"\"" + path + L"\"", error);
    return document;
}

dom::Document LoadXmlText(std::wstring_view xml, BlockError error) {
    dom::Document document = dom::NewDocument(dom::kDocumentClass);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    com::Call(document, &IXMLDOMDocument::loadXML, com::Bstr(xml).Get(), &loaded);
    if (loaded == VARIANT_FALSE) {
        ThrowParseError(document, L"The text", error);
    }
    RefuseDocumentType(document, L"The text", error);
    return document;
}

std::wstring RootName(const dom::Document& document) {
    dom::Element root;
    com::Call(document, &IXMLDOMDocument::get_documentElement, root.Put());
    return root ? dom::BaseName(dom::Node(root)) : std::wstring();
}

} // namespace orv
