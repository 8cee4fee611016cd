#pragma once

#include "com/Dom.h"
#include "com/Owned.h"
#include "core/PointKeys.h"
#include "points/CCompatibleSNVT.h"
#include "points/PointOwner.h"
#include "types/CSNVTType.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <string>
#include <utility>

namespace tam {

// Two members stand in two interfaces of an output with different answers;
// each interface hands them to a member of its own.

template <class Derived>
class OutputFace : public com::Face<Derived, IOutput> {
  public:
    STDMETHODIMP get_IsConnected(VARIANT_BOOL* value) final { return this->Self().OutputIsConnected(value); }
};

template <class Derived>
class OutputConnableFace : public com::Face<Derived, ISubItemConnable> {
  public:
    STDMETHODIMP get_itemType(long* value) final { return this->Self().ConnableItemType(value); }
};

template <class Derived>
class OutputDisplayFace : public com::Face<Derived, IDisplayItem> {
  public:
    STDMETHODIMP get_itemType(long* value) final { return this->Self().DisplayItemType(value); }
    STDMETHODIMP get_IsConnected(VARIANT_BOOL* value) final { return this->Self().DisplayIsConnected(value); }
};

/// One output of an application object: a value published with one type.
class CDBOutput final
    : public com::OwnedObject<CDBOutput, PointOwner, com::Face<CDBOutput, _CDBOutput>, OutputFace<CDBOutput>,
                              OutputDisplayFace<CDBOutput>, OutputConnableFace<CDBOutput>> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::CDBOutput); }

    explicit CDBOutput(std::wstring name) : name_(std::move(name)), writable_(com::TextOf(false)) {}

    // The component's own side.
    void SetGlobalKeyUnder(SharedKey ownerKey) noexcept { globalKey_ = std::move(ownerKey); }
    void SetExtendedKeyUnder(SharedKey ownerKey) noexcept { extendedKey_ = std::move(ownerKey); }
    void SetIndex(long index) noexcept { index_ = index; }
    void SetDisplayable(bool displayable) noexcept { displayable_ = displayable; }
    const std::wstring& PointName() const noexcept { return name_; }
    const std::wstring& LogicalAddress() const noexcept { return logicalAddress_; }
    const std::wstring& MapAsObject() const noexcept { return mapAsObject_; }
    const std::wstring& ObjectOffset() const noexcept { return objectOffset_; }
    const std::wstring& AbsoluteObjectIndex() const noexcept { return absoluteObjectIndex_; }
    const std::wstring& Writable() const noexcept { return writable_; }
    bool IsConnected() const noexcept { return connected_; }
    bool IsDisplayable() const noexcept { return displayable_; }
    bool IsDisplayWritable() const noexcept { return displayWritable_; }
    /// The identifier of the output's type as its definition gives it; empty without one.
    std::wstring CompatibleId() const { return compatible_ ? compatible_->Id() : std::wstring(); }
    /// Looks the type up, making the type object first if there is none.
    void SetSnvtType(const std::wstring& id);
    /// Reads the definition element. `ownerName` is named in the warning that
    /// an empty type gives.
    void ReadDefinition(const dom::Node& element, const std::wstring& ownerName);

    // Own members
    STDMETHODIMP XMLSave(IDispatch* document, IDispatch* parentNode) override;
    STDMETHODIMP XmlLoad(IDispatch* element) override;

    // IOutput
    HRESULT OutputIsConnected(VARIANT_BOOL* value) { return Answer(value, connected_); }
    STDMETHODIMP putref_CallBack(IDispatch*) override { return S_OK; }
    STDMETHODIMP changeType(VARIANT) override { return S_OK; }
    STDMETHODIMP get_NodeType(long* value) override { return Answer(value, 8L); }
    STDMETHODIMP get_Visible(VARIANT_BOOL* value) override { return Answer(value, true); }
    STDMETHODIMP get_Name(BSTR* value) override { return Answer(value, name_); }
    STDMETHODIMP get_GlobalKey(BSTR* value) override;
    STDMETHODIMP get_Index(long* value) override { return Answer(value, index_); }
    STDMETHODIMP get_SNVTCompatible(ICompatibleSNVT** value) override { return Answer(value, compatible_); }
    STDMETHODIMP get_SNVTType(ISNVType** value) override { return Answer(value, type_); }
    STDMETHODIMP get_Parent(IAppObject** value) override;
    STDMETHODIMP get_DisplayWritable(VARIANT_BOOL* value) override { return Answer(value, displayWritable_); }
    // The definition's flag is kept for the component; the host is told false.
    STDMETHODIMP get_IsTypeDependent(VARIANT_BOOL* value) override { return Answer(value, false); }
    STDMETHODIMP get_ExtendedKey(BSTR* value) override;
    STDMETHODIMP get_IsMacroConnected(VARIANT_BOOL* value) override;
    STDMETHODIMP get_IsDisplayable(VARIANT_BOOL* value) override { return Answer(value, displayable_); }
    STDMETHODIMP put_IsDisplayable(VARIANT_BOOL value) override;

    // ISubItemConnable
    STDMETHODIMP put_IsConnected(VARIANT_BOOL value) override;
    STDMETHODIMP put_HasPriority(VARIANT_BOOL) override { return S_OK; }
    STDMETHODIMP put_IncrementalConnIndex(long) override { return S_OK; }
    STDMETHODIMP putref_ConnectedType(IDispatch* value) override;
    HRESULT ConnableItemType(long* value) { return Answer(value, 8L); }
    STDMETHODIMP get_IsSNVTCompatible(BSTR identifier, VARIANT_BOOL* value) override;

    // IDisplayItem
    STDMETHODIMP get_DisplayText(BSTR* value) override { return Answer(value, name_); }
    STDMETHODIMP put_DisplayText(BSTR) override { return S_OK; }
    STDMETHODIMP get_key(BSTR* value) override { return get_ExtendedKey(value); }
    HRESULT DisplayItemType(long* value) { return Answer(value, 10L); }
    STDMETHODIMP get_Icon(IDispatch** value) override { return Answer(value, com::Ref<IDispatch>()); }
    STDMETHODIMP get_IsWritable(VARIANT_BOOL* value) override { return Answer(value, displayWritable_); }
    STDMETHODIMP get_IsTrendable(VARIANT_BOOL* value) override { return Answer(value, false); }
    STDMETHODIMP get_Reference(BSTR* value) override;
    // A display item never reports a connection.
    HRESULT DisplayIsConnected(VARIANT_BOOL* value) { return Answer(value, false); }
    STDMETHODIMP get_Fields(IDispatch** value) override { return Answer(value, com::Ref<IDispatch>()); }

  private:
    SharedKey globalKey_;
    SharedKey extendedKey_;
    long index_ = 0;
    std::wstring name_;
    com::Ref<CSNVTType> type_;
    com::Ref<CCompatibleSNVT> compatible_;
    bool typeDependent_ = false;
    bool visible_ = false;
    bool connected_ = false;
    bool displayable_ = false;
    bool displayWritable_ = false;
    std::wstring exportIndex_;
    std::wstring connectedTypeId_;
    std::wstring logicalAddress_;
    std::wstring mapAsObject_;
    std::wstring objectOffset_;
    std::wstring absoluteObjectIndex_;
    std::wstring writable_;
};

} // namespace tam
