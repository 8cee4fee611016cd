#include "points/CCompatibleSNVTs.h"

#include "com/Enumerator.h"
#include "common/ErrorReport.h"
#include "common/MessageLoop.h"
#include "core/Numbers.h"
#include "core/RunTimeError.h"

#include <vector>

namespace tam {

namespace {

constexpr const wchar_t* kReportClass = L"O_Tam_id Class Module CCompatibleSNVTs";

/// The identifiers of a list that may be another component's.
CompatibleList ListOf(ICompatibleSNVTs& other) {
    CompatibleList list;
    long count = 0;
    com::Call(other, &ICompatibleSNVTs::get_Count, &count);
    for (long i = 1; i <= count; ++i) {
        com::Ref<ICompatibleSNVT> entry;
        com::Call(other, &ICompatibleSNVTs::get_Item, i, entry.Put());
        com::CheckSet(entry.Get());
        com::Bstr id;
        com::Call(entry, &ICompatibleSNVT::get_ID, id.Put());
        list.AddId(id.View());
    }
    return list;
}

} // namespace

void CCompatibleSNVTs::AddList(std::wstring_view text) noexcept {
    Trap(kReportClass, L"Sub Add", [&] {
        const std::wstring own(text); // a script may change its variable meanwhile
        list_.Add(own, YieldToHost);
    });
}

std::wstring CCompatibleSNVTs::GetList() const noexcept {
    std::wstring text;
    Trap(kReportClass, L"Function GetList", [&] { text = list_.GetList(); });
    return text;
}

void CCompatibleSNVTs::Clear() {
    list_.Clear();
    entries_.clear();
}

void CCompatibleSNVTs::RemoveItem(std::wstring_view index) {
    if (list_.Exists(index)) {
        entries_.erase(std::wstring(index));
        list_.Remove(index);
        return;
    }
    const std::size_t position = PositionIn(index, list_.Count());
    if (position == 0) {
        throw RunTimeError(RunTime::InvalidCall);
    }
    entries_.erase(*list_.At(position));
    list_.RemovePosition(position);
}

com::Ref<CCompatibleSNVT> CCompatibleSNVTs::EntryAt(std::size_t position) {
    const std::wstring* id = list_.At(position);
    if (id == nullptr) {
        return {};
    }
    com::Ref<CCompatibleSNVT>& entry = entries_[*id];
    if (!entry) {
        entry = CCompatibleSNVT::Make(*id);
    }
    return entry;
}

STDMETHODIMP CCompatibleSNVTs::Add(BSTR identifiers) {
    const auto kept = This<ICompatibleSNVTs>(); // a message of the host may drop the last reference
    return Do([&] { AddList(com::View(identifiers)); });
}

STDMETHODIMP CCompatibleSNVTs::get_Count(long* value) {
    return Get(value, [&] { return static_cast<long>(list_.Count()); });
}

STDMETHODIMP CCompatibleSNVTs::Exists(BSTR identifier, VARIANT_BOOL* value) {
    return Get(value, [&] { return list_.Exists(com::View(identifier)); });
}

STDMETHODIMP CCompatibleSNVTs::get_Item(long position, ICompatibleSNVT** value) {
    return Get(value, [&] {
        return position > 0 ? EntryAt(static_cast<std::size_t>(position)) : com::Ref<CCompatibleSNVT>();
    });
}

STDMETHODIMP CCompatibleSNVTs::Merge(ICompatibleSNVTs* other, ICompatibleSNVTs** value) {
    const auto kept = This<ICompatibleSNVTs>(); // the other list may drop the last reference
    return Get(value, [&] {
        com::CheckSet(other);
        return CCompatibleSNVTs::Make(list_.Merge(ListOf(*other)));
    });
}

STDMETHODIMP CCompatibleSNVTs::get_NewEnum(IUnknown** value) {
    return Get(value, [&] {
        std::vector<com::Ref<CCompatibleSNVT>> entries;
        for (std::size_t i = 1; i <= list_.Count(); ++i) {
            entries.push_back(EntryAt(i));
        }
        return com::EnumeratorOf<ICompatibleSNVT>(entries);
    });
}

STDMETHODIMP CCompatibleSNVTs::Remove(BSTR identifier) {
    return Do([&] {
        const std::wstring id = com::Text(identifier);
        if (!list_.Remove(id)) {
            throw RunTimeError(RunTime::InvalidCall);
        }
        entries_.erase(id);
    });
}

STDMETHODIMP CCompatibleSNVTs::ToString(BSTR* value) {
    return Get(value, [&] { return GetList(); });
}

STDMETHODIMP CCompatibleSNVTs::Clone(IDispatch** value) {
    return Get(value,
               [&] { return com::Ref<IDispatch>(CCompatibleSNVTs::Make(list_)->This<ICompatibleSNVTs>()); });
}

} // namespace tam
