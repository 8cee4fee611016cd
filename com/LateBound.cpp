#include "com/LateBound.h"

#include "com/Boundary.h"

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

/// The texts of an exception, which are the caller's to free.
struct ExceptionTexts {
    explicit ExceptionTexts(const EXCEPINFO& exception) noexcept {
        *source.Put() = exception.bstrSource;
        *description.Put() = exception.bstrDescription;
        *helpFile.Put() = exception.bstrHelpFile;
    }
    Bstr source;
    Bstr description;
    Bstr helpFile;
};

/// The error object that says what an exception says; empty where that is
/// nothing.
Ref<IErrorInfo> InfoOf(const ExceptionTexts& texts, DWORD helpContext) {
    if (texts.source.Get() == nullptr && texts.description.Get() == nullptr &&
        texts.helpFile.Get() == nullptr && helpContext == 0) {
        return {};
    }
    Ref<ICreateErrorInfo> info;
    Check(CreateErrorInfo(info.Put()));
    const auto set = [&](HRESULT (STDMETHODCALLTYPE ICreateErrorInfo::*member)(LPOLESTR), const Bstr& text) {
        if (text.Get() != nullptr) {
            Check((info.Get()->*member)(text.Get()));
        }
    };
    set(&ICreateErrorInfo::SetSource, texts.source);
    set(&ICreateErrorInfo::SetDescription, texts.description);
    set(&ICreateErrorInfo::SetHelpFile, texts.helpFile);
    Check(info->SetHelpContext(helpContext));
    return info.As<IErrorInfo>();
}

[[noreturn]] void ThrowException(EXCEPINFO& exception) {
    if (exception.pfnDeferredFillIn != nullptr) {
        exception.pfnDeferredFillIn(&exception);
    }
    const ExceptionTexts texts(exception);
    throw CallError(CodeOf(exception), InfoOf(texts, exception.dwHelpContext));
}

DISPID IdOf(IDispatch& object, const std::wstring& name) {
    DISPID id = DISPID_UNKNOWN;
    Bstr member(name);
    BSTR text = member.Get();
    Call(object, &IDispatch::GetIDsOfNames, IID_NULL, &text, 1u, LOCALE_USER_DEFAULT, &id);
    return id;
}

/// Calls a member and answers its HRESULT; an exception of the member is thrown.
HRESULT Invoke(IDispatch& object, DISPID id, WORD flags, DISPPARAMS& params, VARIANT* result) {
    EXCEPINFO exception{};
    ForgetErrors();
    const HRESULT hr =
        object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, result, &exception, nullptr);
    if (hr == DISP_E_EXCEPTION) {
        ThrowException(exception);
    }
    return hr;
}

} // namespace

Variant CallMember(IDispatch& object, const std::wstring& name, std::span<VARIANT> arguments) {
    const DISPID id = IdOf(object, name);
    std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
    DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    Variant result;
    CheckCall(Invoke(object, id, DISPATCH_METHOD | DISPATCH_PROPERTYGET, params, result.Put()), &object,
              IID_IDispatch);
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
    CheckCall(hr, &object, IID_IDispatch);
}

bool HasMember(IDispatch& object, const std::wstring& name) {
    DISPID id = DISPID_UNKNOWN;
    Bstr member(name);
    BSTR text = member.Get();
    return object.GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id) != DISP_E_UNKNOWNNAME;
}

Variant MemberOrNone(IDispatch& object, const std::wstring& name) {
    return HasMember(object, name) ? GetMember(object, name) : Variant();
}

Variant MemberOrNone(IDispatch& object, DISPID id) {
    DISPPARAMS none{};
    Variant result;
    const HRESULT hr = Invoke(object, id, DISPATCH_METHOD | DISPATCH_PROPERTYGET, none, result.Put());
    if (hr == DISP_E_MEMBERNOTFOUND || hr == DISP_E_UNKNOWNNAME || hr == E_NOTIMPL) {
        return {};
    }
    CheckCall(hr, &object, IID_IDispatch);
    return result;
}

VARIANT ByReference(Bstr& text) noexcept {
    VARIANT argument{};
    argument.vt = VT_BYREF | VT_BSTR;
    argument.pbstrVal = text.Address();
    return argument;
}

} // namespace com
