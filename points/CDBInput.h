#pragma once

#include "com/Dom.h"
#include "com/Owned.h"
#include "core/PointKeys.h"
#include "points/CCompatibleSNVTs.h"
#include "points/PointOwner.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <string>
#include <utility>

namespace tam {

/// One input of an application object: a typed point that the host can wire to
/// an output of another object.
class CDBInput final
    : public com::OwnedDualObject<CDBInput, PointOwner, _CDBInput, IInput, ISubItemConnable> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::CDBInput); }

    explicit CDBInput(std::wstring name) : name_(std::move(name)), compatible_(CCompatibleSNVTs::Make()) {}

    // The component's own side.
    void SetGlobalKeyUnder(SharedKey ownerKey) noexcept { globalKey_ = std::move(ownerKey); }
    void SetExtendedKeyUnder(SharedKey ownerKey) noexcept { extendedKey_ = std::move(ownerKey); }
    void SetIndex(long index) noexcept { index_ = index; }
    const std::wstring& PointName() const noexcept { return name_; }
    const std::wstring& LogicalAddress() const noexcept { return logicalAddress_; }
    const std::wstring& ProtocolReference() const noexcept { return protocolReference_; }
    const std::wstring& SnvtTypeText() const noexcept { return snvtType_; }
    const std::wstring& LinkReference() const noexcept { return value_; }
    bool IsPermanent() const noexcept { return permanent_; }
    /// Reads the definition element. `ownerName` is named in the warning that
    /// an empty compatibility list gives.
    void ReadDefinition(const dom::Node& element, const std::wstring& ownerName);

    // Own members
    STDMETHODIMP XMLSave(IDispatch* document, IDispatch* parentNode) override;
    STDMETHODIMP XmlLoad(IDispatch* element) override;

    // IInput
    STDMETHODIMP changeType(VARIANT) override { return S_OK; }
    STDMETHODIMP putref_CallBack(IDispatch*) override { return S_OK; }
    STDMETHODIMP get_NodeType(long* value) override { return Answer(value, 7L); }
    STDMETHODIMP get_IsConnected(VARIANT_BOOL* value) override { return Answer(value, connected_); }
    STDMETHODIMP get_ConnectedType(ISNVType** value) override;
    STDMETHODIMP get_Visible(VARIANT_BOOL* value) override { return Answer(value, true); }
    // The stored flag is not consulted: no input of a module is mandatory.
    STDMETHODIMP get_Mandatory(VARIANT_BOOL* value) override { return Answer(value, false); }
    STDMETHODIMP get_Value(BSTR* value) override { return Answer(value, value_); }
    STDMETHODIMP put_Value(BSTR value) override;
    STDMETHODIMP get_Name(BSTR* value) override { return Answer(value, name_); }
    STDMETHODIMP get_GlobalKey(BSTR* value) override;
    STDMETHODIMP get_Extended(VARIANT_BOOL* value) override { return Answer(value, true); }
    STDMETHODIMP get_Index(long* value) override { return Answer(value, index_); }
    STDMETHODIMP get_CDBPosition(long* value) override { return Answer(value, 0L); }
    STDMETHODIMP get_SNVTCompatibles(ICompatibleSNVTs** value) override { return Answer(value, compatible_); }
    STDMETHODIMP get_Parent(IAppObject** value) override;
    STDMETHODIMP get_ExtendedKey(BSTR* value) override;
    STDMETHODIMP get_IsMacroConnected(VARIANT_BOOL* value) override;

    // ISubItemConnable
    STDMETHODIMP put_IsConnected(VARIANT_BOOL value) override;
    STDMETHODIMP put_HasPriority(VARIANT_BOOL) override { return S_OK; }
    STDMETHODIMP put_IncrementalConnIndex(long) override { return S_OK; }
    STDMETHODIMP putref_ConnectedType(IDispatch* value) override;
    STDMETHODIMP get_itemType(long* value) override { return Answer(value, 7L); }
    STDMETHODIMP get_SNVTType(ISNVType** value) override { return Answer(value, com::Ref<ISNVType>()); }
    STDMETHODIMP get_IsSNVTCompatible(BSTR identifier, VARIANT_BOOL* value) override;

  private:
    SharedKey globalKey_;
    SharedKey extendedKey_;
    std::wstring name_;
    com::Ref<CCompatibleSNVTs> compatible_;
    bool connected_ = false;
    com::Ref<ISNVType> connectedType_;
    std::wstring value_;
    std::wstring snvtType_;
    std::wstring protocolReference_;
    std::wstring logicalAddress_;
    bool permanent_ = false;
    bool visible_ = false;
    bool mandatory_ = true;
    long index_ = 0;
};

} // namespace tam
