#include "tests/points/Listener.h"
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
    std::wstring Found(const com::Ref<IOutputs>& outputs, const std::wstring& index) {
        const auto output = Item(outputs, &IOutputs::get_Item, index);
        return output ? Text(output, &IOutput::get_Name) : L"(none)";
    }
    bool Displayable(const std::wstring& name) {
        return Flag(Output(module, name), &IOutput::get_IsDisplayable);
    }
    void LoadSaved(const com::Ref<IOutputs>& outputs, const std::wstring& content, const CalledFrom& = {}) {
        EXPECT_EQ(outputs.As<_CDBOutputs>()->XmlLoad(Saved(L"<Outputs>" + content + L"</Outputs>").Get()),
                  S_OK);
    }
};

TEST_F(CDBOutputsTest, StartsEmpty) {
    const auto outputs = Outputs(NewModule());
    ASSERT_TRUE(outputs);
    EXPECT_EQ(Long(outputs, &IOutputs::get_Count), 0);
    EXPECT_EQ(Text(outputs, &IOutputs::get_GlobalKey), L"");
    EXPECT_EQ(Text(outputs, &IOutputs::get_ExtendedKey), L"");
    for (const wchar_t* index : {L"", L"0", L"1", L"Out1"}) {
        EXPECT_EQ(Found(outputs, index), L"(none)");
    }
}

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

TEST_F(CDBOutputsTest, FindsByNameOrPosition) {
    const auto outputs = Three();
    EXPECT_EQ(Found(outputs, L"Valve"), L"Valve");
    EXPECT_EQ(Found(outputs, L"vALVE"), L"Valve");
    EXPECT_EQ(Found(outputs, L"2"), L"Valve");
    for (const wchar_t* index : {L"0", L"4", L"-1", L"", L"absent", L"99999999999"}) {
        EXPECT_EQ(Found(outputs, index), L"(none)") << index;
    }
    EXPECT_TRUE(com::SameObject(Item(outputs, &IOutputs::get_Item, L"Fan").Get(),
                                Item(outputs, &IOutputs::get_Item, L"3").Get()));
}

TEST_F(CDBOutputsTest, FormsTheKeysOfItsOutputs) {
    const auto outputs = Three();
    Put(module, &IAppObject::put_GlobalKey, L"K");
    Put(module, &IAppObject::put_ExtendedKey, L"E");
    EXPECT_EQ(Text(outputs, &IOutputs::get_GlobalKey), L"K\\ROU");
    EXPECT_EQ(Text(outputs, &IOutputs::get_ExtendedKey), L"E\\ROU");
    for (const wchar_t* name : {L"Out1", L"Valve", L"Fan"}) {
        EXPECT_EQ(Text(Output(module, name), &IOutput::get_GlobalKey), std::wstring(L"K\\ROU\\") + name);
        EXPECT_EQ(Text(Output(module, name), &IOutput::get_ExtendedKey), std::wstring(L"E\\ROU\\") + name);
    }
}

TEST_F(CDBOutputsTest, RenewsTheKeysAtEachWrite) {
    Three();
    for (const wchar_t* key : {L"Old", L"", L"New"}) {
        Put(module, &IAppObject::put_GlobalKey, key);
        Put(module, &IAppObject::put_ExtendedKey, key);
        const std::wstring expected = std::wstring(key) + L"\\ROU\\Fan";
        EXPECT_EQ(Text(Output(module, L"Fan"), &IOutput::get_GlobalKey), expected);
        EXPECT_EQ(Text(Output(module, L"Fan"), &IOutput::get_ExtendedKey), expected);
    }
}

TEST_F(CDBOutputsTest, LeavesWhatAStreamAddsAfterAKeyWithoutOneUntilTheNextWrite) {
    Three();
    // The first turn of the host comes before the first point.
    const Listener writing([&] {
        Put(module, &IAppObject::put_GlobalKey, L"K");
        Put(module, &IAppObject::put_ExtendedKey, L"E");
    });
    writing.Post();
    EXPECT_EQ(Load(module, Stream({}, Named({L"A", L"B"}))), S_OK);
    for (const wchar_t* name : {L"A", L"B"}) {
        EXPECT_EQ(Text(Output(module, name), &IOutput::get_GlobalKey), L"");
        EXPECT_EQ(Text(Output(module, name), &IOutput::get_ExtendedKey), L"");
    }
    EXPECT_EQ(Text(Outputs(module), &IOutputs::get_GlobalKey), L"K\\ROU");
    Put(module, &IAppObject::put_GlobalKey, L"L");
    Put(module, &IAppObject::put_ExtendedKey, L"F");
    for (const wchar_t* name : {L"A", L"B"}) {
        EXPECT_EQ(Text(Output(module, name), &IOutput::get_GlobalKey), std::wstring(L"L\\ROU\\") + name);
        EXPECT_EQ(Text(Output(module, name), &IOutput::get_ExtendedKey), std::wstring(L"F\\ROU\\") + name);
    }
}

