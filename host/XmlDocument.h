#pragma once

#include "com/Dom.h"

#include <OrvHost.h>

#include <string>
#include <string_view>

namespace orv {

// Documents that a host hands out as DOM. What cannot be read is thrown as
// the given error, with what the parser says of it and where.

tam::dom::Document LoadXmlFile(const std::wstring& path, BlockError error);
tam::dom::Document LoadXmlText(std::wstring_view xml, BlockError error);

/// Name of the document element; empty for a document without one.
std::wstring RootName(const tam::dom::Document& document);

} // namespace orv
