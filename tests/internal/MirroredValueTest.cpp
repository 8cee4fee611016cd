#include "com/LateBound.h"
#include "tests/internal/Channel.h"

#include <string>
#include <vector>

// What the inputs and the attributes of a channel object share: a value that is
// written goes to the wrapped point and then to the point of the container that
// has the channel's key before its name.

namespace internal_tests {

namespace {

using Texts = std::vector<std::wstring>;

struct MirroredInput {
    using Point = IInput;
    static constexpr const char* kName = "Input";
    static constexpr const wchar_t* kPoint = L"In1";
    static constexpr const wchar_t* kMirror = L"AI3_In1";
    static constexpr const wchar_t* kOther = L"AI1_In1";
    static constexpr const wchar_t* kCollection = L"get Inputs";
    /// The inputs are walked, the attributes looked up.
    static constexpr bool kWalks = true;
    static constexpr const wchar_t* kSearch = L"get NewEnum";
    static com::Ref<IInput> Of(const com::Ref<IAppObject>& object) { return InputOf(object, kPoint); }
    static Double New(const std::wstring& name) { return NewInput(name, name); }
    static void Fill(HostObject& container, const Doubles& points) {
        container.Fill(L"container", points, {}, {});
    }
    static const Double& Searched(const HostObject& container) { return container.inputs; }
};

struct MirroredAttribute {
    using Point = IAttribute;
    static constexpr const char* kName = "Attribute";
    static constexpr const wchar_t* kPoint = L"Gain";
    static constexpr const wchar_t* kMirror = L"AI3_Gain";
    static constexpr const wchar_t* kOther = L"AI1_Gain";
    static constexpr const wchar_t* kCollection = L"get Attributes";
    static constexpr bool kWalks = false;
    static constexpr const wchar_t* kSearch = L"get Item";
    static com::Ref<IAttribute> Of(const com::Ref<IAppObject>& object) { return AttributeOf(object, kPoint); }
    static Double New(const std::wstring& name) { return NewAttribute(name, name); }
    static void Fill(HostObject& container, const Doubles& points) {
        container.Fill(L"container", {}, {}, points);
    }
    static const Double& Searched(const HostObject& container) { return container.attributes; }
};

struct MirroredName {
    template <class Kind>
    static std::string GetName(int) {
        return Kind::kName;
    }
};

template <class Kind>
class MirroredValueTest : public InternalTest {
  protected:
    void SetUp() override {
        InternalTest::SetUp();
        wrapped = std::wstring(Kind::kPoint) == L"In1" ? in1 : gain;
        Contain({Kind::kOther, Kind::kMirror});
        object = Created();
        point = Kind::Of(object);
        ASSERT_TRUE(point);
        Calls().clear();
    }
    void TearDown() override {
        point.Reset();
        object.Reset();
        contained.clear();
        wrapped.Reset();
        InternalTest::TearDown();
    }
    void Contain(const Texts& names) {
        contained.clear();
        for (const std::wstring& name : names) {
            contained.push_back(Kind::New(name));
        }
        Kind::Fill(container, contained);
    }
    HRESULT Give(const wchar_t* value) { return Put(point, &Kind::Point::put_Value, value); }
    /// A call of the wrapped point, in words.
    static std::wstring OfWrapped(const std::wstring& call) { return Kind::kPoint + (L"." + call); }

