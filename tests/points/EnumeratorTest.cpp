#include "tests/points/Points.h"

#include "com/LateBound.h"

#include <climits>
#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

using Order = std::vector<std::wstring>;
using Enumerator = com::Ref<IEnumVARIANT>;

const std::wstring kType = L"<SNVTTYPE>105</SNVTTYPE>";

/// For Each over the four collections and the compatible list.
class EnumeratorTest : public PointsTest {
  protected:
    void SetUp() override {
        PointsTest::SetUp();
        module = Loaded(Stream(L"<A><SNVTCOMPATIBILITYLIST>5,3,9</SNVTCOMPATIBILITYLIST></A><B/><C/>",
                               Named({L"X", L"Y"}, kType), Named({L"Gain", L"Mode"}, kType)));
    }
    template <class I>
    static Enumerator Of(const com::Ref<I>& collection, const CalledFrom& = {}) {
        auto enumerator = Object(collection, &I::get_NewEnum).template As<IEnumVARIANT>();
        EXPECT_TRUE(enumerator);
        return enumerator;
    }
    /// The next item's member, "(end)" after the last.
    static std::wstring Next(const Enumerator& enumerator, const wchar_t* member = L"Name",
                             const CalledFrom& = {}) {
        com::Variant item;
        ULONG fetched = 7;
        const HRESULT result = enumerator->Next(1, item.Put(), &fetched);
        if (result == S_FALSE) {
            EXPECT_EQ(fetched, 0u);
            EXPECT_EQ(item.Get().vt, VT_EMPTY);
            return L"(end)";
        }
        EXPECT_EQ(result, S_OK);
        EXPECT_EQ(fetched, 1u);
        EXPECT_EQ(item.Get().vt, VT_DISPATCH);
        return com::Text(com::GetMember(*item.Get().pdispVal, member).Get().bstrVal);
    }
    static Order Rest(const Enumerator& enumerator, const wchar_t* member = L"Name", const CalledFrom& = {}) {
        Order names;
        for (auto name = Next(enumerator, member); name != L"(end)"; name = Next(enumerator, member)) {
            names.push_back(name);
        }
        return names;
    }
};

TEST_F(EnumeratorTest, WalksEachCollectionInItsOrder) {
    EXPECT_EQ(Rest(Of(Inputs(module))), (Order{L"A", L"B", L"C"}));
    EXPECT_EQ(Rest(Of(Outputs(module))), (Order{L"X", L"Y"}));
    EXPECT_EQ(Rest(Of(Attributes(module))), (Order{L"Gain", L"Mode"}));
    EXPECT_EQ(Rest(Of(Attributes(module).As<_CDBAttributes>())), (Order{L"Gain", L"Mode"}));
    EXPECT_EQ(Rest(Of(Object(Input(module, L"A"), &IInput::get_SNVTCompatibles)), L"ID"),
              (Order{L"5", L"3", L"9"}));
}

TEST_F(EnumeratorTest, GivesTheSameObjectsAsItem) {
    const auto enumerator = Of(Outputs(module));
    com::Variant item;
    ASSERT_EQ(enumerator->Next(1, item.Put(), nullptr), S_OK);
    EXPECT_TRUE(com::SameObject(item.Get().pdispVal, Output(module, L"X").Get()));
    const auto list = Object(Input(module, L"A"), &IInput::get_SNVTCompatibles);
    com::Ref<ICompatibleSNVT> entry;
    list->get_Item(1, entry.Put());
    com::Variant same;
    ASSERT_EQ(Of(list)->Next(1, same.Put(), nullptr), S_OK);
    EXPECT_TRUE(com::SameObject(same.Get().pdispVal, entry.Get()));
}

TEST_F(EnumeratorTest, YieldsNothingForAnEmptyCollection) {
    const auto empty = NewModule();
    EXPECT_EQ(Next(Of(Inputs(empty))), L"(end)");
    EXPECT_EQ(Next(Of(Outputs(empty))), L"(end)");
    EXPECT_EQ(Next(Of(Attributes(empty))), L"(end)");
    EXPECT_EQ(Next(Of(Object(Input(module, L"B"), &IInput::get_SNVTCompatibles))), L"(end)");
}

TEST_F(EnumeratorTest, StartsAgainEachTime) {
    EXPECT_EQ(Rest(Of(Inputs(module))), (Order{L"A", L"B", L"C"}));
    EXPECT_EQ(Rest(Of(Inputs(module))), (Order{L"A", L"B", L"C"}));
}

TEST_F(EnumeratorTest, WalksNestedLoopsApart) {
    Order pairs;
    const auto outer = Of(Inputs(module));
    for (auto first = Next(outer); first != L"(end)"; first = Next(outer)) {
        const auto inner = Of(Inputs(module));
        for (auto second = Next(inner); second != L"(end)"; second = Next(inner)) {
            pairs.push_back(first + second);
        }
    }
    EXPECT_EQ(pairs, (Order{L"AA", L"AB", L"AC", L"BA", L"BB", L"BC", L"CA", L"CB", L"CC"}));
}

