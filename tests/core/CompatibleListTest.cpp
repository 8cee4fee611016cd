#include "core/CompatibleList.h"

#include "AllocationFault.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tam {
namespace {

CompatibleList ListOf(std::wstring_view text) {
    CompatibleList list;
    list.Add(text);
    return list;
}

TEST(CompatibleListTest, AddsEachIdentifierOnceInOrder) {
    EXPECT_EQ(ListOf(L"3,4,4,5").GetList(), L"3,4,5");
    EXPECT_EQ(ListOf(L"3,3").GetList(), L"3");
    EXPECT_EQ(ListOf(L"5,3").GetList(), L"5,3");
}

TEST(CompatibleListTest, AddsNothingOfAnEmptyText) {
    CompatibleList list = ListOf(L"7");
    list.Add(L"");
    EXPECT_EQ(list.GetList(), L"7");
}

TEST(CompatibleListTest, EndsAtTheFirstEmptyField) {
    EXPECT_EQ(ListOf(L"3,,4").GetList(), L"3");
    EXPECT_EQ(ListOf(L"3,4,").GetList(), L"3,4");
    EXPECT_EQ(ListOf(L",3").GetList(), L"");
    EXPECT_EQ(ListOf(L",").Count(), 0u);
}

TEST(CompatibleListTest, AddsToWhatIsThere) {
    CompatibleList list = ListOf(L"5");
    list.Add(L"6");
    list.Add(L"5");
    list.Add(L"7,6,8");
    EXPECT_EQ(list.GetList(), L"5,6,7,8");
}

TEST(CompatibleListTest, KeepsBlanksLettersAndZerosAsTheyStand) {
    const CompatibleList list = ListOf(L"3, 4,04,a,A");
    EXPECT_EQ(list.Count(), 5u);
    EXPECT_EQ(list.GetList(), L"3, 4,04,a,A");
}

TEST(CompatibleListTest, FindsExactlyAnIdentifier) {
    const CompatibleList list = ListOf(L"3, 4,Temp");
    EXPECT_TRUE(list.Exists(L"3"));
    EXPECT_TRUE(list.Exists(L" 4"));
    EXPECT_TRUE(list.Exists(L"Temp"));
    EXPECT_FALSE(list.Exists(L"4"));
    EXPECT_FALSE(list.Exists(L"TEMP"));
    EXPECT_FALSE(list.Exists(L"1"));
    EXPECT_FALSE(list.Exists(L""));
}

TEST(CompatibleListTest, GivesIdentifiersByPosition) {
    const CompatibleList list = ListOf(L"5,3");
    ASSERT_NE(list.At(1), nullptr);
    EXPECT_EQ(*list.At(1), L"5");
    EXPECT_EQ(*list.At(2), L"3");
    EXPECT_EQ(list.At(0), nullptr);
    EXPECT_EQ(list.At(3), nullptr);
}

TEST(CompatibleListTest, RemovesByIdentifierAndByPosition) {
    CompatibleList list = ListOf(L"1,2,3,4");
    EXPECT_TRUE(list.Remove(L"2"));
    EXPECT_FALSE(list.Remove(L"2"));
    EXPECT_TRUE(list.RemovePosition(3));
    EXPECT_FALSE(list.RemovePosition(3));
    EXPECT_FALSE(list.RemovePosition(0));
    EXPECT_EQ(list.GetList(), L"1,3");
    EXPECT_TRUE(list.Remove(*list.At(1)));
    list.Add(L"2,1");
    EXPECT_EQ(list.GetList(), L"3,2,1");
}

TEST(CompatibleListTest, IsEmptyAtFirstAndAfterClear) {
    CompatibleList list;
    EXPECT_EQ(list.GetList(), L"");
    EXPECT_EQ(list.Count(), 0u);
    list.Add(L"1,2");
    list.Clear();
    EXPECT_EQ(list.GetList(), L"");
    EXPECT_FALSE(list.Exists(L"1"));
    list.Add(L"2");
    EXPECT_EQ(list.GetList(), L"2");
}

TEST(CompatibleListTest, MergesInTheOrderOfTheOtherList) {
    const CompatibleList list = ListOf(L"1,2,3");
    const CompatibleList other = ListOf(L"3,2,9");
    EXPECT_EQ(list.Merge(other).GetList(), L"3,2");
    EXPECT_EQ(other.Merge(list).GetList(), L"2,3");
    EXPECT_EQ(list.GetList(), L"1,2,3");
    EXPECT_EQ(other.GetList(), L"3,2,9");
}

TEST(CompatibleListTest, MergesWithAnEmptyListToAnEmptyOne) {
    EXPECT_EQ(ListOf(L"1,2").Merge(CompatibleList()).Count(), 0u);
    EXPECT_EQ(CompatibleList().Merge(ListOf(L"1,2")).Count(), 0u);
}

TEST(CompatibleListTest, CopiesIndependently) {
    const CompatibleList source = ListOf(L"1,2");
    CompatibleList copy = source;
    EXPECT_EQ(copy.GetList(), source.GetList());
    copy.Add(L"3");
    copy.Remove(L"1");
    EXPECT_EQ(copy.GetList(), L"2,3");
    EXPECT_EQ(source.GetList(), L"1,2");
    EXPECT_TRUE(source.Exists(L"1"));
}

TEST(CompatibleListTest, FindsInAnAssignedListWhatItHasNow) {
    CompatibleList before;
    CompatibleList after;
    for (int id = 1; id <= 20; ++id) { // so many that they are looked up
        before.AddId(std::to_wstring(id));
        after.AddId(std::to_wstring(100 + id));
    }
    before = after;
    EXPECT_TRUE(before.Exists(L"120"));
    EXPECT_FALSE(before.Exists(L"20"));
    EXPECT_TRUE(after.Exists(L"120"));
    before.AddId(L"101");
    EXPECT_EQ(before.Count(), 20u);
}

TEST(CompatibleListTest, FindsAmongManyAsAmongFew) {
    CompatibleList list;
    for (int i = 1; i <= 30; ++i) {
        list.AddId(std::to_wstring(i));
        list.AddId(std::to_wstring(i));
        EXPECT_EQ(list.Count(), static_cast<std::size_t>(i));
        EXPECT_TRUE(list.Exists(std::to_wstring(i)));
        EXPECT_TRUE(list.Exists(L"1"));
        EXPECT_FALSE(list.Exists(std::to_wstring(i + 1)));
    }
    const CompatibleList copy = list;
    for (int i = 30; i >= 1; --i) {
        EXPECT_TRUE(list.RemovePosition(static_cast<std::size_t>(i)));
        EXPECT_FALSE(list.Exists(std::to_wstring(i)));
    }
    EXPECT_EQ(list.GetList(), L"");
    list.AddId(L"7");
    EXPECT_EQ(list.GetList(), L"7");
    EXPECT_TRUE(list.Exists(L"7"));
    EXPECT_FALSE(list.Exists(L"8"));
    EXPECT_TRUE(copy.Exists(L"8"));
    EXPECT_EQ(copy.Count(), 30U);
}

TEST(CompatibleListTest, YieldsBeforeEachFieldOfATextWithCommas) {
    CompatibleList list;
    std::wstring counts;
    const auto yield = [&] { counts.append(std::to_wstring(list.Count())); };
    list.Add(L"7", yield);
    list.Add(L"", yield);
    EXPECT_EQ(counts, L"");
    list.Add(L"1,2,3", yield);
    EXPECT_EQ(counts, L"123");
    counts.clear();
    list.Add(L"4,,5", yield);
    EXPECT_EQ(counts, L"45");
}

TEST(CompatibleListTest, KeepsWhatWasAddedBeforeAnError) {
    CompatibleList list;
    int yields = 0;
    const auto yield = [&] {
        if (++yields == 3) {
            throw std::runtime_error("host");
        }
    };
    EXPECT_THROW(list.Add(L"1,2,3,4", yield), std::runtime_error);
    EXPECT_EQ(list.GetList(), L"1,2");
}

TEST(CompatibleListTest, LetsTheHostChangeTheListWhileItYields) {
    CompatibleList list;
    list.Add(L"1,2,3", [&] { list.Clear(); });
    EXPECT_EQ(list.GetList(), L"3");
}

TEST(CompatibleListTest, KeepsWhatWasAddedBeforeMemoryRunsOut) {
    const std::wstring one = L"an identifier that needs memory of its own, "
                             L"another identifier that needs memory of its own";
    for (int n = 0;; ++n) {
        CompatibleList list;
        bool hasHappened = false;
        {
            const AllocationFault fault(n);
            try {
                list.Add(one);
            } catch (const std::bad_alloc&) {
                hasHappened = true;
            }
        }
        std::size_t present = 0;
        while (const std::wstring* id = list.At(present + 1)) {
            EXPECT_TRUE(list.Exists(*id));
            ++present;
        }
        list.Add(one);
        EXPECT_EQ(list.Count(), 2u) << present << " after the fault in allocation " << n;
        if (!hasHappened) {
            break;
        }
    }
}

TEST(CompatibleListTest, AddsOneIdentifierAsItStands) {
    CompatibleList list;
    list.AddId(L"1,2");
    list.AddId(L"1,2");
    list.AddId(L"3");
    EXPECT_EQ(list.GetList(), L"1,2,3");
    EXPECT_EQ(list.Count(), 2u);
    EXPECT_TRUE(list.Exists(L"1,2"));
    EXPECT_FALSE(list.Exists(L"1"));
}

} // namespace

} // namespace tam
