#include "core/KeyOrder.h"

#include "AllocationFault.h"
#include "Thrown.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <optional>
#include <string>

namespace tam {
namespace {

/// Keys in order with their slots, such as "a0 b1".
std::wstring Describe(const KeyOrder& order) {
    std::wstring text;
    for (std::size_t i = 0; i < order.Count(); ++i) {
        text.append(i != 0 ? L" " : L"").append(order.KeyAt(i)).append(std::to_wstring(order.SlotAt(i)));
    }
    return text;
}

KeyOrder OrderOf(std::initializer_list<const wchar_t*> keys) {
    KeyOrder order;
    for (const wchar_t* key : keys) {
        order.Add(key);
    }
    return order;
}

TEST(KeyOrderTest, GivesTheLastKeyTheSlotOfARemovedOne) {
    KeyOrder order = OrderOf({L"a", L"b", L"c", L"d"});
    EXPECT_EQ(order.Erase(1), 1u);
    EXPECT_EQ(Describe(order), L"a0 c2 d1");
    EXPECT_EQ(order.SlotOf(L"D"), 1u);
    EXPECT_EQ(order.SlotOf(L"b"), std::nullopt);
}

TEST(KeyOrderTest, MovesWithoutChangingSlots) {
    KeyOrder order = OrderOf({L"a", L"b", L"c", L"d"});
    order.Bring(3, 0);
    EXPECT_EQ(Describe(order), L"d3 a0 b1 c2");
    order.Bring(3, 2);
    EXPECT_EQ(Describe(order), L"a0 b1 d3 c2");
    order.Bring(1, 1);
    EXPECT_EQ(Describe(order), L"a0 b1 d3 c2");
}

TEST(KeyOrderTest, RemovesTheHighestSlotWhereverItStands) {
    KeyOrder order = OrderOf({L"a", L"b", L"c"});
    order.Bring(2, 0);
    EXPECT_EQ(order.Erase(0), 2u);
    EXPECT_EQ(Describe(order), L"a0 b1");
    EXPECT_EQ(order.Erase(0), 0u);
    EXPECT_EQ(Describe(order), L"b0");
    EXPECT_EQ(order.Erase(0), 0u);
    EXPECT_EQ(order.Count(), 0u);
}

TEST(KeyOrderTest, ChangesNothingWhenMemoryRunsOut) {
    KeyOrder order = OrderOf({L"first"});
    for (int n = 0;; ++n) {
        const std::wstring before = Describe(order);
        const std::wstring key = L"a key that does not fit into the text object itself " + std::to_wstring(n);
        bool isAdded = false;
        bool hasHappened = false;
        {
            const AllocationFault fault(n % 6);
            try {
                order.Add(key);
                isAdded = true;
            } catch (const std::bad_alloc&) {
                isAdded = false;
            }
            hasHappened = fault.HasHappened();
        }
        EXPECT_NE(isAdded, hasHappened);
        EXPECT_EQ(order.SlotOf(key).has_value(), isAdded);
        if (!isAdded) {
            EXPECT_EQ(Describe(order), before);
        }
        if (order.Count() == 40) {
            break;
        }
    }
}

TEST(KeyOrderTest, ArrangesWithoutTakingMemory) {
    KeyOrder order = OrderOf({L"a", L"b", L"c", L"d"});
    order.BeginArranging();
    const AllocationFault fault(0);
    order.Bring(2, 0);
    order.Bring(0, 1);
    order.Settle();
    EXPECT_EQ(order.SlotAt(0), 2u);
    EXPECT_EQ(order.SlotAt(1), 0u);
    EXPECT_EQ(order.SlotAt(2), 1u);
    EXPECT_EQ(order.SlotAt(3), 3u);
}

TEST(KeyOrderTest, LeavesTheOrderWhenThereIsNoMemoryToArrangeIt) {
    KeyOrder order = OrderOf({L"a", L"b", L"c"});
    for (const int n : {0, 1}) {
        const AllocationFault fault(n);
        EXPECT_THROW(order.BeginArranging(), std::bad_alloc);
    }
    order.Bring(2, 0);
    EXPECT_EQ(Describe(order), L"c2 a0 b1");
}

TEST(KeyOrderTest, RefusesPositionsPastTheEnd) {
    KeyOrder order = OrderOf({L"a", L"b"});
    EXPECT_EQ(ErrorOf([&] { order.SlotAt(2); }), kSubscript);
    EXPECT_EQ(ErrorOf([&] { order.KeyAt(2); }), kSubscript);
    EXPECT_EQ(ErrorOf([&] { order.Erase(2); }), kSubscript);
    EXPECT_EQ(ErrorOf([&] { order.Bring(0, 2); }), kSubscript);
    EXPECT_EQ(Describe(order), L"a0 b1");
}

} // namespace
} // namespace tam
