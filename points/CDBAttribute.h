#pragma once

#include "com/Dom.h"
#include "core/PointData.h"
#include "dialogs/ValueEditor.h"
#include "points/Point.h"
#include "types/CSNVTType.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <memory>
#include <string>
#include <utility>

namespace tam {

/// One configuration property: a named value with a type, shown as text and
/// changed through the editor that fits the type. To the host it is a plain,
/// always visible, unit-independent property; most answers are fixed.
class CDBAttribute final
    : public Point<CDBAttribute, com::Face<CDBAttribute, _CDBAttribute>, com::Face<CDBAttribute, IAttribute>,
                   com::Face<CDBAttribute, IMutableTypeAttribute>> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::CDBAttribute); }
    static const IID& MembersId() noexcept { return __uuidof(::CDBAttributeMembers); }

    explicit CDBAttribute(std::wstring name) : Point(std::move(name)) {}

    // The component's own side.
    const AttributeData& Data() const noexcept { return data_; }
    /// Identifier of the loaded type; empty without one.
    std::wstring SNVTName() const { return type_ ? type_->Id() : std::wstring(); }
    /// Makes the type object if there is none; then loads the type, unless the name is "".
    void SetSNVTName(const std::wstring& name);
    const com::Ref<CSNVTType>& Type() const noexcept { return type_; }
    /// Reads the definition element. A step that fails is passed over and
    /// leaves its field as it was.
    void ReadDefinition(const dom::Node& element) noexcept;
    /// Chooses the editor by the general type. "Object not set" without a type.
    void CreateEditor();

    // Own members
    STDMETHODIMP put_Value(BSTR value) override;
    STDMETHODIMP get_BitSet(BSTR* value) override { return Answer(value, std::wstring()); }
    STDMETHODIMP XmlLoad(IDispatch* element) override;
    STDMETHODIMP XMLSave(IDispatch* parentNode, IDispatch* document) override;
    STDMETHODIMP pConvertEnum(BSTR value, BSTR description, BSTR* label) override;
    STDMETHODIMP get_UnitsManager(IDispatch** value) override;

    // IAttribute
    STDMETHODIMP get_Visible(VARIANT_BOOL* value) override { return Answer(value, true); }
    STDMETHODIMP SetValue() override;
    STDMETHODIMP get_IsUnit(VARIANT_BOOL* value) override { return Answer(value, false); }
    STDMETHODIMP get_Description(BSTR* value) override { return Answer(value, std::wstring()); }
    STDMETHODIMP get_Value(BSTR* value) override { return Answer(value, data_.value); }
    STDMETHODIMP get_DispValue(BSTR* value) override;
    STDMETHODIMP get_DispMin(BSTR* value) override { return Answer(value, std::wstring()); }
    STDMETHODIMP get_DispMax(BSTR* value) override { return Answer(value, std::wstring()); }
    STDMETHODIMP get_DispDefault(BSTR* value) override { return Answer(value, std::wstring()); }
    STDMETHODIMP get_NodeType(long* value) override { return Answer(value, 9L); }
    STDMETHODIMP get_SNVTType(ISNVType** value) override { return Answer(value, type_); }
    STDMETHODIMP BackToDefault() override { return S_OK; }
    STDMETHODIMP get_DefaultValue(BSTR* value) override { return Answer(value, std::wstring()); }
    STDMETHODIMP get_Tag(BSTR* value) override { return Answer(value, std::wstring()); }
    STDMETHODIMP put_Tag(BSTR) override { return S_OK; }
    STDMETHODIMP get_Fields(IDispatch** value) override { return Answer(value, com::Ref<IDispatch>()); }
    STDMETHODIMP putref_CallBack(IDispatch*) override { return S_OK; }
    STDMETHODIMP get_CDBPosition(long* value) override { return Answer(value, 0L); }
    STDMETHODIMP get_ToolOnly(VARIANT_BOOL* value) override { return Answer(value, false); }
    STDMETHODIMP get_IsDeviceDependent(VARIANT_BOOL* value) override { return Answer(value, false); }
    STDMETHODIMP get_IsUnitDependent(VARIANT_BOOL* value) override { return Answer(value, false); }
    STDMETHODIMP get_DeviceKey(BSTR* value) override { return Answer(value, std::wstring()); }
    STDMETHODIMP get_IsKeepFloatStandard(VARIANT_BOOL* value) override { return Answer(value, false); }
    STDMETHODIMP get_DividedBy(long* value) override { return Answer(value, 0L); }
    STDMETHODIMP get_IsType(VARIANT_BOOL* value) override { return Answer(value, false); }
    STDMETHODIMP get_Min(BSTR* value) override { return Answer(value, std::wstring()); }
    STDMETHODIMP get_Max(BSTR* value) override { return Answer(value, std::wstring()); }

    // IMutableTypeAttribute: the type never changes after loading.
    STDMETHODIMP SetType(ISNVType*) override { return S_OK; }

  private:
    CSNVTType& RequiredType() const;
    std::wstring DispValue() const;
    std::wstring NumericDispValue() const;

    std::unique_ptr<ValueEditor> editor_;
    com::Ref<CSNVTType> type_;
    AttributeData data_;
};

} // namespace tam
