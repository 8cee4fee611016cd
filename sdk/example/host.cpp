// A small host: makes a module, loads a device stream, shows its points, changes a
// value, saves the module into a project document and exports it.
//
//   host CATALOGUE STREAM PROJECT
//
// The order of the calls and the reasons for it stand in docs/host-guide.md.

#include <comdef.h>
#include <msxml.h>
#include <O_Tam_id.h> // made from the IDL files, with OrvDBFaces.h
#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <string>
#include <vector>

_COM_SMARTPTR_TYPEDEF(IAppObject, __uuidof(IAppObject));
_COM_SMARTPTR_TYPEDEF(ITamObject, __uuidof(ITamObject));
_COM_SMARTPTR_TYPEDEF(IInputs, __uuidof(IInputs));
_COM_SMARTPTR_TYPEDEF(IInput, __uuidof(IInput));
_COM_SMARTPTR_TYPEDEF(IAttributes, __uuidof(IAttributes));
_COM_SMARTPTR_TYPEDEF(IAttribute, __uuidof(IAttribute));
_COM_SMARTPTR_TYPEDEF(ISNVType, __uuidof(ISNVType));
_COM_SMARTPTR_TYPEDEF(IEnumType, __uuidof(IEnumType));

namespace {

const IID kDocumentInterface = {0x2933BF81, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};
using Document = _com_ptr_t<_com_IIID<IXMLDOMDocument, &kDocumentInterface>>;

struct Failure {
    std::wstring step;
    HRESULT code;
    std::wstring description;
};

/// Throws what the component says of a failed call.
void Check(HRESULT result, const wchar_t* step) {
    if (SUCCEEDED(result)) {
        return;
    }
    Failure failure{step, result, {}};
    IErrorInfo* info = nullptr;
    if (GetErrorInfo(0, &info) == S_OK) {
        BSTR description = nullptr;
        info->GetDescription(&description);
        failure.description.assign(description, SysStringLen(description));
        SysFreeString(description);
        info->Release();
    }
    throw failure;
}

/// Reads one text property.
template <class I>
std::wstring Text(I* object, HRESULT (STDMETHODCALLTYPE I::*get)(BSTR*)) {
    BSTR text = nullptr;
    Check((object->*get)(&text), L"a property");
    const std::wstring copy(text, SysStringLen(text));
    SysFreeString(text);
    return copy;
}

Document NewDocument() {
    Document document;
    Check(document.CreateInstance(L"MSXML2.DOMDocument.6.0"), L"MSXML 6");
    document->put_async(VARIANT_FALSE);
    return document;
}

Document LoadDocument(const wchar_t* path) {
    Document document = NewDocument();
    VARIANT_BOOL done = VARIANT_FALSE;
    Check(document->load(_variant_t(path), &done), L"load");
    Check(done == VARIANT_FALSE ? E_FAIL : S_OK, L"reading the catalogue");
    return document;
}

/// A device stream is text: the file is UTF-8, the component takes UTF-16.
_bstr_t ReadStream(const wchar_t* path) {
    std::string bytes;
    if (std::FILE* file = _wfopen(path, L"rb")) {
        std::vector<char> block(65536);
        for (std::size_t got; (got = std::fread(block.data(), 1, block.size(), file)) != 0;) {
            bytes.append(block.data(), got);
        }
        std::fclose(file);
    }
    const int size = static_cast<int>(bytes.size());
    std::wstring text(bytes.size() + 1, L'\0');
    text.resize(
        static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, &text[0], size)));
    return _bstr_t(text.c_str());
}

