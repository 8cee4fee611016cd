#include "tests/support/HostDoubles.h"

#include "com/Registry.h"

namespace support {

namespace {

constexpr const wchar_t* kClasses = L"Software\\Classes\\";

class Factory final : public IClassFactory {
  public:
    explicit Factory(HostClass::Create create) : create_(std::move(create)) {}
    virtual ~Factory() = default;
    STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
        const bool known = iid == IID_IUnknown || iid == IID_IClassFactory;
        *out = known ? this : nullptr;
        if (!known) {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = --references_;
        if (left == 0) {
            delete this;
        }
        return left;
    }
    STDMETHODIMP CreateInstance(IUnknown*, REFIID iid, void** out) override { return create_(iid, out); }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }

  private:
    HostClass::Create create_;
    ULONG references_ = 1;
};

std::wstring TextOfGuid(REFGUID guid) {
    wchar_t text[40] = {};
    StringFromGUID2(guid, text, 40);
    return text;
}

constexpr DISPID kSetDBPath = 1;
constexpr DISPID kCompileTamObject = 2;

BSTR* TextByReference(VARIANT& argument) {
    return argument.vt == (VT_BYREF | VT_BSTR) ? argument.pbstrVal : nullptr;
}

void Replace(BSTR* text, const std::wstring& with) {
    SysFreeString(*text);
    *text = com::Bstr(with).Detach();
}

} // namespace

HostClass::HostClass(REFCLSID clsid, std::wstring progId, Create create) : progId_(std::move(progId)) {
    const auto factory = com::Ref<IClassFactory>::Own(new Factory(std::move(create)));
    CoRegisterClassObject(clsid, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_);
    if (!progId_.empty()) {
        for (const HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
            const auto refused = com::Attempt([&] {
                com::WriteValue(root, (kClasses + progId_ + L"\\CLSID").c_str(),
                                com::TextValue({}, TextOfGuid(clsid)));
            });
            if (!refused) {
                root_ = root;
                break;
            }
        }
    }
}

HostClass::~HostClass() {
    CoRevokeClassObject(cookie_);
    if (root_ != nullptr) {
        com::Attempt([&] { com::DeleteTree(root_, (kClasses + progId_).c_str()); });
    }
}

STDMETHODIMP Converter::Convert(BSTR value, BSTR unit, BSTR* result) {
    asked.emplace_back(com::Text(value), com::Text(unit));
    *result = SUCCEEDED(convertResult) ? com::Bstr(converted).Detach() : nullptr;
    return convertResult;
}

STDMETHODIMP Converter::Label(BSTR unit, BSTR* result) {
    labelAsked.push_back(com::Text(unit));
    *result = SUCCEEDED(labelResult) ? com::Bstr(label).Detach() : nullptr;
    return labelResult;
}

STDMETHODIMP Compiler::QueryInterface(REFIID iid, void** out) {
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch;
    *out = known ? this : nullptr;
    if (!known) {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) Compiler::Release() {
    const ULONG left = --references_;
    if (left == 0) {
        delete this;
    }
    return left;
}

STDMETHODIMP Compiler::GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) {
    const std::wstring name = names[0];
    ids[0] = name == L"SetDBPath"          ? kSetDBPath
             : name == L"CompileTamObject" ? kCompileTamObject
                                           : DISPID_UNKNOWN;
    return ids[0] == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
}

STDMETHODIMP Compiler::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                              UINT*) {
    if (id == kSetDBPath) {
        calls.emplace_back(L"SetDBPath");
        if (params->cArgs != 1 || params->rgvarg[0].vt != VT_BSTR) {
            return DISP_E_TYPEMISMATCH;
        }
        dbPath = com::Text(params->rgvarg[0].bstrVal);
        return setPathResult;
    }
    calls.emplace_back(L"CompileTamObject");
    if (params->cArgs != 3) {
        return DISP_E_BADPARAMCOUNT;
    }
    BSTR* texts[3] = {};
    for (int i = 0; i < 3; ++i) {
        texts[i] = TextByReference(params->rgvarg[2 - i]); // arguments come last first
        if (texts[i] == nullptr) {
            return DISP_E_TYPEMISMATCH;
        }
    }
    givenXml = com::Text(*texts[0]);
    if (FAILED(compileResult)) {
        return compileResult;
    }
    Replace(texts[0], stream);
    Replace(texts[1], cdbSize);
    Replace(texts[2], ddbSize);
    return S_OK;
}

STDMETHODIMP DatabaseLocation::get_Path(BSTR* value) {
    *value = SUCCEEDED(result) ? com::Bstr(path).Detach() : nullptr;
    return result;
}

} // namespace support
