#pragma once

#include "host/GenericAnswers.h"
#include "host/GenericDefinition.h"
#include "host/GenericPoints.h"
#include "host/SavedObject.h"

#include <OrvDBFaces.h>
#include <OrvHost.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace orv {

/// A generic object that is what its definition in the library says: `Init` reads the
/// definition, `Create` makes the points. Objects of other components wrap it
/// and register as its interceptor.
class GenericObject final : public com::Object<GenericObject, GenericAnswers<GenericObject>,
                                               com::Face<GenericObject, IAttributeInterception>,
                                               com::Face<GenericObject, IGenericObject>>,
                            private GenericOwner {
  public:
    static REFCLSID ClassId() noexcept { return __uuidof(::GenericObject); }

    GenericObject() = default;
    ~GenericObject() override { link_->owner = nullptr; }

    // IAppObject, in slot order without the answers of GenericAnswers
    STDMETHODIMP get_IsPlugInActive(VARIANT_BOOL* value) override { return Answer(value, showing_); }
    STDMETHODIMP get_ExecTime(long* value) override { return Number(L"EXECTIME", value); }
    STDMETHODIMP get_MaxInstances(long* value) override { return Number(L"MAXINSTANCES", value); }
    STDMETHODIMP get_CDBDimension(long* value) override { return Number(L"CDBDIMENSION", value); }
    STDMETHODIMP get_Color(long* value) override { return Answer(value, color_); }
    STDMETHODIMP put_Color(long value) override { return StoreValue(color_, value); }
    STDMETHODIMP SetColor(long color) override { return StoreValue(color_, color); }
    STDMETHODIMP get_Width(long* value) override { return Number(L"WIDTH", value); }
    STDMETHODIMP get_InputWidth(long* value) override { return Number(L"INPUTWIDTH", value); }
    STDMETHODIMP get_DDBDimension(long* value) override { return Number(L"DDBDIMENSION", value); }
    STDMETHODIMP get_SDBDimension(long* value) override { return Number(L"SDBDIMENSION", value); }
    STDMETHODIMP ClearReferences() override;
    STDMETHODIMP ViewDatasheet(VARIANT ownerWindow) override;
    STDMETHODIMP get_UserName(BSTR* value) override { return Answer(value, userName_); }
    STDMETHODIMP get_UniqueIDString(BSTR* value) override { return Answer(value, definitionName_); }
    STDMETHODIMP get_OwnerDeviceXML(IDispatch** value) override { return Answer(value, ownerDeviceXml_); }
    STDMETHODIMP putref_OwnerDeviceXML(IDispatch* value) override {
        return StoreValue(ownerDeviceXml_, value);
    }
    STDMETHODIMP put_UserName(BSTR value) override { return Store(userName_, value); }
    STDMETHODIMP get_Name(BSTR* value) override { return Text(L"NAME", value); }
    STDMETHODIMP get_GlobalKey(BSTR* value) override { return Answer(value, globalKey_); }
    STDMETHODIMP put_GlobalKey(BSTR value) override;
    STDMETHODIMP get_ID(BSTR* value) override { return Text(L"ID", value); }
    STDMETHODIMP get_Description(BSTR* value) override { return Text(L"DESCRIPTION", value); }
    STDMETHODIMP get_Category(BSTR* value) override { return Text(L"CATEGORY", value); }
    STDMETHODIMP Create() override;
    STDMETHODIMP Show() override;
    STDMETHODIMP ObjectDebug() override;
    STDMETHODIMP get_Inputs(IInputs** value) override { return Answer(value, inputs_); }
    STDMETHODIMP get_Outputs(IOutputs** value) override { return Answer(value, outputs_); }
    STDMETHODIMP get_Attributes(IAttributes** value) override { return Answer(value, attributes_); }
    STDMETHODIMP Destroy() override;
    STDMETHODIMP get_ProgrammaticID(BSTR* value) override;
    STDMETHODIMP putref_XmlSNVTDoc(IDispatch* value) override;
    STDMETHODIMP XMLSave(IDispatch* parentNode, IDispatch* document) override;
    STDMETHODIMP XMLSaveSim(IDispatch* parentNode, IDispatch* document) override;
    STDMETHODIMP XMLSaveForInteroperability(IDispatch* parentNode, IDispatch* document) override;
    STDMETHODIMP XmlLoad(IDispatch* element) override;
    STDMETHODIMP get_Parent(IDispatch** value) override { return Answer(value, parent_); }
    STDMETHODIMP putref_Parent(IDispatch* value) override { return StoreValue(parent_, value); }
    STDMETHODIMP get_XPosition(double* value) override { return Answer(value, x_); }
    STDMETHODIMP put_XPosition(double value) override { return StoreValue(x_, value); }
    STDMETHODIMP get_YPosition(double* value) override { return Answer(value, y_); }
    STDMETHODIMP put_YPosition(double value) override { return StoreValue(y_, value); }
    STDMETHODIMP Init(BSTR name, VARIANT_BOOL* value) override;
    STDMETHODIMP get_ExportIndex(short* value) override { return Answer(value, exportIndex_); }
    STDMETHODIMP put_ExportIndex(short value) override { return StoreValue(exportIndex_, value); }
    STDMETHODIMP get_ExtendedKey(BSTR* value) override { return Answer(value, extendedKey_); }
    STDMETHODIMP put_ExtendedKey(BSTR value) override;
    STDMETHODIMP get_IsDeviceDependent(VARIANT_BOOL* value) override {
        return Flag(L"DEVICEDEPENDENT", value);
    }
    STDMETHODIMP get_UsesDeviceClock(VARIANT_BOOL* value) override { return Flag(L"USESDEVICECLOCK", value); }

    // IAttributeInterception
    STDMETHODIMP RegisterInterceptor(IAttributeInterceptor* interceptor) override;

    // IGenericObject
    STDMETHODIMP GetDataFromDevice() override;
    STDMETHODIMP get_IsIntercepted(VARIANT_BOOL* value) override;

  private:
    template <class T>
    static HRESULT StoreValue(T& field, T value) noexcept {
        field = value;
        return S_OK;
    }
    static HRESULT StoreValue(com::Ref<IDispatch>& field, IDispatch* value) noexcept {
        field = com::Ref<IDispatch>(value);
        return S_OK;
    }
    // Members that the definition answers
    HRESULT Text(const wchar_t* keyword, BSTR* value);
    HRESULT Number(const wchar_t* keyword, long* value);
    HRESULT Flag(const wchar_t* keyword, VARIANT_BOOL* value);

    // GenericOwner
    com::Ref<IAppObject> AppObject() override { return This<IAppObject>(); }
    com::Ref<IAttributeInterceptor> Interceptor() const override { return interceptor_; }
    void ForgetInterceptor(const com::Ref<IAttributeInterceptor>& gone) noexcept override;
    short OwnerExportIndex() const override { return exportIndex_; }
    com::Ref<HostType> MakeType(std::wstring_view id) const override;
    com::Ref<IDispatch> HostParent() const override { return parent_; }
    DeviceValues ReadDeviceValues() const override;

    void MakePoints();
    void FetchAll();

    // Documents
    SavedObject PointsToSave() const;
    void SaveTo(const SavedObject& object, IDispatch* parentNode, IDispatch* document) const;
    /// `saved` is the caller's own: a host that is asked meanwhile may load or create again.
    void TakePoints(const SavedObject& saved);

    /// Held by who walks it: a host's catalogue that is asked meanwhile may call Init.
    std::shared_ptr<const GenericDefinition> definition_;
    std::wstring definitionName_;
    com::Ref<GenericInputs> inputs_ = GenericInputs::Make();
    com::Ref<GenericOutputs> outputs_ = GenericOutputs::Make();
    com::Ref<GenericAttributes> attributes_ = GenericAttributes::Make();
    bool created_ = false;
    /// Read before the points were made; Create gives it to them.
    std::optional<SavedObject> saved_;
    std::shared_ptr<OwnerLink> link_ = std::make_shared<OwnerLink>();
    com::Ref<IAttributeInterceptor> interceptor_;
    com::Ref<IDispatch> parent_;
    com::Ref<IDispatch> ownerDeviceXml_;
    tam::dom::Document catalogue_;
    bool showing_ = false;
    long color_ = 0;
    std::wstring userName_;
    std::wstring globalKey_;
    std::wstring extendedKey_;
    double x_ = 0;
    double y_ = 0;
    short exportIndex_ = 0;
};

} // namespace orv
