#pragma once

#include "internal/ChannelItems.h"
#include "internal/ForwardAttribute.h"
#include "internal/ForwardCollections.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <utility>

namespace tam {

/// An attribute of a channel object: the inner object's attribute, whose
/// value the module's attribute of the same channel and name gets too.
class TamInternalAttribute final : public com::OwnedObject<TamInternalAttribute, ITamInternalAppObject,
                                                           ForwardAttribute<TamInternalAttribute>> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::TamInternalAttribute); }
    static const IID& MembersId() noexcept { return __uuidof(::TamInternalAttributeMembers); }

    TamInternalAttribute(com::Ref<IAttribute> inner, ITamInternalAppObject& owner)
        : inner_(std::move(inner)) {
        SetOwner(&owner);
    }

    template <class I>
    com::Ref<I> Inner() const {
        return Required<I>(inner_);
    }

    STDMETHODIMP get_Parent(IAppObject** value) override;
    STDMETHODIMP put_Value(BSTR value) override;

  private:
    com::Ref<IAttribute> inner_;
};

/// The attributes of a channel object.
class TamInternalAttributes final : public com::OwnedObject<TamInternalAttributes, ITamInternalAppObject,
                                                            ForwardAttributes<TamInternalAttributes>> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::TamInternalAttributes); }
    static const IID& MembersId() noexcept { return __uuidof(::TamInternalAttributesMembers); }

    TamInternalAttributes(com::Ref<IAttributes> inner, ITamInternalAppObject& owner)
        : inner_(std::move(inner)) {
        items_.Fill(inner_, owner);
        SetOwner(&owner);
    }

    template <class I>
    com::Ref<I> Inner() const {
        return inner_;
    }

    STDMETHODIMP get_Item(BSTR index, IAttribute** value) override;
    STDMETHODIMP get_NewEnum(IUnknown** value) override;

  private:
    com::Ref<IAttributes> inner_;
    ChannelItems<TamInternalAttribute, IAttribute> items_;
};

} // namespace tam
