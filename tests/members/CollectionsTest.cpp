#include "tests/members/Members.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <type_traits>

using namespace members;
using namespace support;

namespace {

// What the three collections have in common, by which one it is asked.

struct Inputs {
    static auto& Of(const tam::CDBAppObject& module) { return *module.Inputs().Get(); }
};
struct Outputs {
    static auto& Of(const tam::CDBAppObject& module) { return *module.Outputs().Get(); }
};
struct Attributes {
    static auto& Of(const tam::CDBAppObject& module) { return *module.Attributes().Get(); }
};

template <class Which>
class CollectionsTest : public MembersTest {
  protected:
    void SetUp() override {
        MembersTest::SetUp();
        UseCatalogue(L"<SNVT_8><NAME>count</NAME><TYPE>Struct</TYPE></SNVT_8>");
        const std::wstring points = L"<Low/><Mid/><High/>";
        module_ = Module(Stream(points, points,
                                L"<Low><SNVTTYPE>8</SNVTTYPE></Low><Mid><SNVTTYPE>8</SNVTTYPE></Mid>"
                                L"<High><SNVTTYPE>8</SNVTTYPE></High>"));
        const com::Bstr key(L"K");
        EXPECT_EQ(S_OK, module_->put_GlobalKey(key.Get()));
    }
    void TearDown() override {
        module_.Reset();
        MembersTest::TearDown();
    }

    auto& Points() const { return Which::Of(*module_.Get()); }
    /// The names in order, each followed by a blank.
    std::wstring Names() const {
        std::wstring names;
        for (const auto& point : Points().All()) {
            names += point->PointName() + L" ";
        }
        long count = 0;
        EXPECT_EQ(S_OK, Points().get_Count(&count));
        EXPECT_EQ(static_cast<std::size_t>(count), Points().All().Count());
        return names;
    }

  private:
    com::Ref<tam::CDBAppObject> module_;
};

using Kinds = ::testing::Types<Inputs, Outputs, Attributes>;
class KindNames {
  public:
    template <class T>
    static std::string GetName(int) {
        return std::is_same_v<T, Inputs> ? "Inputs" : std::is_same_v<T, Outputs> ? "Outputs" : "Attributes";
    }
};
TYPED_TEST_SUITE(CollectionsTest, Kinds, KindNames);

TYPED_TEST(CollectionsTest, GetsAnItemByNameElseByPosition) {
    EXPECT_EQ(L"Mid", this->Points().GetItem(L"Mid")->PointName());
    EXPECT_EQ(L"Mid", this->Points().GetItem(L"mID")->PointName());
    EXPECT_EQ(L"Low", this->Points().GetItem(L"1")->PointName());
    EXPECT_EQ(L"High", this->Points().GetItem(L"3")->PointName());
}

TYPED_TEST(CollectionsTest, GetsNothingForAnItemThatIsNotThere) {
    for (const wchar_t* const index : {L"", L"0", L"4", L"-1", L"Middle"}) {
        EXPECT_FALSE(this->Points().GetItem(index)) << com::Bstr(index).Get();
    }
}

TYPED_TEST(CollectionsTest, RemovesByName) {
    this->Points().RemoveItem(L"MID");
    EXPECT_EQ(L"Low High ", this->Names());
    EXPECT_FALSE(this->Points().GetItem(L"Mid"));
    EXPECT_EQ(L"High", this->Points().GetItem(L"2")->PointName());
}

TYPED_TEST(CollectionsTest, RemovesByPosition) {
    this->Points().RemoveItem(L"1");
    EXPECT_EQ(L"Mid High ", this->Names());
    this->Points().RemoveItem(L"2");
    EXPECT_EQ(L"Mid ", this->Names());
    this->Points().RemoveItem(L"1");
    EXPECT_EQ(L"", this->Names());
}

TYPED_TEST(CollectionsTest, RefusesToRemoveWhatIsNotThere) {
    for (const wchar_t* const index : {L"", L"0", L"4", L"Middle"}) {
        EXPECT_EQ(kInvalidCall, ErrorOf([&] { this->Points().RemoveItem(index); }));
    }
    EXPECT_EQ(L"Low Mid High ", this->Names());
}

TYPED_TEST(CollectionsTest, ARemovedPointKeepsItsKeys) {
    const auto point = this->Points().GetItem(L"Mid");
    com::Bstr before;
    ASSERT_EQ(S_OK, point->get_GlobalKey(before.Put()));
    EXPECT_TRUE(before.View().ends_with(L"\\Mid")) << before.Get();
    this->Points().RemoveItem(L"Mid");
    com::Bstr after;
    ASSERT_EQ(S_OK, point->get_GlobalKey(after.Put()));
    EXPECT_EQ(before.View(), after.View());
    EXPECT_EQ(L"Mid", point->PointName());
}

/// The attributes alone are ever emptied.
class CollectionsCDBAttributesTest : public CollectionsTest<Attributes> {};

TEST_F(CollectionsCDBAttributesTest, ClearLeavesNoItem) {
    const auto held = Points().GetItem(L"Low");
    Points().Clear();
    EXPECT_EQ(L"", Names());
    EXPECT_FALSE(Points().GetItem(L"Low"));
    EXPECT_FALSE(Points().GetItem(L"1"));
    EXPECT_EQ(L"Low", held->PointName());
    Points().Clear();
    EXPECT_EQ(L"", Names());
}

TEST_F(CollectionsCDBAttributesTest, ClearKeepsTheKeysOfTheCollection) {
    Points().Clear();
    com::Bstr key;
    ASSERT_EQ(S_OK, Points().get_GlobalKey(key.Put()));
    EXPECT_EQ(L"K\\ATT", key.View());
}

} // namespace
