#include "com/Owned.h"
#include "tests/com/Subjects.h"

#include <functional>
#include <utility>

// Who keeps whom: an object that somebody outside holds keeps its owner, and
// the owner's own hold keeps the object without keeping itself.

namespace {

class Item;

/// An owner of items; tells when it ends.
class Owner final : public com::DualObject<Owner, IHostDocument> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    explicit Owner(int& alive) : alive_(alive) { ++alive_; }
    ~Owner() override;
    STDMETHODIMP get_View(IDispatch**) override { return E_NOTIMPL; }

    com::Owned<Item> item;
    std::function<void()> atEnd;

  private:
    int& alive_;
};

class Item final : public com::OwnedDualObject<Item, Owner, IHostDocument> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    explicit Item(int& alive) : alive_(alive) { ++alive_; }
    ~Item() override {
        const auto self = This<IHostDocument>(); // as code does that runs at the end
        --alive_;
    }
    STDMETHODIMP get_View(IDispatch**) override { return E_NOTIMPL; }

  private:
    int& alive_;
};

Owner::~Owner() {
    const com::Ref<Item> held = item; // a reference taken while the owner ends
    if (atEnd) {
        atEnd();
    }
    --alive_;
}

class OwnedTest : public testing::Test {
  protected:
    void SetUp() override {
        before = com::ThisDll().Objects();
        owner = Owner::Make(owners);
        item = Item::Make(items);
        item->SetOwner(owner.Get());
        owner->item = item;
    }
    void TearDown() override {
        owner.Reset();
        item.Reset();
        EXPECT_EQ(owners, 0);
        EXPECT_EQ(items, 0);
        EXPECT_EQ(com::ThisDll().Objects(), before);
    }
    /// References that an object has beside the one of the test.
    template <class T>
    static ULONG Others(const com::Ref<T>& object) {
        object->AddRef();
        return object->Release() - 1;
    }

    int owners = 0;
    int items = 0;
    long before = 0;
    com::Ref<Owner> owner;
    com::Ref<Item> item;
};

TEST_F(OwnedTest, AnItemHeldOutsideHoldsItsOwnerOnce) {
    EXPECT_EQ(Others(owner), 1u);
    const com::Ref<Item> again = item;
    EXPECT_EQ(Others(owner), 1u);
    EXPECT_EQ(Others(item), 1u) << "the owner's hold is no reference from outside";
}

TEST_F(OwnedTest, TheOwnersHoldAloneHoldsNoOwner) {
    item.Reset();
    EXPECT_EQ(items, 1);
    EXPECT_EQ(Others(owner), 0u);
    owner.Reset();
    EXPECT_EQ(owners, 0);
    EXPECT_EQ(items, 0);
}

TEST_F(OwnedTest, AnItemKeepsItsOwnerUntilItsLastReference) {
    com::Ref<Item> again = item;
    Owner* const raw = owner.Get();
    owner.Reset();
    item.Reset();
    EXPECT_EQ(owners, 1);
    EXPECT_EQ(again->Owner(), raw);
    again.Reset();
    EXPECT_EQ(owners, 0);
    EXPECT_EQ(items, 0);
}

TEST_F(OwnedTest, AnItemIsHeldAgainAfterItsLastReference) {
    for (int round = 0; round < 3; ++round) {
        item.Reset();
        EXPECT_EQ(Others(owner), 0u);
        item = owner->item;
        EXPECT_EQ(Others(owner), 1u);
    }
}

TEST_F(OwnedTest, AnItemThatItsOwnerDropsStillHoldsIt) {
    owner->item.Reset();
    owner.Reset();
    EXPECT_EQ(owners, 1);
    item.Reset();
    EXPECT_EQ(items, 0);
    EXPECT_EQ(owners, 0);
}

TEST_F(OwnedTest, AnItemThatNobodyHoldsEndsWithItsOwnersHold) {
    item.Reset();
    owner->item.Reset();
    EXPECT_EQ(items, 0);
    EXPECT_EQ(owners, 1);
}

TEST_F(OwnedTest, HoldsOfTwoPlacesAreCounted) {
    com::Owned<Item> second = owner->item;
    item.Reset();
    owner->item.Reset();
    EXPECT_EQ(items, 1);
    com::Owned<Item> third = std::move(second);
    EXPECT_FALSE(second);
    EXPECT_EQ(items, 1);
    third = com::Owned<Item>();
    EXPECT_EQ(items, 0);
}

TEST_F(OwnedTest, ANewOwnerGetsTheReferenceOfTheOldOne) {
    const auto other = Owner::Make(owners);
    item->SetOwner(other.Get());
    EXPECT_EQ(Others(owner), 0u);
    EXPECT_EQ(Others(other), 1u);
    item->SetOwner(nullptr);
    EXPECT_EQ(Others(other), 0u);
    item->SetOwner(owner.Get());
    EXPECT_EQ(Others(owner), 1u);
}

TEST_F(OwnedTest, ANewOwnerOfAnItemThatNobodyHoldsGetsNoReference) {
    const auto other = Owner::Make(owners);
    Item& raw = *item.Get();
    item.Reset();
    raw.SetOwner(other.Get());
    EXPECT_EQ(Others(owner), 0u);
    EXPECT_EQ(Others(other), 0u);
    item = owner->item;
    EXPECT_EQ(Others(owner), 0u);
    EXPECT_EQ(Others(other), 1u);
    item.Reset();
}

TEST_F(OwnedTest, TheOldOwnerMayEndWhenTheItemGetsANewOne) {
    const auto other = Owner::Make(owners);
    owner.Reset();
    EXPECT_EQ(owners, 2);
    item->SetOwner(other.Get()); // the old owner ends, and with it its hold
    EXPECT_EQ(owners, 1);
    EXPECT_EQ(items, 1);
    EXPECT_EQ(item->Owner(), other.Get());
}

TEST_F(OwnedTest, AnItemWithoutAnOwnerLivesByItsReferences) {
    auto lone = Item::Make(items);
    EXPECT_EQ(lone->Owner(), nullptr);
    lone.Reset();
    EXPECT_EQ(items, 1);
}

TEST_F(OwnedTest, EndsOnceWhereTheEndTakesReferences) {
    int ends = 0;
    owner->atEnd = [&] { ++ends; };
    owner.Reset();
    item.Reset();
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(items, 0);
}

TEST_F(OwnedTest, IsHandedOutCounted) {
    IHostDocument* out = nullptr;
    com::Assign(&out, owner->item);
    EXPECT_EQ(out, item.Get());
    EXPECT_EQ(Others(item), 1u);
    out->Release();
    const com::Owned<Item> none;
    com::Assign(&out, none);
    EXPECT_EQ(out, nullptr);
}

} // namespace
