#include "internal/TamInternalOutput.h"

#include "com/LateBound.h"
#include "core/Numbers.h"

#include <limits>
#include <string>

namespace tam {

namespace {

// How an output's index is told, by the owner's status.
constexpr long kCountInContainer = 0;
constexpr long kAskInner = 1;

com::Ref<IOutputs> OutputsOf(const com::Ref<IAppObject>& object) {
    com::Ref<IOutputs> outputs;
    com::Call(object, &IAppObject::get_Outputs, outputs.Put());
    com::CheckSet(outputs.Get());
    return outputs;
}

/// The number of connected outputs before the one named by the key, or of all
/// when none is. Hosts keep it in 16 bits: past them it is an overflow.
short ConnectedBefore(const com::Ref<IOutputs>& outputs, const std::wstring& key) {
    short count = 0;
    WalkPoints<IOutput>(outputs, [&](const com::Ref<IOutput>& output) {
        if (NameOf(output) == key) {
            return false;
        }
        VARIANT_BOOL connected = VARIANT_FALSE;
        com::Call(output, &IOutput::get_IsConnected, &connected);
        if (connected != VARIANT_FALSE) {
            if (count == std::numeric_limits<short>::max()) {
                throw RunTimeError(RunTime::Overflow);
            }
            ++count;
        }
        return true;
    });
    return count;
}

} // namespace

STDMETHODIMP TamInternalOutput::putref_CallBack(IDispatch* value) {
    const auto kept = This<IOutput>(); // the inner output may drop the last reference
    // By name: hosts' outputs differ in how their slot takes the object.
    return Do([&] {
        const com::Variant argument(value);
        com::PutMember(*inner_.Get(), L"CallBack", argument.Get());
    });
}

long TamInternalOutput::Index() const {
    const auto owner = OwnerOf(Owner());
    long status = 0;
    com::Call(owner, &ITamInternalAppObject::get_Status, &status);
    if (status == kCountInContainer) {
        const std::wstring key = ContainerKey(*owner.Get(), NameOf(inner_));
        return ConnectedBefore(OutputsOf(ContainerOf(*owner.Get())), key);
    }
    if (status == kAskInner) {
        long index = 0;
        com::Call(inner_, &IOutput::get_Index, &index);
        return ToInt16(index);
    }
    return 0;
}

com::Ref<IOutput> TamInternalOutput::MatchingOutput() const {
    const auto owner = OwnerOf(Owner());
    const std::wstring key = ContainerKey(*owner.Get(), NameOf(inner_));
    com::Ref<IOutput> output;
    com::Call(OutputsOf(ContainerOf(*owner.Get())), &IOutputs::get_Item, com::Bstr(key).Get(), output.Put());
    return OfThatName(std::move(output), key);
}

STDMETHODIMP TamInternalOutput::get_Index(long* value) {
    return Get(value, [&] { return Index(); });
}

STDMETHODIMP TamInternalOutput::get_Parent(IAppObject** value) {
    return Get(value, [&] { return OwnerObjectOf(Owner()); });
}

STDMETHODIMP TamInternalOutput::put_IsDisplayable(VARIANT_BOOL value) {
    const auto kept = This<IOutput>(); // the inner output may drop the last reference
    return Do([&] {
        com::Call(inner_, &IOutput::put_IsDisplayable, value);
        if (const auto output = MatchingOutput()) {
            com::Call(output, &IOutput::put_IsDisplayable, value);
        }
    });
}

STDMETHODIMP TamInternalOutput::get_Reference(BSTR* value) {
    return Get(value, [&] {
        const auto item = Required<IDisplayItem>(MatchingOutput());
        com::Bstr reference;
        com::Call(item, &IDisplayItem::get_Reference, reference.Put());
        return std::wstring(reference.View());
    });
}

STDMETHODIMP TamInternalOutputs::get_Item(BSTR index, IOutput** value) {
    return Get(value, [&] { return items_.Find(index); });
}

STDMETHODIMP TamInternalOutputs::get_NewEnum(IUnknown** value) {
    return Get(value, [&] { return items_.Enumerate(); });
}

} // namespace tam
