#include "tests/points/Points.h"
#include "tests/support/HostWindows.h"

#include "com/LateBound.h"

#include <string>
#include <vector>

// What the inputs, the outputs and the attributes of a module have in common as
// collections.

using namespace support;
using namespace points;

namespace {

struct InputKind {
    using Collection = IInputs;
    using Point = IInput;
    static constexpr const char* kName = "Inputs";
    static constexpr const wchar_t* kSuffix = L"\\RIN";
    static constexpr auto kCollection = &IAppObject::get_Inputs;
    static std::wstring StreamOf(const std::wstring& section) { return Stream(section); }
};

struct OutputKind {
    using Collection = IOutputs;
    using Point = IOutput;
    static constexpr const char* kName = "Outputs";
    static constexpr const wchar_t* kSuffix = L"\\ROU";
    static constexpr auto kCollection = &IAppObject::get_Outputs;
    static std::wstring StreamOf(const std::wstring& section) { return Stream({}, section); }
};

struct AttributeKind {
    using Collection = IAttributes;
    using Point = IAttribute;
    static constexpr const char* kName = "Attributes";
    static constexpr const wchar_t* kSuffix = L"\\ATT";
    static constexpr auto kCollection = &IAppObject::get_Attributes;
    static std::wstring StreamOf(const std::wstring& section) { return Stream({}, {}, section); }
};

struct KindName {
    template <class Kind>
    static std::string GetName(int) {
        return Kind::kName;
    }
};

template <class Kind>
class PointCollectionTest : public PointsTest {
  protected:
    using Collection = com::Ref<typename Kind::Collection>;
    using Point = com::Ref<typename Kind::Point>;
    using Texts = std::vector<std::wstring>;

