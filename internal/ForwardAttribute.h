#pragma once

#include "internal/Forward.h"

#include <OrvDBFaces.h>

namespace tam {

/// IAttribute, every member handed to the inner attribute, in slot order.
template <class Derived>
class ForwardAttribute : public ForwardFace<Derived, IAttribute> {
    using I = IAttribute;
    using ForwardFace<Derived, IAttribute>::To;

  public:
    STDMETHODIMP get_Parent(IAppObject** value) override { return To(&I::get_Parent, value); }
    STDMETHODIMP get_Visible(VARIANT_BOOL* value) override { return To(&I::get_Visible, value); }
    STDMETHODIMP SetValue() override { return To(&I::SetValue); }
    STDMETHODIMP get_IsUnit(VARIANT_BOOL* value) override { return To(&I::get_IsUnit, value); }
    STDMETHODIMP get_Description(BSTR* value) override { return To(&I::get_Description, value); }
    STDMETHODIMP get_Value(BSTR* value) override { return To(&I::get_Value, value); }
    STDMETHODIMP get_DispValue(BSTR* value) override { return To(&I::get_DispValue, value); }
    STDMETHODIMP get_DispMin(BSTR* value) override { return To(&I::get_DispMin, value); }
    STDMETHODIMP get_DispMax(BSTR* value) override { return To(&I::get_DispMax, value); }
    STDMETHODIMP get_DispDefault(BSTR* value) override { return To(&I::get_DispDefault, value); }
    STDMETHODIMP put_Value(BSTR value) override { return To(&I::put_Value, value); }
    STDMETHODIMP get_Name(BSTR* value) override { return To(&I::get_Name, value); }
    STDMETHODIMP get_NodeType(long* value) override { return To(&I::get_NodeType, value); }
    STDMETHODIMP get_GlobalKey(BSTR* value) override { return To(&I::get_GlobalKey, value); }
    STDMETHODIMP get_SNVTType(ISNVType** value) override { return To(&I::get_SNVTType, value); }
    STDMETHODIMP BackToDefault() override { return To(&I::BackToDefault); }
    STDMETHODIMP get_DefaultValue(BSTR* value) override { return To(&I::get_DefaultValue, value); }
    STDMETHODIMP get_Tag(BSTR* value) override { return To(&I::get_Tag, value); }
    STDMETHODIMP put_Tag(BSTR value) override { return To(&I::put_Tag, value); }
    STDMETHODIMP get_Fields(IDispatch** value) override { return To(&I::get_Fields, value); }
    STDMETHODIMP putref_CallBack(IDispatch* value) override { return To(&I::putref_CallBack, value); }
    STDMETHODIMP get_CDBPosition(long* value) override { return To(&I::get_CDBPosition, value); }
    STDMETHODIMP get_ToolOnly(VARIANT_BOOL* value) override { return To(&I::get_ToolOnly, value); }
    STDMETHODIMP get_IsDeviceDependent(VARIANT_BOOL* value) override {
        return To(&I::get_IsDeviceDependent, value);
    }
    STDMETHODIMP get_IsUnitDependent(VARIANT_BOOL* value) override {
        return To(&I::get_IsUnitDependent, value);
    }
    STDMETHODIMP get_DeviceKey(BSTR* value) override { return To(&I::get_DeviceKey, value); }
    STDMETHODIMP get_IsKeepFloatStandard(VARIANT_BOOL* value) override {
        return To(&I::get_IsKeepFloatStandard, value);
    }
    STDMETHODIMP get_DividedBy(long* value) override { return To(&I::get_DividedBy, value); }
    STDMETHODIMP get_IsType(VARIANT_BOOL* value) override { return To(&I::get_IsType, value); }
    STDMETHODIMP get_Min(BSTR* value) override { return To(&I::get_Min, value); }
    STDMETHODIMP get_Max(BSTR* value) override { return To(&I::get_Max, value); }
    STDMETHODIMP get_ExtendedKey(BSTR* value) override { return To(&I::get_ExtendedKey, value); }
    STDMETHODIMP get_IsMacroConnected(VARIANT_BOOL* value) override {
        return To(&I::get_IsMacroConnected, value);
    }
};

} // namespace tam
