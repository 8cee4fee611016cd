#pragma once

#include "com/Conversion.h"
#include "com/Ref.h"
#include "dialogs/DataPoint.h"

#include <optional>
#include <string>
#include <vector>

namespace tam {

/// One field of a structure, as a row of its editor shows it.
struct FieldRow {
    DataPoint field;
    std::wstring name;
    std::wstring value;
    /// The value when the rows were read.
    std::wstring openingValue;
    /// General type of the field; empty when it has no type.
    std::wstring genType;
    /// What finds the field again in the collection; empty when it has no Item.
    com::Variant key;
};

/// The fields of a structured data point, in the order of its collection; none
/// when it has no collection. The collection is walked by its enumerator, or by
/// Count and Item when it has none.
std::vector<FieldRow> ReadFields(const DataPoint& structure);

/// The field of a row, fetched anew from the collection where it has an Item.
com::Ref<IDispatch> FetchField(const DataPoint& structure, const FieldRow& row);

/// The values of a data point and of all its fields at one moment, structures
/// within structures included.
class ValueSnapshot {
  public:
    explicit ValueSnapshot(const DataPoint& point) : ValueSnapshot(point, 0) {}

    /// Writes back what differs by now, the inner values first. A value that
    /// cannot be written is passed over.
    void Restore() const noexcept;

  private:
    ValueSnapshot(const DataPoint& point, int depth);

    DataPoint point_;
    std::optional<std::wstring> value_;
    std::vector<ValueSnapshot> fields_;
};

} // namespace tam
