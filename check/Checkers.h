#pragma once

#include "check/Document.h"
#include "check/Surroundings.h"

namespace check {

// One function for each kind of document, in the files of their names.

void CheckStream(Document& document, StreamSummary* summary);
void CheckModuleDefinition(Document& document);
void CheckChannelDefinition(Document& document, StreamSummary* summary);
void CheckLibrary(Document& document);
/// Fills `types` too, where it is not null.
void CheckCatalogue(Document& document, Catalogue* types);
void CheckProject(Document& document);
void CheckInteroperability(Document& document);
void CheckExport(Document& document);

} // namespace check
