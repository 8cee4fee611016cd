#include "tests/internal/Mirrored.h"

#include <string>
#include <vector>

namespace internal_tests {

namespace {

using Texts = std::vector<std::wstring>;

class TamInternalAttributeTest : public MirroredTest<MirroredAttribute> {};

TEST_F(TamInternalAttributeTest, TakesWhateverTheContainersItemFinds) {
    Contain({L"ai3_GAIN"});
    EXPECT_EQ(Give(L"1"), S_OK);
    EXPECT_EQ(contained[0]->Value(L"Value"), L"\"1\"")
        << "the collection's own look-up decides the letter case";
}

TEST_F(TamInternalAttributeTest, MirrorsNeitherSetValueNorBackToDefaultNorTag) {
    EXPECT_EQ(point->SetValue(), S_OK);
    EXPECT_EQ(point->BackToDefault(), S_OK);
    EXPECT_EQ(support::Put(point, &IAttribute::put_Tag, L"t"), S_OK);
    EXPECT_EQ(Said(), (Texts{L"Gain.SetValue()", L"Gain.BackToDefault()", L"Gain.put Tag(\"t\")"}));
}

TEST_F(TamInternalAttributeTest, HasTheChannelObjectAsItsParent) {
    for (const wchar_t* name : {L"Gain", L"Channel", L"Setup"}) {
        const auto parent = support::Object(AttributeOf(object, name), &IAttribute::get_Parent);
        EXPECT_TRUE(com::SameObject(parent.Get(), object.Get()));
    }
    EXPECT_EQ(Said(), Texts());
    EXPECT_EQ(point->get_Parent(nullptr), E_POINTER);
}

TEST_F(TamInternalAttributeTest, OffersNoChangeOfItsType) {
    EXPECT_TRUE(gain->As<IMutableTypeAttribute>());
    EXPECT_FALSE(point.As<IMutableTypeAttribute>());
}

TEST_F(TamInternalAttributeTest, UsesTheKeyOfTheInterceptorsMirroring) {
    EXPECT_EQ(Give(L"1"), S_OK);
    VARIANT_BOOL handled = VARIANT_FALSE;
    EXPECT_EQ(Interceptor()->InterceptAttributeValueChanged(gain->As<IAttribute>().Get(), &handled), S_OK);
    EXPECT_EQ(Said(L"container.Attributes"), (Texts{L"container.Attributes.get Item(\"AI3_Gain\")",
                                                    L"container.Attributes.get Item(\"AI3_Gain\")"}));
}

} // namespace

} // namespace internal_tests
