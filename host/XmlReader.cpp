#include "host/XmlReader.h"

#include "com/Boundary.h"
#include "common/RunTimeError.h"

#include <OrvHost.h>

#include <shlwapi.h>

namespace orv {

namespace {

/// The tool chain has no import library for the system's XML reader.
struct XmlLibrary {
    decltype(&::CreateXmlReader) createReader = nullptr;
    decltype(&::CreateXmlReaderInputWithEncodingName) createInput = nullptr;

    XmlLibrary() {
        const HMODULE module = LoadLibraryExW(L"xmllite.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
        if (module == nullptr) {
            com::Check(HRESULT_FROM_WIN32(GetLastError()));
        }
        Find(module, "CreateXmlReader", createReader);
        Find(module, "CreateXmlReaderInputWithEncodingName", createInput);
    }

  private:
    template <class F>
    static void Find(HMODULE module, const char* name, F& function) {
        function = reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(module, name)));
        if (function == nullptr) {
            com::Check(HRESULT_FROM_WIN32(GetLastError()));
        }
    }
};

const XmlLibrary& Library() {
    static const XmlLibrary library;
    return library;
}

com::Ref<IUnknown> InputOf(std::wstring_view text) {
    const auto* bytes = reinterpret_cast<const BYTE*>(text.data());
    const auto size = static_cast<UINT>(text.size() * sizeof(wchar_t));
    const auto stream = com::Ref<IStream>::Own(SHCreateMemStream(bytes, size));
    if (!stream) {
        com::Check(E_OUTOFMEMORY);
    }
    // The text is UTF-16 whatever its declaration says.
    com::Ref<IUnknown> input;
    com::Check(Library().createInput(stream.Get(), nullptr, L"utf-16", FALSE, nullptr, input.Put()));
    return input;
}

} // namespace

void ThrowBadDocument(XmlPosition position, const std::wstring& reason) {
    throw tam::RunTimeError(static_cast<HRESULT>(errNotAnExportDocument), {},
                            L"line " + std::to_wstring(position.line) + L", column " +
                                std::to_wstring(position.column) + L": " + reason);
}

XmlReader::XmlReader(std::wstring_view text) {
    com::Check(Library().createReader(__uuidof(IXmlReader), reader_.PutVoid(), nullptr));
    com::Check(reader_->SetProperty(XmlReaderProperty_DtdProcessing, DtdProcessing_Prohibit));
    com::Check(reader_->SetInput(InputOf(text).Get()));
}

XmlKind XmlReader::Next() {
    for (;;) {
        XmlNodeType type = XmlNodeType_None;
        const HRESULT result = reader_->Read(&type);
        if (result == S_FALSE) {
            return XmlKind::End;
        }
        if (FAILED(result)) {
            ThrowBadDocument(Position(), L"the text is not well-formed XML");
        }
        switch (type) {
        case XmlNodeType_Element:
            return XmlKind::Element;
        case XmlNodeType_EndElement:
            return XmlKind::EndOfElement;
        case XmlNodeType_Text:
        case XmlNodeType_CDATA:
            return XmlKind::Text;
        default:
            break;
        }
    }
}

XmlPosition XmlReader::Position() const {
    XmlPosition position;
    com::Check(reader_->GetLineNumber(&position.line));
    com::Check(reader_->GetLinePosition(&position.column));
    return position;
}

std::wstring XmlReader::Name() const {
    const wchar_t* text = nullptr;
    UINT length = 0;
    com::Check(reader_->GetQualifiedName(&text, &length));
    return std::wstring(text, length);
}

std::wstring XmlReader::Value() const {
    const wchar_t* text = nullptr;
    UINT length = 0;
    com::Check(reader_->GetValue(&text, &length));
    return std::wstring(text, length);
}

bool XmlReader::IsEmpty() const {
    return reader_->IsEmptyElement() != FALSE;
}

std::vector<XmlAttribute> XmlReader::Attributes() {
    std::vector<XmlAttribute> attributes;
    HRESULT result = reader_->MoveToFirstAttribute();
    for (; result == S_OK; result = reader_->MoveToNextAttribute()) {
        attributes.push_back({Name(), Value(), Position()});
    }
    com::Check(result);
    com::Check(reader_->MoveToElement());
    return attributes;
}

} // namespace orv
