#include "dialogs/FieldList.h"

#include "com/Boundary.h"
#include "com/LateBound.h"

#include <span>
#include <utility>

namespace tam {

namespace {

/// No host nests structures as deep; one that contains itself ends here.
constexpr int kDeepest = 16;

/// A field as its collection gave it, with the key when it gave that too.
struct Entry {
    com::Ref<IDispatch> object;
    com::Variant key;
};
using Entries = std::vector<Entry>;

com::Ref<IDispatch> ItemOf(IDispatch& collection, const VARIANT& key) {
    VARIANT argument = key; // borrowed
    return ObjectOfResult(com::CallMember(collection, L"Item", std::span<VARIANT>(&argument, 1)));
}

/// The enumerator that For Each uses; empty when the collection has none.
com::Ref<IEnumVARIANT> EnumeratorOf(IDispatch& collection) {
    DISPPARAMS none{};
    com::Variant result;
    const HRESULT hr =
        collection.Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT,
                          DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none, result.Put(), nullptr, nullptr);
    const VARIANT& value = result.Get();
    if (FAILED(hr) || (value.vt != VT_UNKNOWN && value.vt != VT_DISPATCH)) {
        return {};
    }
    return com::Query<IEnumVARIANT>(value.punkVal);
}

/// A dictionary enumerates its keys; the fields are behind them.
Entries Enumerated(IDispatch& collection, IEnumVARIANT& enumerator) {
    Entries entries;
    for (;;) {
        com::Variant item;
        ULONG fetched = 0;
        const HRESULT result = enumerator.Next(1, item.Put(), &fetched);
        com::Check(result);
        if (result != S_OK) {
            return entries;
        }
        const VARTYPE kind = item.Get().vt;
        if (kind == VT_DISPATCH || kind == VT_UNKNOWN) {
            entries.push_back({ObjectOfResult(item), {}});
        } else {
            auto object = ItemOf(collection, item.Get());
            entries.push_back({std::move(object), std::move(item)});
        }
    }
}

Entries Counted(IDispatch& collection) {
    const long count = com::LongOf(TextOfResult(com::GetMember(collection, L"Count")));
    Entries entries;
    for (long position = 1; position <= count; ++position) {
        entries.push_back({ItemOf(collection, com::Variant(position).Get()), {}});
    }
    return entries;
}

bool HasItem(IDispatch& collection) {
    com::Bstr member(L"Item");
    BSTR text = member.Get();
    DISPID id = DISPID_UNKNOWN;
    return collection.GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id) != DISP_E_UNKNOWNNAME;
}

com::Ref<IDispatch> FoundBy(IDispatch& collection, const com::Variant& key) {
    com::Ref<IDispatch> found;
    com::Attempt([&] { found = ItemOf(collection, key.Get()); });
    return found;
}

/// The name, when the collection finds the field by it; else the position. A
/// collection that makes its objects anew for each caller and takes names alone
/// is left with the name. Empty for a collection that can only be walked.
com::Variant KeyOf(IDispatch& collection, const std::wstring& name, long position, IDispatch* field) {
    if (!HasItem(collection)) {
        return {};
    }
    com::Variant byName(name);
    const auto named = FoundBy(collection, byName);
    if (com::SameObject(named.Get(), field)) {
        return byName;
    }
    com::Variant byPosition(position);
    return named && !FoundBy(collection, byPosition) ? std::move(byName) : std::move(byPosition);
}

std::wstring GenTypeOf(const DataPoint& field) {
    std::wstring genType;
    com::Attempt([&] { genType = field.Type().GenType(); });
    return genType;
}

Entries FieldsOf(const DataPoint& structure) {
    const auto collection = structure.Fields();
    if (!collection) {
        return {};
    }
    const auto enumerator = EnumeratorOf(*collection.Get());
    return enumerator ? Enumerated(*collection.Get(), *enumerator.Get()) : Counted(*collection.Get());
}

} // namespace

std::vector<FieldRow> ReadFields(const DataPoint& structure) {
    std::vector<FieldRow> rows;
    const auto collection = structure.Fields();
    for (Entry& entry : FieldsOf(structure)) {
        DataPoint field(entry.object.Get());
        std::wstring name = field.Name();
        const std::wstring value = field.Value();
        std::wstring genType = GenTypeOf(field);
        com::Variant key =
            entry.key.Get().vt != VT_EMPTY
                ? std::move(entry.key)
                : KeyOf(*collection.Get(), name, static_cast<long>(rows.size()) + 1, entry.object.Get());
        rows.push_back({std::move(field), std::move(name), value, value, std::move(genType), std::move(key)});
    }
    return rows;
}

com::Ref<IDispatch> FetchField(const DataPoint& structure, const FieldRow& row) {
    if (row.key.Get().vt == VT_EMPTY) {
        return com::Ref<IDispatch>(row.field.Object());
    }
    const auto collection = structure.Fields();
    com::CheckSet(collection.Get());
    return ItemOf(*collection.Get(), row.key.Get());
}

ValueSnapshot::ValueSnapshot(const DataPoint& point, int depth) : point_(point) {
    com::Attempt([&] { value_ = point.Value(); });
    if (depth == kDeepest) {
        return;
    }
    // What has no fields may well refuse to be asked for them.
    com::Attempt([&] {
        for (const Entry& field : FieldsOf(point)) {
            fields_.push_back(ValueSnapshot(DataPoint(field.object.Get()), depth + 1));
        }
    });
}

void ValueSnapshot::Restore() const noexcept {
    for (const ValueSnapshot& field : fields_) {
        field.Restore();
    }
    com::Attempt([&] {
        if (value_ && point_.Value() != *value_) {
            point_.SetValue(*value_);
        }
    });
}

} // namespace tam
