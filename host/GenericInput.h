#pragma once

#include "com/Object.h"
#include "host/CompatibleTypes.h"
#include "host/GenericPoint.h"

#include <OrvDBFaces.h>
#include <OrvHost.h>

#include <string>
#include <utility>

namespace orv {

/// An input of a generic object.
class GenericInput final : public com::DualObject<GenericInput, IInput, ISubItemConnable, IVisibleItem> {
  public:
    GenericInput(const Definition& definition, const OwnerRef& owner, long index);
    static REFCLSID ClassId() noexcept { return __uuidof(::GenericInput); }

    // The host's own side
    GenericPoint& Point() noexcept { return point_; }
    const std::wstring& Link() const noexcept { return value_; }
    void SetLink(std::wstring value) noexcept { value_ = std::move(value); }

    // IInput
    HRESULT STDMETHODCALLTYPE changeType(VARIANT newType) override;
    // A generic object has no sheet to repaint: it calls nobody back.
    HRESULT STDMETHODCALLTYPE putref_CallBack(IDispatch*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE get_NodeType(long* value) override { return Answer(value, 7L); }
    HRESULT STDMETHODCALLTYPE get_IsConnected(VARIANT_BOOL* value) override {
        return Answer(value, connected_);
    }
    HRESULT STDMETHODCALLTYPE get_ConnectedType(ISNVType** value) override;
    HRESULT STDMETHODCALLTYPE get_Visible(VARIANT_BOOL* value) override {
        return Answer(value, point_.visible);
    }
    HRESULT STDMETHODCALLTYPE get_Mandatory(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE get_Value(BSTR* value) override { return Answer(value, value_); }
    HRESULT STDMETHODCALLTYPE put_Value(BSTR value) override { return Store(value_, value); }
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* value) override { return Answer(value, point_.Name()); }
    HRESULT STDMETHODCALLTYPE get_GlobalKey(BSTR* value) override {
        return Get(value, [&] { return point_.GlobalKey(); });
    }
    HRESULT STDMETHODCALLTYPE get_Extended(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE get_Index(long* value) override { return Answer(value, index_); }
    HRESULT STDMETHODCALLTYPE get_CDBPosition(long* value) override;
    HRESULT STDMETHODCALLTYPE get_SNVTCompatibles(ICompatibleSNVTs** value) override {
        return Answer(value, compatible_);
    }
    HRESULT STDMETHODCALLTYPE get_Parent(IAppObject** value) override;
    HRESULT STDMETHODCALLTYPE get_ExtendedKey(BSTR* value) override {
        return Get(value, [&] { return point_.ExtendedKey(); });
    }
    HRESULT STDMETHODCALLTYPE get_IsMacroConnected(VARIANT_BOOL* value) override;

    // ISubItemConnable
    HRESULT STDMETHODCALLTYPE put_IsConnected(VARIANT_BOOL value) override;
    HRESULT STDMETHODCALLTYPE put_HasPriority(VARIANT_BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE put_IncrementalConnIndex(long) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE putref_ConnectedType(IDispatch* value) override;
    HRESULT STDMETHODCALLTYPE get_itemType(long* value) override { return Answer(value, 7L); }
    HRESULT STDMETHODCALLTYPE get_SNVTType(ISNVType** value) override { return Answer(value, type_); }
    HRESULT STDMETHODCALLTYPE get_IsSNVTCompatible(BSTR identifier, VARIANT_BOOL* value) override;

    // IVisibleItem
    HRESULT STDMETHODCALLTYPE put_Visible(VARIANT_BOOL value) override {
        return Do([&] { point_.visible = value != VARIANT_FALSE; });
    }

  private:
    GenericPoint point_;
    long index_;
    com::Ref<CompatibleTypes> compatible_ = CompatibleTypes::Make();
    com::Ref<ISNVType> type_;
    com::Ref<ISNVType> connectedType_;
    bool connected_ = false;
    /// What the input is wired to.
    std::wstring value_;
};

} // namespace orv
