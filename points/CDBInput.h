#pragma once

#include "com/Dom.h"
#include "core/PointData.h"
#include "points/CCompatibleSNVTs.h"
#include "points/Point.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <string>
#include <utility>

namespace tam {

/// One input of an application object: a typed point that the host can wire to
/// an output of another object.
class CDBInput final : public Point<CDBInput, com::Face<CDBInput, _CDBInput>, com::Face<CDBInput, IInput>,
                                    com::Face<CDBInput, ISubItemConnable>> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::CDBInput); }
    static const IID& MembersId() noexcept { return __uuidof(::CDBInputMembers); }

    explicit CDBInput(std::wstring name) : Point(std::move(name)), compatible_(CCompatibleSNVTs::Make()) {}

    // The component's own side.
    const InputData& Data() const noexcept { return data_; }
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
    STDMETHODIMP get_IsConnected(VARIANT_BOOL* value) override { return Answer(value, data_.isConnected); }
    STDMETHODIMP get_ConnectedType(ISNVType** value) override;
    STDMETHODIMP get_Visible(VARIANT_BOOL* value) override { return Answer(value, true); }
    // The stored flag is not consulted: no input of a module is mandatory.
    STDMETHODIMP get_Mandatory(VARIANT_BOOL* value) override { return Answer(value, false); }
    STDMETHODIMP get_Value(BSTR* value) override { return Answer(value, data_.linkReference); }
    STDMETHODIMP put_Value(BSTR value) override;
    STDMETHODIMP get_Extended(VARIANT_BOOL* value) override { return Answer(value, true); }
    STDMETHODIMP get_Index(long* value) override { return Answer(value, Index()); }
    STDMETHODIMP get_CDBPosition(long* value) override { return Answer(value, 0L); }
    STDMETHODIMP get_SNVTCompatibles(ICompatibleSNVTs** value) override { return Answer(value, compatible_); }

    // ISubItemConnable
    STDMETHODIMP put_IsConnected(VARIANT_BOOL value) override;
    STDMETHODIMP put_HasPriority(VARIANT_BOOL) override { return S_OK; }
    STDMETHODIMP put_IncrementalConnIndex(long) override { return S_OK; }
    STDMETHODIMP putref_ConnectedType(IDispatch* value) override;
    STDMETHODIMP get_itemType(long* value) override { return Answer(value, 7L); }
    STDMETHODIMP get_SNVTType(ISNVType** value) override { return Answer(value, com::Ref<ISNVType>()); }
    STDMETHODIMP get_IsSNVTCompatible(BSTR identifier, VARIANT_BOOL* value) override;

  private:
    com::Ref<CCompatibleSNVTs> compatible_;
    com::Ref<ISNVType> connectedType_;
    InputData data_;
};

} // namespace tam
