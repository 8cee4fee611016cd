#include "tests/fuzz/DocumentRounds.h"

#include <cstdio>
#include <exception>

namespace component_fuzz {

namespace {

constexpr unsigned kSeed = 20250307;
constexpr unsigned kRounds = 400;
/// Between two lines on the way of a long run.
constexpr unsigned kTellEvery = 500;

TEST_F(DocumentFuzzTest, HoldsForTheCorpus) {
    for (const std::wstring& name : Corpus()) {
        SCOPED_TRACE(contract::Narrow(name));
        const Input input = FromFile(name);
        Dog().Begin(input.bytes, contract::Narrow(name));
        Check(input);
    }
}

// TAM_FUZZ_SEED, TAM_FUZZ_ROUNDS and TAM_FUZZ_SECONDS make a longer run of it,
// TAM_FUZZ_ROUND runs one round alone.
TEST_F(DocumentFuzzTest, HoldsForChangedDocuments) {
    const unsigned seed = Setting(L"TAM_FUZZ_SEED", kSeed);
    const unsigned first = Setting(L"TAM_FUZZ_ROUND", 0);
    const unsigned seconds = Setting(L"TAM_FUZZ_SECONDS", 0);
    const unsigned rounds = Setting(L"TAM_FUZZ_ROUNDS", first != 0     ? first + 1
                                                        : seconds != 0 ? ~0u
                                                                       : kRounds);
    const ULONGLONG end = GetTickCount64() + seconds * 1000ull;
    unsigned round = first;
    for (; round < rounds && (seconds == 0 || GetTickCount64() < end); ++round) {
        Random random(seed, round);
        const Input input = Changed(random);
        const std::string what = "seed " + std::to_string(seed) + ", round " + std::to_string(round) +
                                 ", a " +
                                 contract::Narrow(Input::kNames.at(static_cast<std::size_t>(input.kind)));
        SCOPED_TRACE(what);
        Dog().Begin(input.bytes, what);
        try {
            Check(input);
        } catch (const std::exception& error) {
            ADD_FAILURE() << error.what();
        }
        if (HasFailure()) {
            std::printf("%s; the document is in %ls\n", what.c_str(), Dog().Keep(round).c_str());
            return;
        }
        if ((round - first + 1) % kTellEvery == 0) {
            std::printf("%u documents\n", round - first + 1);
            std::fflush(stdout);
        }
    }
    std::printf("%u documents, seed %u\n", round - first, seed);
    for (const auto& [what, count] : Tally()) {
        std::printf("%8u %s\n", count, what.c_str());
    }
}

} // namespace

} // namespace component_fuzz
