#pragma once

#include "appobject/FixedAppObject.h"
#include "common/LoadTickets.h"
#include "core/ModuleData.h"
#include "points/CDBAttributes.h"
#include "points/CDBInputs.h"
#include "points/CDBOutputs.h"
#include "points/DefaultValues.h"
#include "points/PointOwner.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tam {

/// The remote I/O module object: what the host places on a sheet, saves with
/// the project and compiles into the controller's database.
class CDBAppObject final
    : public com::Object<CDBAppObject, FixedAppObject<CDBAppObject>, com::Face<CDBAppObject, ITamObject>,
                         com::Face<CDBAppObject, ITamDialogs>>,
      private PointOwner {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::CDBAppObject); }
    static const IID& MembersId() noexcept { return __uuidof(::CDBAppObjectMembers); }

    /// Throws when the host's unit converter cannot be created.
    CDBAppObject();

    // PointOwner and the interfaces are one object.
    ULONG STDMETHODCALLTYPE AddRef() override { return Object::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return Object::Release(); }

    // The component's own side.

    /// The collections as what they are; empty after Destroy.
    com::Ref<CDBInputs> Inputs() const noexcept { return inputs_; }
    com::Ref<CDBOutputs> Outputs() const noexcept { return outputs_; }
    com::Ref<CDBAttributes> Attributes() const noexcept { return attributes_; }
    // Nothing of the component asks for the next three; they are there for callers of its members.
    /// The host's unit converter, made with the object.
    const com::Ref<IDispatch>& UnitsManager() const noexcept { return unitsManager_; }
    std::uint8_t ChannelNumber() const noexcept { return data_.device.channelNumber; }
    void SetChannelNumber(std::uint8_t number) noexcept { data_.device.channelNumber = number; }
    void EndPlugIn() noexcept { isPlugInActive_ = false; }

    // IAppObject, in slot order without the fixed answers of FixedAppObject
    STDMETHODIMP get_IsPlugInActive(VARIANT_BOOL* value) override { return Answer(value, isPlugInActive_); }
    STDMETHODIMP get_CDBDimension(long* value) override { return Answer(value, data_.device.cdbDimension); }
    STDMETHODIMP get_DDBDimension(long* value) override { return Answer(value, data_.device.ddbDimension); }
    STDMETHODIMP ClearReferences() override;
    STDMETHODIMP ViewDatasheet(VARIANT ownerWindow) override;
    STDMETHODIMP get_DatasheetAvailable(VARIANT_BOOL* value) override {
        return Answer(value, data_.datasheet.isAvailable);
    }
    STDMETHODIMP get_UserName(BSTR* value) override { return Answer(value, data_.placement.userName); }
    STDMETHODIMP get_UniqueIDString(BSTR* value) override {
        return Answer(value, data_.identity.definitionName);
    }
    STDMETHODIMP get_OwnerDeviceXML(IDispatch** value) override { return Answer(value, ownerDeviceXml_); }
    STDMETHODIMP putref_OwnerDeviceXML(IDispatch* value) override {
        return StoreValue(ownerDeviceXml_, value);
    }
    STDMETHODIMP put_UserName(BSTR value) override { return Store(data_.placement.userName, value); }
    STDMETHODIMP get_Name(BSTR* value) override { return Answer(value, data_.identity.name); }
    STDMETHODIMP get_Tag(BSTR* value) override { return Answer(value, data_.notes.tag); }
    STDMETHODIMP put_Tag(BSTR value) override { return Store(data_.notes.tag, value); }
    STDMETHODIMP get_GlobalKey(BSTR* value) override { return Answer(value, data_.notes.globalKey); }
    STDMETHODIMP put_GlobalKey(BSTR value) override;
    STDMETHODIMP get_key(BSTR* value) override { return Answer(value, data_.notes.key); }
    STDMETHODIMP put_key(BSTR value) override { return Store(data_.notes.key, value); }
    STDMETHODIMP get_ID(BSTR* value) override { return Answer(value, data_.identity.id); }
    STDMETHODIMP get_UniqueID(BSTR* value) override { return Answer(value, data_.notes.uniqueId); }
    STDMETHODIMP put_UniqueID(BSTR value) override { return Store(data_.notes.uniqueId, value); }
    STDMETHODIMP get_Description(BSTR* value) override { return Answer(value, data_.identity.description); }
    STDMETHODIMP get_Icon(IDispatch** value) override;
    STDMETHODIMP get_Category(BSTR* value) override { return Answer(value, data_.identity.category); }
    STDMETHODIMP Show() override;
    STDMETHODIMP get_Stream(BSTR* value) override;
    STDMETHODIMP get_Inputs(IInputs** value) override { return Answer(value, inputs_); }
    STDMETHODIMP get_Outputs(IOutputs** value) override { return Answer(value, outputs_); }
    STDMETHODIMP get_Attributes(IAttributes** value) override { return Answer(value, attributes_); }
    STDMETHODIMP get_Language(long* value) override { return Answer(value, data_.notes.language); }
    STDMETHODIMP put_Language(long value) override { return StoreValue(data_.notes.language, value); }
    STDMETHODIMP Destroy() override;
    STDMETHODIMP get_ProgrammaticID(BSTR* value) override;
    STDMETHODIMP putref_XmlSNVTDoc(IDispatch* value) override;
    STDMETHODIMP XMLSave(IDispatch* parentNode, IDispatch* document) override;
    STDMETHODIMP XMLSaveForInteroperability(IDispatch* parentNode, IDispatch* document) override;
    STDMETHODIMP XmlLoad(IDispatch* element) override;
    STDMETHODIMP get_Parent(IDispatch** value) override { return Answer(value, parent_); }
    STDMETHODIMP putref_Parent(IDispatch* value) override { return StoreValue(parent_, value); }
    STDMETHODIMP get_XPosition(double* value) override { return Answer(value, data_.placement.xPosition); }
    STDMETHODIMP put_XPosition(double value) override { return StoreValue(data_.placement.xPosition, value); }
    STDMETHODIMP get_YPosition(double* value) override { return Answer(value, data_.placement.yPosition); }
    STDMETHODIMP put_YPosition(double value) override { return StoreValue(data_.placement.yPosition, value); }
    STDMETHODIMP Init(BSTR name, VARIANT_BOOL* value) override;
    STDMETHODIMP get_ExportIndex(short* value) override { return Answer(value, data_.notes.exportIndex); }
    STDMETHODIMP put_ExportIndex(short value) override { return StoreValue(data_.notes.exportIndex, value); }
    STDMETHODIMP get_ExtendedKey(BSTR* value) override { return Answer(value, data_.notes.extendedKey); }
    STDMETHODIMP put_ExtendedKey(BSTR value) override;

    // ITamObject
    STDMETHODIMP get_DeviceKey(BSTR* value) override { return Answer(value, data_.placement.deviceKey); }
    STDMETHODIMP put_DeviceKey(BSTR value) override { return Store(data_.placement.deviceKey, value); }
    STDMETHODIMP get_Address(short* value) override;
    STDMETHODIMP put_Address(short value) override;
    STDMETHODIMP get_ApplicationID(BSTR* value) override { return Answer(value, data_.device.applicationId); }
    STDMETHODIMP put_ApplicationID(BSTR value) override { return Store(data_.device.applicationId, value); }
    STDMETHODIMP LoadFromXmlStream(BSTR xml) override;
    STDMETHODIMP get_TamObjectID(short* value) override { return Answer(value, data_.placement.objectId); }
    // The identifier comes from the device stream and the project element; a write is accepted and dropped.
    STDMETHODIMP put_TamObjectID(short) override { return S_OK; }
    STDMETHODIMP Contains(ITamInternalAppObject* item, VARIANT_BOOL* value) override;

    // ITamDialogs
    STDMETHODIMP ShowAbout() override;
    STDMETHODIMP ShowRename(VARIANT* deviceName, BSTR deviceKey, short* choice) override;
    STDMETHODIMP EditValue(IDispatch* dataPoint) override;

  private:
    template <class T, class V>
    static HRESULT StoreValue(T& field, V value) noexcept {
        field = value;
        return S_OK;
    }
    static HRESULT StoreValue(com::Ref<IDispatch>& field, IDispatch* value) noexcept {
        field = com::Ref<IDispatch>(value);
        return S_OK;
    }

    // PointOwner
    PointOwner& AsOwner() noexcept { return *this; }
    com::Ref<IAppObject> AppObject() override { return This<IAppObject>(); }
    const std::wstring& OwnerName() const override { return data_.identity.name; }
    short OwnerExportIndex() const override { return data_.notes.exportIndex; }
    com::Ref<IDispatch> OwnerUnitsManager() const override { return unitsManager_; }
    com::Ref<IDispatch> HostParent() const override { return parent_; }
    std::optional<std::wstring> OwnerDefaultValue(const std::wstring& attribute) const override {
        return defaultValues_.Find(attribute);
    }

    /// A key of the module and what follows from it; `give` hands a collection its own.
    template <class Give>
    void TakeKey(std::wstring& field, BSTR value, Give give);

    // Definition
    bool LoadDefinition(const std::wstring& name);
    void GetBasicInfos() noexcept;
    static void GetDataSizes(const dom::Node& element) noexcept;
    void FindDatasheet();

    // Project XML
    void SaveOutputs(const dom::Document& document, const dom::Node& element) const;
    void LoadChild(const dom::Node& child, LoadTickets::Ticket ticket);
    void LoadDisplayFlags(const dom::Node& element, LoadTickets::Ticket ticket);
    class StreamLoad;
    void LoadStreamHeader(const dom::Node& document);

    // Export
    dom::Document BuildExport() const;
    void CompileExport(IDispatch& compiler, std::wstring& stream);
    void TakeSizes(std::wstring_view cdb, std::wstring_view ddb);

    com::Ref<IDispatch> parent_;
    dom::Document definition_;
    /// Of the definition document; fills itself when asked.
    mutable DefaultValues defaultValues_;
    com::Ref<IDispatch> ownerDeviceXml_;
    com::Ref<IDispatch> unitsManager_;
    com::Owned<CDBInputs> inputs_;
    com::Owned<CDBOutputs> outputs_;
    com::Owned<CDBAttributes> attributes_;
    ModuleData data_;
    bool isPlugInActive_ = false;
    LoadTickets projectLoads_;
    LoadTickets streamLoads_;
    /// While a stream is loaded: how many attributes there were before.
    std::optional<std::size_t> attributesBefore_;
};

} // namespace tam
