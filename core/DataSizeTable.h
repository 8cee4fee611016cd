#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tam {

/// A row of the definition's table of database sizes.
struct DataSizeEntry {
    std::wstring Name;
    std::uint8_t CDB_Size = 0;
    std::uint8_t Size_area_1 = 0;
    std::uint8_t Size_area_2 = 0;
    bool operator==(const DataSizeEntry&) const = default;
};

/// Reads a byte by the rules of the user's locale. Throws when the text is none.
using ByteReader = std::uint8_t (*)(std::wstring_view text);

/// The table of database sizes as the last definition filled it. What a definition
/// has no row or no attribute for keeps an earlier one's value.
class DataSizeTable {
  public:
    static constexpr std::size_t kRows = 6;

    const std::array<DataSizeEntry, kRows>& Rows() const noexcept { return rows_; }
    /// Rows of the last definition that were read without a fault.
    std::uint8_t Count() const noexcept { return count_; }

    /// A definition begins: its rows are counted from 0.
    void Begin() noexcept { count_ = 0; }
    /// The row of an element: its name is one character and the row's number.
    /// Throws "subscript out of range" past the table, or what the reader throws.
    DataSizeEntry& RowOf(std::wstring_view elementName, ByteReader byteOf);
    /// A row has been read. Throws "overflow" past 255.
    void CountRow();

  private:
    std::array<DataSizeEntry, kRows> rows_;
    std::uint8_t count_ = 0;
};

/// Takes an attribute of a row's element; one of another name is none of the table.
/// Throws what the reader throws.
void SetDataSize(DataSizeEntry& row, std::wstring_view attribute, std::wstring_view text, ByteReader byteOf);

} // namespace tam
