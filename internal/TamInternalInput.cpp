#include "internal/TamInternalInput.h"

#include <string>

namespace tam {

namespace {

/// Gives the value to the container's first input whose name is exactly the
/// key. No such input is no error.
void MirrorValue(ITamInternalAppObject& channel, const std::wstring& key, BSTR value) {
    com::Ref<IInputs> inputs;
    com::Call(ContainerOf(channel), &IAppObject::get_Inputs, inputs.Put());
    com::CheckSet(inputs.Get());
    WalkPoints<IInput>(inputs, [&](const com::Ref<IInput>& input) {
        if (NameOf(input) != key) {
            return true;
        }
        com::Call(input, &IInput::put_Value, value);
        return false;
    });
}

} // namespace

STDMETHODIMP TamInternalInput::put_Value(BSTR value) {
    const auto kept = This<IInput>(); // the inner input may drop the last reference
    return Do([&] {
        const com::Bstr text(com::View(value)); // the inner input may end what the caller gave
        com::Call(inner_, &IInput::put_Value, text.Get());
        const auto owner = OwnerOf(Owner());
        MirrorValue(*owner.Get(), ContainerKey(*owner.Get(), NameOf(inner_)), text.Get());
    });
}

STDMETHODIMP TamInternalInput::get_Parent(IAppObject** value) {
    return Get(value, [&] { return OwnerObjectOf(Owner()); });
}

STDMETHODIMP TamInternalInputs::get_Item(BSTR index, IInput** value) {
    return Get(value, [&] { return items_.Find(index); });
}

STDMETHODIMP TamInternalInputs::get_NewEnum(IUnknown** value) {
    return Get(value, [&] { return items_.Enumerate(); });
}

} // namespace tam
