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

TEST_F(TamInternalAttributeTest, GivesItsValueToTheContainersAttributeToo) {
    EXPECT_EQ(Give(L"2.5"), S_OK);
    EXPECT_EQ(gain->Value(L"Value"), L"\"2.5\"");
    EXPECT_EQ(contained[1]->Value(L"Value"), L"\"2.5\"");
    EXPECT_EQ(contained[0]->Value(L"Value"), L"none");
    EXPECT_EQ(Said().front(), L"Gain.put Value(\"2.5\")");
    EXPECT_EQ(Said(L"container.Attributes"), Texts{L"container.Attributes.get Item(\"AI3_Gain\")"});
}

TEST_F(TamInternalAttributeTest, TakesWhateverTheContainersItemFinds) {
    Contain({L"ai3_GAIN"});
    EXPECT_EQ(Give(L"1"), S_OK);
    EXPECT_EQ(contained[0]->Value(L"Value"), L"\"1\"")
        << "the collection's own look-up decides the letter case";
}

TEST_F(TamInternalAttributeTest, ChangesItselfAloneWhereTheContainerHasNoSuchAttribute) {
    Contain({L"AI1_Gain"});
    EXPECT_EQ(Give(L"4"), S_OK);
    EXPECT_EQ(gain->Value(L"Value"), L"\"4\"");
    EXPECT_EQ(contained[0]->Value(L"Value"), L"none");
}

TEST_F(TamInternalAttributeTest, MirrorsAnEmptyValue) {
    EXPECT_EQ(attribute->put_Value(nullptr), S_OK);
    EXPECT_EQ(gain->Value(L"Value"), L"\"\"");
    EXPECT_EQ(contained[1]->Value(L"Value"), L"\"\"");
}

TEST_F(TamInternalAttributeTest, MirrorsWhatWasGivenWhateverTheWrappedAttributeMakesOfIt) {
    gain->On(L"put Value", [](const Invocation&) { return S_OK; });
    gain->On(L"get Value", [](const Invocation& call) { return call.Answer(com::Variant(L"9").Get()); });
    EXPECT_EQ(Give(L"17"), S_OK);
    EXPECT_EQ(contained[1]->Value(L"Value"), L"\"17\"");
    EXPECT_EQ(Said(), (Texts{L"Gain.put Value(\"17\")", L"Gain.get Name()", L"device.Container(object)",
                             L"container.get Attributes()", L"container.Attributes.get Item(\"AI3_Gain\")",
                             L"AI3_Gain.put Value(\"17\")"}));
}

TEST_F(TamInternalAttributeTest, MirrorsNeitherSetValueNorBackToDefaultNorTag) {
    EXPECT_EQ(attribute->SetValue(), S_OK);
    EXPECT_EQ(attribute->BackToDefault(), S_OK);
    EXPECT_EQ(support::Put(attribute, &IAttribute::put_Tag, L"t"), S_OK);
    EXPECT_EQ(Said(), (Texts{L"Gain.SetValue()", L"Gain.BackToDefault()", L"Gain.put Tag(\"t\")"}));
}

TEST_F(TamInternalAttributeTest, ReadsTheValueOfTheWrappedAttributeAlone) {
    gain->Set(L"Value", L"inner");
    contained[1]->Set(L"Value", L"container's");
    EXPECT_EQ(support::Text(attribute, &IAttribute::get_Value), L"inner");
    EXPECT_EQ(Said(), Texts{L"Gain.get Value()"});
}

TEST_F(TamInternalAttributeTest, LeavesTheContainerWhenTheWrappedAttributeRefusesTheValue) {
    gain->Fail(L"put Value", static_cast<HRESULT>(0x80041234u), L"too large");
    ExpectPassedBack(Give(L"9"), static_cast<HRESULT>(0x80041234u), L"too large");
    EXPECT_EQ(Said(), Texts{L"Gain.put Value(\"9\")"});
}

TEST_F(TamInternalAttributeTest, PassesErrorsOfTheContainerBackUnchanged) {
    constexpr auto kCode = static_cast<HRESULT>(0x800A0005u);
    const struct {
        Double at;
        const wchar_t* member;
    } steps[] = {{gain, L"get Name"},
                 {device, L"Container"},
                 {container.object, L"get Attributes"},
                 {container.attributes, L"get Item"},
                 {contained[1], L"put Value"}};
    for (const auto& step : steps) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(step.member)));
        step.at->Fail(step.member, kCode, L"the callee's words");
        ExpectPassedBack(Give(L"1"), kCode, L"the callee's words");
        step.at->FailNoMore();
    }
}

TEST_F(TamInternalAttributeTest, RaisesWithoutAContainerAfterTheWrappedAttributeHasTheValue) {
    device->On(L"Container", [](const Invocation& call) { return call.Answer(nullptr); });
    ExpectRaised(Give(L"5"), 91, kObjectNotSet);
    EXPECT_EQ(gain->Value(L"Value"), L"\"5\"");
    const auto alone = CreatedWithoutDevice();
    attribute = AttributeOf(alone, L"Gain");
    ExpectRaised(Give(L"6"), 91, kObjectNotSet);
    EXPECT_EQ(gain->Value(L"Value"), L"\"6\"");
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

TEST_F(TamInternalAttributeTest, MirrorsAValueGivenByName) {
    com::PutMember(*attribute.Get(), L"Value", com::Variant(L"3").Get());
    EXPECT_EQ(gain->Value(L"Value"), L"\"3\"");
    EXPECT_EQ(contained[1]->Value(L"Value"), L"\"3\"");
    const com::Variant parent = com::GetMember(*attribute.Get(), L"Parent");
    ASSERT_EQ(parent.Get().vt, VT_DISPATCH);
    EXPECT_TRUE(com::SameObject(parent.Get().pdispVal, object.Get()));
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
