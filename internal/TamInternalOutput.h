#pragma once

#include "internal/ChannelItems.h"
#include "internal/ForwardCollections.h"
#include "internal/ForwardPoints.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <utility>

namespace tam {

/// An output of a channel object: the inner object's output, in step with
/// the module's output of the same channel and name.
class TamInternalOutput final
    : public com::OwnedObject<TamInternalOutput, ITamInternalAppObject, ForwardOutput<TamInternalOutput>,
                              ForwardConnable<TamInternalOutput>, ForwardDisplay<TamInternalOutput>> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::TamInternalOutput); }
    static const IID& MembersId() noexcept { return __uuidof(::TamInternalOutputMembers); }

    TamInternalOutput(com::Ref<IOutput> inner, ITamInternalAppObject& owner) : inner_(std::move(inner)) {
        SetOwner(&owner);
    }

    template <class I>
    com::Ref<I> Inner() const {
        return Required<I>(inner_);
    }

    // IOutput
    STDMETHODIMP putref_CallBack(IDispatch* value) override;
    STDMETHODIMP get_Index(long* value) override;
    STDMETHODIMP get_Parent(IAppObject** value) override;
    STDMETHODIMP put_IsDisplayable(VARIANT_BOOL value) override;

    // IDisplayItem
    STDMETHODIMP get_Reference(BSTR* value) override;

  private:
    long Index() const;
    /// The container's output of this channel and name; empty when it has none.
    com::Ref<IOutput> MatchingOutput() const;

    com::Ref<IOutput> inner_;
};

/// The outputs of a channel object.
class TamInternalOutputs final
    : public com::OwnedObject<TamInternalOutputs, ITamInternalAppObject, ForwardOutputs<TamInternalOutputs>> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::TamInternalOutputs); }
    static const IID& MembersId() noexcept { return __uuidof(::TamInternalOutputsMembers); }

    TamInternalOutputs(com::Ref<IOutputs> inner, ITamInternalAppObject& owner) : inner_(std::move(inner)) {
        items_.Fill(inner_, owner);
        SetOwner(&owner);
    }

    template <class I>
    com::Ref<I> Inner() const {
        return inner_;
    }

    STDMETHODIMP get_Item(BSTR index, IOutput** value) override;
    STDMETHODIMP get_NewEnum(IUnknown** value) override;

  private:
    com::Ref<IOutputs> inner_;
    ChannelItems<TamInternalOutput, IOutput> items_;
};

} // namespace tam
