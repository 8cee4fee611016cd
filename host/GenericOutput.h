#pragma once

#include "com/Object.h"
#include "host/CompatibleTypes.h"
#include "host/GenericPoint.h"

#include <OrvDBFaces.h>
#include <OrvHost.h>

#include <string>

namespace orv {

// An output is one kind of item among those to wire and another among those to
// display; each interface hands the question to a member of its own.

template <class Derived>
class ConnableFace : public com::Face<Derived, ISubItemConnable> {
  public:
    HRESULT STDMETHODCALLTYPE get_itemType(long* value) final { return this->Self().ConnableItemType(value); }
};

template <class Derived>
class DisplayFace : public com::Face<Derived, IDisplayItem> {
  public:
    HRESULT STDMETHODCALLTYPE get_itemType(long* value) final { return this->Self().DisplayItemType(value); }
};

/// An output of a generic object.
class GenericOutput final
    : public com::Object<GenericOutput, com::Face<GenericOutput, IOutput>, ConnableFace<GenericOutput>,
                         DisplayFace<GenericOutput>, com::Face<GenericOutput, IVisibleItem>> {
  public:
    GenericOutput(const Definition& definition, const OwnerRef& owner, long index);
    static REFCLSID ClassId() noexcept { return __uuidof(::GenericOutput); }

    // The host's own side
    GenericPoint& Point() noexcept { return point_; }
    bool IsDisplayable() const noexcept { return displayable_; }
    void SetDisplayable(bool displayable) noexcept { displayable_ = displayable; }

    // IOutput
    HRESULT STDMETHODCALLTYPE get_IsConnected(VARIANT_BOOL* value) override {
        return Answer(value, connected_);
    }
    HRESULT STDMETHODCALLTYPE putref_CallBack(IDispatch*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE changeType(VARIANT newType) override;
    HRESULT STDMETHODCALLTYPE get_NodeType(long* value) override { return Answer(value, 8L); }
    HRESULT STDMETHODCALLTYPE get_Visible(VARIANT_BOOL* value) override {
        return Answer(value, point_.visible);
    }
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* value) override { return Answer(value, point_.Name()); }
    HRESULT STDMETHODCALLTYPE get_GlobalKey(BSTR* value) override {
        return Get(value, [&] { return point_.GlobalKey(); });
    }
    HRESULT STDMETHODCALLTYPE get_Index(long* value) override { return Answer(value, index_); }
    HRESULT STDMETHODCALLTYPE get_SNVTCompatible(ICompatibleSNVT** value) override;
    HRESULT STDMETHODCALLTYPE get_SNVTType(ISNVType** value) override { return Answer(value, type_); }
    HRESULT STDMETHODCALLTYPE get_Parent(IAppObject** value) override;
    HRESULT STDMETHODCALLTYPE get_DisplayWritable(VARIANT_BOOL* value) override { return Writable(value); }
    HRESULT STDMETHODCALLTYPE get_IsTypeDependent(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE get_ExtendedKey(BSTR* value) override {
        return Get(value, [&] { return point_.ExtendedKey(); });
    }
    HRESULT STDMETHODCALLTYPE get_IsMacroConnected(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE get_IsDisplayable(VARIANT_BOOL* value) override {
        return Answer(value, displayable_);
    }
    HRESULT STDMETHODCALLTYPE put_IsDisplayable(VARIANT_BOOL value) override {
        return Do([&] { displayable_ = value != VARIANT_FALSE; });
    }

    // ISubItemConnable
    HRESULT STDMETHODCALLTYPE put_IsConnected(VARIANT_BOOL value) override {
        return Do([&] { connected_ = value != VARIANT_FALSE; });
    }
    HRESULT STDMETHODCALLTYPE put_HasPriority(VARIANT_BOOL) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE put_IncrementalConnIndex(long) override { return S_OK; }
    // An output answers for its own type, whatever it is wired to.
    HRESULT STDMETHODCALLTYPE putref_ConnectedType(IDispatch*) override { return S_OK; }
    HRESULT ConnableItemType(long* value) { return Answer(value, 8L); }
    HRESULT STDMETHODCALLTYPE get_IsSNVTCompatible(BSTR identifier, VARIANT_BOOL* value) override;

    // IDisplayItem
    HRESULT STDMETHODCALLTYPE get_DisplayText(BSTR* value) override { return Answer(value, displayText_); }
    HRESULT STDMETHODCALLTYPE put_DisplayText(BSTR value) override { return Store(displayText_, value); }
    HRESULT STDMETHODCALLTYPE get_key(BSTR* value) override {
        return Get(value, [&] { return point_.ExtendedKey(); });
    }
    HRESULT DisplayItemType(long* value) { return Answer(value, 10L); }
    HRESULT STDMETHODCALLTYPE get_Icon(IDispatch** value) override {
        return Answer(value, com::Ref<IDispatch>());
    }
    HRESULT STDMETHODCALLTYPE get_IsWritable(VARIANT_BOOL* value) override { return Writable(value); }
    HRESULT STDMETHODCALLTYPE get_IsTrendable(VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE get_Reference(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE get_Fields(IDispatch** value) override {
        return Answer(value, com::Ref<IDispatch>());
    }

    // IVisibleItem
    HRESULT STDMETHODCALLTYPE put_Visible(VARIANT_BOOL value) override {
        return Do([&] { point_.visible = value != VARIANT_FALSE; });
    }

  private:
    HRESULT Writable(VARIANT_BOOL* value);

    GenericPoint point_;
    long index_;
    com::Ref<ISNVType> type_;
    bool connected_ = false;
    bool displayable_ = false;
    std::wstring displayText_;
};

} // namespace orv
