// The tests of lacking memory rest on these operators: each allocation of the
// program is one of theirs, whichever form of new takes it.

#include "AllocationFault.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <new>
#include <vector>

namespace tam {
namespace {

constexpr std::size_t kSize = 24;

TEST(AllocationFaultTest, FailsTheFormsThatThrow) {
    {
        const AllocationFault fault(0);
        EXPECT_THROW(static_cast<void>(::operator new(kSize)), std::bad_alloc);
        EXPECT_TRUE(fault.HasHappened());
    }
    const AllocationFault fault(0);
    EXPECT_THROW(static_cast<void>(::operator new[](kSize)), std::bad_alloc);
    EXPECT_TRUE(fault.HasHappened());
}

TEST(AllocationFaultTest, FailsTheFormsThatThrowNothing) {
    {
        const AllocationFault fault(0);
        EXPECT_EQ(::operator new(kSize, std::nothrow), nullptr);
        EXPECT_TRUE(fault.HasHappened());
    }
    const AllocationFault fault(0);
    EXPECT_EQ(::operator new[](kSize, std::nothrow), nullptr);
    EXPECT_TRUE(fault.HasHappened());
}

TEST(AllocationFaultTest, CountsEveryForm) {
    const AllocationFault fault(4);
    const std::array<void*, 2> blocks{::operator new(kSize), ::operator new(kSize, std::nothrow)};
    const std::array<void*, 2> arrays{::operator new[](kSize), ::operator new[](kSize, std::nothrow)};
    EXPECT_FALSE(fault.HasHappened());
    EXPECT_EQ(::operator new(kSize, std::nothrow), nullptr);
    EXPECT_TRUE(fault.HasHappened());
    for (void* const block : blocks) {
        EXPECT_NE(block, nullptr);
        ::operator delete(block);
    }
    for (void* const block : arrays) {
        EXPECT_NE(block, nullptr);
        ::operator delete[](block);
    }
}

// Its buffer comes from the form that throws nothing and goes by the plain
// delete: a sanitizer sees when only one of them is this program's.
TEST(AllocationFaultTest, ServesTheStandardLibrarysStableSort) {
    std::vector<int> numbers{3, 1, 2};
    std::stable_sort(numbers.begin(), numbers.end());
    EXPECT_EQ(numbers, (std::vector<int>{1, 2, 3}));
    numbers = {3, 1, 2};
    const AllocationFault fault(0);
    std::stable_sort(numbers.begin(), numbers.end()); // sorts in place without a buffer
    EXPECT_TRUE(fault.HasHappened());
    EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
}

} // namespace
} // namespace tam
