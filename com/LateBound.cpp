#include "com/LateBound.h"

#include "com/Boundary.h"

#include <vector>

namespace com {

namespace {

constexpr HRESULT ClassicError(WORD number) noexcept {
    return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, number);
}

/// An exception has a status code or, from script engines of old, the number
/// of a classic run-time error.
HRESULT CodeOf(const EXCEPINFO& exception) noexcept {
    if (exception.scode != 0) {
        return exception.scode;
    }
    return exception.wCode != 0 ? ClassicError(exception.wCode) : DISP_E_EXCEPTION;
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

/// What a member raised.
class Raised {
  public:
    /// Takes the exception's texts.
    explicit Raised(EXCEPINFO& exception) : exception_(FilledIn(exception)), texts_(exception_) {}
    HRESULT Code() const noexcept { return CodeOf(exception_); }
    [[noreturn]] void Throw() const { throw CallError(Code(), InfoOf(texts_, exception_.dwHelpContext)); }

  private:
    static const EXCEPINFO& FilledIn(EXCEPINFO& exception) {
        if (exception.pfnDeferredFillIn != nullptr) {
            exception.pfnDeferredFillIn(&exception);
        }
        return exception;
    }

    const EXCEPINFO exception_;
    const ExceptionTexts texts_;
};

HRESULT AskId(IDispatch& object, const std::wstring& name, DISPID& id) {
    id = DISPID_UNKNOWN;
    Bstr member(name);
    BSTR text = member.Get();
    ForgetErrors();
    return object.GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
}

DISPID IdOf(IDispatch& object, const std::wstring& name) {
    DISPID id = DISPID_UNKNOWN;
    CheckCall(AskId(object, name, id), &object, IID_IDispatch);
    return id;
}

HRESULT Invoke(IDispatch& object, DISPID id, WORD flags, DISPPARAMS& params, VARIANT* result,
               EXCEPINFO& exception) {
    ForgetErrors();
    return object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params, result, &exception, nullptr);
}

/// The same; an exception of the member is thrown.
HRESULT Invoke(IDispatch& object, DISPID id, WORD flags, DISPPARAMS& params, VARIANT* result) {
    EXCEPINFO exception{};
    const HRESULT hr = Invoke(object, id, flags, params, result, exception);
    if (hr == DISP_E_EXCEPTION) {
        Raised(exception).Throw();
    }
    return hr;
}

constexpr WORD kReads = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

Variant CallById(IDispatch& object, DISPID id, DISPPARAMS params) {
    Variant result;
    CheckCall(Invoke(object, id, kReads, params, result.Put()), &object, IID_IDispatch);
    return result;
}

constexpr HRESULT kNoSuchMember = ClassicError(438);
constexpr HRESULT kNotSupported = ClassicError(445);

/// How an object says that it has no such member.
bool MeansNone(HRESULT code) noexcept {
    return code == DISP_E_MEMBERNOTFOUND || code == DISP_E_UNKNOWNNAME || code == E_NOTIMPL ||
           code == kNoSuchMember || code == kNotSupported;
}

} // namespace

Variant CallMember(IDispatch& object, const std::wstring& name, std::span<VARIANT> arguments) {
    const DISPID id = IdOf(object, name);
    std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
    return CallById(object, id, {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0});
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
    return AskId(object, name, id) != DISP_E_UNKNOWNNAME;
}

Variant MemberOrNone(IDispatch& object, const std::wstring& name) {
    DISPID id = DISPID_UNKNOWN;
    const HRESULT hr = AskId(object, name, id);
    if (hr == DISP_E_UNKNOWNNAME) {
        return {};
    }
    CheckCall(hr, &object, IID_IDispatch);
    return CallById(object, id, {});
}

Variant MemberOrNone(IDispatch& object, DISPID id) {
    DISPPARAMS none{};
    EXCEPINFO exception{};
    Variant result;
    const HRESULT hr = Invoke(object, id, kReads, none, result.Put(), exception);
    if (hr == DISP_E_EXCEPTION) {
        // So arrives what a member of a type library answers.
        const Raised raised(exception);
        if (MeansNone(raised.Code())) {
            return {};
        }
        raised.Throw();
    }
    if (MeansNone(hr)) {
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
