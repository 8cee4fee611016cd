#pragma once

#include "check/XmlTree.h"

#include <string_view>

namespace check {

enum class Kind {
    Unknown,
    DeviceStream,
    ModuleDefinition,
    ChannelDefinition,
    DeviceLibrary,
    Catalogue,
    Project,
    Interoperability,
    ExportDocument
};

/// By what the document holds, also where names are misspelt.
Kind Recognise(const XmlTree& tree);
/// "device stream".
std::string_view NameOf(Kind kind);

} // namespace check
