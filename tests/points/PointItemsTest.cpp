#include "points/PointItems.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

// Items that come and go, which no host can bring about: the members that
// remove points are the component's own side.

namespace tam {

namespace {

/// A point that keeps its collection's keys and nothing else.
class FakePoint {
  public:
    static com::Ref<FakePoint> Make() { return com::Ref<FakePoint>::Own(new FakePoint); }
    ULONG AddRef() noexcept { return ++references_; }
    ULONG Release() noexcept {
        const ULONG left = --references_;
        if (left == 0) {
            delete this;
        }
        return left;
    }
    // Its place in a collection is a reference like another.
    void Hold() noexcept { AddRef(); }
    void LetGo() noexcept { Release(); }
    void SetGlobalKeyUnder(SharedCollectionKey key) noexcept { globalKey_ = std::move(key); }
    void SetExtendedKeyUnder(SharedCollectionKey key) noexcept { extendedKey_ = std::move(key); }
    /// Both keys of its collection; "-" where there is none.
    std::wstring Keys() const {
        return (globalKey_ ? *globalKey_ : L"-") + L" " + (extendedKey_ ? *extendedKey_ : L"-");
    }

  private:
    SharedCollectionKey globalKey_;
    SharedCollectionKey extendedKey_;
    ULONG references_ = 1;
};

class PointItemsTest : public testing::Test {
  protected:
    void SetUp() override {
        for (const wchar_t* name : {L"First", L"Second", L"Third"}) {
            points.push_back(FakePoint::Make());
            items.Add(name, points.back());
        }
    }
    void SetKeys(const std::wstring& global, const std::wstring& extended) {
        items.SetGlobalKey(std::make_shared<std::wstring>(global));
        items.SetExtendedKey(std::make_shared<std::wstring>(extended));
    }
    std::vector<std::wstring> Keys() const {
        std::vector<std::wstring> keys;
        for (const auto& point : points) {
            keys.push_back(point->Keys());
        }
        return keys;
    }

    using Texts = std::vector<std::wstring>;
    PointItems<FakePoint> items;
    std::vector<com::Ref<FakePoint>> points;
};

TEST_F(PointItemsTest, RemovesByNameInAnyLetterCase) {
    items.Remove(L"SECOND");
    EXPECT_EQ(items.Count(), 2);
    EXPECT_EQ(items.Find(L"Second"), com::Ref<FakePoint>());
    EXPECT_EQ(items.Find(L"2"), points[2]);
}

TEST_F(PointItemsTest, RemovesByPosition) {
    items.Remove(L"1");
    EXPECT_EQ(items.Find(L"First"), com::Ref<FakePoint>());
    EXPECT_EQ(items.Find(L"1"), points[1]);
}

TEST_F(PointItemsTest, RefusesToRemoveWhatIsNotThere) {
    for (const wchar_t* index : {L"", L"0", L"4", L"absent"}) {
        try {
            items.Remove(index);
            ADD_FAILURE() << "nothing was refused";
        } catch (const RunTimeError& error) {
            EXPECT_EQ(error.Number(), 5);
        }
    }
    EXPECT_EQ(items.Count(), 3);
}

TEST_F(PointItemsTest, LeavesARemovedItemTheKeysThatItHas) {
    SetKeys(L"K", L"E");
    items.Remove(L"Second");
    SetKeys(L"L", L"F");
    EXPECT_EQ(Keys(), (Texts{L"L F", L"K E", L"L F"}));
    SetKeys(L"M", L"G");
    EXPECT_EQ(Keys(), (Texts{L"M G", L"K E", L"M G"}));
}

TEST_F(PointItemsTest, LeavesAllItemsTheKeysThatTheyHaveWhenItIsCleared) {
    SetKeys(L"K", L"E");
    items.Clear();
    EXPECT_EQ(items.Count(), 0);
    SetKeys(L"L", L"F");
    EXPECT_EQ(Keys(), (Texts{L"K E", L"K E", L"K E"}));
    EXPECT_EQ(items.GlobalKey(), L"L");
    EXPECT_EQ(items.ExtendedKey(), L"F");
}

TEST_F(PointItemsTest, GivesALaterItemNoKeyUntilTheNextOne) {
    SetKeys(L"K", L"E");
    points.push_back(FakePoint::Make());
    items.Add(L"Fourth", points.back());
    EXPECT_EQ(Keys(), (Texts{L"K E", L"K E", L"K E", L"- -"}));
    SetKeys(L"L", L"F");
    EXPECT_EQ(Keys(), (Texts{L"L F", L"L F", L"L F", L"L F"}));
}

TEST_F(PointItemsTest, GivesAnItemThatComesBackItsKeysAgain) {
    SetKeys(L"K", L"E");
    items.Remove(L"First");
    SetKeys(L"L", L"F");
    items.Add(L"First", points[0]);
    EXPECT_EQ(points[0]->Keys(), L"K E");
    SetKeys(L"M", L"G");
    EXPECT_EQ(Keys(), (Texts{L"M G", L"M G", L"M G"}));
    EXPECT_EQ(items.Find(L"3"), points[0]);
}

} // namespace

} // namespace tam
