#include "tests/fuzz/DocumentRounds.h"
#include "tests/fuzz/Rounds.h"

#include <cstdio>
#include <string>

namespace component_fuzz {

namespace {

constexpr unsigned kSeed = 20250307;
constexpr unsigned kRounds = 400;

TEST_F(DocumentsFuzzTest, HoldsForTheCorpus) {
    for (const std::wstring& name : Corpus()) {
        SCOPED_TRACE(support::Narrow(name));
        const Input input = FromFile(name);
        Dog().Begin(input.bytes, support::Narrow(name));
        Check(input);
    }
}

TEST_F(DocumentsFuzzTest, HoldsForChangedDocuments) {
    RunRounds(Dog(), kSeed, kRounds, [this](Random& random, const std::string& what) {
        const Input input = Changed(random);
        const std::string kind = support::Narrow(Input::kNames.at(static_cast<std::size_t>(input.kind)));
        SCOPED_TRACE(kind);
        Dog().Begin(input.bytes, what + ", a " + kind);
        Check(input);
    });
    for (const auto& [what, count] : Tally()) {
        std::printf("%8u %s\n", count, what.c_str());
    }
}

} // namespace

} // namespace component_fuzz
