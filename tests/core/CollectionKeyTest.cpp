#include "core/CollectionKey.h"

#include "AllocationFault.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tam {

namespace {

constexpr const wchar_t* kLongKey = L"a key that is too long for the text object itself";

class CollectionKeyTest : public testing::Test {
  protected:
    using Slot = SharedCollectionKey*;

    void Set(const std::wstring& key) { Set(std::make_shared<std::wstring>(key)); }
    void Set(NewCollectionKey key) {
        key_.Set(std::move(key), slots_, [this](Slot slot, const SharedCollectionKey& shared) {
            ++given_;
            *slot = shared;
        });
    }
    void Add(SharedCollectionKey& slot) {
        key_.ItemsChange();
        slots_.push_back(&slot);
    }
    void Remove() {
        key_.ItemsChange();
        slots_.pop_back();
    }

    CollectionKey key_;
    std::vector<Slot> slots_;
    int given_ = 0;
    SharedCollectionKey first_, second_;
};

TEST_F(CollectionKeyTest, IsEmptyAtFirst) {
    EXPECT_EQ(key_.Text(), L"");
}

TEST_F(CollectionKeyTest, IsGivenToEachItem) {
    Add(first_);
    Add(second_);
    EXPECT_EQ(first_, nullptr);
    Set(L"K");
    EXPECT_EQ(key_.Text(), L"K");
    EXPECT_EQ(*first_, L"K");
    EXPECT_EQ(*second_, L"K");
}

TEST_F(CollectionKeyTest, ReplacesTheTextThatTheItemsShare) {
    Add(first_);
    Add(second_);
    Set(L"K");
    Set(L"L");
    EXPECT_EQ(given_, 2);
    EXPECT_EQ(*first_, L"L");
    EXPECT_EQ(*second_, L"L");
}

TEST_F(CollectionKeyTest, LeavesAnItemThatComesLaterWithoutAKey) {
    Add(first_);
    Set(L"K");
    Add(second_);
    EXPECT_EQ(second_, nullptr);
    Set(L"L");
    EXPECT_EQ(*first_, L"L");
    EXPECT_EQ(*second_, L"L");
}

TEST_F(CollectionKeyTest, LeavesAnItemThatWentItsKey) {
    Add(first_);
    Add(second_);
    Set(L"K");
    Remove();
    Set(L"L");
    EXPECT_EQ(*first_, L"L");
    EXPECT_EQ(*second_, L"K");
    Set(L"M");
    EXPECT_EQ(*first_, L"M");
    EXPECT_EQ(*second_, L"K");
}

TEST_F(CollectionKeyTest, TakesAKeyThatIsMadeWithoutMemory) {
    Add(first_);
    Set(L"K");
    Add(second_);
    for (const wchar_t* text : {kLongKey, L"another key that is too long for the text object itself"}) {
        auto key = std::make_shared<std::wstring>(text);
        {
            const AllocationFault fault(0);
            Set(std::move(key));
            EXPECT_FALSE(fault.HasHappened());
        }
        EXPECT_EQ(key_.Text(), text);
        EXPECT_EQ(*first_, text);
        EXPECT_EQ(*second_, text);
    }
}

TEST(CollectionKeyTextsTest, EndInTheKindOfPoints) {
    const CollectionKeyTexts texts(L"Plant\\M3");
    EXPECT_EQ(texts.inputs, L"Plant\\M3\\RIN");
    EXPECT_EQ(texts.outputs, L"Plant\\M3\\ROU");
    EXPECT_EQ(texts.attributes, L"Plant\\M3\\ATT");
}

} // namespace

} // namespace tam
