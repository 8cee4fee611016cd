#pragma once

#include "host/ExportDocument.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace orv {

/// What an object takes in the controller, in bytes.
struct DatabaseSizes {
    /// Configuration memory.
    std::uint32_t cdb = 0;
    /// Dynamic memory.
    std::uint32_t ddb = 0;
};

DatabaseSizes SizesOf(const ExportDocument& document) noexcept;

/// The database image, byte by byte as docs/formats-image.md says. The same
/// document always gives the same image. Throws errNotAnExportDocument for a
/// text that is too long for it.
std::vector<std::uint8_t> BuildImage(const ExportDocument& document);

/// The image as text: lines of up to 32 bytes, two capital hexadecimal digits
/// each, every line closed with carriage return and line feed.
std::wstring HexLines(std::span<const std::uint8_t> image);

} // namespace orv
