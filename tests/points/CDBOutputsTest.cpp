#include "tests/points/Points.h"

#include "com/LateBound.h"

#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

class CDBOutputsTest : public PointsTest {
  protected:
    com::Ref<IOutputs> Three() {
        module = WithOutputs(Named({L"Out1", L"Valve", L"Fan"}, L"<SNVTTYPE>105</SNVTTYPE>"));
        return Outputs(module);
    }
    bool Displayable(const std::wstring& name) {
        return Flag(Output(module, name), &IOutput::get_IsDisplayable);
    }
    void LoadSaved(const com::Ref<IOutputs>& outputs, const std::wstring& content, const CalledFrom& = {}) {
        EXPECT_EQ(outputs.As<_CDBOutputs>()->XmlLoad(Saved(L"<Outputs>" + content + L"</Outputs>").Get()),
                  S_OK);
    }
};

TEST_F(CDBOutputsTest, KeepsTheDefinitionsOrderAndNumbersFromZero) {
    const auto outputs = Three();
    EXPECT_EQ(Long(outputs, &IOutputs::get_Count), 3);
    EXPECT_EQ(Names(outputs), (std::vector<std::wstring>{L"Out1", L"Valve", L"Fan"}));
    const wchar_t* references[] = {L"4000", L"4001", L"4002"};
    for (long i = 0; i < 3; ++i) {
        const auto output = Output(module, std::to_wstring(i + 1));
        EXPECT_EQ(Long(output, &IOutput::get_Index), i);
        EXPECT_EQ(Text(output.As<IDisplayItem>(), &IDisplayItem::get_Reference), references[i]);
    }
}

TEST_F(CDBOutputsTest, LoadsSavedOutputsByName) {
    const auto outputs = Three();
    LoadSaved(outputs, L"<fan><IsDisplayable>True</IsDisplayable></fan><!--Valve-->"
                       L"<Out1><IsConnected>True</IsConnected></Out1>");
    EXPECT_TRUE(Displayable(L"Fan"));
    EXPECT_FALSE(Displayable(L"Valve"));
    EXPECT_FALSE(Displayable(L"Out1"));
    EXPECT_TRUE(Flag(Output(module, L"Out1"), &IOutput::get_IsConnected));
    // The order stays.
    EXPECT_EQ(Names(outputs), (std::vector<std::wstring>{L"Out1", L"Valve", L"Fan"}));
}

TEST_F(CDBOutputsTest, ReportsAnUnknownSavedNameAndStopsThere) {
    LoadSaved(Three(), L"<Fan><IsDisplayable>1</IsDisplayable></Fan><Nowhere/>"
                       L"<Valve><IsDisplayable>1</IsDisplayable></Valve>");
    ExpectOnlyReport(Boxes(), kInvalidCallText, L"O_Tam_id Class Module CDBOutputs", L"Sub XmlLoad");
    EXPECT_TRUE(Displayable(L"Fan"));
    EXPECT_FALSE(Displayable(L"Valve"));
}

TEST_F(CDBOutputsTest, GoesOnAfterAnOutputThatReportsItsOwnFailure) {
    LoadSaved(Three(), L"<Fan><IsDisplayable>maybe</IsDisplayable></Fan>"
                       L"<Valve><IsDisplayable>1</IsDisplayable></Valve>");
    ExpectOnlyReport(Boxes(), kTypeMismatchText, L"O_Tam_id Class Module CDBOutput", L"Sub XmlLoad");
    EXPECT_TRUE(Displayable(L"Valve"));
}

TEST_F(CDBOutputsTest, ReportsALoadWithoutElement) {
    EXPECT_EQ(Three().As<_CDBOutputs>()->XmlLoad(nullptr), S_OK);
    ExpectOnlyReport(Boxes(), kObjectNotSetText, L"O_Tam_id Class Module CDBOutputs", L"Sub XmlLoad");
}

TEST_F(CDBOutputsTest, IsReachedByName) {
    const auto script = Three().As<IDispatch>();
    EXPECT_EQ(com::GetMember(*script.Get(), L"Count").Get().lVal, 3);
    const auto saved = Saved(L"<Outputs><Fan><IsDisplayable>1</IsDisplayable></Fan></Outputs>");
    const com::Variant element(saved.Get());
    VARIANT arguments[] = {element.Get()};
    com::CallMember(*script.Get(), L"XmlLoad", arguments);
    EXPECT_TRUE(Displayable(L"Fan"));
}

} // namespace
