#include "internal/TamInternalAttribute.h"

#include <string>

namespace tam {

STDMETHODIMP TamInternalAttribute::get_Parent(IAppObject** value) {
    return Get(value, [&] { return OwnerObjectOf(Owner()); });
}

STDMETHODIMP TamInternalAttribute::put_Value(BSTR value) {
    const auto kept = This<IAttribute>(); // the inner attribute may drop the last reference
    return Do([&] {
        const com::Bstr text(com::View(value)); // the inner attribute may end what the caller gave
        com::Call(inner_, &IAttribute::put_Value, text.Get());
        const auto owner = OwnerOf(Owner());
        const std::wstring key = ContainerKey(*owner.Get(), NameOf(inner_));
        if (const auto attribute = ContainerAttribute(*owner.Get(), key)) {
            com::Call(attribute, &IAttribute::put_Value, text.Get());
        }
    });
}

STDMETHODIMP TamInternalAttributes::get_Item(BSTR index, IAttribute** value) {
    return Get(value, [&] { return items_.Find(index); });
}

STDMETHODIMP TamInternalAttributes::get_NewEnum(IUnknown** value) {
    return Get(value, [&] { return items_.Enumerate(); });
}

} // namespace tam
