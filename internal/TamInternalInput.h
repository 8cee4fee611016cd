#pragma once

#include "internal/ChannelItems.h"
#include "internal/ForwardCollections.h"
#include "internal/ForwardPoints.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <utility>

namespace tam {

/// An input of a channel object: the inner object's input, whose value the
/// module's input of the same channel and name gets too.
class TamInternalInput final
    : public com::OwnedObject<TamInternalInput, ITamInternalAppObject, ForwardInput<TamInternalInput>,
                              ForwardConnable<TamInternalInput>> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::TamInternalInput); }
    static const IID& MembersId() noexcept { return __uuidof(::TamInternalInputMembers); }

    TamInternalInput(com::Ref<IInput> inner, ITamInternalAppObject& owner) : inner_(std::move(inner)) {
        SetOwner(&owner);
    }

    template <class I>
    com::Ref<I> Inner() const {
        return Required<I>(inner_);
    }

    // Both interfaces give their name and key from their own side of the inner input.
    STDMETHODIMP put_Value(BSTR value) override;
    STDMETHODIMP get_Extended(VARIANT_BOOL* value) override { return Answer(value, true); }
    STDMETHODIMP get_Parent(IAppObject** value) override;

  private:
    com::Ref<IInput> inner_;
};

/// The inputs of a channel object.
class TamInternalInputs final
    : public com::OwnedObject<TamInternalInputs, ITamInternalAppObject, ForwardInputs<TamInternalInputs>> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::TamInternalInputs); }
    static const IID& MembersId() noexcept { return __uuidof(::TamInternalInputsMembers); }

    TamInternalInputs(com::Ref<IInputs> inner, ITamInternalAppObject& owner) : inner_(std::move(inner)) {
        items_.Fill(inner_, owner);
        SetOwner(&owner);
    }

    template <class I>
    com::Ref<I> Inner() const {
        return inner_;
    }

    STDMETHODIMP get_Item(BSTR index, IInput** value) override;
    STDMETHODIMP get_NewEnum(IUnknown** value) override;

  private:
    com::Ref<IInputs> inner_;
    ChannelItems<TamInternalInput, IInput> items_;
};

} // namespace tam
