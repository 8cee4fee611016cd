// The generic object keeps its interceptor for as long as it lives, and the channel
// object keeps the generic object. If the interceptor were the channel object itself,
// the two references would be a cycle and neither would ever end. So the generic object
// is given this link: it has a reference count of its own and a plain pointer to the
// channel object, which cuts the link when it ends (Cut). Each call takes a reference
// on the channel object for its duration. After the cut a call empties its result and
// answers CO_E_OBJNOTCONNECTED.
#include "internal/InterceptorLink.h"

#include "com/Boundary.h"

namespace tam {

com::Ref<InterceptorLink> InterceptorLink::Make(IAttributeInterceptor& target) {
    return com::Ref<InterceptorLink>::Own(new InterceptorLink(target));
}

STDMETHODIMP InterceptorLink::QueryInterface(REFIID iid, void** out) {
    if (out == nullptr) {
        return E_POINTER;
    }
    // The interface is dual: an inner object that calls by name keeps it as IDispatch.
    const bool isOwn = iid == __uuidof(IAttributeInterceptor) || iid == IID_IDispatch;
    if (target_ != nullptr && !isOwn) {
        return target_->QueryInterface(iid, out);
    }
    return Counted::QueryInterface(isOwn ? __uuidof(IAttributeInterceptor) : iid, out);
}

template <class Out, class F>
HRESULT InterceptorLink::Pass(Out* out, F&& call) {
    const auto target = Target();
    if (target) {
        return call(*target.Get());
    }
    if (out == nullptr) {
        return com::Refuse(E_POINTER);
    }
    *out = Out{};
    return com::Refuse(CO_E_OBJNOTCONNECTED);
}

STDMETHODIMP InterceptorLink::GetTypeInfoCount(UINT* count) {
    return Pass(count, [&](auto& target) { return target.GetTypeInfoCount(count); });
}

STDMETHODIMP InterceptorLink::GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) {
    return Pass(info, [&](auto& target) { return target.GetTypeInfo(index, locale, info); });
}

STDMETHODIMP InterceptorLink::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) {
    const auto target = Target();
    return target ? target->GetIDsOfNames(iid, names, count, locale, ids) : com::Refuse(CO_E_OBJNOTCONNECTED);
}

STDMETHODIMP InterceptorLink::Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* params,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argumentError) {
    const auto target = Target();
    return target ? target->Invoke(id, iid, locale, flags, params, result, exception, argumentError)
                  : com::Refuse(CO_E_OBJNOTCONNECTED);
}

STDMETHODIMP InterceptorLink::InterceptGetDataFromDevice(IAttribute* attribute, VARIANT_BOOL* value) {
    return Pass(value, [&](auto& target) { return target.InterceptGetDataFromDevice(attribute, value); });
}

STDMETHODIMP InterceptorLink::InterceptAttributeValueChanged(IAttribute* attribute, VARIANT_BOOL* value) {
    return Pass(value, [&](auto& target) { return target.InterceptAttributeValueChanged(attribute, value); });
}

STDMETHODIMP InterceptorLink::InterceptTypeChanged(IAttribute* attribute, VARIANT_BOOL* value) {
    return Pass(value, [&](auto& target) { return target.InterceptTypeChanged(attribute, value); });
}

STDMETHODIMP InterceptorLink::InterceptIsUnitsDependent(IAttribute* attribute, VARIANT_BOOL* isUnitsDependent,
                                                        VARIANT_BOOL* value) {
    return Pass(value, [&](auto& target) {
        return target.InterceptIsUnitsDependent(attribute, isUnitsDependent, value);
    });
}

STDMETHODIMP InterceptorLink::InterceptIsDifferential(IAttribute* attribute, VARIANT_BOOL* isDifferential,
                                                      VARIANT_BOOL* value) {
    return Pass(value, [&](auto& target) {
        return target.InterceptIsDifferential(attribute, isDifferential, value);
    });
}

} // namespace tam
