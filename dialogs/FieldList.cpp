#include "dialogs/FieldList.h"

#include "com/Boundary.h"
#include "com/Enumerator.h"
#include "com/LateBound.h"
#include "common/ComponentState.h"
#include "core/ShownValue.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>

namespace tam {

namespace {

// No host nests structures as deep, or has as many fields in one. A structure that
// contains itself ends here where the host makes its objects for each caller: nothing
// else tells that it is the same one.
constexpr std::size_t kDeepest = 16;
constexpr std::size_t kMostFields = 10'000;

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
    const com::Variant result = com::MemberOrNone(collection, DISPID_NEWENUM);
    const VARIANT& value = result.Get();
    const bool isObject = value.vt == VT_UNKNOWN || value.vt == VT_DISPATCH;
    return isObject ? com::Query<IEnumVARIANT>(value.punkVal) : com::Ref<IEnumVARIANT>();
}

/// A dictionary enumerates its keys; the fields are behind them.
Entries Enumerated(IDispatch& collection, IEnumVARIANT& enumerator) {
    Entries entries;
    com::ForEachItem(enumerator, [&](com::Variant& item) {
        const VARTYPE kind = item.Get().vt;
        if (kind == VT_DISPATCH || kind == VT_UNKNOWN) {
            entries.push_back({ObjectOfResult(item), {}});
        } else {
            auto object = ItemOf(collection, item.Get());
            entries.push_back({std::move(object), std::move(item)});
        }
        return true;
    });
    return entries;
}

Entries Counted(IDispatch& collection) {
    const long count = com::LongOf(TextOfResult(com::GetMember(collection, L"Count")));
    Entries entries;
    for (long position = 1; position <= count; ++position) {
        entries.push_back({ItemOf(collection, com::Variant(position).Get()), {}});
    }
    return entries;
}

com::Ref<IDispatch> FoundBy(IDispatch& collection, const com::Variant& key) {
    com::Ref<IDispatch> found;
    com::Attempt([&] { found = ItemOf(collection, key.Get()); });
    return found;
}

/// Empty when the field has no name to read.
std::wstring NameOf(const DataPoint& field) {
    std::wstring name;
    com::Attempt([&] { name = field.Name(); });
    return name;
}

/// The name, when the collection finds this very object by it; else the
/// position, when it finds a field of the name there; else the name, when it
/// finds anything by it: some make their objects for each caller and take
/// names alone. Empty when nothing finds the field.
com::Variant KeyOf(IDispatch& collection, const std::wstring& name, long position, IDispatch* field) {
    com::Variant byName(name);
    const auto named = FoundBy(collection, byName);
    if (com::SameObject(named.Get(), field)) {
        return byName;
    }
    com::Variant byPosition(position);
    const auto atPosition = FoundBy(collection, byPosition);
    if (atPosition && NameOf(DataPoint(atPosition.Get())) == name) {
        return byPosition;
    }
    return named ? std::move(byName) : com::Variant();
}

/// Empty when the field has no type, or no such text in it.
std::wstring TypeTextOf(const DataPoint& field, std::wstring (DataPointType::*member)() const) {
    std::wstring text;
    com::Attempt([&] { text = (field.Type().*member)(); });
    return text;
}

/// As the field says, or by its type where the field says nothing.
std::wstring ShownTextOf(const DataPoint& field, const std::wstring& value, const std::wstring& genType) {
    std::wstring shown;
    com::Attempt([&] { shown = field.DispValue(); });
    if (!shown.empty()) {
        return shown;
    }
    const std::wstring unit = TypeTextOf(field, &DataPointType::Units);
    const std::wstring entries = TypeTextOf(field, &DataPointType::EnumDesc);
    shown = value;
    com::Attempt([&] {
        shown = ShownValue({value, GeneralTypeOf(genType), unit, entries, State().DecimalSeparator});
    });
    return shown;
}

Entries EntriesOf(IDispatch& collection) {
    const auto enumerator = EnumeratorOf(collection);
    return enumerator ? Enumerated(collection, *enumerator.Get()) : Counted(collection);
}

/// The fields of a structure in the order of its collection.
FieldPlaces PlacesOf(const DataPoint& structure) {
    const auto collection = structure.Fields();
    if (!collection) {
        return {};
    }
    const bool finds = com::HasMember(*collection.Get(), L"Item");
    FieldPlaces places;
    for (Entry& entry : EntriesOf(*collection.Get())) {
        DataPoint field(entry.object.Get());
        if (finds && entry.key.Get().vt == VT_EMPTY) {
            const auto position = static_cast<long>(places.size()) + 1;
            entry.key = KeyOf(*collection.Get(), NameOf(field), position, entry.object.Get());
        }
        places.push_back(
            std::make_shared<const FieldPlace>(FieldPlace{std::move(field), std::move(entry.key)}));
    }
    return places;
}

void KeepFirst(std::optional<com::Failure>& first, std::optional<com::Failure> failure) noexcept {
    if (!first) {
        first = std::move(failure);
    }
}

} // namespace

