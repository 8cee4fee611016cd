#include "tests/appobject/Module.h"

#include "com/LateBound.h"

#include <span>
#include <string>

using namespace support;
using namespace modules;

namespace {

constexpr const wchar_t* kLoad = L"Sub IAppObject_XmlLoad";

class CDBAppObjectXmlLoadTest : public ModuleTest {
  protected:
    void ExpectLoadReport(const std::wstring& description) { ExpectOneReport(description, kLocation, kLoad); }
    static bool Displayable(const com::Ref<IAppObject>& module, const std::wstring& output) {
        return Flag(Output(module, output), &IOutput::get_IsDisplayable);
    }
    /// A module with the outputs Out1 to Out3.
    com::Ref<IAppObject> WithOutputs() { return Loaded(Stream({}, L"<Out1/><Out2/><Out3/>")); }
    /// XPosition after this text was loaded as X_Position.
    double Position(const std::wstring& text) {
        const auto module = NewModule();
        module->put_XPosition(99);
        LoadProject(module, L"<Valve><X_Position>" + text + L"</X_Position></Valve>");
        return Double(module, &IAppObject::get_XPosition);
    }
    /// TamObjectID after this text was loaded.
    short ObjectId(const std::wstring& text) {
        const auto module = NewModule();
        LoadProject(module, L"<Valve><TamObjID>" + text + L"</TamObjID></Valve>");
        return Short(module.As<ITamObject>(), &ITamObject::get_TamObjectID);
    }
};

TEST_F(CDBAppObjectXmlLoadTest, ReadsTheProjectElement) {
    const auto module = NewModule();
    LoadProject(module, L"<Valve><UserName>Mine</UserName><X_Position>12.5</X_Position>"
                        L"<Y_Position>-3</Y_Position><DevKey>D1</DevKey><TamObjID>42</TamObjID></Valve>");
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Mine");
    EXPECT_EQ(Double(module, &IAppObject::get_XPosition), 12.5);
    EXPECT_EQ(Double(module, &IAppObject::get_YPosition), -3.0);
    EXPECT_EQ(Text(module.As<ITamObject>(), &ITamObject::get_DeviceKey), L"D1");
    EXPECT_EQ(Short(module.As<ITamObject>(), &ITamObject::get_TamObjectID), 42);
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"");
    EXPECT_EQ(Text(module, &IAppObject::get_UniqueIDString), L"");
}

TEST_F(CDBAppObjectXmlLoadTest, ReadsNamesInAnyLetterCaseAndOrder) {
    const auto module = WithOutputs();
    LoadProject(module, L"<valve><outREFERENCES><Out2>1</Out2></outREFERENCES><tamobjid>42</tamobjid>"
                        L"<DEVKEY>D1</DEVKEY><y_position>2</y_position><X_POSITION>1</X_POSITION>"
                        L"<username>Mine</username></valve>");
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Mine");
    EXPECT_EQ(Double(module, &IAppObject::get_XPosition), 1.0);
    EXPECT_EQ(Double(module, &IAppObject::get_YPosition), 2.0);
    EXPECT_EQ(Text(module.As<ITamObject>(), &ITamObject::get_DeviceKey), L"D1");
    EXPECT_EQ(Short(module.As<ITamObject>(), &ITamObject::get_TamObjectID), 42);
    EXPECT_TRUE(Displayable(module, L"Out2"));
}

TEST_F(CDBAppObjectXmlLoadTest, MatchesLocalNames) {
    const auto module = NewModule();
    LoadProject(module, L"<Valve xmlns:x='urn:x'><x:UserName>Mine</x:UserName></Valve>");
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Mine");
}

TEST_F(CDBAppObjectXmlLoadTest, IgnoresEverythingElse) {
    const auto module = WithOutputs();
    Put(module, &IAppObject::put_UserName, L"Mine");
    LoadProject(module,
                L"<Valve><!-- UserName --><Environment><UserName>No</UserName></Environment><Unknown/>"
                L"text<Outputs><Out1 IsDisplayable='1'>1</Out1></Outputs><Environment/></Valve>");
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Mine");
    EXPECT_FALSE(Displayable(module, L"Out1"));
}

TEST_F(CDBAppObjectXmlLoadTest, KeepsWhatTheElementDoesNotHave) {
    const auto module = NewModule();
    Put(module, &IAppObject::put_UserName, L"Mine");
    module->put_XPosition(7);
    LoadProject(module, L"<Valve/>");
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Mine");
    EXPECT_EQ(Double(module, &IAppObject::get_XPosition), 7.0);
}