TEST_F(CDBOutputsTest, PassesALaterKeyToTheCollectionThatAStreamBroughtAlone) {
    const auto before = Three();
    Put(module, &IAppObject::put_GlobalKey, L"K");
    Put(module, &IAppObject::put_ExtendedKey, L"E");
    EXPECT_EQ(Load(module, Stream({}, Named({L"Only"}))), S_OK);
    Put(module, &IAppObject::put_GlobalKey, L"L");
    Put(module, &IAppObject::put_ExtendedKey, L"F");
    EXPECT_EQ(Text(Output(module, L"Only"), &IOutput::get_GlobalKey), L"L\\ROU\\Only");
    EXPECT_EQ(Text(Output(module, L"Only"), &IOutput::get_ExtendedKey), L"F\\ROU\\Only");
    const auto old = Item(before, &IOutputs::get_Item, L"Fan");
    EXPECT_EQ(Text(before, &IOutputs::get_GlobalKey), L"K\\ROU");
    EXPECT_EQ(Text(old, &IOutput::get_GlobalKey), L"K\\ROU\\Fan");
    EXPECT_EQ(Text(old, &IOutput::get_ExtendedKey), L"E\\ROU\\Fan");
}

TEST_F(CDBOutputsTest, IsReplacedByAnEmptyOneWhenAStreamIsLoaded) {
    const auto before = Three();
    EXPECT_EQ(Load(module, Stream({}, Named({L"Only"}))), S_OK);
    EXPECT_EQ(Names(Outputs(module)), std::vector<std::wstring>{L"Only"});
    EXPECT_EQ(Names(before), (std::vector<std::wstring>{L"Out1", L"Valve", L"Fan"}));
}

TEST_F(CDBOutputsTest, RefusesADuplicateName) {
    module = NewModule();
    EXPECT_EQ(Load(module, Stream({}, Named({L"Out1", L"Valve", L"VALVE", L"Fan"}))), kDuplicateKey);
    EXPECT_EQ(LastError().description, kDuplicateKeyText);
    EXPECT_EQ(Names(Outputs(module)), (std::vector<std::wstring>{L"Out1", L"Valve"}));
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
    const auto boxes = Boxes();
    ASSERT_EQ(boxes.size(), 1u);
    ExpectReport(boxes[0], kInvalidCallText, L"O_Tam_id Class Module CDBOutputs", L"Sub XmlLoad");
    EXPECT_TRUE(Displayable(L"Fan"));
    EXPECT_FALSE(Displayable(L"Valve"));
}

TEST_F(CDBOutputsTest, GoesOnBehindAnOutputThatReportsItsOwnFailure) {
    LoadSaved(Three(), L"<Fan><IsDisplayable>maybe</IsDisplayable></Fan>"
                       L"<Valve><IsDisplayable>1</IsDisplayable></Valve>");
    const auto boxes = Boxes();
    ASSERT_EQ(boxes.size(), 1u);
    ExpectReport(boxes[0], kTypeMismatchText, L"O_Tam_id Class Module CDBOutput", L"Sub XmlLoad");
    EXPECT_TRUE(Displayable(L"Valve"));
}

TEST_F(CDBOutputsTest, ReportsALoadWithoutElement) {
    EXPECT_EQ(Three().As<_CDBOutputs>()->XmlLoad(nullptr), S_OK);
    const auto boxes = Boxes();
    ASSERT_EQ(boxes.size(), 1u);
    ExpectReport(boxes[0], kObjectNotSetText, L"O_Tam_id Class Module CDBOutputs", L"Sub XmlLoad");
}

TEST_F(CDBOutputsTest, KeepsNothingOfACallBack) {
    const auto outputs = Three();
    const auto target = Held::Make();
    EXPECT_EQ(outputs->putref_CallBack(target.Get()), S_OK);
    EXPECT_EQ(target->Others(), 0u);
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
