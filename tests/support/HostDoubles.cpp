#include "tests/support/HostDoubles.h"

#include "com/Registry.h"
#include "tests/support/Read.h"
#include "tests/support/Recorder.h"

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

BSTR* TextByReference(VARIANT& argument) {
    return argument.vt == (VT_BYREF | VT_BSTR) ? argument.pbstrVal : nullptr;
}

void Replace(BSTR* text, const std::wstring& with) {
    SysFreeString(*text);
    *text = com::Bstr(with).Detach();
}

} // namespace

HostClass::HostClass(REFCLSID clsid, std::wstring progId, Create create) : progId_(std::move(progId)) {
    if (create) {
        const auto factory = com::Ref<IClassFactory>::Own(new Factory(std::move(create)));
        CoRegisterClassObject(clsid, factory.Get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_);
    }
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
    if (cookie_ != 0) {
        CoRevokeClassObject(cookie_);
    }
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

HRESULT Compiler::Call(std::size_t member, WORD, DISPPARAMS& params, VARIANT*, EXCEPINFO*) {
    calls.push_back(names_[member]);
    if (member == 0) {
        if (params.cArgs != 1 || params.rgvarg[0].vt != VT_BSTR) {
            return DISP_E_TYPEMISMATCH;
        }
        dbPath = com::Text(params.rgvarg[0].bstrVal);
        return setPathResult;
    }
    if (params.cArgs != 3) {
        return DISP_E_BADPARAMCOUNT;
    }
    BSTR* texts[3] = {};
    for (int i = 0; i < 3; ++i) {
        texts[i] = TextByReference(params.rgvarg[2 - i]); // arguments come last first
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

com::Ref<ITamInternalAppObject> ChannelItem(const std::wstring& deviceKey, const std::wstring& objectKey) {
    const auto item = Recorder::Make(L"item", {&__uuidof(ITamInternalAppObject)});
    item->Set(L"TamDeviceKey", deviceKey);
    item->Set(L"TamInternalObjectKey", objectKey);
    item->RefuseOthers();
    return item->As<ITamInternalAppObject>();
}

com::Ref<IDeviceContext> HostContext(const std::wstring& firmware, const std::wstring& names) {
    const auto context = Recorder::Make(L"context", {&__uuidof(IDeviceContext)});
    context->Set(L"FirmwareVersion", firmware);
    context->Set(L"Document", Parse(L"<Device><FWVersion><" + firmware + L"><Objects><Library>" + names +
                                    L"</Library></Objects></" + firmware + L"></FWVersion></Device>"));
    return context->As<IDeviceContext>();
}

STDMETHODIMP DatabaseLocation::get_Path(BSTR* value) {
    *value = SUCCEEDED(result) ? com::Bstr(path).Detach() : nullptr;
    return result;
}

} // namespace support
