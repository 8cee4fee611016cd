#pragma once

#include "internal/Forward.h"

#include <OrvDBFaces.h>

namespace tam {

/// IAppObject, every member handed to the inner object, in slot order.
template <class Derived>
class ForwardAppObject : public ForwardFace<Derived, IAppObject> {
    using I = IAppObject;
    using ForwardFace<Derived, IAppObject>::To;

  public:
    STDMETHODIMP get_IsPlugInActive(VARIANT_BOOL* value) override {
        return To(&I::get_IsPlugInActive, value);
    }
    STDMETHODIMP get_Path(BSTR* value) override { return To(&I::get_Path, value); }
    STDMETHODIMP put_Path(BSTR value) override { return To(&I::put_Path, value); }
    STDMETHODIMP get_ExecTime(long* value) override { return To(&I::get_ExecTime, value); }
    STDMETHODIMP get_MaxInstances(long* value) override { return To(&I::get_MaxInstances, value); }
    STDMETHODIMP get_CDBDimension(long* value) override { return To(&I::get_CDBDimension, value); }
    STDMETHODIMP get_Color(long* value) override { return To(&I::get_Color, value); }
    STDMETHODIMP put_Color(long value) override { return To(&I::put_Color, value); }
    STDMETHODIMP SetColor(long color) override { return To(&I::SetColor, color); }
    STDMETHODIMP get_Width(long* value) override { return To(&I::get_Width, value); }
    STDMETHODIMP get_InputWidth(long* value) override { return To(&I::get_InputWidth, value); }
    STDMETHODIMP get_DDBDimension(long* value) override { return To(&I::get_DDBDimension, value); }
    STDMETHODIMP get_SDBDimension(long* value) override { return To(&I::get_SDBDimension, value); }
    STDMETHODIMP ClearReferences() override { return To(&I::ClearReferences); }
    STDMETHODIMP ViewDatasheet(VARIANT ownerWindow) override { return To(&I::ViewDatasheet, ownerWindow); }
    STDMETHODIMP get_DatasheetAvailable(VARIANT_BOOL* value) override {
        return To(&I::get_DatasheetAvailable, value);
    }
    STDMETHODIMP get_PlugInAvailable(VARIANT_BOOL* value) override {
        return To(&I::get_PlugInAvailable, value);
    }
    STDMETHODIMP get_UserName(BSTR* value) override { return To(&I::get_UserName, value); }
    STDMETHODIMP get_UniqueIDString(BSTR* value) override { return To(&I::get_UniqueIDString, value); }
    STDMETHODIMP get_OwnerDeviceXML(IDispatch** value) override { return To(&I::get_OwnerDeviceXML, value); }
    STDMETHODIMP putref_OwnerDeviceXML(IDispatch* value) override {
        return To(&I::putref_OwnerDeviceXML, value);
    }
    STDMETHODIMP put_UserName(BSTR value) override { return To(&I::put_UserName, value); }
    STDMETHODIMP get_Name(BSTR* value) override { return To(&I::get_Name, value); }
    STDMETHODIMP get_NodeType(long* value) override { return To(&I::get_NodeType, value); }
    STDMETHODIMP get_Tag(BSTR* value) override { return To(&I::get_Tag, value); }
    STDMETHODIMP put_Tag(BSTR value) override { return To(&I::put_Tag, value); }
    STDMETHODIMP get_GlobalKey(BSTR* value) override { return To(&I::get_GlobalKey, value); }
    STDMETHODIMP put_GlobalKey(BSTR value) override { return To(&I::put_GlobalKey, value); }
    STDMETHODIMP get_key(BSTR* value) override { return To(&I::get_key, value); }
    STDMETHODIMP put_key(BSTR value) override { return To(&I::put_key, value); }
    STDMETHODIMP get_ID(BSTR* value) override { return To(&I::get_ID, value); }
    STDMETHODIMP get_UniqueID(BSTR* value) override { return To(&I::get_UniqueID, value); }
    STDMETHODIMP put_UniqueID(BSTR value) override { return To(&I::put_UniqueID, value); }
    STDMETHODIMP get_Description(BSTR* value) override { return To(&I::get_Description, value); }
    STDMETHODIMP get_Icon(IDispatch** value) override { return To(&I::get_Icon, value); }
    STDMETHODIMP get_Category(BSTR* value) override { return To(&I::get_Category, value); }
    STDMETHODIMP Create() override { return To(&I::Create); }
    STDMETHODIMP Show() override { return To(&I::Show); }
    STDMETHODIMP ObjectDebug() override { return To(&I::ObjectDebug); }
    STDMETHODIMP Save(VARIANT stream) override { return To(&I::Save, stream); }
    STDMETHODIMP Load(VARIANT stream) override { return To(&I::Load, stream); }
    STDMETHODIMP get_Stream(BSTR* value) override { return To(&I::get_Stream, value); }
    STDMETHODIMP get_IntelStream(VARIANT* value) override { return To(&I::get_IntelStream, value); }
    STDMETHODIMP put_Stream(BSTR value) override { return To(&I::put_Stream, value); }
    STDMETHODIMP get_Inputs(IInputs** value) override { return To(&I::get_Inputs, value); }
    STDMETHODIMP get_Outputs(IOutputs** value) override { return To(&I::get_Outputs, value); }
    STDMETHODIMP get_Attributes(IAttributes** value) override { return To(&I::get_Attributes, value); }
    STDMETHODIMP get_Language(long* value) override { return To(&I::get_Language, value); }
    STDMETHODIMP put_Language(long value) override { return To(&I::put_Language, value); }
    STDMETHODIMP Destroy() override { return To(&I::Destroy); }
    STDMETHODIMP get_ProgrammaticID(BSTR* value) override { return To(&I::get_ProgrammaticID, value); }
    STDMETHODIMP putref_XmlSNVTDoc(IDispatch* value) override { return To(&I::putref_XmlSNVTDoc, value); }
    STDMETHODIMP XMLSave(IDispatch* parentNode, IDispatch* document) override {
        return To(&I::XMLSave, parentNode, document);
    }
    STDMETHODIMP XMLSaveSim(IDispatch* parentNode, IDispatch* document) override {
        return To(&I::XMLSaveSim, parentNode, document);
    }
    STDMETHODIMP XMLSaveForInteroperability(IDispatch* parentNode, IDispatch* document) override {
        return To(&I::XMLSaveForInteroperability, parentNode, document);
    }
    STDMETHODIMP XmlLoad(IDispatch* element) override { return To(&I::XmlLoad, element); }
    STDMETHODIMP CallBack(IDispatch* target) override { return To(&I::CallBack, target); }
    STDMETHODIMP get_Parent(IDispatch** value) override { return To(&I::get_Parent, value); }
    STDMETHODIMP putref_Parent(IDispatch* value) override { return To(&I::putref_Parent, value); }
    STDMETHODIMP get_XPosition(double* value) override { return To(&I::get_XPosition, value); }
    STDMETHODIMP put_XPosition(double value) override { return To(&I::put_XPosition, value); }
    STDMETHODIMP get_YPosition(double* value) override { return To(&I::get_YPosition, value); }
    STDMETHODIMP put_YPosition(double value) override { return To(&I::put_YPosition, value); }
    STDMETHODIMP put_ManageShortFloat(VARIANT_BOOL value) override {
        return To(&I::put_ManageShortFloat, value);
    }
    STDMETHODIMP Init(BSTR name, VARIANT_BOOL* value) override { return To(&I::Init, name, value); }
    STDMETHODIMP get_ExportIndex(short* value) override { return To(&I::get_ExportIndex, value); }
    STDMETHODIMP put_ExportIndex(short value) override { return To(&I::put_ExportIndex, value); }
    STDMETHODIMP get_NumObjects(short* value) override { return To(&I::get_NumObjects, value); }
    STDMETHODIMP get_ExtendedKey(BSTR* value) override { return To(&I::get_ExtendedKey, value); }
    STDMETHODIMP put_ExtendedKey(BSTR value) override { return To(&I::put_ExtendedKey, value); }
    STDMETHODIMP get_IsDeviceDependent(VARIANT_BOOL* value) override {
        return To(&I::get_IsDeviceDependent, value);
    }
    STDMETHODIMP get_UsesDeviceClock(VARIANT_BOOL* value) override {
        return To(&I::get_UsesDeviceClock, value);
    }
    STDMETHODIMP get_IsHidden(VARIANT_BOOL* value) override { return To(&I::get_IsHidden, value); }
    STDMETHODIMP get_IsVirtual(VARIANT_BOOL* value) override { return To(&I::get_IsVirtual, value); }
};

} // namespace tam
