#pragma once

#include "appobject/AppObjectFace.h"
#include "common/LoadTurns.h"
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
    : public com::Object<CDBAppObject, AppObjectFace<CDBAppObject>, com::Face<CDBAppObject, ITamObject>,
                         com::Face<CDBAppObject, ITamDialogs>>,
      private PointOwner {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::CDBAppObject); }

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
    /// The host's unit converter, made with the object.
    const com::Ref<IDispatch>& UnitsManager() const noexcept { return unitsManager_; }
    std::uint8_t ChannelNumber() const noexcept { return channelNumber_; }
    void SetChannelNumber(std::uint8_t number) noexcept { channelNumber_ = number; }
    void EndPlugIn() noexcept { isPlugInActive_ = false; }

    // IAppObject, in slot order without the fixed answers of AppObjectFace
    STDMETHODIMP get_IsPlugInActive(VARIANT_BOOL* value) override { return Answer(value, isPlugInActive_); }
    STDMETHODIMP get_CDBDimension(long* value) override { return Answer(value, cdbDimension_); }
    STDMETHODIMP get_DDBDimension(long* value) override { return Answer(value, ddbDimension_); }
    STDMETHODIMP ClearReferences() override;
    STDMETHODIMP ViewDatasheet(VARIANT ownerWindow) override;
    STDMETHODIMP get_DatasheetAvailable(VARIANT_BOOL* value) override {
        return Answer(value, datasheetAvailable_);
    }
    STDMETHODIMP get_PlugInAvailable(VARIANT_BOOL* value) override { return Answer(value, plugInAvailable_); }
    STDMETHODIMP get_UserName(BSTR* value) override { return Answer(value, userName_); }
    STDMETHODIMP get_UniqueIDString(BSTR* value) override { return Answer(value, definitionName_); }
    STDMETHODIMP get_OwnerDeviceXML(IDispatch** value) override { return Answer(value, ownerDeviceXml_); }
    STDMETHODIMP putref_OwnerDeviceXML(IDispatch* value) override { return Keep(ownerDeviceXml_, value); }
    STDMETHODIMP put_UserName(BSTR value) override { return Store(userName_, value); }
    STDMETHODIMP get_Name(BSTR* value) override { return Answer(value, name_); }
    STDMETHODIMP get_Tag(BSTR* value) override { return Answer(value, tag_); }
    STDMETHODIMP put_Tag(BSTR value) override { return Store(tag_, value); }
    STDMETHODIMP get_GlobalKey(BSTR* value) override { return Answer(value, globalKey_); }
    STDMETHODIMP put_GlobalKey(BSTR value) override;
    STDMETHODIMP get_key(BSTR* value) override { return Answer(value, key_); }
    STDMETHODIMP put_key(BSTR value) override { return Store(key_, value); }
    STDMETHODIMP get_ID(BSTR* value) override { return Answer(value, id_); }
    STDMETHODIMP get_UniqueID(BSTR* value) override { return Answer(value, uniqueId_); }
    STDMETHODIMP put_UniqueID(BSTR value) override { return Store(uniqueId_, value); }
    STDMETHODIMP get_Description(BSTR* value) override { return Answer(value, description_); }
    STDMETHODIMP get_Icon(IDispatch** value) override;
    STDMETHODIMP get_Category(BSTR* value) override { return Answer(value, category_); }
    STDMETHODIMP Show() override;
    STDMETHODIMP get_Stream(BSTR* value) override;
    STDMETHODIMP get_Inputs(IInputs** value) override { return Answer(value, inputs_); }
    STDMETHODIMP get_Outputs(IOutputs** value) override { return Answer(value, outputs_); }
    STDMETHODIMP get_Attributes(IAttributes** value) override { return Answer(value, attributes_); }
    STDMETHODIMP get_Language(long* value) override { return Answer(value, language_); }
    STDMETHODIMP put_Language(long value) override { return Keep(language_, value); }
    STDMETHODIMP Destroy() override;
    STDMETHODIMP get_ProgrammaticID(BSTR* value) override;
    STDMETHODIMP putref_XmlSNVTDoc(IDispatch* value) override;
    STDMETHODIMP XMLSave(IDispatch* parentNode, IDispatch* document) override;
    STDMETHODIMP XMLSaveForInteroperability(IDispatch* parentNode, IDispatch* document) override;
    STDMETHODIMP XmlLoad(IDispatch* element) override;
    STDMETHODIMP get_Parent(IDispatch** value) override { return Answer(value, parent_); }
    STDMETHODIMP putref_Parent(IDispatch* value) override { return Keep(parent_, value); }
    STDMETHODIMP get_XPosition(double* value) override { return Answer(value, xPosition_); }
    STDMETHODIMP put_XPosition(double value) override { return Keep(xPosition_, value); }
    STDMETHODIMP get_YPosition(double* value) override { return Answer(value, yPosition_); }
    STDMETHODIMP put_YPosition(double value) override { return Keep(yPosition_, value); }
    STDMETHODIMP Init(BSTR name, VARIANT_BOOL* value) override;
    STDMETHODIMP get_ExportIndex(short* value) override { return Answer(value, exportIndex_); }
    STDMETHODIMP put_ExportIndex(short value) override { return Keep(exportIndex_, value); }
    STDMETHODIMP get_ExtendedKey(BSTR* value) override { return Answer(value, extendedKey_); }
    STDMETHODIMP put_ExtendedKey(BSTR value) override;

    // ITamObject
    STDMETHODIMP get_DeviceKey(BSTR* value) override { return Answer(value, deviceKey_); }
    STDMETHODIMP put_DeviceKey(BSTR value) override { return Store(deviceKey_, value); }
    STDMETHODIMP get_Address(short* value) override;
    STDMETHODIMP put_Address(short value) override;
    STDMETHODIMP get_ApplicationID(BSTR* value) override { return Answer(value, applicationId_); }
    STDMETHODIMP put_ApplicationID(BSTR value) override { return Store(applicationId_, value); }
    STDMETHODIMP LoadFromXmlStream(BSTR xml) override;
    STDMETHODIMP get_TamObjectID(short* value) override { return Answer(value, tamObjectId_); }
    // The identifier comes from the device stream and the project element; a write is accepted and dropped.
    STDMETHODIMP put_TamObjectID(short) override { return S_OK; }
    STDMETHODIMP Contains(ITamInternalAppObject* item, VARIANT_BOOL* value) override;

    // ITamDialogs
    STDMETHODIMP ShowAbout() override;
    STDMETHODIMP ShowRename(VARIANT* deviceName, BSTR deviceKey, short* choice) override;
    STDMETHODIMP EditValue(IDispatch* dataPoint) override;

  private:
    template <class T>
    static HRESULT Keep(T& field, T value) noexcept {
        field = value;
        return S_OK;
    }
    static HRESULT Keep(com::Ref<IDispatch>& field, IDispatch* value) noexcept {
        field = com::Ref<IDispatch>(value);
        return S_OK;
    }

    // PointOwner
    PointOwner& AsOwner() noexcept { return *this; }
    com::Ref<IAppObject> AppObject() override { return This<IAppObject>(); }
    const std::wstring& OwnerName() const override { return name_; }
    short OwnerExportIndex() const override { return exportIndex_; }
    com::Ref<IDispatch> OwnerUnitsManager() const override { return unitsManager_; }
    com::Ref<IDispatch> HostParent() const override { return parent_; }
    std::optional<std::wstring> OwnerDefaultValue(const std::wstring& attribute) const override {
        return defaultValues_.Find(attribute);
    }

    // Definition
    bool LoadDefinition(const std::wstring& name);
    void GetBasicInfos() noexcept;
    static void GetDataSizes(const dom::Node& element) noexcept;
    void FindDatasheet();

    // Project XML
    void SaveOutputs(const dom::Document& document, const dom::Node& element) const;
    void LoadChild(const dom::Node& child, LoadTurns::Turn turn);
    void LoadDisplayFlags(const dom::Node& element, LoadTurns::Turn turn);
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
    std::wstring definitionName_;
    bool plugInAvailable_ = false;
    bool datasheetAvailable_ = false;
    bool isPlugInActive_ = false;
    std::wstring datasheetPath_;
    std::wstring name_;
    std::wstring id_;
    std::wstring description_;
    std::wstring category_;
    long language_ = 0;
    std::wstring userName_;
    std::wstring tag_;
    std::wstring uniqueId_;
    std::wstring address_;
    std::wstring applicationId_;
    std::wstring key_;
    std::wstring globalKey_;
    std::wstring extendedKey_;
    short exportIndex_ = 0;
    double xPosition_ = 0;
    double yPosition_ = 0;
    com::Owned<CDBInputs> inputs_;
    com::Owned<CDBOutputs> outputs_;
    com::Owned<CDBAttributes> attributes_;
    std::uint8_t channelNumber_ = 255;
    std::wstring devKey_;
    short tamObjectId_ = 0;
    com::Ref<IDispatch> unitsManager_;
    std::wstring deviceKey_;
    long cdbDimension_ = 0;
    long ddbDimension_ = 0;
    bool isLastOnDev_ = false;
    LoadTurns projectLoads_;
    LoadTurns streamLoads_;
    /// While a stream is loaded: how many attributes there were before.
    std::optional<std::size_t> attributesBefore_;
};

} // namespace tam