    static std::wstring StreamOf(std::initializer_list<const wchar_t*> names) {
        return Kind::StreamOf(Named(names, L"<SNVTTYPE>105</SNVTTYPE>"));
    }
    Collection Of() { return Object(module, Kind::kCollection); }
    Collection Three() {
        module = Loaded(StreamOf({L"First", L"Level", L"Set"}));
        return Of();
    }
    static Point At(const Collection& collection, const std::wstring& index) {
        return Item(collection, &Kind::Collection::get_Item, index);
    }
    Point At(const std::wstring& index) { return At(Of(), index); }
    static std::wstring Found(const Collection& collection, const std::wstring& index) {
        const Point point = At(collection, index);
        return point ? Text(point, &Kind::Point::get_Name) : L"(none)";
    }
    void PutKeys(const std::wstring& global, const std::wstring& extended) {
        EXPECT_EQ(Put(module, &IAppObject::put_GlobalKey, global), S_OK);
        EXPECT_EQ(Put(module, &IAppObject::put_ExtendedKey, extended), S_OK);
    }
    /// A collection has a key of the module with its own part after, its points
    /// that with their name after; an empty text stands for no key at all.
    template <class I>
    static void ExpectKeys(const com::Ref<I>& object, const std::wstring& global,
                           const std::wstring& extended, const std::wstring& name = {},
                           const CalledFrom& = {}) {
        const auto whole = [&](const std::wstring& key) {
            return key == L"-" ? std::wstring() : key + Kind::kSuffix + (name.empty() ? L"" : L"\\" + name);
        };
        EXPECT_EQ(Text(object, &I::get_GlobalKey), whole(global));
        EXPECT_EQ(Text(object, &I::get_ExtendedKey), whole(extended));
    }
};

using Kinds = testing::Types<InputKind, OutputKind, AttributeKind>;
TYPED_TEST_SUITE(PointCollectionTest, Kinds, KindName);

TYPED_TEST(PointCollectionTest, StartsEmpty) {
    this->module = this->NewModule();
    const auto collection = this->Of();
    ASSERT_TRUE(collection);
    EXPECT_EQ(Long(collection, &TypeParam::Collection::get_Count), 0);
    this->ExpectKeys(collection, L"-", L"-");
    for (const wchar_t* index : {L"", L"0", L"1", L"First", L"-1"}) {
        EXPECT_EQ(this->Found(collection, index), L"(none)");
    }
}

TYPED_TEST(PointCollectionTest, KeepsTheDefinitionsOrder) {
    const auto collection = this->Three();
    EXPECT_EQ(Long(collection, &TypeParam::Collection::get_Count), 3);
    EXPECT_EQ(Names(collection), (std::vector<std::wstring>{L"First", L"Level", L"Set"}));
}

TYPED_TEST(PointCollectionTest, FindsByNameWithoutRegardToCase) {
    const auto collection = this->Three();
    EXPECT_EQ(this->Found(collection, L"Level"), L"Level");
    EXPECT_EQ(this->Found(collection, L"LEVEL"), L"Level");
    EXPECT_EQ(this->Found(collection, L"lEVEL"), L"Level");
    for (const wchar_t* index : {L"absent", L"Lev", L" Level"}) {
        EXPECT_EQ(this->Found(collection, index), L"(none)") << index;
    }
}

TYPED_TEST(PointCollectionTest, FindsByPosition) {
    const auto collection = this->Three();
    EXPECT_EQ(this->Found(collection, L"1"), L"First");
    EXPECT_EQ(this->Found(collection, L"2"), L"Level");
    EXPECT_EQ(this->Found(collection, L"3"), L"Set");
    for (const wchar_t* index : {L"0", L"4", L"-1", L"", L"x3", L"99999999999", L"1e999"}) {
        EXPECT_EQ(this->Found(collection, index), L"(none)") << index;
    }
}

TYPED_TEST(PointCollectionTest, FindsByTheNumberThatAnIndexBeginsWith) {
    const auto collection = this->Three();
    // A comma is no decimal mark here, whatever the user's locale.
    for (const wchar_t* index : {L"2nd", L" 2", L"+2", L"2.2", L"2,9"}) {
        EXPECT_EQ(this->Found(collection, index), L"Level") << index;
    }
}

TYPED_TEST(PointCollectionTest, AnswersTheSameObjectEachTime) {
    const auto collection = this->Three();
    EXPECT_TRUE(com::SameObject(this->At(L"Level").Get(), this->At(L"2").Get()));
    EXPECT_TRUE(com::SameObject(this->At(L"Set").Get(), this->At(L"3").Get()));
    EXPECT_TRUE(com::SameObject(collection.Get(), this->Of().Get()));
}

TYPED_TEST(PointCollectionTest, EmptiesTheAnswerWhenNothingIsFound) {
    const auto collection = this->Three();
    const com::Bstr index(L"absent");
    auto* left = reinterpret_cast<typename TypeParam::Point*>(this);
    EXPECT_EQ(collection->get_Item(index.Get(), &left), S_OK);
    EXPECT_EQ(left, nullptr);
}

TYPED_TEST(PointCollectionTest, TakesANullIndexForAnEmptyText) {
    const auto collection = this->Three();
    com::Ref<typename TypeParam::Point> none;
    EXPECT_EQ(collection->get_Item(nullptr, none.Put()), S_OK);
    EXPECT_FALSE(none);
}

TYPED_TEST(PointCollectionTest, FormsTheKeysOfItsPoints) {
    const auto collection = this->Three();
    this->PutKeys(L"K", L"E");
    this->ExpectKeys(collection, L"K", L"E");
    for (const wchar_t* name : {L"First", L"Level", L"Set"}) {
        this->ExpectKeys(this->At(name), L"K", L"E", name);
    }
}

TYPED_TEST(PointCollectionTest, KeepsTheTwoKeysApart) {
    this->Three();
    Put(this->module, &IAppObject::put_ExtendedKey, L"E");
    this->ExpectKeys(this->At(L"Set"), L"-", L"E", L"Set");
    Put(this->module, &IAppObject::put_GlobalKey, L"K");
    this->ExpectKeys(this->At(L"Set"), L"K", L"E", L"Set");
}

TYPED_TEST(PointCollectionTest, RenewsTheKeysAtEachWrite) {
    const auto collection = this->Three();
    for (const wchar_t* key : {L"Old", L"", L"New"}) {
        this->PutKeys(key, key);
        this->ExpectKeys(collection, key, key);
        this->ExpectKeys(this->At(L"Set"), key, key, L"Set");
    }
}

TYPED_TEST(PointCollectionTest, LeavesWhatAStreamAddsAfterAKeyWithoutOneUntilTheNextWrite) {
    this->Three();
    // The first turn of the host comes before the first point.
    const Listener writing([&] { this->PutKeys(L"K", L"E"); });
    writing.Post();
    EXPECT_EQ(Load(this->module, this->StreamOf({L"A", L"B"})), S_OK);
    for (const wchar_t* name : {L"A", L"B"}) {
        this->ExpectKeys(this->At(name), L"-", L"-", name);
    }
    this->ExpectKeys(this->Of(), L"K", L"E");
    this->PutKeys(L"L", L"F");
    for (const wchar_t* name : {L"A", L"B"}) {
        this->ExpectKeys(this->At(name), L"L", L"F", name);
    }
}

TYPED_TEST(PointCollectionTest, RefusesADuplicateName) {
    for (const wchar_t* again : {L"First", L"FIRST"}) {
        this->module = this->NewModule();
        EXPECT_EQ(Load(this->module, this->StreamOf({L"First", again, L"Behind"})), kDuplicateKey);
        EXPECT_EQ(LastError().description, kDuplicateKeyText);
        EXPECT_EQ(Names(this->Of()), std::vector<std::wstring>{L"First"});
    }
}

TYPED_TEST(PointCollectionTest, IsReachedByName) {
    const auto script = this->Three().template As<IDispatch>();
    EXPECT_EQ(com::GetMember(*script.Get(), L"Count").Get().lVal, 3);
    EXPECT_EQ(com::Text(com::GetMember(*script.Get(), L"GlobalKey").Get().bstrVal), L"");
    // A number is taken for its text.
    for (const com::Variant& index : {com::Variant(L"level"), com::Variant(2L)}) {
        VARIANT argument = index.Get();
        DISPPARAMS arguments{&argument, nullptr, 1, 0};
        com::Variant item;
        EXPECT_EQ(script->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                 &arguments, item.Put(), nullptr, nullptr),
                  S_OK);
        ASSERT_EQ(item.Get().vt, VT_DISPATCH);
        EXPECT_EQ(com::Text(com::GetMember(*item.Get().pdispVal, L"Name").Get().bstrVal), L"Level");
    }
}

