#pragma once

#include "bench/BoxWatcher.h"
#include "check/Check.h"

#include <map>
#include <string>
#include <vector>

namespace component_fuzz {

/// Holds what the checks say of documents against what the component does with them: what
/// passes without an error loads without a box and without a failing call, and each box or
/// failure was an error of the checks before. Each difference is a failed test.
class CheckedLoads {
  public:
    /// `kind` is what a host takes the document for.
    void Compare(const check::Result& result, check::Kind kind, bool isLoaded,
                 const std::vector<bench::Box>& boxes, const std::string& document);
    /// How many documents came to what.
    void Print() const;
    /// Of a kind, by "passed, quiet", "errors, boxes" and the like.
    unsigned Count(check::Kind kind, const std::string& outcome) const;
    /// That the rounds could have shown a difference: so many documents passed and loaded, and so
    /// many had errors and failed or showed boxes.
    void ExpectBothDirections(check::Kind kind, unsigned passed, unsigned faulty) const;
    /// The latter alone: of few documents the checks find nothing.
    void ExpectErrorsThatShow(check::Kind kind, unsigned faulty) const;

  private:
    std::map<std::string, unsigned> tally_;
};

/// A seed of the user's own, so that those who write 0.5 and 0,5 get different documents.
unsigned SeedOfUser(unsigned seed);

/// With the closing backslash.
std::wstring SamplesFolder();

} // namespace component_fuzz