    Double wrapped;
    Doubles contained;
    com::Ref<IAppObject> object;
    com::Ref<typename Kind::Point> point;
};

using Kinds = testing::Types<MirroredInput, MirroredAttribute>;
TYPED_TEST_SUITE(MirroredValueTest, Kinds, MirroredName);

TYPED_TEST(MirroredValueTest, GoesToTheContainersPointToo) {
    EXPECT_EQ(this->Give(L"2.5"), S_OK);
    EXPECT_EQ(this->wrapped->Value(L"Value"), L"\"2.5\"");
    EXPECT_EQ(this->contained[1]->Value(L"Value"), L"\"2.5\"");
    EXPECT_EQ(this->contained[0]->Value(L"Value"), L"none");
    const Texts said = Said();
    ASSERT_GT(said.size(), 4u);
    EXPECT_EQ(
        Texts(said.begin(), said.begin() + 4),
        (Texts{this->OfWrapped(L"put Value(\"2.5\")"), this->OfWrapped(L"get Name()"),
               L"device.Container(object)", std::wstring(L"container.") + TypeParam::kCollection + L"()"}));
    EXPECT_EQ(said.back(), std::wstring(TypeParam::kMirror) + L".put Value(\"2.5\")");
}

TYPED_TEST(MirroredValueTest, StaysAloneWhereTheContainerHasNoSuchPoint) {
    this->Contain({TypeParam::kOther});
    EXPECT_EQ(this->Give(L"4"), S_OK);
    EXPECT_EQ(this->wrapped->Value(L"Value"), L"\"4\"");
    EXPECT_EQ(this->contained[0]->Value(L"Value"), L"none");
}

TYPED_TEST(MirroredValueTest, MirrorsAnEmptyValue) {
    EXPECT_EQ(this->point->put_Value(nullptr), S_OK);
    EXPECT_EQ(this->wrapped->Value(L"Value"), L"\"\"");
    EXPECT_EQ(this->contained[1]->Value(L"Value"), L"\"\"");
}

TYPED_TEST(MirroredValueTest, MirrorsWhatWasGivenWhateverTheWrappedPointMakesOfIt) {
    this->wrapped->On(L"put Value", [](const Invocation&) { return S_OK; });
    this->wrapped->On(L"get Value", [](const Invocation& call) { return call.Answer(std::wstring(L"9")); });
    EXPECT_EQ(this->Give(L"17"), S_OK);
    EXPECT_EQ(this->contained[1]->Value(L"Value"), L"\"17\"");
    EXPECT_EQ(Said(TypeParam::kPoint),
              (Texts{this->OfWrapped(L"put Value(\"17\")"), this->OfWrapped(L"get Name()")}));
}

TYPED_TEST(MirroredValueTest, IsReadFromTheWrappedPointAlone) {
    this->wrapped->Set(L"Value", L"inner");
    this->contained[1]->Set(L"Value", L"container's");
    EXPECT_EQ(Text(this->point, &TypeParam::Point::get_Value), L"inner");
    EXPECT_EQ(Said(), Texts{this->OfWrapped(L"get Value()")});
}

TYPED_TEST(MirroredValueTest, LeavesTheContainerWhenTheWrappedPointRefusesIt) {
    constexpr auto kCode = static_cast<HRESULT>(0x80041234u);
    this->wrapped->Fail(L"put Value", kCode, L"too large");
    ExpectPassedBack(this->Give(L"9"), kCode, L"too large");
    EXPECT_EQ(Said(), Texts{this->OfWrapped(L"put Value(\"9\")")});
}

TYPED_TEST(MirroredValueTest, PassesErrorsOfTheContainerBackUnchanged) {
    constexpr auto kCode = static_cast<HRESULT>(0x80041235u);
    struct Step {
        Double at;
        const wchar_t* member;
    };
    std::vector<Step> steps = {{this->wrapped, L"get Name"},
                               {this->device, L"Container"},
                               {this->container.object, TypeParam::kCollection},
                               {TypeParam::Searched(this->container), TypeParam::kSearch},
                               {this->contained[1], L"put Value"}};
    if (TypeParam::kWalks) {
        steps.push_back({this->contained[0], L"get Name"});
    }
    for (const Step& step : steps) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(step.member)));
        step.at->Fail(step.member, kCode, L"the callee's words");
        ExpectPassedBack(this->Give(L"1"), kCode, L"the callee's words");
        step.at->FailNoMore();
    }
}

TYPED_TEST(MirroredValueTest, RaisesWithoutAContainerAfterTheWrappedPointHasIt) {
    this->device->On(L"Container", [](const Invocation& call) { return call.Answer(nullptr); });
    ExpectRaised(this->Give(L"5"), kObjectNotSet);
    EXPECT_EQ(this->wrapped->Value(L"Value"), L"\"5\"");

    const auto alone = this->CreatedWithoutDevice();
    this->point = TypeParam::Of(alone);
    ExpectRaised(this->Give(L"6"), kObjectNotSet);
    EXPECT_EQ(this->wrapped->Value(L"Value"), L"\"6\"");
}

TYPED_TEST(MirroredValueTest, MirrorsAValueGivenByName) {
    com::PutMember(*this->point.Get(), L"Value", com::Variant(L"3").Get());
    EXPECT_EQ(this->wrapped->Value(L"Value"), L"\"3\"");
    EXPECT_EQ(this->contained[1]->Value(L"Value"), L"\"3\"");
    const com::Variant parent = com::GetMember(*this->point.Get(), L"Parent");
    ASSERT_EQ(parent.Get().vt, VT_DISPATCH);
    EXPECT_TRUE(com::SameObject(parent.Get().pdispVal, this->object.Get()));
}

} // namespace

} // namespace internal_tests
