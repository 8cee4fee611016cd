#pragma once

#include "com/Ref.h"
#include "tests/support/Component.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>
#include <string>
#include <vector>

namespace support {

/// References that a host holds, by what they refer to.
template <std::size_t kKinds>
using HeldByKind = std::array<std::vector<com::Ref<IUnknown>>, kKinds>;

/// Lets go of references kind by kind, in every order of the kinds. A round begins
/// with what `take` gives; `judge` looks at what is still held whenever a kind was let
/// go of, and `end` at the end of the round. The component must want to stay loaded
/// as long as anything is held. Ends at the first failure. Answers the number of
/// rounds.
template <std::size_t kKinds, class Dll, class Take, class Judge, class End>
std::size_t ReleaseInEveryOrder(const std::array<const char*, kKinds>& names, Dll dll, Take take, Judge judge,
                                End end) {
    std::array<std::size_t, kKinds> order{};
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::size_t rounds = 0;
    do {
        std::string title;
        for (const std::size_t kind : order) {
            title += std::string(names[kind]) + ", ";
        }
        SCOPED_TRACE(title);
        HeldByKind<kKinds> held = take();
        for (const std::size_t kind : order) {
            EXPECT_EQ(dll().CanUnload(), S_FALSE) << "before the " << names[kind];
            held[kind].clear();
            judge(held);
        }
        end();
        ++rounds;
    } while (std::next_permutation(order.begin(), order.end()) && !testing::Test::HasFailure());
    return rounds;
}

} // namespace support
