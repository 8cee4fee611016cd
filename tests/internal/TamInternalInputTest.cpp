#include "com/LateBound.h"
#include "tests/internal/Mirrored.h"

#include <string>
#include <vector>

namespace internal_tests {

namespace {

using Texts = std::vector<std::wstring>;

class TamInternalInputTest : public MirroredTest<MirroredInput> {
  protected:
    void SetUp() override {
        MirroredTest::SetUp();
        Contain({L"AI1_In1", L"AI3_In1", L"AI3_In2"});
        Calls().clear();
    }
};

TEST_F(TamInternalInputTest, WalksTheContainersInputsInOrderUpToTheMatch) {
    EXPECT_EQ(Give(L"17"), S_OK);
    EXPECT_EQ(Said(L"container.Inputs"), Texts{L"container.Inputs.get NewEnum()"}) << "no look-up by key";
    EXPECT_EQ(Said(L"AI1_In1"), Texts{L"AI1_In1.get Name()"});
    EXPECT_EQ(Said(L"AI3_In1"), (Texts{L"AI3_In1.get Name()", L"AI3_In1.put Value(\"17\")"}));
    EXPECT_EQ(Said(L"AI3_In2"), Texts());
}

TEST_F(TamInternalInputTest, GivesTheValueToTheFirstOfTwoMatchesAlone) {
    Contain({L"AI3_In1", L"AI3_In1"});
    EXPECT_EQ(Give(L"5"), S_OK);
    EXPECT_EQ(contained[0]->Value(L"Value"), L"\"5\"");
    EXPECT_EQ(contained[1]->Value(L"Value"), L"none");
}

TEST_F(TamInternalInputTest, MatchesTheExactLetterCaseAlone) {
    Contain({L"ai3_in1", L"AI3_IN1", L"Ai3_In1"});
    EXPECT_EQ(Give(L"5"), S_OK);
    EXPECT_EQ(in1->Value(L"Value"), L"\"5\"");
    for (const Double& one : contained) {
        EXPECT_EQ(one->Value(L"Value"), L"none");
    }
}

TEST_F(TamInternalInputTest, TakesAMissingContainerInputForNoError) {
    Contain({});
    EXPECT_EQ(Give(L"5"), S_OK);
    EXPECT_EQ(in1->Value(L"Value"), L"\"5\"");
    Contain({L"In1", L"AI3_In1x", L"AI3In1", L"AI3_"});
    EXPECT_EQ(Give(L"6"), S_OK);
    for (const Double& one : contained) {
        EXPECT_EQ(one->Value(L"Value"), L"none");
    }
}

TEST_F(TamInternalInputTest, IsAlwaysExtended) {
    in1->Set(L"Extended", false);
    EXPECT_TRUE(support::Flag(point, &IInput::get_Extended));
    EXPECT_TRUE(support::Flag(InputOf(object, L"In2"), &IInput::get_Extended));
    EXPECT_EQ(Print(com::GetMember(*point.Get(), L"Extended").Get()), L"True");
    EXPECT_EQ(Said(L"In1"), Texts());
    EXPECT_EQ(point->get_Extended(nullptr), E_POINTER);
}

TEST_F(TamInternalInputTest, HasTheChannelObjectAsItsParent) {
    const auto parent = support::Object(point, &IInput::get_Parent);
    EXPECT_TRUE(com::SameObject(parent.Get(), object.Get()));
    EXPECT_EQ(Said(), Texts());
    EXPECT_EQ(point->get_Parent(nullptr), E_POINTER);
}

TEST_F(TamInternalInputTest, NeedsAnInnerInputThatCanBeWiredForThatSideAlone) {
    in1->HideFace(__uuidof(ISubItemConnable));
    const auto connable = point.As<ISubItemConnable>();
    ASSERT_TRUE(connable);
    ExpectRaised(connable->put_IsConnected(VARIANT_TRUE), kTypeMismatch);
    com::Bstr name(L"before");
    BSTR place = name.Detach();
    BSTR left = place;
    ExpectRaised(connable->get_Name(&left), kTypeMismatch);
    EXPECT_EQ(left, nullptr) << "a failing member leaves nothing in the place for its result";
    SysFreeString(place);
    EXPECT_EQ(support::Text(point, &IInput::get_Name), L"In1");
}

TEST_F(TamInternalInputTest, WritesByNameWhatAnInputReadsAndOnlyItsWiringSideWrites) {
    VARIANT yes{};
    yes.vt = VT_BOOL;
    yes.boolVal = VARIANT_TRUE;
    com::PutMember(*point.Get(), L"IsConnected", yes);
    EXPECT_EQ(Said(), Texts{L"In1.put IsConnected(True)"});
    EXPECT_EQ(Print(com::GetMember(*point.Get(), L"IsConnected").Get()), L"True");
}

} // namespace

} // namespace internal_tests
