#include "tests/internal/Channel.h"

#include <string>
#include <vector>

// Channels whose key begins like a number: the container's collections would
// take it for a position where no item has the name.

namespace internal_tests {

namespace {

class ChannelLookUpTest : public InternalTest {
  protected:
    void TearDown() override {
        contained.clear();
        object.Reset();
        InternalTest::TearDown();
    }
    /// A channel with this key in a container whose attributes, or outputs,
    /// have these names.
    void Attributes(const std::wstring& key, const std::vector<std::wstring>& names) {
        contained.clear();
        for (const std::wstring& name : names) {
            contained.push_back(NewAttribute(name, name));
        }
        container.Fill(L"container", {}, {}, contained);
        Create(key);
    }
    void Outputs(const std::wstring& key, const std::vector<std::wstring>& names) {
        contained.clear();
        for (const std::wstring& name : names) {
            contained.push_back(NewOutput(name, name));
            contained.back()->Set(L"Reference", name);
        }
        container.Fill(L"container", {}, contained, {});
        Create(key);
    }
    void Create(const std::wstring& key) {
        object = NewChannel(key, Device().Get());
        EXPECT_EQ(object->Create(), S_OK);
    }
    /// What a member left of the container's items, in order.
    std::vector<std::wstring> Left(const std::wstring& name) const {
        std::vector<std::wstring> values;
        for (const Double& item : contained) {
            values.push_back(item->Value(name));
        }
        return values;
    }

    Doubles contained;
    com::Ref<IAppObject> object;
};

using Texts = std::vector<std::wstring>;

TEST_F(ChannelLookUpTest, GivesAValueToNoAttributeAtThePositionOfItsKey) {
    for (const wchar_t* key : {L"3", L" 3", L"3rd", L"+3", L"&H3", L"2.6"}) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(key)));
        Attributes(key, {L"AI1_Gain", L"AI2_Gain", L"AI3_Gain"});
        EXPECT_EQ(support::Put(AttributeOf(object, L"Gain"), &IAttribute::put_Value, L"5"), S_OK);
        EXPECT_EQ(gain->Value(L"Value"), L"\"5\"");
        EXPECT_EQ(Left(L"Value"), (Texts{L"none", L"none", L"none"}));
    }
}

TEST_F(ChannelLookUpTest, GivesAValueToTheAttributeOfItsNameInAnyLetterCase) {
    Attributes(L"3", {L"AI1_Gain", L"3_GAIN", L"AI3_Gain"});
    EXPECT_EQ(support::Put(AttributeOf(object, L"Gain"), &IAttribute::put_Value, L"5"), S_OK);
    EXPECT_EQ(Left(L"Value"), (Texts{L"none", L"\"5\"", L"none"}));
}

TEST_F(ChannelLookUpTest, MirrorsWhatItInterceptsToNoAttributeAtThePositionOfItsKey) {
    Attributes(L"3", {L"AI1_Gain", L"AI2_Gain", L"AI3_Gain"});
    gain->Set(L"Value", L"5");
    VARIANT_BOOL handled = VARIANT_FALSE;
    const auto told = gain->As<IAttribute>();
    EXPECT_EQ(Interceptor()->InterceptAttributeValueChanged(told.Get(), &handled), S_OK);
    EXPECT_EQ(handled, VARIANT_TRUE);
    EXPECT_EQ(Interceptor()->InterceptTypeChanged(told.Get(), &handled), S_OK);
    EXPECT_EQ(handled, VARIANT_FALSE);
    EXPECT_EQ(Left(L"Value"), (Texts{L"none", L"none", L"none"}));
    EXPECT_EQ(Left(L"SetType"), (Texts{L"none", L"none", L"none"}));
}

TEST_F(ChannelLookUpTest, GivesADisplayFlagToNoOutputAtThePositionOfItsKey) {
    Outputs(L"2", {L"AI1_Out", L"AI2_Out"});
    EXPECT_EQ(OutputOf(object, L"Out")->put_IsDisplayable(VARIANT_FALSE), S_OK);
    EXPECT_EQ(out->Value(L"IsDisplayable"), L"False");
    EXPECT_EQ(Left(L"IsDisplayable"), (Texts{L"none", L"none"}));
    Outputs(L"2", {L"2_out", L"AI2_Out"});
    EXPECT_EQ(OutputOf(object, L"Out")->put_IsDisplayable(VARIANT_FALSE), S_OK);
    EXPECT_EQ(Left(L"IsDisplayable"), (Texts{L"False", L"none"}));
}

TEST_F(ChannelLookUpTest, HasNoReferenceOfAnOutputAtThePositionOfItsKey) {
    Outputs(L"2", {L"AI1_Out", L"AI2_Out"});
    com::Bstr reference;
    ExpectRaised(OutputOf(object, L"Out").As<IDisplayItem>()->get_Reference(reference.Put()), kObjectNotSet);
    EXPECT_EQ(reference.Get(), nullptr);
    Outputs(L"2", {L"2_Out", L"AI2_Out"});
    EXPECT_EQ(support::Text(OutputOf(object, L"Out").As<IDisplayItem>(), &IDisplayItem::get_Reference),
              L"2_Out");
}

TEST_F(ChannelLookUpTest, PassesTheErrorOfANameThatCannotBeReadBack) {
    constexpr auto kCode = static_cast<HRESULT>(0x8004AAAAu);
    Attributes(L"3", {L"AI1_Gain", L"AI2_Gain", L"AI3_Gain"});
    contained[2]->Fail(L"get Name", kCode, L"no name");
    ExpectPassedBack(support::Put(AttributeOf(object, L"Gain"), &IAttribute::put_Value, L"5"), kCode,
                     L"no name");
}

} // namespace

} // namespace internal_tests
