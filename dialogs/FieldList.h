#pragma once

#include "com/Boundary.h"
#include "com/Conversion.h"
#include "com/Ref.h"
#include "dialogs/DataPoint.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tam {

/// A field as its collection gave it at opening, and what finds it there again.
struct FieldPlace {
    DataPoint field;
    /// Empty when the collection does not find it; `field` is all there is then.
    com::Variant key;
};
/// In the order of the collection. The rows and the snapshot of an editor share them.
using FieldPlaces = std::vector<std::shared_ptr<const FieldPlace>>;

/// One field of a structure, as a row of its editor shows it.
struct FieldRow {
    std::shared_ptr<const FieldPlace> place;
    std::wstring name;
    std::wstring value;
    /// The value as a person reads it.
    std::wstring shown;
    /// The value when the rows were read.
    std::wstring openingValue;
    /// General type of the field; empty when it has no type.
    std::wstring genType;
    /// Name of the field's type, or the general type where it has none.
    std::wstring type;

    /// Reads the value again. What the value throws goes through; how it is shown
    /// can always be told.
    void ReadValue(const DataPoint& field);
};

/// The fields of a structured data point, in the order of its collection; none
/// when it has no collection. The collection is walked by its enumerator, or by
/// Count and Item when it has none.
std::vector<FieldRow> ReadFields(const DataPoint& structure);

/// The fields of a structure as its collection has them now: a host may make its
/// objects for each caller, each with the value of that moment. One collection serves a
/// pass over the fields; it is asked for at the first of them.
class FieldSource {
  public:
    explicit FieldSource(const DataPoint& structure) noexcept : structure_(structure) {}
    DataPoint Fetch(const FieldPlace& place);
    /// After a field was written, which others may follow: the collection is asked for again.
    void Forget() noexcept { collection_.Reset(); }

  private:
    const DataPoint& structure_;
    com::Ref<IDispatch> collection_;
};

/// The values of a data point and of all its fields at one moment, structures
/// within structures included: 16 levels deep, and below the data point's own fields until
/// 10,000 were read in all. A structure that stands in itself is read once where its objects
/// are the same.
class ValueSnapshot {
  public:
    explicit ValueSnapshot(const DataPoint& point);
    /// The same of a structure whose rows have been read: with their places.
    ValueSnapshot(const DataPoint& point, const std::vector<FieldRow>& rows);

    /// Writes back what differs by now, the inner values first. What fails is
    /// passed over; the first failure is the answer.
    std::optional<com::Failure> Restore(const DataPoint& point) const noexcept;

  private:
    struct Walk;
    ValueSnapshot(const DataPoint& point, Walk& walk, const std::wstring* genType);
    void ReadFields(const DataPoint& point, Walk& walk);
    /// With the rows of the places, where they have been read.
    void TakeFields(FieldPlaces places, Walk& walk, std::span<const FieldRow> rows);
    /// Answers whether anything was written.
    bool RestoreInto(const DataPoint& point, std::optional<com::Failure>& first) const noexcept;

    std::optional<std::wstring> value_;
    FieldPlaces places_;
    /// The values of the field at each place.
    std::vector<ValueSnapshot> fields_;
};

} // namespace tam
