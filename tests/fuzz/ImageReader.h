#pragma once

#include "host/ExportDocument.h"

#include <cstdint>
#include <vector>

namespace tam::fuzz {

/// Whether a text of the document takes more bytes than an image has for one.
bool HasLongText(const orv::ExportDocument& document);

/// Reads the image as docs/formats-image.md says, and requires that it holds
/// the document and nothing else; so do its text form and its sizes.
void CheckImage(const orv::ExportDocument& document, const std::vector<std::uint8_t>& image);

} // namespace tam::fuzz