/// A stream makes inputs and outputs new; the attributes it adds to.
template <class Kind>
class PointCollectionReplacedTest : public PointCollectionTest<Kind> {};
using ReplacedKinds = testing::Types<InputKind, OutputKind>;
TYPED_TEST_SUITE(PointCollectionReplacedTest, ReplacedKinds, KindName);

TYPED_TEST(PointCollectionReplacedTest, PassesALaterKeyToTheCollectionThatAStreamBroughtAlone) {
    const auto before = this->Three();
    this->PutKeys(L"K", L"E");
    EXPECT_EQ(Load(this->module, this->StreamOf({L"Only"})), S_OK);
    this->PutKeys(L"L", L"F");
    this->ExpectKeys(this->At(L"Only"), L"L", L"F", L"Only");
    this->ExpectKeys(before, L"K", L"E");
    this->ExpectKeys(this->At(before, L"Set"), L"K", L"E", L"Set");
}

TYPED_TEST(PointCollectionReplacedTest, IsReplacedByAnEmptyOneWhenAStreamIsLoaded) {
    const auto before = this->Three();
    this->PutKeys(L"K", L"E");
    EXPECT_EQ(Load(this->module, this->StreamOf({L"Only"})), S_OK);
    const auto after = this->Of();
    EXPECT_FALSE(com::SameObject(before.Get(), after.Get()));
    EXPECT_EQ(Names(after), std::vector<std::wstring>{L"Only"});
    this->ExpectKeys(after, L"-", L"-");
    // What the host still holds is as it was.
    EXPECT_EQ(Names(before), (std::vector<std::wstring>{L"First", L"Level", L"Set"}));
    this->ExpectKeys(this->At(before, L"Set"), L"K", L"E", L"Set");
}

TYPED_TEST(PointCollectionReplacedTest, KeepsNothingOfACallBack) {
    const auto collection = this->Three();
    const auto target = Held::Make();
    EXPECT_EQ(collection->putref_CallBack(target.Get()), S_OK);
    EXPECT_EQ(target->Others(), 0u);
    EXPECT_EQ(collection->putref_CallBack(nullptr), S_OK);
}

} // namespace
