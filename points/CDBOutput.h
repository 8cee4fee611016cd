#pragma once

#include "com/Dom.h"
#include "core/PointData.h"
#include "points/CCompatibleSNVT.h"
#include "points/Point.h"
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
class CDBOutput final : public Point<CDBOutput, com::Face<CDBOutput, _CDBOutput>, OutputFace<CDBOutput>,
                                     OutputDisplayFace<CDBOutput>, OutputConnableFace<CDBOutput>> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::CDBOutput); }
    static const IID& MembersId() noexcept { return __uuidof(::CDBOutputMembers); }

    explicit CDBOutput(std::wstring name) : Point(std::move(name)) {}

    // The component's own side.
    const OutputData& Data() const noexcept { return data_; }
    void SetDisplayable(bool displayable) noexcept { data_.isDisplayable = displayable; }
    /// Looks the type up, making the type object first if there is none.
    void SetSnvtType(const std::wstring& id);
    /// Reads the definition element. `ownerName` is named in the warning that
    /// an empty type gives.
    void ReadDefinition(const dom::Node& element, const std::wstring& ownerName);

    // Own members
    STDMETHODIMP XMLSave(IDispatch* document, IDispatch* parentNode) override;
    STDMETHODIMP XmlLoad(IDispatch* element) override;

    // IOutput
    HRESULT OutputIsConnected(VARIANT_BOOL* value) { return Answer(value, data_.isConnected); }
    STDMETHODIMP putref_CallBack(IDispatch*) override { return S_OK; }
    STDMETHODIMP changeType(VARIANT) override { return S_OK; }
    STDMETHODIMP get_NodeType(long* value) override { return Answer(value, 8L); }
    STDMETHODIMP get_Visible(VARIANT_BOOL* value) override { return Answer(value, true); }
    STDMETHODIMP get_Index(long* value) override { return Answer(value, Index()); }
    STDMETHODIMP get_SNVTCompatible(ICompatibleSNVT** value) override;
    STDMETHODIMP get_SNVTType(ISNVType** value) override { return Answer(value, type_); }
    // Nothing makes an output of a module writable from a display.
    STDMETHODIMP get_DisplayWritable(VARIANT_BOOL* value) override { return Answer(value, false); }
    // The definition's flag is kept for the component; the host is told false.
    STDMETHODIMP get_IsTypeDependent(VARIANT_BOOL* value) override { return Answer(value, false); }
    STDMETHODIMP get_IsDisplayable(VARIANT_BOOL* value) override {
        return Answer(value, data_.isDisplayable);
    }
    STDMETHODIMP put_IsDisplayable(VARIANT_BOOL value) override;

    // ISubItemConnable
    STDMETHODIMP put_IsConnected(VARIANT_BOOL value) override;
    STDMETHODIMP put_HasPriority(VARIANT_BOOL) override { return S_OK; }
    STDMETHODIMP put_IncrementalConnIndex(long) override { return S_OK; }
    STDMETHODIMP putref_ConnectedType(IDispatch* value) override;
    HRESULT ConnableItemType(long* value) { return Answer(value, 8L); }
    STDMETHODIMP get_IsSNVTCompatible(BSTR identifier, VARIANT_BOOL* value) override;

    // IDisplayItem
    STDMETHODIMP get_DisplayText(BSTR* value) override { return get_Name(value); }
    STDMETHODIMP put_DisplayText(BSTR) override { return S_OK; }
    STDMETHODIMP get_key(BSTR* value) override { return get_ExtendedKey(value); }
    HRESULT DisplayItemType(long* value) { return Answer(value, 10L); }
    STDMETHODIMP get_Icon(IDispatch** value) override { return Answer(value, com::Ref<IDispatch>()); }
    STDMETHODIMP get_IsWritable(VARIANT_BOOL* value) override { return Answer(value, false); }
    STDMETHODIMP get_IsTrendable(VARIANT_BOOL* value) override { return Answer(value, false); }
    STDMETHODIMP get_Reference(BSTR* value) override;
    // A display item never reports a connection.
    HRESULT DisplayIsConnected(VARIANT_BOOL* value) { return Answer(value, false); }
    STDMETHODIMP get_Fields(IDispatch** value) override { return Answer(value, com::Ref<IDispatch>()); }

  private:
    void ReadType(const std::wstring& id, const std::wstring& ownerName);

    com::Ref<CSNVTType> type_;
    /// Made when somebody asks for it.
    com::Ref<CCompatibleSNVT> compatible_;
    OutputData data_;
};

} // namespace tam
