#pragma once

#include "internal/Forward.h"

#include <OrvDBFaces.h>

namespace tam {

/// IInput, every member handed to the inner input, in slot order.
template <class Derived>
class ForwardInput : public ForwardFace<Derived, IInput> {
    using I = IInput;
    using ForwardFace<Derived, IInput>::To;

  public:
    STDMETHODIMP changeType(VARIANT newType) override { return To(&I::changeType, newType); }
    STDMETHODIMP putref_CallBack(IDispatch* value) override { return To(&I::putref_CallBack, value); }
    STDMETHODIMP get_NodeType(long* value) override { return To(&I::get_NodeType, value); }
    STDMETHODIMP get_IsConnected(VARIANT_BOOL* value) override { return To(&I::get_IsConnected, value); }
    STDMETHODIMP get_ConnectedType(ISNVType** value) override { return To(&I::get_ConnectedType, value); }
    STDMETHODIMP get_Visible(VARIANT_BOOL* value) override { return To(&I::get_Visible, value); }
    STDMETHODIMP get_Mandatory(VARIANT_BOOL* value) override { return To(&I::get_Mandatory, value); }
    STDMETHODIMP get_Value(BSTR* value) override { return To(&I::get_Value, value); }
    STDMETHODIMP put_Value(BSTR value) override { return To(&I::put_Value, value); }
    STDMETHODIMP get_Name(BSTR* value) override { return To(&I::get_Name, value); }
    STDMETHODIMP get_GlobalKey(BSTR* value) override { return To(&I::get_GlobalKey, value); }
    STDMETHODIMP get_Extended(VARIANT_BOOL* value) override { return To(&I::get_Extended, value); }
    STDMETHODIMP get_Index(long* value) override { return To(&I::get_Index, value); }
    STDMETHODIMP get_CDBPosition(long* value) override { return To(&I::get_CDBPosition, value); }
    STDMETHODIMP get_SNVTCompatibles(ICompatibleSNVTs** value) override {
        return To(&I::get_SNVTCompatibles, value);
    }
    STDMETHODIMP get_Parent(IAppObject** value) override { return To(&I::get_Parent, value); }
    STDMETHODIMP get_ExtendedKey(BSTR* value) override { return To(&I::get_ExtendedKey, value); }
    STDMETHODIMP get_IsMacroConnected(VARIANT_BOOL* value) override {
        return To(&I::get_IsMacroConnected, value);
    }
};

/// IOutput, every member handed to the inner output, in slot order.
template <class Derived>
class ForwardOutput : public ForwardFace<Derived, IOutput> {
    using I = IOutput;
    using ForwardFace<Derived, IOutput>::To;

  public:
    STDMETHODIMP get_IsConnected(VARIANT_BOOL* value) override { return To(&I::get_IsConnected, value); }
    STDMETHODIMP putref_CallBack(IDispatch* value) override { return To(&I::putref_CallBack, value); }
    STDMETHODIMP changeType(VARIANT newType) override { return To(&I::changeType, newType); }
    STDMETHODIMP get_NodeType(long* value) override { return To(&I::get_NodeType, value); }
    STDMETHODIMP get_Visible(VARIANT_BOOL* value) override { return To(&I::get_Visible, value); }
    STDMETHODIMP get_Name(BSTR* value) override { return To(&I::get_Name, value); }
    STDMETHODIMP get_GlobalKey(BSTR* value) override { return To(&I::get_GlobalKey, value); }
    STDMETHODIMP get_Index(long* value) override { return To(&I::get_Index, value); }
    STDMETHODIMP get_SNVTCompatible(ICompatibleSNVT** value) override {
        return To(&I::get_SNVTCompatible, value);
    }
    STDMETHODIMP get_SNVTType(ISNVType** value) override { return To(&I::get_SNVTType, value); }
    STDMETHODIMP get_Parent(IAppObject** value) override { return To(&I::get_Parent, value); }
    STDMETHODIMP get_DisplayWritable(VARIANT_BOOL* value) override {
        return To(&I::get_DisplayWritable, value);
    }
    STDMETHODIMP get_IsTypeDependent(VARIANT_BOOL* value) override {
        return To(&I::get_IsTypeDependent, value);
    }
    STDMETHODIMP get_ExtendedKey(BSTR* value) override { return To(&I::get_ExtendedKey, value); }
    STDMETHODIMP get_IsMacroConnected(VARIANT_BOOL* value) override {
        return To(&I::get_IsMacroConnected, value);
    }
    STDMETHODIMP get_IsDisplayable(VARIANT_BOOL* value) override { return To(&I::get_IsDisplayable, value); }
    STDMETHODIMP put_IsDisplayable(VARIANT_BOOL value) override { return To(&I::put_IsDisplayable, value); }
};

/// ISubItemConnable, every member handed to the inner point, in slot order.
template <class Derived>
class ForwardConnable : public ForwardFace<Derived, ISubItemConnable> {
    using I = ISubItemConnable;
    using ForwardFace<Derived, ISubItemConnable>::To;