TEST_F(CDBAppObjectXmlLoadTest, ReadsPositionsWithADecimalPointWhateverTheUser) {
    EXPECT_EQ(Position(L"12.5"), 12.5);
    EXPECT_EQ(Position(L"12,5"), 12.0);
    EXPECT_EQ(Position(L"-0.25"), -0.25);
    EXPECT_EQ(Position(L"1E+3"), 1000.0);
}

TEST_F(CDBAppObjectXmlLoadTest, ReadsTheLeadingNumberOfAPosition) {
    EXPECT_EQ(Position(L"12.5abc"), 12.5);
    EXPECT_EQ(Position(L"7 and more"), 7.0);
    EXPECT_EQ(Position(L"abc"), 0.0);
    EXPECT_EQ(Position(L"1.2.3"), 1.2);
}

TEST_F(CDBAppObjectXmlLoadTest, RoundsAnObjectIdToTheNearestWholeNumber) {
    EXPECT_EQ(ObjectId(L"2.4"), 2);
    EXPECT_EQ(ObjectId(L"2.6"), 3);
    EXPECT_EQ(ObjectId(L"-2.6"), -3);
    EXPECT_EQ(ObjectId(L"12abc"), 12);
    EXPECT_EQ(ObjectId(L"abc"), 0);
    EXPECT_EQ(ObjectId(L"32767.4"), 32767);
    EXPECT_EQ(ObjectId(L"-32768"), -32768);
}

TEST_F(CDBAppObjectXmlLoadTest, ReportsAnObjectIdThatIsTooLarge) {
    for (const wchar_t* text : {L"32768", L"-32769", L"1E99"}) {
        EXPECT_EQ(ObjectId(text), 0);
        ExpectLoadReport(kOverflowText);
    }
}

TEST_F(CDBAppObjectXmlLoadTest, SetsTheFlagsOfReferencedOutputs) {
    const auto module = WithOutputs();
    LoadProject(module,
                L"<Valve><OutReferences><Out1>1</Out1><!-- 1 --><Out3>1</Out3></OutReferences></Valve>");
    EXPECT_TRUE(Displayable(module, L"Out1"));
    EXPECT_FALSE(Displayable(module, L"Out2"));
    EXPECT_TRUE(Displayable(module, L"Out3"));
}

TEST_F(CDBAppObjectXmlLoadTest, FindsOutputsInAnyLetterCase) {
    const auto module = WithOutputs();
    LoadProject(module, L"<Valve><OutReferences><oUT2>1</oUT2></OutReferences></Valve>");
    EXPECT_TRUE(Displayable(module, L"Out2"));
}

TEST_F(CDBAppObjectXmlLoadTest, LeavesAFlagThatIsNotExactlyOne) {
    const auto module = WithOutputs();
    Output(module, L"Out3")->put_IsDisplayable(VARIANT_TRUE);
    for (const wchar_t* text : {L"true", L" 1", L"1 ", L"01", L"1.0", L"0", L"-1", L""}) {
        LoadProject(module, std::wstring(L"<Valve><OutReferences><Out1>") + text + L"</Out1><Out3>" + text +
                                L"</Out3></OutReferences></Valve>");
        EXPECT_FALSE(Displayable(module, L"Out1")) << text;
        EXPECT_TRUE(Displayable(module, L"Out3")) << text;
    }
}

TEST_F(CDBAppObjectXmlLoadTest, ReportsAReferenceToNoOutput) {
    const auto module = WithOutputs();
    LoadProject(module, L"<Valve><UserName>Mine</UserName><OutReferences><Out1>1</Out1><Nowhere>1</Nowhere>"
                        L"<Out2>1</Out2></OutReferences><DevKey>D1</DevKey></Valve>");
    ExpectLoadReport(kObjectNotSetText);
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Mine");
    EXPECT_TRUE(Displayable(module, L"Out1"));
    EXPECT_FALSE(Displayable(module, L"Out2")) << "the rest is not read";
    EXPECT_EQ(Text(module.As<ITamObject>(), &ITamObject::get_DeviceKey), L"");
}

TEST_F(CDBAppObjectXmlLoadTest, PassesOverAReferenceToNoOutputWithAnotherText) {
    const auto module = WithOutputs();
    LoadProject(module, L"<Valve><OutReferences><Nowhere>0</Nowhere><Out2>1</Out2></OutReferences></Valve>");
    EXPECT_TRUE(Displayable(module, L"Out2"));
}

TEST_F(CDBAppObjectXmlLoadTest, ReportsAReferenceAfterDestroy) {
    const auto module = WithOutputs();
    module->Destroy();
    LoadProject(module, L"<Valve><OutReferences><Out1>1</Out1></OutReferences></Valve>");
    ExpectLoadReport(kObjectNotSetText);
}

