#pragma once

#include "com/Dom.h"

#include <string>
#include <string_view>

namespace orv {

// The object library: one folder for the whole host, in which each object's
// definition lies as <identifier>.xml.

/// The folder, full and with a closing backslash: the one that was set, else
/// the environment variable ORV_LIBRARY, else "channels" beside OrvHost.dll.
std::wstring LibraryFolder();

/// Sets the folder; an empty text goes back to the default. Throws
/// errLibraryFolder for a folder that is not there; nothing changes then.
void SetLibraryFolder(std::wstring_view folder);

/// The definition of an identifier, read again each time: what a caller does to
/// its document is seen by nobody else, and a definition that was edited on
/// disk counts from the next call on. Throws errNoDefinition when there is
/// none, errNotADefinition when the file holds something else.
tam::dom::Document LoadDefinition(std::wstring_view identifier);

} // namespace orv
