#include "tests/fuzz/Rounds.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <exception>

namespace component_fuzz {

namespace {

/// Between two lines on the way of a long run.
constexpr unsigned kTellEvery = 500;

} // namespace

void RunRounds(Watchdog& watchdog, unsigned seedOtherwise, unsigned roundsOtherwise, const Round& run) {
    const unsigned seed = Setting(L"TAM_FUZZ_SEED", seedOtherwise);
    const unsigned first = Setting(L"TAM_FUZZ_ROUND", 0);
    const unsigned seconds = Setting(L"TAM_FUZZ_SECONDS", 0);
    const unsigned otherwise = first != 0 ? first + 1 : seconds != 0 ? ~0u : roundsOtherwise;
    const unsigned end = Setting(L"TAM_FUZZ_ROUNDS", otherwise);
    const ULONGLONG until = GetTickCount64() + seconds * 1000ull;
    unsigned round = first;
    for (; round < end && (seconds == 0 || GetTickCount64() < until); ++round) {
        const std::string what = "seed " + std::to_string(seed) + ", round " + std::to_string(round);
        SCOPED_TRACE(what);
        Random random(seed, round);
        try {
            run(random, what);
        } catch (const std::exception& error) {
            ADD_FAILURE() << error.what();
        }
        if (testing::Test::HasFailure()) {
            std::printf("%s; the document is in %ls\n", what.c_str(), watchdog.Keep(round).c_str());
            return;
        }
        if ((round - first + 1) % kTellEvery == 0) {
            std::printf("%u documents\n", round - first + 1);
            std::fflush(stdout);
        }
    }
    std::printf("%u documents, seed %u\n", round - first, seed);
}

} // namespace component_fuzz
