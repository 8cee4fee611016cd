#pragma once

#include "bench/ImportPatch.h"

namespace support {

using bench::ForEachImport;
using bench::ImportPatch;
using bench::WriteProtected;

} // namespace support