TEST_F(CDBAppObjectXmlLoadTest, EndsWhenTheHostDestroysTheObjectMeanwhile) {
    const auto module = WithOutputs();
    OnYield turn([&] { module->Destroy(); });
    LoadProject(module, L"<Valve><UserName>Mine</UserName><OutReferences><Out1>1</Out1></OutReferences>"
                        L"<DevKey>D1</DevKey></Valve>");
    EXPECT_TRUE(turn.Ran());
    ExpectLoadReport(L"The load was ended, because the object was loaded again or destroyed meanwhile");
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Mine");
    EXPECT_EQ(Text(module.As<ITamObject>(), &ITamObject::get_DeviceKey), L"");
}

TEST_F(CDBAppObjectXmlLoadTest, ReportsAChildWithoutAText) {
    for (const wchar_t* name : {L"UserName", L"X_Position", L"Y_Position", L"DevKey", L"TamObjID"}) {
        const auto module = NewModule();
        Put(module, &IAppObject::put_UserName, L"Mine");
        LoadProject(module, std::wstring(L"<Valve><") + name + L"/></Valve>");
        ExpectLoadReport(kObjectNotSetText);
        EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Mine");
    }
}

TEST_F(CDBAppObjectXmlLoadTest, KeepsWhatItReadBeforeAFault) {
    const auto module = NewModule();
    LoadProject(module, L"<Valve><UserName>Mine</UserName><X_Position>5</X_Position><Y_Position/>"
                        L"<DevKey>D1</DevKey></Valve>");
    ExpectLoadReport(kObjectNotSetText);
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Mine");
    EXPECT_EQ(Double(module, &IAppObject::get_XPosition), 5.0);
    EXPECT_EQ(Text(module.As<ITamObject>(), &ITamObject::get_DeviceKey), L"");
}

TEST_F(CDBAppObjectXmlLoadTest, ReportsAMissingElement) {
    EXPECT_EQ(NewModule()->XmlLoad(nullptr), S_OK);
    ExpectLoadReport(kObjectNotSetText);
}

TEST_F(CDBAppObjectXmlLoadTest, ReportsAnObjectThatIsNoNode) {
    EXPECT_EQ(NewModule()->XmlLoad(Held::Make().Get()), S_OK);
    ExpectLoadReport(kTypeMismatchText);
}

TEST_F(CDBAppObjectXmlLoadTest, LoadsByName) {
    const auto module = NewModule();
    const com::Variant element(Root(Parse(L"<Valve><UserName>Mine</UserName></Valve>")).Get());
    VARIANT argument = element.Get();
    com::CallMember(*module.Get(), L"XmlLoad", std::span<VARIANT>(&argument, 1));
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Mine");
}

TEST_F(CDBAppObjectXmlLoadTest, RestoresWhatWasSavedButNoDisplayFlags) {
    const auto saved = WithOutputs();
    Put(saved, &IAppObject::put_UserName, L"Mine & yours");
    saved->put_XPosition(12);
    saved->put_YPosition(-340);
    Put(saved.As<ITamObject>(), &ITamObject::put_DeviceKey, L"D1");
    Output(saved, L"Out1")->put_IsDisplayable(VARIANT_TRUE);
    const Document document = Parse(L"<Host/>");
    ASSERT_EQ(saved->XMLSave(Root(document).Get(), document.Get()), S_OK);

    const auto module = WithOutputs();
    LoadProject(module, L"<Valve><TamObjID>9</TamObjID></Valve>");
    EXPECT_EQ(module->XmlLoad(tam::dom::Select(tam::dom::Node(document), L"Host/O_Tam_id").Get()), S_OK);
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Mine & yours");
    EXPECT_EQ(Double(module, &IAppObject::get_XPosition), 12.0);
    EXPECT_EQ(Double(module, &IAppObject::get_YPosition), -340.0);
    EXPECT_EQ(Text(module.As<ITamObject>(), &ITamObject::get_DeviceKey), L"D1");
    EXPECT_EQ(Short(module.As<ITamObject>(), &ITamObject::get_TamObjectID), 3);
    EXPECT_FALSE(Displayable(module, L"Out1"));
}

TEST_F(CDBAppObjectXmlLoadTest, LosesTheFractionUnderADecimalComma) {
    const auto saved = Loaded(Stream({}));
    saved->put_XPosition(12.5);
    const Document document = Parse(L"<Host/>");
    ASSERT_EQ(saved->XMLSave(Root(document).Get(), document.Get()), S_OK);
    const auto module = NewModule();
    EXPECT_EQ(module->XmlLoad(tam::dom::Select(tam::dom::Node(document), L"Host/O_Tam_id").Get()), S_OK);
    EXPECT_EQ(Double(module, &IAppObject::get_XPosition), DecimalMark() == L"." ? 12.5 : 12.0);
}

} // namespace
