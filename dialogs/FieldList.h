#pragma once

#include "com/Boundary.h"
#include "com/Conversion.h"
#include "com/Ref.h"
#include "dialogs/DataPoint.h"

#include <optional>
#include <string>
#include <vector>

namespace tam {

/// A field as its collection gave it at opening, and what finds it there again.
struct FieldPlace {
    DataPoint field;
    /// Empty when the collection does not find it; `field` is all there is then.
    com::Variant key;
};

/// One field of a structure, as a row of its editor shows it.
struct FieldRow {
    FieldPlace place;
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

/// The field as the collection has it now: a host may make its objects anew for
/// each caller, each with the value of that moment.
DataPoint FetchField(const DataPoint& structure, const FieldPlace& place);

/// The values of a data point and of all its fields at one moment, structures
/// within structures included.
/// A structure that stands in itself is read once.
class ValueSnapshot {
  public:
    explicit ValueSnapshot(const DataPoint& point);

    /// Writes back what differs by now, the inner values first. What fails is
    /// passed over; the first failure is the answer.
    std::optional<com::Failure> Restore(const DataPoint& point) const noexcept;

  private:
    struct Walk;
    ValueSnapshot(const DataPoint& point, Walk& walk);
    void ReadFields(const DataPoint& point, Walk& walk);

    std::optional<std::wstring> value_;
    std::vector<FieldPlace> places_;
    /// The values of the field at each place.
    std::vector<ValueSnapshot> fields_;
};

} // namespace tam
