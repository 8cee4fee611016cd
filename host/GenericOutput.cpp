#include "host/GenericOutput.h"

#include <string>

namespace orv {

namespace {

// A point's number in the controller: 256 to each object, from 16384 on.
constexpr long kFirstReference = 16384;
constexpr long kReferencesPerObject = 256;

/// Four hexadecimal digits, eight for a number that is out of their range.
std::wstring ReferenceText(long reference) {
    std::wstring text;
    for (auto rest = static_cast<unsigned long>(reference); rest > 0 || text.size() < 4; rest /= 16) {
        text.insert(text.begin(), L"0123456789ABCDEF"[rest % 16]);
    }
    return text;
}

} // namespace

GenericOutput::GenericOutput(const Definition& definition, const OwnerRef& owner, long index)
    : point_(definition, owner)
    , index_(index)
    , type_(TypeFor(owner, definition.Text(L"SNVTTYPE")))
    , displayText_(definition.Name()) {}

HRESULT GenericOutput::changeType(VARIANT newType) {
    return Do([&] {
        const auto self = This<IOutput>(); // the catalogue is the host's
        type_ = point_.ChangedType(newType);
    });
}

HRESULT GenericOutput::get_SNVTCompatible(ICompatibleSNVT** value) {
    return Get(value,
               [&] { return type_ ? CompatibleType::Make(TypeId(type_)) : com::Ref<CompatibleType>(); });
}

HRESULT GenericOutput::get_Parent(IAppObject** value) {
    return Get(value, [&] { return ParentOf(point_.link); });
}

HRESULT GenericOutput::get_IsTypeDependent(VARIANT_BOOL* value) {
    return Get(value, [&] { return point_.definition.Has(L"TYPEDEPENDENT"); });
}

HRESULT GenericOutput::get_IsMacroConnected(VARIANT_BOOL* value) {
    return Get(value, [&] { return IsMacroKey(point_.link, point_.GlobalKey()); });
}

HRESULT GenericOutput::get_IsSNVTCompatible(BSTR identifier, VARIANT_BOOL* value) {
    return Get(value, [&] { return type_ && com::View(identifier) == TypeId(type_); });
}

HRESULT GenericOutput::get_IsTrendable(VARIANT_BOOL* value) {
    return Get(value, [&] { return point_.definition.Flag(L"ISTRENDABLE"); });
}

HRESULT GenericOutput::get_Reference(BSTR* value) {
    return Get(value, [&] {
        com::CheckSet(point_.link ? point_.link->owner : nullptr);
        return ReferenceText(point_.link->owner->OwnerExportIndex() * kReferencesPerObject + kFirstReference +
                             index_);
    });
}

HRESULT GenericOutput::Writable(VARIANT_BOOL* value) {
    return Get(value, [&] { return point_.definition.Flag(L"ISWRITABLE"); });
}

} // namespace orv
