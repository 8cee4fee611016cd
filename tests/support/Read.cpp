#include "tests/support/Read.h"

#include <stdexcept>

namespace support {

std::wstring HelpText(BSTR file, DWORD context) {
    const bool isNone = com::View(file).empty() && context == 0;
    return isNone ? std::wstring() : com::Text(file) + L"#" + std::to_wstring(context);
}

ErrorTexts LastError() {
    com::Ref<IErrorInfo> info;
    ErrorTexts texts;
    if (GetErrorInfo(0, info.Put()) == S_OK) {
        com::Bstr text;
        info->GetDescription(text.Put());
        texts.description = text.View();
        info->GetSource(text.Put());
        texts.source = text.View();
        DWORD context = 0;
        info->GetHelpFile(text.Put());
        info->GetHelpContext(&context);
        texts.help = HelpText(text.Get(), context);
        info->GetGUID(&texts.guid);
    }
    return texts;
}

bool HasLastError() {
    com::Ref<IErrorInfo> info;
    return GetErrorInfo(0, info.Put()) == S_OK;
}

void LeaveError(const std::wstring& description, const std::wstring& source) {
    com::Ref<ICreateErrorInfo> create;
    com::Check(CreateErrorInfo(create.Put()));
    create->SetDescription(com::Bstr(description).Get());
    create->SetSource(com::Bstr(source).Get());
    SetErrorInfo(0, create.As<IErrorInfo>().Get());
}

Document NewDocument() {
    constexpr CLSID kMsxml6 = {0x88D96A05, 0xF192, 0x11D4, {0xA6, 0x5F, 0x00, 0x40, 0x96, 0x32, 0x51, 0xE5}};
    Document document;
    com::Check(CoCreateInstance(kMsxml6, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IXMLDOMDocument2),
                                document.PutVoid()));
    com::Check(document->put_async(VARIANT_FALSE));
    return document;
}

Document Parse(const std::wstring& xml) {
    Document document = NewDocument();
    const com::Bstr text(xml);
    VARIANT_BOOL done = VARIANT_FALSE;
    com::Check(document->loadXML(text.Get(), &done));
    if (done == VARIANT_FALSE) {
        throw std::runtime_error("the test's XML does not parse");
    }
    return document;
}

std::wstring Xml(IUnknown* node) {
    const auto dom = com::Query<IXMLDOMNode>(node);
    com::Bstr text;
    com::Check(dom->get_xml(text.Put()));
    std::wstring xml(text.View());
    while (!xml.empty() && (xml.back() == L'\n' || xml.back() == L'\r')) {
        xml.pop_back();
    }
    return xml;
}

com::Ref<IXMLDOMElement> Root(const Document& document) {
    com::Ref<IXMLDOMElement> root;
    com::Check(document->get_documentElement(root.Put()));
    return root;
}

} // namespace support