std::vector<FieldRow> ReadFields(const DataPoint& structure) {
    std::vector<FieldRow> rows;
    for (auto& place : PlacesOf(structure)) {
        FieldRow row{std::move(place), {}, {}, {}, {}, {}, {}};
        const DataPoint& field = row.place->field;
        row.name = field.Name();
        row.genType = TypeTextOf(field, &DataPointType::GenType);
        row.type = TypeTextOf(field, &DataPointType::Name);
        if (row.type.empty()) {
            row.type = row.genType;
        }
        row.ReadValue(field);
        row.openingValue = row.value;
        rows.push_back(std::move(row));
    }
    return rows;
}

void FieldRow::ReadValue(const DataPoint& field) {
    value = field.Value();
    shown = ShownTextOf(field, value, genType);
}

DataPoint FieldSource::Fetch(const FieldPlace& place) {
    if (place.key.Get().vt == VT_EMPTY) {
        return place.field;
    }
    if (!collection_) {
        collection_ = structure_.Fields();
        com::CheckSet(collection_.Get());
    }
    return DataPoint(ItemOf(*collection_.Get(), place.key.Get()).Get());
}

/// The way down to where a snapshot is read.
struct ValueSnapshot::Walk {
    std::vector<IDispatch*> above;
    std::size_t fieldsLeft = kMostFields;

    /// The general type, where it is known.
    bool GoesBelow(const DataPoint& point, const std::wstring* genType) const {
        return above.empty() || (above.size() < kDeepest && IsStructure(point, genType) && !IsAbove(point));
    }

  private:
    static bool IsStructure(const DataPoint& point, const std::wstring* genType) {
        return GeneralTypeOf(genType != nullptr ? *genType : TypeTextOf(point, &DataPointType::GenType)) ==
               GeneralType::Struct;
    }
    bool IsAbove(const DataPoint& point) const {
        return std::ranges::any_of(
            above, [&](IDispatch* object) { return com::SameObject(object, point.Object()); });
    }
};

ValueSnapshot::ValueSnapshot(const DataPoint& point) {
    Walk walk;
    *this = ValueSnapshot(point, walk, nullptr);
}

ValueSnapshot::ValueSnapshot(const DataPoint& point, const std::vector<FieldRow>& rows) {
    com::Attempt([&] { value_ = point.Value(); });
    com::Attempt([&] {
        FieldPlaces places;
        for (const FieldRow& row : rows) {
            places.push_back(row.place);
        }
        Walk walk;
        walk.above.push_back(point.Object());
        TakeFields(std::move(places), walk, rows);
    });
}

ValueSnapshot::ValueSnapshot(const DataPoint& point, Walk& walk, const std::wstring* genType) {
    com::Attempt([&] { value_ = point.Value(); });
    if (walk.GoesBelow(point, genType)) {
        walk.above.push_back(point.Object());
        // What has no fields may well refuse to be asked for them.
        com::Attempt([&] { ReadFields(point, walk); });
        walk.above.pop_back();
    }
}

void ValueSnapshot::ReadFields(const DataPoint& point, Walk& walk) {
    FieldPlaces places = PlacesOf(point);
    // The structure's own fields are read however many they are.
    if (walk.above.size() == 1 || places.size() <= walk.fieldsLeft) {
        TakeFields(std::move(places), walk, {});
    }
}

void ValueSnapshot::TakeFields(FieldPlaces places, Walk& walk, std::span<const FieldRow> rows) {
    walk.fieldsLeft -= std::min(places.size(), walk.fieldsLeft);
    places_ = std::move(places);
    fields_.reserve(places_.size());
    for (std::size_t i = 0; i < places_.size(); ++i) {
        fields_.push_back(ValueSnapshot(places_[i]->field, walk, rows.empty() ? nullptr : &rows[i].genType));
    }
}

std::optional<com::Failure> ValueSnapshot::Restore(const DataPoint& point) const noexcept {
    std::optional<com::Failure> first;
    RestoreInto(point, first);
    return first;
}

bool ValueSnapshot::RestoreInto(const DataPoint& point, std::optional<com::Failure>& first) const noexcept {
    bool wrote = false;
    FieldSource now(point);
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        // A field that is not found again is restored in the object of the opening.
        DataPoint field = places_[i]->field;
        KeepFirst(first, com::Attempt([&] { field = now.Fetch(*places_[i]); }));
        if (fields_[i].RestoreInto(field, first)) {
            wrote = true;
            now.Forget();
        }
    }
    KeepFirst(first, com::Attempt([&] {
                  if (value_ && point.Value() != *value_) {
                      wrote = true; // or it failed half-way
                      point.SetValue(*value_);
                  }
              }));
    return wrote;
}

} // namespace tam