  public:
    STDMETHODIMP put_IsConnected(VARIANT_BOOL value) override { return To(&I::put_IsConnected, value); }
    STDMETHODIMP put_HasPriority(VARIANT_BOOL value) override { return To(&I::put_HasPriority, value); }
    STDMETHODIMP put_IncrementalConnIndex(long value) override {
        return To(&I::put_IncrementalConnIndex, value);
    }
    STDMETHODIMP putref_ConnectedType(IDispatch* value) override {
        return To(&I::putref_ConnectedType, value);
    }
    STDMETHODIMP get_itemType(long* value) override { return To(&I::get_itemType, value); }
    STDMETHODIMP get_GlobalKey(BSTR* value) override { return To(&I::get_GlobalKey, value); }
    STDMETHODIMP get_Name(BSTR* value) override { return To(&I::get_Name, value); }
    STDMETHODIMP get_SNVTType(ISNVType** value) override { return To(&I::get_SNVTType, value); }
    STDMETHODIMP get_IsSNVTCompatible(BSTR identifier, VARIANT_BOOL* value) override {
        return To(&I::get_IsSNVTCompatible, identifier, value);
    }
};

/// IDisplayItem, every member handed to the inner output, in slot order.
template <class Derived>
class ForwardDisplay : public ForwardFace<Derived, IDisplayItem> {
    using I = IDisplayItem;
    using ForwardFace<Derived, IDisplayItem>::To;

  public:
    STDMETHODIMP get_DisplayText(BSTR* value) override { return To(&I::get_DisplayText, value); }
    STDMETHODIMP put_DisplayText(BSTR value) override { return To(&I::put_DisplayText, value); }
    STDMETHODIMP get_key(BSTR* value) override { return To(&I::get_key, value); }
    STDMETHODIMP get_itemType(long* value) override { return To(&I::get_itemType, value); }
    STDMETHODIMP get_Icon(IDispatch** value) override { return To(&I::get_Icon, value); }
    STDMETHODIMP get_IsWritable(VARIANT_BOOL* value) override { return To(&I::get_IsWritable, value); }
    STDMETHODIMP get_IsTrendable(VARIANT_BOOL* value) override { return To(&I::get_IsTrendable, value); }
    STDMETHODIMP get_Reference(BSTR* value) override { return To(&I::get_Reference, value); }
    STDMETHODIMP get_IsConnected(VARIANT_BOOL* value) override { return To(&I::get_IsConnected, value); }
    STDMETHODIMP get_IsDisplayable(VARIANT_BOOL* value) override { return To(&I::get_IsDisplayable, value); }
    STDMETHODIMP get_SNVTType(ISNVType** value) override { return To(&I::get_SNVTType, value); }
    STDMETHODIMP get_Fields(IDispatch** value) override { return To(&I::get_Fields, value); }
};

} // namespace tam
