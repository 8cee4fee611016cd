// The same host with #import, which only Visual Studio's compiler has. Nothing of the
// project compiles this file: it was written from the type libraries and never built.
//
//   cl /std:c++17 /EHsc /DUNICODE host_import.cpp
//
// in the folder of O_Tam_id.dll. #import reads the DLLs' type libraries and writes
// wrappers that throw _com_error.

#import "O_Tam_id.dll\2" rename_namespace("faces") rename("GetType", "GetOrvType")
#import <msxml6.dll> rename_namespace("xml")

#include <cstdio>
#include <cwchar>
#include <fstream>
#include <ios>
#include <iterator>
#include <string>

namespace {

const CLSID kModule = {0x17C37AEC, 0xB03B, 0x4DB2, {0x9F, 0x7D, 0xEC, 0x0E, 0x31, 0xE7, 0xB3, 0xDD}};

/// A device stream is text: the file is UTF-8, the component takes UTF-16.
_bstr_t ReadStream(const wchar_t* path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    const int size = static_cast<int>(bytes.size());
    std::wstring text(bytes.size(), L'\0');
    text.resize(MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, text.data(), size));
    return _bstr_t(text.c_str());
}

xml::IXMLDOMDocument2Ptr NewDocument() {
    xml::IXMLDOMDocument2Ptr document(L"MSXML2.DOMDocument.6.0");
    document->async = VARIANT_FALSE;
    return document;
}

void Run(wchar_t** arguments) {
    const auto catalogue = NewDocument();
    if (catalogue->load(arguments[1]) == VARIANT_FALSE) {
        throw _com_error(E_FAIL);
    }
    faces::IAppObjectPtr module(kModule);
    const faces::ITamObjectPtr tam = module;
    if (module->Init(L"O_Tam_id") == VARIANT_FALSE) {
        throw _com_error(E_FAIL);
    }
    module->PutRefXmlSNVTDoc(catalogue);
    tam->LoadFromXmlStream(ReadStream(arguments[2]));
    module->GlobalKey = L"SHEET1\\MODULE1"; // after the loading

    const faces::IAttributesPtr attributes = module->Attributes;
    for (long position = 1; position <= attributes->Count; ++position) {
        const faces::IAttributePtr attribute = attributes->Item[std::to_wstring(position).c_str()];
        const faces::IEnumTypePtr type = attribute->SNVTType;
        if (type && type->IsEnumType == VARIANT_TRUE) {
            const _bstr_t path = L"*/SNVT_" + attribute->SNVTType->ID + L"/EnumDesc";
            if (const xml::IXMLDOMNodePtr labels = catalogue->selectSingleNode(path)) {
                type->EnumDesc = labels->text;
            }
        }
        std::wprintf(L"  %ls = %ls\n", attribute->Name.GetBSTR(), attribute->DispValue.GetBSTR());
    }

    const auto project = NewDocument();
    const xml::IXMLDOMElementPtr root = project->createElement(L"Project");
    project->appendChild(root);
    tam->DeviceKey = L"K7"; // no empty text survives a file
    module->XMLSave(root, project);
    project->save(arguments[3]);

    const _bstr_t image = module->Stream;
    std::wprintf(L"Image: %u characters, sizes %ld and %ld\n", image.length(), module->CDBDimension,
                 module->DDBDimension);
    module->Destroy();
}

} // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 4) {
        std::fputs("usage: host_import CATALOGUE STREAM PROJECT\n", stderr);
        return 2;
    }
    int status = 0;
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    try {
        Run(arguments);
    } catch (const _com_error& error) {
        std::fwprintf(stderr, L"host: 0x%08lX %ls\n", error.Error(),
                      error.Description().length() != 0 ? error.Description().GetBSTR()
                                                        : error.ErrorMessage());
        status = 1;
    }
    CoUninitialize();
    return status;
}
