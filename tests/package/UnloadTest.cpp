#include "tests/package/Dll.h"

#include <windows.h>

#include <gtest/gtest.h>

// A host may let a DLL go and load it again as often as it likes: what a process
// has few of, such as its 1,088 slots for values of threads, is given back.

namespace package {
namespace {

void LoadMoreOftenThanAProcessHasSlots(const DllFacts& facts) {
    constexpr int kMoreThanSlots = 1100;
    for (int load = 0; load < kMoreThanSlots; ++load) {
        const Dll dll(facts);
        ASSERT_NE(nullptr, dll.Module()) << "load " << load;
        ASSERT_EQ(S_OK, dll.CanUnloadNow()) << "load " << load;
    }
}

TEST(UnloadTest, TheComponentLoadsMoreOftenThanAProcessHasSlots) {
    LoadMoreOftenThanAProcessHasSlots(Component());
}

TEST(UnloadTest, TheHostServicesLoadMoreOftenThanAProcessHasSlots) {
    LoadMoreOftenThanAProcessHasSlots(HostServices());
}

} // namespace
} // namespace package
