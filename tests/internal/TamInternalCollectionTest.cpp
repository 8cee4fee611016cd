#include "com/LateBound.h"
#include "tests/internal/Channel.h"

#include <span>
#include <string>
#include <type_traits>
#include <vector>

// The three collections of a channel object differ in their items alone.

namespace internal_tests {

namespace {

using Names = std::vector<std::wstring>;

template <class Collection_, class Item_, Double HostObject::*Inner_>
struct Kind {
    using Collection = Collection_;
    using Item = Item_;
    static Double& Inner(HostObject& object) { return object.*Inner_; }
};
using Inputs = Kind<IInputs, IInput, &HostObject::inputs>;
using Outputs = Kind<IOutputs, IOutput, &HostObject::outputs>;
using Attributes = Kind<IAttributes, IAttribute, &HostObject::attributes>;

template <class K>
class TamInternalCollectionTest : public InternalTest {
  protected:
    using Collection = typename K::Collection;
    using Item = typename K::Item;

    void TearDown() override {
        collection.Reset();
        object.Reset();
        points.clear();
        InternalTest::TearDown();
    }
    /// A channel whose generic object has points with these names.
    void Wrap(const Names& names) {
        points.clear();
        for (const std::wstring& name : names) {
            points.push_back(Recorder::Make(name, {&__uuidof(Item)}));
            points.back()->Set(L"Name", name);
        }
        if constexpr (std::is_same_v<Collection, IInputs>) {
            generic.Fill(L"generic", points, {}, {});
        } else if constexpr (std::is_same_v<Collection, IOutputs>) {
            generic.Fill(L"generic", {}, points, {});
        } else {
            generic.Fill(L"generic", {}, {}, points);
        }
        object = Created();
        if constexpr (std::is_same_v<Collection, IInputs>) {
            collection = support::Object(object, &IAppObject::get_Inputs);
        } else if constexpr (std::is_same_v<Collection, IOutputs>) {
            collection = support::Object(object, &IAppObject::get_Outputs);
        } else {
            collection = support::Object(object, &IAppObject::get_Attributes);
        }
        Calls().clear();
    }
    com::Ref<Item> At(const std::wstring& index) {
        return support::Item(collection, &Collection::get_Item, index);
    }
    /// The name of the item at an index; "none" when there is none.
    std::wstring NameAt(const std::wstring& index) {
        const com::Ref<Item> item = At(index);
        return item ? support::Text(item, &Item::get_Name) : L"none";
    }
    com::Ref<IEnumVARIANT> Walk() {
        return support::Object(collection, &Collection::get_NewEnum).template As<IEnumVARIANT>();
    }

