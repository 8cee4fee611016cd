#pragma once

#include "check/Document.h"

#include <string_view>

namespace check {

/// Reports what keeps a text from being a value of the type.
void CheckValue(Document& document, const TypeInfo& type, const Leaf& leaf);
/// The same of a text that is no element's, such as an attribute's.
void CheckValueText(Document& document, const TypeInfo& type, std::string_view text, Span span);

/// Reports what keeps a text from being an identifier of the catalogue; null when
/// it is none, or when there is no catalogue. `isRaw`: blanks around it count.
const TypeInfo* CheckType(Document& document, std::string_view text, Span span, bool isRaw);

} // namespace check
