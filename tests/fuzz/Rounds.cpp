#include "tests/fuzz/Rounds.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <exception>

namespace component_fuzz {

namespace {

/// Between two lines on the way of a long run.
constexpr unsigned kTellEvery = 500;

constexpr unsigned kNotGiven = ~0u;

} // namespace

RoundSpan::RoundSpan(const wchar_t* one, const wchar_t* number, unsigned numberOtherwise)
    : seconds_(Setting(L"TAM_FUZZ_SECONDS", 0)), until_(GetTickCount64() + seconds_ * 1000ull) {
    const unsigned given = Setting(one, kNotGiven);
    isOne_ = given != kNotGiven;
    first_ = isOne_ ? given : 0;
    end_ = Setting(number, isOne_ ? first_ + 1 : seconds_ != 0 ? ~0u : numberOtherwise);
}

bool RoundSpan::Takes(unsigned round) const noexcept {
    return round < end_ && (seconds_ == 0 || GetTickCount64() < until_);
}

void RunRounds(Watchdog& watchdog, unsigned seedOtherwise, unsigned roundsOtherwise, const Round& run) {
    const unsigned seed = Setting(L"TAM_FUZZ_SEED", seedOtherwise);
    const RoundSpan span(L"TAM_FUZZ_ROUND", L"TAM_FUZZ_ROUNDS", roundsOtherwise);
    const unsigned first = span.First();
    unsigned round = first;
    for (; span.Takes(round); ++round) {
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