TEST_F(EnumeratorTest, StaysAtTheEnd) {
    const auto enumerator = Of(Outputs(module));
    Rest(enumerator);
    EXPECT_EQ(Next(enumerator), L"(end)");
    EXPECT_EQ(Next(enumerator), L"(end)");
    EXPECT_EQ(enumerator->Skip(1), S_FALSE);
    EXPECT_EQ(enumerator->Skip(0), S_OK);
}

TEST_F(EnumeratorTest, StartsAgainAfterReset) {
    const auto enumerator = Of(Inputs(module));
    EXPECT_EQ(Next(enumerator), L"A");
    EXPECT_EQ(enumerator->Reset(), S_OK);
    EXPECT_EQ(Rest(enumerator), (Order{L"A", L"B", L"C"}));
    EXPECT_EQ(enumerator->Reset(), S_OK);
    EXPECT_EQ(Rest(enumerator), (Order{L"A", L"B", L"C"}));
}

TEST_F(EnumeratorTest, SkipsItems) {
    const auto enumerator = Of(Inputs(module));
    EXPECT_EQ(enumerator->Skip(1), S_OK);
    EXPECT_EQ(Next(enumerator), L"B");
    EXPECT_EQ(enumerator->Skip(1), S_OK);
    EXPECT_EQ(Next(enumerator), L"(end)");
    enumerator->Reset();
    EXPECT_EQ(enumerator->Skip(4), S_FALSE);
    EXPECT_EQ(Next(enumerator), L"(end)");
    enumerator->Reset();
    EXPECT_EQ(enumerator->Skip(ULONG_MAX), S_FALSE);
}

TEST_F(EnumeratorTest, ClonesWithItsPlace) {
    const auto enumerator = Of(Inputs(module));
    EXPECT_EQ(Next(enumerator), L"A");
    Enumerator copy;
    ASSERT_EQ(enumerator->Clone(copy.Put()), S_OK);
    EXPECT_EQ(Next(enumerator), L"B");
    EXPECT_EQ(Rest(copy), (Order{L"B", L"C"}));
    EXPECT_EQ(Next(enumerator), L"C");
    copy->Reset();
    EXPECT_EQ(Next(copy), L"A");
    EXPECT_EQ(Next(enumerator), L"(end)");
}

TEST_F(EnumeratorTest, FetchesSeveralAtOnce) {
    const auto enumerator = Of(Inputs(module));
    VARIANT items[4] = {};
    ULONG fetched = 0;
    EXPECT_EQ(enumerator->Next(2, items, &fetched), S_OK);
    EXPECT_EQ(fetched, 2u);
    EXPECT_EQ(enumerator->Next(2, items + 2, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 1u);
    const wchar_t* names[] = {L"A", L"B", L"C"};
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(items[i].vt, VT_DISPATCH);
        EXPECT_EQ(com::Text(com::GetMember(*items[i].pdispVal, L"Name").Get().bstrVal), names[i]);
    }
    EXPECT_EQ(items[3].vt, VT_EMPTY);
    for (VARIANT& item : items) {
        VariantClear(&item);
    }
    EXPECT_EQ(enumerator->Next(0, items, &fetched), S_OK);
    EXPECT_EQ(fetched, 0u);
}

TEST_F(EnumeratorTest, KeepsWhatWasThereAtItsStart) {
    const auto list = Object(Input(module, L"A"), &IInput::get_SNVTCompatibles);
    const auto enumerator = Of(list);
    EXPECT_EQ(Next(enumerator, L"ID"), L"5");
    const com::Bstr removed(L"3");
    const com::Bstr added(L"1");
    list->Remove(removed.Get());
    list->Add(added.Get());
    EXPECT_EQ(Rest(enumerator, L"ID"), (Order{L"3", L"9"}));
    EXPECT_EQ(Rest(Of(list), L"ID"), (Order{L"5", L"9", L"1"}));
}

TEST_F(EnumeratorTest, OutlivesItsCollectionAndModule) {
    const auto enumerator = Of(Inputs(module));
    module.Reset();
    EXPECT_EQ(Rest(enumerator), (Order{L"A", L"B", L"C"}));
}

TEST_F(EnumeratorTest, IsReachedByItsNumber) {
    // For Each of a script asks for the member of this number.
    const auto script = Inputs(module).As<IDispatch>();
    DISPPARAMS none{};
    com::Variant answer;
    ASSERT_EQ(script->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT,
                             DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none, answer.Put(), nullptr, nullptr),
              S_OK);
    ASSERT_TRUE(answer.Get().vt == VT_UNKNOWN || answer.Get().vt == VT_DISPATCH);
    EXPECT_EQ(Rest(com::Query<IEnumVARIANT>(answer.Get().punkVal)), (Order{L"A", L"B", L"C"}));
}

} // namespace
