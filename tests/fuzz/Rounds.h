#pragma once

#include "tests/fuzz/Random.h"
#include "tests/fuzz/Watchdog.h"

#include <windows.h>

#include <functional>
#include <string>

namespace component_fuzz {

/// Which rounds a run takes: so many, as many as fit into TAM_FUZZ_SECONDS, or one
/// alone.
class RoundSpan {
  public:
    /// Names of the variables that give the one round and the number of rounds.
    RoundSpan(const wchar_t* one, const wchar_t* number, unsigned numberOtherwise);
    unsigned First() const noexcept { return first_; }
    bool IsOne() const noexcept { return isOne_; }
    /// Whether a round is still to be run.
    bool Takes(unsigned round) const noexcept;

  private:
    unsigned first_ = 0;
    bool isOne_ = false;
    unsigned seconds_;
    unsigned end_;
    ULONGLONG until_;
};

/// What a round does; `what` says how to run it again. It tells the watchdog of
/// its document before the component sees it.
using Round = std::function<void(Random& random, const std::string& what)>;

/// Runs rounds of documents from a seed (TAM_FUZZ_SEED in its place): so many (or
/// TAM_FUZZ_ROUNDS), or for TAM_FUZZ_SECONDS, or the one of TAM_FUZZ_ROUND
/// alone. Ends at the first that fails, keeps its document and says where it is.
void RunRounds(Watchdog& watchdog, unsigned seed, unsigned rounds, const Round& run);

} // namespace component_fuzz
