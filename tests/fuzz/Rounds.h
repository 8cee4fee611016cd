#pragma once

#include "tests/fuzz/Random.h"
#include "tests/fuzz/Watchdog.h"

#include <functional>
#include <string>

namespace component_fuzz {

/// What a round does; `what` says how to run it again. It tells the watchdog of
/// its document before the component sees it.
using Round = std::function<void(Random& random, const std::string& what)>;

/// Runs rounds of documents from a seed (TAM_FUZZ_SEED in its place): so many (or
/// TAM_FUZZ_ROUNDS), or for TAM_FUZZ_SECONDS, or the one of TAM_FUZZ_ROUND
/// alone. Ends at the first that fails, keeps its document and says where it is.
void RunRounds(Watchdog& watchdog, unsigned seed, unsigned rounds, const Round& run);

} // namespace component_fuzz
