#pragma once

#include "com/Ref.h"
#include "tests/fuzz/Random.h"
#include "tests/fuzz/Watchdog.h"
#include "tests/support/TypeLibrary.h"

#include <windows.h>

#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace component_fuzz {

/// Calls in any order with any arguments, by name as a script makes them, of
/// the objects of the component that it is given and of those that the calls
/// answer.
class RandomCalls {
  public:
    RandomCalls();

    /// An object to be called; one of another class than the component's is
    /// passed over, and so is one too many.
    void Keep(const com::Ref<IDispatch>& object);
    /// An object that is only passed as an argument.
    void Offer(com::Ref<IDispatch> object) { offered_.push_back(std::move(object)); }
    /// A member that is not to be called.
    void Spare(REFIID face, std::wstring member) { spared_.push_back({face, std::move(member)}); }

    /// Calls any member of any object. With `tells`, prints which beforehand.
    void CallOne(Random& random, bool tells);
    /// Lets go of all that the calls tied together, as a host has to.
    void End();

  private:
    struct Spared {
        IID face;
        std::wstring member;
    };

    bool IsSpared(const support::Interface& face, const support::Member& member) const;
    const std::vector<support::Interface>& InterfacesOf(const com::Ref<IDispatch>& object) const;
    void Unset(const com::Ref<IDispatch>& object);

    VARIANT Fitting(const support::Parameter& parameter, Random& random);
    VARIANT Any(Random& random);
    VARIANT ObjectValue(Random& random);
    VARIANT ByReference(const VARIANT& value);

    support::TypeLibrary library_;
    std::vector<com::Ref<IDispatch>> pool_;
    std::vector<com::Ref<IDispatch>> offered_;
    std::vector<Spared> spared_;
    /// What arguments by reference point to.
    std::deque<VARIANT> places_;
};

/// Runs sequences of calls from a seed: so many (or TAM_CALLS_SEQUENCES), or for
/// TAM_FUZZ_SECONDS, or the one of TAM_CALLS_ROUND alone, which then tells each
/// call. Prints how many. The seed is TAM_CALLS_SEED, else TAM_FUZZ_SEED.
void RunSequences(Watchdog& watchdog, unsigned sequences,
                  const std::function<void(Random& random, bool tells)>& run);

} // namespace component_fuzz
