#include "tests/points/Points.h"

#include "com/LateBound.h"

#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

using Order = std::vector<std::wstring>;

class CDBInputsReorderTest : public PointsTest {
  protected:
    com::Ref<IInputs> inputs;

    void SetUp() override {
        PointsTest::SetUp();
        module = WithInputs(Named({L"A", L"B", L"C", L"D"}));
        inputs = Inputs(module);
    }
    void TearDown() override {
        inputs.Reset();
        PointsTest::TearDown();
    }
    Order Reordered(const std::wstring& children, const CalledFrom& = {}) {
        EXPECT_EQ(inputs.As<_CDBInputs>()->XmlLoad(Saved(L"<Inputs>" + children + L"</Inputs>").Get()), S_OK);
        return Names(inputs);
    }
    long IndexOf(const std::wstring& name) {
        return Long(Item(inputs, &IInputs::get_Item, name), &IInput::get_Index);
    }
    void ExpectReported(const std::wstring& description, const CalledFrom& = {}) {
        ExpectOnlyReport(Boxes(), description, L"O_Tam_id Class Module CDBInputs", L"Sub XmlLoad");
    }
};

TEST_F(CDBInputsReorderTest, RestoresTheSavedOrder) {
    EXPECT_EQ(Reordered(L"<D/><B/><A/><C/>"), (Order{L"D", L"B", L"A", L"C"}));
}

TEST_F(CDBInputsReorderTest, LeavesAnOrderThatFits) {
    EXPECT_EQ(Reordered(L"<A/><B/><C/><D/>"), (Order{L"A", L"B", L"C", L"D"}));
}

TEST_F(CDBInputsReorderTest, PutsTheNamedInputsInFront) {
    EXPECT_EQ(Reordered(L"<C/>"), (Order{L"C", L"A", L"B", L"D"}));
    EXPECT_EQ(Reordered(L"<D/><A/>"), (Order{L"D", L"A", L"C", L"B"}));
}

TEST_F(CDBInputsReorderTest, LeavesTheOrderForAnEmptyElement) {
    EXPECT_EQ(Reordered(L""), (Order{L"A", L"B", L"C", L"D"}));
}

TEST_F(CDBInputsReorderTest, FindsNamesWithoutRegardToCase) {
    EXPECT_EQ(Reordered(L"<d/><x:b xmlns:x='urn:x'/>"), (Order{L"D", L"B", L"A", L"C"}));
}

TEST_F(CDBInputsReorderTest, CountsNoCommentsAndNoText) {
    EXPECT_EQ(Reordered(L"<!--A-->text<B/><!--C--><A/>"), (Order{L"B", L"A", L"C", L"D"}));
}

TEST_F(CDBInputsReorderTest, MovesARepeatedInputOn) {
    EXPECT_EQ(Reordered(L"<A/><A/>"), (Order{L"B", L"A", L"C", L"D"}));
    EXPECT_EQ(Reordered(L"<A/><B/><C/><A/>"), (Order{L"B", L"C", L"D", L"A"})) << "to the last place";
}

TEST_F(CDBInputsReorderTest, DoesNothingBeyondTheLastPosition) {
    EXPECT_EQ(Reordered(L"<D/><C/><B/><A/><D/><C/>"), (Order{L"D", L"C", L"B", L"A"}));
}

TEST_F(CDBInputsReorderTest, ReportsAnUnknownNameAndStopsThere) {
    EXPECT_EQ(Reordered(L"<D/><Nowhere/><B/>"), (Order{L"D", L"A", L"B", L"C"}));
    ExpectReported(kInvalidCallText);
}

TEST_F(CDBInputsReorderTest, ReportsALoadWithoutElement) {
    EXPECT_EQ(inputs.As<_CDBInputs>()->XmlLoad(nullptr), S_OK);
    ExpectReported(kObjectNotSetText);
    EXPECT_EQ(Names(inputs), (Order{L"A", L"B", L"C", L"D"}));
}

TEST_F(CDBInputsReorderTest, LeavesTheIndexesUntilTheyAreRebuilt) {
    Reordered(L"<D/><C/><B/><A/>");
    EXPECT_EQ(IndexOf(L"A"), 0);
    EXPECT_EQ(IndexOf(L"D"), 3);
    EXPECT_EQ(inputs.As<_CDBInputs>()->RebuildIndexes(), S_OK);
    EXPECT_EQ(IndexOf(L"D"), 0);
    EXPECT_EQ(IndexOf(L"C"), 1);
    EXPECT_EQ(IndexOf(L"B"), 2);
    EXPECT_EQ(IndexOf(L"A"), 3);
}

TEST_F(CDBInputsReorderTest, RebuildsTheIndexesOfNoInputs) {
    EXPECT_EQ(Inputs(NewModule()).As<_CDBInputs>()->RebuildIndexes(), S_OK);
}

TEST_F(CDBInputsReorderTest, FindsInputsByNameAndByTheirNewPosition) {
    const auto b = Item(inputs, &IInputs::get_Item, L"B");
    Reordered(L"<D/><C/><B/><A/>");
    EXPECT_TRUE(com::SameObject(Item(inputs, &IInputs::get_Item, L"B").Get(), b.Get()));
    EXPECT_TRUE(com::SameObject(Item(inputs, &IInputs::get_Item, L"3").Get(), b.Get()));
    EXPECT_FALSE(com::SameObject(Item(inputs, &IInputs::get_Item, L"2").Get(), b.Get()));
}

TEST_F(CDBInputsReorderTest, RestoresNothingOfTheInputs) {
    Reordered(L"<D><SNVT_TYPE>8</SNVT_TYPE><Value>x</Value></D>");
    EXPECT_EQ(Interop(module, L"Inputs", L"D", L"SNVTType"), L"");
    EXPECT_EQ(Text(Item(inputs, &IInputs::get_Item, L"D"), &IInput::get_Value), L"");
}

TEST_F(CDBInputsReorderTest, KeepsTheKeys) {
    Put(module, &IAppObject::put_GlobalKey, L"K");
    Reordered(L"<D/>");
    EXPECT_EQ(Text(Item(inputs, &IInputs::get_Item, L"1"), &IInput::get_GlobalKey), L"K\\RIN\\D");
    Put(module, &IAppObject::put_GlobalKey, L"L");
    EXPECT_EQ(Text(Item(inputs, &IInputs::get_Item, L"1"), &IInput::get_GlobalKey), L"L\\RIN\\D");
}

TEST_F(CDBInputsReorderTest, ShowsTheNewOrderInTheDocuments) {
    Reordered(L"<D/><C/>");
    const Document document = Parse(L"<Host/>");
    EXPECT_EQ(module->XMLSaveForInteroperability(Root(document).Get(), document.Get()), S_OK);
    EXPECT_EQ(ChildNames(document, L"Host/O_Tam_id/Inputs"), (Order{L"D", L"C", L"A", L"B"}));
}

TEST_F(CDBInputsReorderTest, IsReachedByName) {
    const auto script = inputs.As<IDispatch>();
    const auto saved = Saved(L"<Inputs><B/></Inputs>");
    const com::Variant element(saved.Get());
    VARIANT arguments[] = {element.Get()};
    com::CallMember(*script.Get(), L"XmlLoad", arguments);
    com::CallMember(*script.Get(), L"RebuildIndexes", {});
    EXPECT_EQ(Names(inputs), (Order{L"B", L"A", L"C", L"D"}));
    EXPECT_EQ(IndexOf(L"B"), 0);
}

} // namespace
