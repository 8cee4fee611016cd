#include "performance/Script.h"

#include "com/Boundary.h"
#include "com/Counted.h"

#include <cstdio>

namespace benchmark {

namespace {

constexpr CLSID kVBScript = {0xB54F3741, 0x5B07, 0x11CF, {0xA4, 0xB0, 0x00, 0xAA, 0x00, 0x4A, 0x55, 0xE8}};

class Site final : public com::Counted<IActiveScriptSite> {
  public:
    STDMETHODIMP GetLCID(LCID*) override { return E_NOTIMPL; }
    STDMETHODIMP GetItemInfo(LPCOLESTR, DWORD, IUnknown**, ITypeInfo**) override {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    STDMETHODIMP GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
    STDMETHODIMP OnStateChange(SCRIPTSTATE) override { return S_OK; }
    STDMETHODIMP OnScriptError(IActiveScriptError* error) override {
        EXCEPINFO info{};
        DWORD context = 0;
        ULONG line = 0;
        LONG column = 0;
        error->GetSourcePosition(&context, &line, &column);
        error->GetExceptionInfo(&info);
        const std::wstring description = com::Text(info.bstrDescription);
        std::fprintf(stderr, "script, line %lu: error %08lx %ls\n", line + 1,
                     static_cast<unsigned long>(info.scode), description.c_str());
        SysFreeString(info.bstrSource);
        SysFreeString(info.bstrDescription);
        SysFreeString(info.bstrHelpFile);
        return S_OK;
    }
    STDMETHODIMP OnEnterScript() override { return S_OK; }
    STDMETHODIMP OnLeaveScript() override { return S_OK; }
};

} // namespace

Script::Script(const std::wstring& text) {
    com::Check(CoCreateInstance(kVBScript, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IActiveScript),
                                engine_.PutVoid()));
    const auto parse = engine_.As<IActiveScriptParse32>();
    com::CheckSet(parse.Get());
    com::Check(parse->InitNew());
    const auto site = com::Ref<IActiveScriptSite>::Own(new Site);
    com::Check(engine_->SetScriptSite(site.Get()));
    com::Check(parse->ParseScriptText(text.c_str(), nullptr, nullptr, nullptr, 0, 0, SCRIPTTEXT_ISVISIBLE,
                                      nullptr, nullptr));
    com::Check(engine_->SetScriptState(SCRIPTSTATE_STARTED));
    com::Check(engine_->GetScriptDispatch(nullptr, procedures_.Put()));
}

Script::~Script() {
    procedures_.Reset();
    engine_->Close();
}

com::Variant Script::Call(const std::wstring& procedure, std::span<VARIANT> arguments) const {
    return com::CallMember(*procedures_.Get(), procedure, arguments);
}

VARIANT Argument(const com::Bstr& text) noexcept {
    VARIANT argument{};
    argument.vt = VT_BSTR;
    argument.bstrVal = text.Get();
    return argument;
}

VARIANT Argument(IDispatch* object) noexcept {
    VARIANT argument{};
    argument.vt = VT_DISPATCH;
    argument.pdispVal = object;
    return argument;
}

VARIANT Argument(long number) noexcept {
    VARIANT argument{};
    argument.vt = VT_I4;
    argument.lVal = number;
    return argument;
}

} // namespace benchmark
