#include "core/KeyedCollection.h"

#include "AllocationFault.h"
#include "Thrown.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tam {
namespace {

using Texts = KeyedCollection<std::wstring>;

/// The items in order, joined by blanks.
std::wstring Items(const Texts& collection) {
    std::wstring text;
    for (const std::wstring& item : collection) {
        text.append(text.empty() ? L"" : L" ").append(item);
    }
    return text;
}

Texts Letters(std::wstring_view letters) {
    Texts collection;
    for (const wchar_t letter : letters) {
        const std::wstring text(1, letter);
        collection.Add(L"Key" + text, text);
    }
    return collection;
}

std::wstring Found(const std::wstring* item) {
    return item != nullptr ? *item : L"none";
}

TEST(KeyedCollectionTest, IsEmptyAtFirst) {
    const Texts collection;
    EXPECT_EQ(collection.Count(), 0u);
    EXPECT_TRUE(collection.begin() == collection.end());
    EXPECT_EQ(collection.Lookup(L"1"), nullptr);
    EXPECT_EQ(collection.Lookup(L""), nullptr);
    EXPECT_EQ(collection.FindPosition(1), nullptr);
}

TEST(KeyedCollectionTest, KeepsTheOrderOfInsertion) {
    const Texts collection = Letters(L"cab");
    EXPECT_EQ(Items(collection), L"c a b");
    EXPECT_EQ(collection.ItemAt(2), L"b");
    EXPECT_EQ(collection.KeyAt(2), L"Keyb");
}

TEST(KeyedCollectionTest, FindsKeysIgnoringCase) {
    const Texts collection = Letters(L"ab");
    EXPECT_EQ(Found(collection.FindKey(L"kEYB")), L"b");
    EXPECT_EQ(Found(collection.FindKey(L"Key")), L"none");
}

TEST(KeyedCollectionTest, RefusesADuplicateKeyAndStaysAsItWas) {
    Texts collection = Letters(L"ab");
    EXPECT_EQ(ErrorOf([&] { collection.Add(L"KEYA", L"other"); }), kDuplicateKey);
    EXPECT_EQ(Items(collection), L"a b");
    EXPECT_EQ(Found(collection.FindKey(L"KeyA")), L"a");
    EXPECT_EQ(collection.KeyAt(0), L"Keya");
}

TEST(KeyedCollectionTest, TakesAnEmptyKeyLikeAnyOther) {
    Texts collection;
    collection.Add(L"", L"a");
    EXPECT_EQ(Found(collection.Lookup(L"")), L"a");
    EXPECT_EQ(ErrorOf([&] { collection.Add(L"", L"b"); }), kDuplicateKey);
}

TEST(KeyedCollectionTest, FindsPositionsRoundedToEven) {
    const Texts collection = Letters(L"abc");
    EXPECT_EQ(Found(collection.FindPosition(1)), L"a");
    EXPECT_EQ(Found(collection.FindPosition(1.5)), L"b");
    EXPECT_EQ(Found(collection.FindPosition(2.5)), L"b");
    EXPECT_EQ(Found(collection.FindPosition(2.6)), L"c");
    EXPECT_EQ(Found(collection.FindPosition(0.6)), L"a");
    EXPECT_EQ(Found(collection.FindPosition(0.5)), L"none");
    EXPECT_EQ(Found(collection.FindPosition(3.5)), L"none");
}

TEST(KeyedCollectionTest, FindsNothingAtNoPosition) {
    const Texts collection = Letters(L"abc");
    for (const double position : {0.0, -1.0, 4.0, 1e300, HUGE_VAL, -HUGE_VAL, std::nan("")}) {
        EXPECT_EQ(collection.FindPosition(position), nullptr) << position;
    }
}

TEST(KeyedCollectionTest, LooksUpAKeyFirstAndThenAPosition) {
    Texts collection = Letters(L"abc");
    EXPECT_EQ(Found(collection.Lookup(L"3")), L"c");
    collection.Add(L"3", L"named 3");
    EXPECT_EQ(Found(collection.Lookup(L"3")), L"named 3");
    EXPECT_EQ(Found(collection.Lookup(L"2nd")), L"b");
    EXPECT_EQ(Found(collection.Lookup(L" 2.2")), L"b");
}

TEST(KeyedCollectionTest, LooksUpNothingForTextsThatAreNeither) {
    const Texts collection = Letters(L"abc");
    for (const wchar_t* index : {L"0", L"", L"absent", L"-1", L"4", L"1e999", L"&HFFFF"}) {
        EXPECT_EQ(collection.Lookup(index), nullptr) << std::wstring(index);
    }
}

TEST(KeyedCollectionTest, LooksUpPositionsWithoutMemory) {
    const Texts collection = Letters(L"abc");
    const std::wstring digits = std::wstring(40, L'0') + L"3";
    {
        const AllocationFault fault(0);
        EXPECT_EQ(*collection.Lookup(digits), L"c");
        EXPECT_FALSE(fault.HasHappened());
    }
    const AllocationFault fault(0);
    EXPECT_EQ(collection.Lookup(L"1e999"), nullptr);
    EXPECT_TRUE(fault.HasHappened());
}

TEST(KeyedCollectionTest, RefusesItemsPastTheEnd) {
    const Texts collection = Letters(L"a");
    EXPECT_EQ(ErrorOf([&] { collection.ItemAt(1); }), kSubscript);
    EXPECT_EQ(ErrorOf([&] { collection.KeyAt(1); }), kSubscript);
}

TEST(KeyedCollectionTest, RemovesByKeyAndByPosition) {
    Texts collection = Letters(L"abcd");
    EXPECT_TRUE(collection.RemoveKey(L"KEYB"));
    EXPECT_FALSE(collection.RemoveKey(L"KEYB"));
    EXPECT_EQ(Items(collection), L"a c d");
    EXPECT_TRUE(collection.RemovePosition(3));
    EXPECT_FALSE(collection.RemovePosition(3));
    EXPECT_FALSE(collection.RemovePosition(0));
    EXPECT_EQ(Items(collection), L"a c");
    collection.Add(L"KeyB", L"b again");
    EXPECT_EQ(Items(collection), L"a c b again");
    EXPECT_EQ(Found(collection.FindKey(L"keyc")), L"c");
}

TEST(KeyedCollectionTest, MovesAnItemToAPositionUnderItsKey) {
    Texts collection = Letters(L"abcd");
    collection.Bring(L"KEYD", 2);
    EXPECT_EQ(Items(collection), L"a d b c");
    collection.Bring(L"KeyA", 4);
    EXPECT_EQ(Items(collection), L"d b c a");
    collection.Bring(L"KeyB", 2);
    EXPECT_EQ(Items(collection), L"d b c a");
    EXPECT_EQ(Found(collection.FindKey(L"Keyd")), L"d");
    EXPECT_EQ(collection.KeyAt(3), L"Keya");
}

TEST(KeyedCollectionTest, RefusesToMoveAKeyThatIsAbsentOrToNoPosition) {
    Texts collection = Letters(L"ab");
    for (const bool isArranging : {false, true}) {
        std::optional<Texts::Arranging> arranging;
        if (isArranging) {
            arranging.emplace(collection);
        }
        EXPECT_EQ(ErrorOf([&] { collection.Bring(L"Keyc", 1); }), kSubscript);
        EXPECT_EQ(ErrorOf([&] { collection.Bring(L"Keya", 0); }), kSubscript);
        EXPECT_EQ(ErrorOf([&] { collection.Bring(L"Keya", 3); }), kSubscript);
        EXPECT_EQ(Items(collection), L"a b");
    }
}

TEST(KeyedCollectionTest, TellsThePositionByIdentity) {
    KeyedCollection<std::shared_ptr<int>> collection;
    const auto one = std::make_shared<int>(1);
    const auto equalOne = std::make_shared<int>(1);
    collection.Add(L"a", equalOne);
    collection.Add(L"b", one);
    collection.Add(L"c", one);
    EXPECT_EQ(collection.PositionOf(one), 2u);
    EXPECT_EQ(collection.PositionOf(equalOne), 1u);
    EXPECT_EQ(collection.PositionOf(std::make_shared<int>(1)), 0u);
}

TEST(KeyedCollectionTest, ArrangesItemsOneAfterAnother) {
    Texts collection = Letters(L"abcde");
    {
        const Texts::Arranging arranging(collection);
        collection.Bring(L"KeyE", 1);
        collection.Bring(L"KeyA", 2);
        collection.Bring(L"KeyC", 3);
    }
    EXPECT_EQ(Items(collection), L"e a c b d");
}

TEST(KeyedCollectionTest, ShowsWhatIsArrangedSoFar) {
    Texts collection = Letters(L"abcde");
    const Texts::Arranging arranging(collection);
    collection.Bring(L"KeyE", 1);
    EXPECT_EQ(Found(collection.FindKey(L"KeyB")), L"b");
    collection.Bring(L"KeyD", 2);
    EXPECT_EQ(Items(collection), L"e d a b c");
    collection.Bring(L"KeyC", 3);
    EXPECT_EQ(Items(collection), L"e d c a b");
    EXPECT_EQ(Found(collection.FindPosition(4)), L"a");
}

TEST(KeyedCollectionTest, ArrangesAnItemTwiceAndChangesBetween) {
    Texts collection = Letters(L"abcde");
    const Texts::Arranging arranging(collection);
    collection.Bring(L"KeyC", 1);
    collection.Bring(L"KeyC", 2);
    EXPECT_EQ(Items(collection), L"a c b d e");
    const Texts::Arranging inner(collection);
    collection.Bring(L"KeyE", 1);
    EXPECT_TRUE(collection.RemoveKey(L"KeyA"));
    collection.Bring(L"KeyD", 2);
    collection.Add(L"KeyF", L"f");
    EXPECT_EQ(Items(collection), L"e d c b f");
}

TEST(KeyedCollectionTest, ReversesManyItems) {
    constexpr std::size_t kCount = 200'000;
    KeyedCollection<std::size_t> collection;
    for (std::size_t i = 1; i <= kCount; ++i) {
        collection.Add(std::to_wstring(i) + L"_", i);
    }
    {
        const KeyedCollection<std::size_t>::Arranging arranging(collection);
        for (std::size_t wanted = 1; wanted <= kCount; ++wanted) {
            collection.Bring(std::to_wstring(kCount + 1 - wanted) + L"_", wanted);
        }
    }
    std::size_t expected = kCount;
    for (const std::size_t item : collection) {
        EXPECT_EQ(item, expected);
        --expected;
    }
    EXPECT_EQ(expected, 0u);
    const std::size_t* found = collection.FindKey(L"1_");
    EXPECT_EQ(found != nullptr ? *found : 0, 1u);
}

TEST(KeyedCollectionTest, LetsGoOfRemovedItems) {
    const auto item = std::make_shared<int>(1);
    KeyedCollection<std::shared_ptr<int>> collection;
    collection.Add(L"a", item);
    collection.Add(L"b", item);
    collection.Add(L"c", item);
    EXPECT_EQ(item.use_count(), 4);
    collection.RemoveKey(L"a");
    EXPECT_EQ(item.use_count(), 3);
    collection.RemovePosition(2);
    EXPECT_EQ(item.use_count(), 2);
    collection.Clear();
    EXPECT_EQ(item.use_count(), 1);
    EXPECT_EQ(collection.Count(), 0u);
    EXPECT_EQ(collection.FindKey(L"b"), nullptr);
}

/// Empties a collection when it ends, as a host object's last release may.
struct Emptier {
    KeyedCollection<std::shared_ptr<Emptier>>* collection = nullptr;
    bool* sawWhole = nullptr;
    Emptier(KeyedCollection<std::shared_ptr<Emptier>>* emptied, bool* saw)
        : collection(emptied), sawWhole(saw) {}
    Emptier(const Emptier&) = delete;
    Emptier& operator=(const Emptier&) = delete;
    ~Emptier() {
        *sawWhole = collection->FindKey(L"gone") == nullptr && collection->Count() <= 1;
        collection->Clear();
    }
};

TEST(KeyedCollectionTest, IsWholeWhenTheEndOfAnItemCallsBack) {
    KeyedCollection<std::shared_ptr<Emptier>> collection;
    bool sawWhole = false;
    collection.Add(L"gone", std::make_shared<Emptier>(&collection, &sawWhole));
    collection.Add(L"other", nullptr);
    EXPECT_TRUE(collection.RemoveKey(L"gone"));
    EXPECT_TRUE(sawWhole);
    EXPECT_EQ(collection.Count(), 0u);

    sawWhole = false;
    collection.Add(L"gone", std::make_shared<Emptier>(&collection, &sawWhole));
    collection.Clear();
    EXPECT_TRUE(sawWhole);
    EXPECT_EQ(collection.Count(), 0u);
}

TEST(KeyedCollectionTest, LetsItemsComeAndGoDuringAWalk) {
    Texts collection = Letters(L"abcd");
    std::wstring seen;
    for (const std::wstring& item : collection) {
        seen.append(item);
        if (seen == L"b" || seen == L"ab") {
            collection.RemoveKey(L"Keyd");
        }
        if (seen == L"abc") {
            collection.Add(L"new", L"e");
        }
    }
    EXPECT_EQ(seen, L"abce");
}

TEST(KeyedCollectionTest, StaysAsItWasWhenMemoryRunsOut) {
    const auto item = std::make_shared<int>(1);
    KeyedCollection<std::shared_ptr<int>> collection;
    std::size_t added = 0;
    for (int n = 0; added < 40; ++n) {
        const std::wstring key = L"a key that does not fit into the text object itself " + std::to_wstring(n);
        bool isAdded = false;
        {
            const AllocationFault fault(n % 7);
            try {
                collection.Add(key, item);
                isAdded = true;
            } catch (const std::bad_alloc&) {
                isAdded = false;
            }
        }
        added += isAdded ? 1 : 0;
        EXPECT_EQ(collection.Count(), added);
        EXPECT_EQ(collection.FindKey(key) != nullptr, isAdded);
        EXPECT_EQ(item.use_count(), static_cast<long>(added) + 1);
    }
}

TEST(KeyedCollectionTest, MovesAsAWhole) {
    Texts source = Letters(L"ab");
    Texts target = Letters(L"xyz");
    target = std::move(source);
    EXPECT_EQ(Items(target), L"a b");
    target.Add(L"Keyc", L"c");
    EXPECT_TRUE(target.RemoveKey(L"keya"));
    EXPECT_EQ(Items(target), L"b c");
}

} // namespace
} // namespace tam
