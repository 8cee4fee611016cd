#pragma once

#include "tests/bench/BenchRun.h"

#include <string>
#include <vector>

namespace benchtest {

/// What docs/json says against an answer of the bench, as "place: reason"; nothing for one
/// that is as it says. Only the keywords that the schemas there use are known; another one
/// is a fault too, so that none is passed over.
std::vector<std::string> SchemaFaults(const Json& answer);

/// The same for a document and a schema of docs/json by name ("inspect").
std::vector<std::string> SchemaFaults(const Json& document, const std::string& schema);

} // namespace benchtest
