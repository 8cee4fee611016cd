#pragma once

#include "bench/CommandLine.h"

namespace bench {

/// Runs the command that the options name, prints what it says and answers the exit status.
int Run(const Options& options);

} // namespace bench
