#pragma once

#include "com/Counted.h"
#include "com/Ref.h"

#include <OrvDBFaces.h>

namespace tam {

/// The interceptor as the inner object holds it: the channel object's
/// interceptor interface with a count of its own. The inner object keeps its
/// interceptor, and the channel object keeps the inner object; counted alike,
/// the two would keep each other alive for ever. IDispatch is this object's
/// too: that is what an inner object that calls by name holds. To COM it is the
/// channel object itself: every other interface, its identity included, is
/// that object's for as long as it lives.
class InterceptorLink final : public com::Counted<IAttributeInterceptor> {
  public:
    static com::Ref<InterceptorLink> Make(IAttributeInterceptor& target);

    /// The channel object is gone: from here on nothing is handled.
    void Cut() noexcept { target_ = nullptr; }

    STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
    STDMETHODIMP GetTypeInfoCount(UINT* count) override;
    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
    STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* params, VARIANT* result,
                        EXCEPINFO* exception, UINT* argumentError) override;

    STDMETHODIMP InterceptGetDataFromDevice(IAttribute* attribute, VARIANT_BOOL* value) override;
    STDMETHODIMP InterceptAttributeValueChanged(IAttribute* attribute, VARIANT_BOOL* value) override;
    STDMETHODIMP InterceptTypeChanged(IAttribute* attribute, VARIANT_BOOL* value) override;
    STDMETHODIMP InterceptIsUnitsDependent(IAttribute* attribute, VARIANT_BOOL* isUnitsDependent,
                                           VARIANT_BOOL* value) override;
    STDMETHODIMP InterceptIsDifferential(IAttribute* attribute, VARIANT_BOOL* isDifferential,
                                         VARIANT_BOOL* value) override;

  private:
    explicit InterceptorLink(IAttributeInterceptor& target) : target_(&target) {}

    /// The channel object, held for one call; the call may end it otherwise.
    com::Ref<IAttributeInterceptor> Target() const noexcept {
        return com::Ref<IAttributeInterceptor>(target_);
    }
    /// Calls the channel object; once that is gone, empties the result.
    template <class Out, class F>
    HRESULT Pass(Out* out, F&& call);

    IAttributeInterceptor* target_;
};

} // namespace tam
