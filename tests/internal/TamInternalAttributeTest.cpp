#include "com/LateBound.h"
#include "tests/internal/Channel.h"

#include <string>
#include <vector>

namespace internal_tests {

namespace {

using Texts = std::vector<std::wstring>;

class TamInternalAttributeTest : public InternalTest {
  protected:
    void SetUp() override {
        InternalTest::SetUp();
        Contain({L"AI1_Gain", L"AI3_Gain"});
        object = Created();
        attribute = AttributeOf(object, L"Gain");
        ASSERT_TRUE(attribute);
        Calls().clear();
    }
    void TearDown() override {
        attribute.Reset();
        object.Reset();
        contained.clear();
        InternalTest::TearDown();
    }
    void Contain(const Texts& names) {
        contained.clear();
        for (const std::wstring& name : names) {
            contained.push_back(NewAttribute(name, name));
        }
        container.Fill(L"container", {}, {}, contained);
    }
    HRESULT Give(const wchar_t* value) { return support::Put(attribute, &IAttribute::put_Value, value); }

    Doubles contained;
    com::Ref<IAppObject> object;
    com::Ref<IAttribute> attribute;
};

TEST_F(TamInternalAttributeTest, TakesWhateverTheContainersItemFinds) {
    Contain({L"ai3_GAIN"});
    EXPECT_EQ(Give(L"1"), S_OK);
    EXPECT_EQ(contained[0]->Value(L"Value"), L"\"1\"")
        << "the collection's own look-up decides the letter case";
}

TEST_F(TamInternalAttributeTest, MirrorsNeitherSetValueNorBackToDefaultNorTag) {
    EXPECT_EQ(attribute->SetValue(), S_OK);
    EXPECT_EQ(attribute->BackToDefault(), S_OK);
    EXPECT_EQ(support::Put(attribute, &IAttribute::put_Tag, L"t"), S_OK);
    EXPECT_EQ(Said(), (Texts{L"Gain.SetValue()", L"Gain.BackToDefault()", L"Gain.put Tag(\"t\")"}));
}

TEST_F(TamInternalAttributeTest, HasTheChannelObjectAsItsParent) {
    for (const wchar_t* name : {L"Gain", L"Channel", L"Setup"}) {
        const auto parent = support::Object(AttributeOf(object, name), &IAttribute::get_Parent);
        EXPECT_TRUE(com::SameObject(parent.Get(), object.Get()));
    }
    EXPECT_EQ(Said(), Texts());
    EXPECT_EQ(attribute->get_Parent(nullptr), E_POINTER);
}

TEST_F(TamInternalAttributeTest, OffersNoChangeOfItsType) {
    EXPECT_TRUE(gain->As<IMutableTypeAttribute>());
    EXPECT_FALSE(attribute.As<IMutableTypeAttribute>());
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
