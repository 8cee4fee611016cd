#include "core/DataSizeTable.h"

#include "core/RunTimeError.h"

#include <limits>

namespace tam {

DataSizeEntry& DataSizeTable::RowOf(std::wstring_view elementName, ByteReader byteOf) {
    const std::uint8_t index = byteOf(elementName.empty() ? elementName : elementName.substr(1));
    if (index >= rows_.size()) {
        throw RunTimeError(RunTime::Subscript);
    }
    return rows_[index];
}

void DataSizeTable::CountRow() {
    if (count_ == std::numeric_limits<std::uint8_t>::max()) {
        throw RunTimeError(RunTime::Overflow);
    }
    ++count_;
}

void SetDataSize(DataSizeEntry& row, std::wstring_view attribute, std::wstring_view text, ByteReader byteOf) {
    // The names as they stand: "name" is another attribute.
    if (attribute == L"Name") {
        row.Name = text;
    } else if (attribute == L"CDB_Size") {
        row.CDB_Size = byteOf(text);
    } else if (attribute == L"Size_area_1") {
        row.Size_area_1 = byteOf(text);
    } else if (attribute == L"Size_area_2") {
        row.Size_area_2 = byteOf(text);
    }
}

} // namespace tam
