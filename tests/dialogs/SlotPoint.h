#pragma once

#include "com/Conversion.h"
#include "com/Counted.h"
#include "tests/dialogs/HostPoint.h"

#include <OrvDBFaces.h>

#include <utility>

namespace dialogs {

/// A host's attribute that has its name, value and type in their slots and the
/// other members by name alone: their slots answer that they are not there.
class SlotPoint final : public com::Counted<IAttribute> {
  public:
    SlotPoint(com::Ref<NamedObject> named, com::Ref<ISNVType> type)
        : named_(std::move(named)), type_(std::move(type)) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
        return Counted::QueryInterface(iid == IID_IDispatch ? __uuidof(IAttribute) : iid, out);
    }
    STDMETHODIMP GetTypeInfoCount(UINT* count) override { return named_->GetTypeInfoCount(count); }
    STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override {
        return named_->GetTypeInfo(index, locale, info);
    }
    STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override {
        return named_->GetIDsOfNames(iid, names, count, locale, ids);
    }
    STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* params, VARIANT* result,
                        EXCEPINFO* exception, UINT* argument) override {
        return named_->Invoke(id, iid, locale, flags, params, result, exception, argument);
    }

    STDMETHODIMP get_Name(BSTR* value) override { return *value = com::Bstr(L"All").Detach(), S_OK; }
    STDMETHODIMP get_Value(BSTR* value) override { return *value = com::Bstr(L"1").Detach(), S_OK; }
    STDMETHODIMP get_SNVTType(ISNVType** value) override {
        return *value = com::Ref<ISNVType>(type_).Detach(), S_OK;
    }

    STDMETHODIMP get_Parent(IAppObject**) override { return E_NOTIMPL; }
    STDMETHODIMP get_Visible(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP SetValue() override { return E_NOTIMPL; }
    STDMETHODIMP get_IsUnit(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Description(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_DispValue(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_DispMin(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_DispMax(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_DispDefault(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Value(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_NodeType(LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP get_GlobalKey(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP BackToDefault() override { return E_NOTIMPL; }
    STDMETHODIMP get_DefaultValue(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Tag(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP put_Tag(BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP get_Fields(IDispatch**) override { return E_NOTIMPL; }
    STDMETHODIMP putref_CallBack(IDispatch*) override { return E_NOTIMPL; }
    STDMETHODIMP get_CDBPosition(LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP get_ToolOnly(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsDeviceDependent(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsUnitDependent(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP get_DeviceKey(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsKeepFloatStandard(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP get_DividedBy(LONG*) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsType(VARIANT_BOOL*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Min(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_Max(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_ExtendedKey(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP get_IsMacroConnected(VARIANT_BOOL*) override { return E_NOTIMPL; }

  private:
    com::Ref<NamedObject> named_;
    com::Ref<ISNVType> type_;
};

} // namespace dialogs