/// The catalogue has the labels of enumerations, and the host gives them to the types.
void GiveLabels(IAttribute* attribute, const Document& catalogue) {
    ISNVTypePtr type;
    Check(attribute->get_SNVTType(&type), L"SNVTType");
    const IEnumTypePtr enumeration = type;
    VARIANT_BOOL isEnumeration = VARIANT_FALSE;
    if (enumeration) {
        Check(enumeration->get_IsEnumType(&isEnumeration), L"IsEnumType");
    }
    if (isEnumeration == VARIANT_FALSE) {
        return;
    }
    const std::wstring path = L"*/SNVT_" + Text(type.GetInterfacePtr(), &ISNVType::get_ID) + L"/EnumDesc";
    IXMLDOMNode* node = nullptr;
    if (catalogue->selectSingleNode(_bstr_t(path.c_str()), &node) == S_OK) {
        BSTR labels = nullptr;
        node->get_text(&labels);
        node->Release();
        Check(enumeration->put_EnumDesc(_bstr_t(labels, false)), L"EnumDesc");
    }
}

void Run(wchar_t** arguments) {
    const Document catalogue = LoadDocument(arguments[1]);

    IAppObjectPtr module;
    Check(module.CreateInstance(__uuidof(CDBAppObject)), L"making a module");
    const ITamObjectPtr tam = module;
    VARIANT_BOOL done = VARIANT_FALSE;
    Check(module->Init(_bstr_t(L"O_Tam_id"), &done), L"Init");
    Check(done == VARIANT_FALSE ? E_FAIL : S_OK, L"reading the definition");
    Check(module->putref_XmlSNVTDoc(catalogue), L"XmlSNVTDoc");
    Check(tam->LoadFromXmlStream(ReadStream(arguments[2])), L"LoadFromXmlStream");
    Check(module->put_GlobalKey(_bstr_t(L"SHEET1\\MODULE1")), L"GlobalKey"); // after the loading

    IAttributesPtr attributes;
    Check(module->get_Attributes(&attributes), L"Attributes");
    long count = 0;
    Check(attributes->get_Count(&count), L"Count");
    std::wprintf(L"%ls has %ld attributes\n",
                 Text(module.GetInterfacePtr(), &IAppObject::get_UserName).c_str(), count);
    for (long position = 1; position <= count; ++position) {
        IAttributePtr attribute;
        Check(attributes->get_Item(_bstr_t(std::to_wstring(position).c_str()), &attribute), L"Item");
        GiveLabels(attribute, catalogue);
        std::wprintf(L"  %ls = %ls\n", Text(attribute.GetInterfacePtr(), &IAttribute::get_Name).c_str(),
                     Text(attribute.GetInterfacePtr(), &IAttribute::get_Value).c_str());
    }
    IAttributePtr offset;
    Check(attributes->get_Item(_bstr_t(L"AI1_Offset"), &offset), L"Item");
    if (offset) {
        Check(offset->put_Value(_bstr_t(L"1.5")), L"Value"); // always with a point
    }

    const Document project = NewDocument();
    IXMLDOMElement* root = nullptr;
    Check(project->createElement(_bstr_t(L"Project"), &root), L"createElement");
    Check(project->appendChild(root, nullptr), L"appendChild");
    Check(tam->put_DeviceKey(_bstr_t(L"K7")), L"DeviceKey"); // no empty text survives a file
    const HRESULT saved = module->XMLSave(root, project);
    root->Release();
    Check(saved, L"XMLSave");
    Check(project->save(_variant_t(arguments[3])), L"save");

    const std::wstring image = Text(module.GetInterfacePtr(), &IAppObject::get_Stream);
    long cdb = 0;
    long ddb = 0;
    Check(module->get_CDBDimension(&cdb), L"CDBDimension");
    Check(module->get_DDBDimension(&ddb), L"DDBDimension");
    std::wprintf(L"Image: %u characters, sizes %ld and %ld\n", static_cast<unsigned>(image.size()), cdb, ddb);
    Check(module->Destroy(), L"Destroy");
}

} // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 4) {
        std::fputs("usage: host CATALOGUE STREAM PROJECT\n", stderr);
        return 2;
    }
    int status = 0;
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); // a module lives on one thread
    try {
        Run(arguments);
    } catch (const Failure& failure) {
        std::fwprintf(stderr, L"host: %ls failed: 0x%08lX %ls\n", failure.step.c_str(),
                      static_cast<unsigned long>(failure.code), failure.description.c_str());
        status = 1;
    }
    CoUninitialize();
    return status;
}
