#pragma once

#include "com/Dom.h"

namespace tam::dom {

/// Whether a loaded document has a document type (DTD). Nothing may be read of
/// such a document: a few of its entities can stand for gigabytes of text, and
/// not every parser refuses it when told to.
bool HasDocumentType(const Document& document);

} // namespace tam::dom
