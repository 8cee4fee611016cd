#pragma once

#include "com/Object.h"

#include <OrvDBFaces.h>

namespace tam {

/// IAppObject with the answers that are fixed for the module object, in slot
/// order. A member that is ignored succeeds and changes nothing.
template <class Derived>
class FixedAppObject : public com::Face<Derived, IAppObject> {
  public:
    STDMETHODIMP get_Path(BSTR* value) override { return Fixed(value, L""); }
    STDMETHODIMP put_Path(BSTR) override { return S_OK; }
    STDMETHODIMP get_ExecTime(long* value) override { return Fixed(value, 0L); }
    STDMETHODIMP get_MaxInstances(long* value) override { return Fixed(value, 0L); }
    STDMETHODIMP get_Color(long* value) override { return Fixed(value, 0L); }
    STDMETHODIMP put_Color(long) override { return S_OK; }
    STDMETHODIMP SetColor(long) override { return S_OK; }
    STDMETHODIMP get_Width(long* value) override { return Fixed(value, 0L); }
    STDMETHODIMP get_InputWidth(long* value) override { return Fixed(value, 0L); }
    // No plug-in ever is: a module shows itself through its host.
    STDMETHODIMP get_PlugInAvailable(VARIANT_BOOL* value) override { return Fixed(value, false); }
    STDMETHODIMP get_SDBDimension(long* value) override { return Fixed(value, 0L); }
    STDMETHODIMP get_NodeType(long* value) override { return Fixed(value, 6L); }
    STDMETHODIMP Create() override { return S_OK; }
    STDMETHODIMP ObjectDebug() override { return S_OK; }
    // The object keeps no binary stream state.
    STDMETHODIMP Save(VARIANT) override { return S_OK; }
    STDMETHODIMP Load(VARIANT) override { return S_OK; }
    STDMETHODIMP get_IntelStream(VARIANT* value) override {
        return com::Return(__uuidof(IAppObject), value, [] { return com::Variant(); });
    }
    STDMETHODIMP put_Stream(BSTR) override { return S_OK; }
    STDMETHODIMP XMLSaveSim(IDispatch*, IDispatch*) override { return S_OK; }
    STDMETHODIMP CallBack(IDispatch*) override { return S_OK; }
    STDMETHODIMP put_ManageShortFloat(VARIANT_BOOL) override { return S_OK; }
    STDMETHODIMP get_NumObjects(short* value) override { return Fixed(value, short{1}); }
    STDMETHODIMP get_IsDeviceDependent(VARIANT_BOOL* value) override { return Fixed(value, false); }
    STDMETHODIMP get_UsesDeviceClock(VARIANT_BOOL* value) override { return Fixed(value, false); }
    STDMETHODIMP get_IsHidden(VARIANT_BOOL* value) override { return Fixed(value, true); }
    STDMETHODIMP get_IsVirtual(VARIANT_BOOL* value) override { return Fixed(value, false); }

  private:
    template <class T, class V>
    static HRESULT Fixed(T* out, V answer) noexcept {
        return com::Return(__uuidof(IAppObject), out, [&] { return answer; });
    }
};

} // namespace tam