    Doubles points;
    com::Ref<IAppObject> object;
    com::Ref<Collection> collection;
};

using Kinds = testing::Types<Inputs, Outputs, Attributes>;
struct KindNames {
    template <class K>
    static std::string GetName(int index) {
        static const char* names[] = {"Inputs", "Outputs", "Attributes"};
        return names[index];
    }
};
TYPED_TEST_SUITE(TamInternalCollectionTest, Kinds, KindNames);

TYPED_TEST(TamInternalCollectionTest, FindsAnItemByNameInAnyLetterCase) {
    this->Wrap({L"Alpha", L"Beta"});
    EXPECT_EQ(this->NameAt(L"Beta"), L"Beta");
    EXPECT_EQ(this->NameAt(L"BETA"), L"Beta");
    EXPECT_EQ(this->NameAt(L"alpha"), L"Alpha");
}

TYPED_TEST(TamInternalCollectionTest, FindsAnItemByPositionFromOne) {
    this->Wrap({L"Alpha", L"Beta", L"Gamma"});
    EXPECT_EQ(this->NameAt(L"1"), L"Alpha");
    EXPECT_EQ(this->NameAt(L"2"), L"Beta");
    EXPECT_EQ(this->NameAt(L"3"), L"Gamma");
    EXPECT_EQ(this->NameAt(L" 3"), L"Gamma");
    EXPECT_EQ(this->NameAt(L"2nd"), L"Beta");
    EXPECT_EQ(this->NameAt(L"2.0"), L"Beta");
}

TYPED_TEST(TamInternalCollectionTest, PrefersANameToAPosition) {
    this->Wrap({L"Alpha", L"3", L"Gamma"});
    EXPECT_EQ(this->NameAt(L"3"), L"3");
    EXPECT_EQ(this->NameAt(L"2"), L"3");
    EXPECT_EQ(this->NameAt(L"3 "), L"Gamma") << "no name, so its number counts";
}

TYPED_TEST(TamInternalCollectionTest, GivesNothingWithoutAnError) {
    this->Wrap({L"Alpha", L"Beta"});
    for (const wchar_t* index :
         {L"", L"Delta", L"0", L"3", L"-1", L"99999999999", L"1e400", L"x2", L"Alph"}) {
        EXPECT_EQ(this->NameAt(index), L"none") << com::Bstr(index).Get();
    }
    com::Ref<typename TypeParam::Item> item;
    EXPECT_EQ(this->collection->get_Item(nullptr, item.Put()), S_OK);
    EXPECT_FALSE(item);
}

TYPED_TEST(TamInternalCollectionTest, GivesTheSameWrapperEachTime) {
    this->Wrap({L"Alpha", L"Beta"});
    const auto first = this->At(L"Beta");
    EXPECT_TRUE(com::SameObject(first.Get(), this->At(L"2").Get()));
    EXPECT_EQ(RecorderOf(first.Get()), nullptr);
    EXPECT_EQ(Said().size(), 0u) << "the generic object's collection is not asked";
}

TYPED_TEST(TamInternalCollectionTest, KeepsTheNamesOfItsSetUp) {
    this->Wrap({L"Alpha", L"Beta"});
    this->points[0]->Set(L"Name", L"Renamed");
    EXPECT_EQ(this->NameAt(L"Alpha"), L"Renamed");
    EXPECT_EQ(this->NameAt(L"Renamed"), L"none");
}

TYPED_TEST(TamInternalCollectionTest, CountsWhatTheGenericObjectCounts) {
    this->Wrap({L"Alpha", L"Beta"});
    EXPECT_EQ(support::Long(this->collection, &TypeParam::Collection::get_Count), 2);
    TypeParam::Inner(this->generic)->Set(L"Count", 17L);
    EXPECT_EQ(support::Long(this->collection, &TypeParam::Collection::get_Count), 17);
}

TYPED_TEST(TamInternalCollectionTest, IsEmptyWhereTheGenericObjectHasNoPoints) {
    this->Wrap({});
    EXPECT_EQ(support::Long(this->collection, &TypeParam::Collection::get_Count), 0);
    EXPECT_EQ(this->NameAt(L"1"), L"none");
    com::Variant item;
    EXPECT_EQ(this->Walk()->Next(1, item.Put(), nullptr), S_FALSE);
}

TYPED_TEST(TamInternalCollectionTest, WalksTheWrappersInTheGenericObjectsOrder) {
    this->Wrap({L"Gamma", L"Alpha", L"Beta"});
    const auto walk = this->Walk();
    ASSERT_TRUE(walk);
    for (const wchar_t* name : {L"Gamma", L"Alpha", L"Beta"}) {
        com::Variant item;
        ASSERT_EQ(walk->Next(1, item.Put(), nullptr), S_OK);
        ASSERT_EQ(item.Get().vt, VT_DISPATCH);
        EXPECT_TRUE(com::SameObject(item.Get().pdispVal, this->At(name).Get()));
    }
    com::Variant item;
    EXPECT_EQ(walk->Next(1, item.Put(), nullptr), S_FALSE);
}

TYPED_TEST(TamInternalCollectionTest, WantsAPlaceForItsResults) {
    this->Wrap({L"Alpha"});
    EXPECT_EQ(this->collection->get_Item(com::Bstr(L"1").Get(), nullptr), E_POINTER);
    EXPECT_EQ(this->collection->get_NewEnum(nullptr), E_POINTER);
}

TYPED_TEST(TamInternalCollectionTest, HasItemAsItsDefaultMemberAndNewEnumAtItsPlace) {
    this->Wrap({L"Alpha", L"Beta"});
    IDispatch& script = *this->collection.Get();
    const com::Variant index(L"beta");
    VARIANT argument = index.Get();
    DISPPARAMS one{&argument, nullptr, 1, 0};
    com::Variant found;
    EXPECT_EQ(script.Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT,
                            DISPATCH_PROPERTYGET | DISPATCH_METHOD, &one, found.Put(), nullptr, nullptr),
              S_OK);
    ASSERT_EQ(found.Get().vt, VT_DISPATCH);
    EXPECT_EQ(Print(com::GetMember(*found.Get().pdispVal, L"Name").Get()), L"\"Beta\"");

    DISPPARAMS none{};
    com::Variant walk;
    EXPECT_EQ(script.Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT,
                            DISPATCH_PROPERTYGET | DISPATCH_METHOD, &none, walk.Put(), nullptr, nullptr),
              S_OK);
    EXPECT_EQ(walk.Get().vt, VT_UNKNOWN);
}

TYPED_TEST(TamInternalCollectionTest, TakesANumberAsAnIndexByName) {
    this->Wrap({L"Alpha", L"Beta"});
    const com::Variant index(2L);
    VARIANT argument = index.Get();
    const com::Variant found = com::CallMember(*this->collection.Get(), L"Item", std::span(&argument, 1));
    ASSERT_EQ(found.Get().vt, VT_DISPATCH);
    EXPECT_EQ(Print(com::GetMember(*found.Get().pdispVal, L"Name").Get()), L"\"Beta\"");
}

} // namespace

} // namespace internal_tests
