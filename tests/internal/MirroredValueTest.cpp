#include "com/LateBound.h"
#include "tests/internal/Mirrored.h"

#include <string>
#include <utility>
#include <vector>

// What the inputs and the attributes of a channel object share.

namespace internal_tests {

namespace {

using Texts = std::vector<std::wstring>;

struct MirroredName {
    template <class Kind>
    static std::string GetName(int) {
        return Kind::kName;
    }
};

template <class Kind>
class MirroredValueTest : public MirroredTest<Kind> {};

using Kinds = testing::Types<MirroredInput, MirroredAttribute>;
TYPED_TEST_SUITE(MirroredValueTest, Kinds, MirroredName);

TYPED_TEST(MirroredValueTest, GoesToTheContainersPointToo) {
    EXPECT_EQ(this->Give(L"2.5"), S_OK);
    EXPECT_EQ(this->inner->Value(L"Value"), L"\"2.5\"");
    EXPECT_EQ(this->contained[1]->Value(L"Value"), L"\"2.5\"");
    EXPECT_EQ(this->contained[0]->Value(L"Value"), L"none");
    const Texts said = Said();
    ASSERT_GT(said.size(), 4u);
    EXPECT_EQ(
        Texts(said.begin(), said.begin() + 4),
        (Texts{this->OfInner(L"put Value(\"2.5\")"), this->OfInner(L"get Name()"),
               L"device.Container(object)", std::wstring(L"container.") + TypeParam::kCollection + L"()"}));
    EXPECT_EQ(said.back(), std::wstring(TypeParam::kMirror) + L".put Value(\"2.5\")");
}

TYPED_TEST(MirroredValueTest, StaysAloneWhereTheContainerHasNoSuchPoint) {
    this->Contain({TypeParam::kOther});
    EXPECT_EQ(this->Give(L"4"), S_OK);
    EXPECT_EQ(this->inner->Value(L"Value"), L"\"4\"");
    EXPECT_EQ(this->contained[0]->Value(L"Value"), L"none");
}

TYPED_TEST(MirroredValueTest, MirrorsAnEmptyValue) {
    EXPECT_EQ(this->point->put_Value(nullptr), S_OK);
    EXPECT_EQ(this->inner->Value(L"Value"), L"\"\"");
    EXPECT_EQ(this->contained[1]->Value(L"Value"), L"\"\"");
}

TYPED_TEST(MirroredValueTest, MirrorsWhatWasGivenWhateverTheInnerPointMakesOfIt) {
    this->inner->On(L"put Value", [](const Invocation&) { return S_OK; });
    this->inner->On(L"get Value", [](const Invocation& call) { return call.Answer(std::wstring(L"9")); });
    EXPECT_EQ(this->Give(L"17"), S_OK);
    EXPECT_EQ(this->contained[1]->Value(L"Value"), L"\"17\"");
    EXPECT_EQ(Said(TypeParam::kPoint),
              (Texts{this->OfInner(L"put Value(\"17\")"), this->OfInner(L"get Name()")}));
}

TYPED_TEST(MirroredValueTest, IsReadFromTheInnerPointAlone) {
    this->inner->Set(L"Value", L"inner");
    this->contained[1]->Set(L"Value", L"container's");
    EXPECT_EQ(Text(this->point, &TypeParam::Point::get_Value), L"inner");
    EXPECT_EQ(Said(), Texts{this->OfInner(L"get Value()")});
}

TYPED_TEST(MirroredValueTest, BearsAnInnerPointThatDropsTheLastReference) {
    this->object.Reset();
    BSTR value = SysAllocString(L"1");
    this->inner->On(L"put Value", [&](const Invocation&) {
        this->point.Reset();
        wmemset(value, L'9', 1); // nor does the caller's text outlive it
        SysFreeString(std::exchange(value, nullptr));
        return S_OK;
    });
    typename TypeParam::Point* const asked = this->point.Get();
    EXPECT_EQ(asked->put_Value(value), S_OK);
    EXPECT_FALSE(this->point);
    EXPECT_EQ(this->contained[1]->Value(L"Value"), L"\"1\"");
}

TYPED_TEST(MirroredValueTest, LeavesTheContainerWhenTheInnerPointRefusesIt) {
    constexpr auto kCode = static_cast<HRESULT>(0x80041234u);
    this->inner->Fail(L"put Value", kCode, L"too large");
    ExpectPassedBack(this->Give(L"9"), kCode, L"too large");
    EXPECT_EQ(Said(), Texts{this->OfInner(L"put Value(\"9\")")});
}

TYPED_TEST(MirroredValueTest, PassesErrorsOfTheContainerBackUnchanged) {
    constexpr auto kCode = static_cast<HRESULT>(0x80041235u);
    struct Step {
        Double at;
        const wchar_t* member;
    };
    std::vector<Step> steps = {{this->inner, L"get Name"},
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

TYPED_TEST(MirroredValueTest, RaisesWithoutAContainerAfterTheInnerPointHasIt) {
    this->device->On(L"Container", [](const Invocation& call) { return call.Answer(nullptr); });
    ExpectRaised(this->Give(L"5"), kObjectNotSet);
    EXPECT_EQ(this->inner->Value(L"Value"), L"\"5\"");

    const auto alone = this->CreatedWithoutDevice();
    this->point = TypeParam::Of(alone);
    ExpectRaised(this->Give(L"6"), kObjectNotSet);
    EXPECT_EQ(this->inner->Value(L"Value"), L"\"6\"");
}

TYPED_TEST(MirroredValueTest, MirrorsAValueGivenByName) {
    com::PutMember(*this->point.Get(), L"Value", com::Variant(L"3").Get());
    EXPECT_EQ(this->inner->Value(L"Value"), L"\"3\"");
    EXPECT_EQ(this->contained[1]->Value(L"Value"), L"\"3\"");
    const com::Variant parent = com::GetMember(*this->point.Get(), L"Parent");
    ASSERT_EQ(parent.Get().vt, VT_DISPATCH);
    EXPECT_TRUE(com::SameObject(parent.Get().pdispVal, this->object.Get()));
}

} // namespace

} // namespace internal_tests
