#include "core/DataSizeTable.h"

#include "core/RunTimeError.h"

#include <limits>

namespace tam {

namespace {

/// The attributes that are numbers.
struct SizeField {
    const wchar_t* attribute;
    std::uint8_t DataSizeEntry::*field;
};
constexpr SizeField kSizes[] = {{L"CDB_Size", &DataSizeEntry::CDB_Size},
                                {L"Size_area_1", &DataSizeEntry::Size_area_1},
                                {L"Size_area_2", &DataSizeEntry::Size_area_2}};

} // namespace

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
        return;
    }
    for (const auto& [name, size] : kSizes) {
        if (attribute == name) {
            row.*size = byteOf(text);
        }
    }
}

} // namespace tam
