#include "host/CompatibleTypes.h"

#include "core/RunTimeError.h"

#include <algorithm>
#include <cstddef>

namespace orv {

void CompatibleTypes::AddList(std::wstring_view identifiers) {
    while (!identifiers.empty()) {
        const std::wstring_view id = identifiers.substr(0, identifiers.find(L','));
        if (id.empty()) {
            return;
        }
        if (!Has(id)) {
            types_.push_back(CompatibleType::Make(id));
        }
        identifiers.remove_prefix(std::min(identifiers.size(), id.size() + 1));
    }
}

CompatibleTypes::Types::const_iterator CompatibleTypes::Find(std::wstring_view id) const noexcept {
    return std::ranges::find_if(types_,
                                [&](const com::Ref<CompatibleType>& type) { return type->Id() == id; });
}

HRESULT CompatibleTypes::Add(BSTR identifiers) {
    return Do([&] { AddList(com::View(identifiers)); });
}

HRESULT CompatibleTypes::get_Count(long* value) {
    return Get(value, [&] { return static_cast<long>(types_.size()); });
}

HRESULT CompatibleTypes::Exists(BSTR identifier, VARIANT_BOOL* value) {
    return Get(value, [&] { return Has(com::View(identifier)); });
}

HRESULT CompatibleTypes::get_Item(long position, ICompatibleSNVT** value) {
    return Get(value, [&] {
        const bool isThere = position >= 1 && static_cast<std::size_t>(position) <= types_.size();
        return isThere ? types_[static_cast<std::size_t>(position) - 1] : com::Ref<CompatibleType>();
    });
}

HRESULT CompatibleTypes::Merge(ICompatibleSNVTs* other, ICompatibleSNVTs** value) {
    return Get(value, [&] {
        com::CheckSet(other);
        auto merged = CompatibleTypes::Make();
        long count = 0;
        com::Call(other, &ICompatibleSNVTs::get_Count, &count);
        for (long position = 1; position <= count; ++position) {
            com::Ref<ICompatibleSNVT> type;
            com::Bstr id;
            com::Call(other, &ICompatibleSNVTs::get_Item, position, type.Put());
            com::CheckSet(type.Get());
            com::Call(type, &ICompatibleSNVT::get_ID, id.Put());
            if (Has(id.View()) && !merged->Has(id.View())) {
                merged->types_.push_back(CompatibleType::Make(id.View()));
            }
        }
        return merged;
    });
}

HRESULT CompatibleTypes::get_NewEnum(IUnknown** value) {
    return Get(value, [&] { return com::EnumeratorOf<ICompatibleSNVT>(types_); });
}

HRESULT CompatibleTypes::Remove(BSTR identifier) {
    return Do([&] {
        const auto found = Find(com::View(identifier));
        if (found == types_.end()) {
            throw tam::RunTimeError(tam::RunTime::InvalidCall);
        }
        types_.erase(found);
    });
}

HRESULT CompatibleTypes::ToString(BSTR* value) {
    return Get(value, [&] {
        std::wstring text;
        for (const auto& type : types_) {
            text += (text.empty() ? L"" : L",") + type->Id();
        }
        return text;
    });
}

HRESULT CompatibleTypes::Clone(IDispatch** value) {
    return Get(value, [&] {
        const auto copy = CompatibleTypes::Make();
        copy->types_ = types_;
        return copy->This<ICompatibleSNVTs>();
    });
}

} // namespace orv
