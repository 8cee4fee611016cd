#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orv {

/// The type of a point in an export document.
struct PointType {
    /// As the document names it.
    std::wstring identifier;
    /// The index of a type that the host knows, else 0.
    std::uint16_t index = 0;
    /// Length of a value in bytes.
    std::uint8_t length = 0;
};

struct ExportInput {
    std::wstring name;
    std::wstring linkReference;
    std::uint16_t logicalAddress = 0;
    PointType type;
    bool permanent = false;
    bool connected = false;
};

struct ExportOutput {
    std::wstring name;
    std::uint16_t logicalAddress = 0;
    PointType type;
    bool mappedAsObject = false;
    std::uint16_t objectOffset = 0;
    std::uint16_t absoluteObjectIndex = 0;
    bool connected = false;
    bool writable = false;
    bool displayWritable = false;
};

struct ExportAttribute {
    std::wstring name;
    std::uint16_t logicalAddress = 0;
    PointType type;
    std::wstring value;
    bool permanent = false;
    bool connected = false;
    std::wstring enumDescription;
};

/// errNotAnExportDocument, for code that knows no COM.
inline constexpr auto kNotAnExportDocument = static_cast<std::int32_t>(0x80040402);

/// What an object says of itself when its database is built.
struct ExportDocument {
    std::int16_t deviceAddress = 0;
    std::wstring applicationId;
    std::wstring deviceKey;
    std::int16_t objectId = 0;
    bool lastOnDevice = false;
    std::vector<ExportInput> inputs;
    std::vector<ExportOutput> outputs;
    std::vector<ExportAttribute> attributes;
};

/// Reads and checks an export document. Throws errNotAnExportDocument with
/// what is wrong and where.
ExportDocument ReadExportDocument(std::wstring_view xml);

} // namespace orv
