#include "com/LateBound.h"

#include "com/Boundary.h"
#include "common/RunTimeError.h"

#include <cstdint>
#include <vector>

namespace com {

namespace {

/// An exception has a status code or, from script engines of old, the number
/// of a classic run-time error.
HRESULT CodeOf(const EXCEPINFO& exception) noexcept {
    if (exception.scode != 0) {
        return exception.scode;
    }
    return exception.wCode != 0 ? MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, exception.wCode)
                                : DISP_E_EXCEPTION;
}

[[noreturn]] void ThrowException(EXCEPINFO& exception) {
    if (exception.pfnDeferredFillIn != nullptr) {
        exception.pfnDeferredFillIn(&exception);
    }
    const std::wstring source = Text(exception.bstrSource);
    const std::wstring description = Text(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    throw tam::RunTimeError(static_cast<std::int32_t>(CodeOf(exception)), source, description);
}

DISPID IdOf(IDispatch& object, const std::wstring& name) {
    DISPID id = DISPID_UNKNOWN;
    Bstr member(name);
    BSTR text = member.Get();
    Check(object.GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id));
    return id;
}

/// Calls a member and answers its HRESULT; an exception of the member is thrown.
HRESULT Invoke(IDispatch& object, DISPID id, WORD flags, DISPPARAMS& params, VARIANT* result) {
    EXCEPINFO exception{};
    const HRESULT hr =
        object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, result, &exception, nullptr);
    if (hr == DISP_E_EXCEPTION) {
        ThrowException(exception);
    }
    return hr;
}

} // namespace

Ref<IDispatch> CreateByProgId(const std::wstring& progId) {
    CLSID clsid{};
    Check(CLSIDFromProgID(progId.c_str(), &clsid));
    Ref<IDispatch> object;
    Check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                           object.PutVoid()));
    return object;
}

Variant CallMember(IDispatch& object, const std::wstring& name, std::span<VARIANT> arguments) {
    const DISPID id = IdOf(object, name);
    std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
    DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    Variant result;
    Check(Invoke(object, id, DISPATCH_METHOD | DISPATCH_PROPERTYGET, params, result.Put()));
    return result;
}

Variant GetMember(IDispatch& object, const std::wstring& name) {
    return CallMember(object, name, {});
}

void PutMember(IDispatch& object, const std::wstring& name, const VARIANT& value) {
    VARIANT argument = value; // borrowed: the callee copies what it keeps
    const bool isObject = value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN;
    const DISPID id = IdOf(object, name);
    DISPID putId = DISPID_PROPERTYPUT;
    DISPPARAMS params{&argument, &putId, 1, 1};
    HRESULT hr =
        Invoke(object, id, isObject ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT, params, nullptr);
    if (isObject && hr == DISP_E_MEMBERNOTFOUND) {
        // The property takes its object by plain assignment alone.
        hr = Invoke(object, id, DISPATCH_PROPERTYPUT, params, nullptr);
    }
    Check(hr);
}

VARIANT ByReference(Bstr& text) noexcept {
    VARIANT argument{};
    argument.vt = VT_BYREF | VT_BSTR;
    argument.pbstrVal = text.Address();
    return argument;
}

} // namespace com
