#include "tests/appobject/DomFault.h"
#include "tests/appobject/Module.h"

#include "com/LateBound.h"

#include <array>
#include <string>
#include <utility>
#include <vector>

using namespace support;
using namespace modules;

namespace {

constexpr const wchar_t* kSave = L"Sub IAppObject_XMLSave";
constexpr int kAll = 1000;

class CDBAppObjectXmlSaveTest : public ModuleTest {
  protected:
    /// What XMLSave puts into an empty element Host.
    static std::wstring Saved(const com::Ref<IAppObject>& module) {
        const Document document = Parse(L"<Host/>");
        EXPECT_EQ(module->XMLSave(Root(document).Get(), document.Get()), S_OK);
        return BareXml(document.Get());
    }
    /// A module with every saved text of its own and the outputs Out1 to Out3.
    com::Ref<IAppObject> Full() {
        auto module = Loaded(Stream(L"<In1/>", L"<Out1/><Out2/><Out3/>"));
        Define(L"Valve", L"<NAME>Valve</NAME>");
        EXPECT_TRUE(Init(module, L"Valve"));
        Put(module, &IAppObject::put_UserName, L"Mine");
        module->put_XPosition(12.5);
        module->put_YPosition(-0.25);
        Put(module.As<ITamObject>(), &ITamObject::put_DeviceKey, L"D1");
        return module;
    }
};

TEST_F(CDBAppObjectXmlSaveTest, WritesTheProjectElement) {
    EXPECT_EQ(Saved(Full()), L"<Host><Valve><UserName>Mine</UserName><X_Position>" + Local(L"12.5") +
                                 L"</X_Position><Y_Position>" + Local(L"-0.25") +
                                 L"</Y_Position><DevKey>D1</DevKey><TamObjID>3</TamObjID></Valve></Host>");
}

TEST_F(CDBAppObjectXmlSaveTest, WritesDisplayableOutputsInTheirOrder) {
    const auto module = Full();
    Output(module, L"Out3")->put_IsDisplayable(VARIANT_TRUE);
    Output(module, L"Out1")->put_IsDisplayable(VARIANT_TRUE);
    EXPECT_EQ(Saved(module),
              L"<Host><Valve><UserName>Mine</UserName><X_Position>" + Local(L"12.5") +
                  L"</X_Position><Y_Position>" + Local(L"-0.25") +
                  L"</Y_Position><DevKey>D1</DevKey><TamObjID>3</TamObjID><Outputs>"
                  L"<Out1 IsDisplayable=\"1\"/><Out3 IsDisplayable=\"1\"/></Outputs></Valve></Host>");
}

TEST_F(CDBAppObjectXmlSaveTest, WritesOneDisplayableOutputAtTheEnd) {
    const auto module = Full();
    Output(module, L"Out3")->put_IsDisplayable(VARIANT_TRUE);
    EXPECT_NE(Saved(module).find(L"<Outputs><Out3 IsDisplayable=\"1\"/></Outputs>"), std::wstring::npos);
}

TEST_F(CDBAppObjectXmlSaveTest, WritesNoOutputsThatStoppedBeingDisplayable) {
    const auto module = Full();
    Output(module, L"Out1")->put_IsDisplayable(VARIANT_TRUE);
    Output(module, L"Out1")->put_IsDisplayable(VARIANT_FALSE);
    EXPECT_EQ(Saved(module).find(L"Outputs"), std::wstring::npos);
}

TEST_F(CDBAppObjectXmlSaveTest, WritesNoOutputsAfterDestroy) {
    const auto module = Full();
    Output(module, L"Out1")->put_IsDisplayable(VARIANT_TRUE);
    module->Destroy();
    const std::wstring saved = Saved(module);
    EXPECT_EQ(saved.find(L"Outputs"), std::wstring::npos);
    EXPECT_NE(saved.find(L"<TamObjID>3</TamObjID></Valve>"), std::wstring::npos);
}

TEST_F(CDBAppObjectXmlSaveTest, WritesPositionsInTheUsersDecimalForm) {
    const auto module = Full();
    const std::array<std::pair<double, const wchar_t*>, 7> positions = {{
        {0.0, L"0"},
        {100.0, L"100"},
        {-3.0, L"-3"},
        {12345.5, L"12345.5"},
        {0.5, L"0.5"},
        {0.1, L"0.1"},
        {1e20, L"1E+20"},
    }};
    for (const auto& [position, text] : positions) {
        module->put_XPosition(position);
        module->put_YPosition(position);
        const std::wstring saved = Saved(module);
        EXPECT_NE(saved.find(L"<X_Position>" + Local(text) + L"</X_Position>"), std::wstring::npos)
            << position;
        EXPECT_NE(saved.find(L"<Y_Position>" + Local(text) + L"</Y_Position>"), std::wstring::npos)
            << position;
    }
}

TEST_F(CDBAppObjectXmlSaveTest, WritesANegativeObjectId) {
    const auto module = Full();
    LoadProject(module, L"<Valve><TamObjID>-5</TamObjID></Valve>");
    EXPECT_NE(Saved(module).find(L"<TamObjID>-5</TamObjID>"), std::wstring::npos);
}

TEST_F(CDBAppObjectXmlSaveTest, EscapesTexts) {
    const auto module = Full();
    Put(module, &IAppObject::put_UserName, L"a < b & \"c\" \x00e4\x4e2d");
    const Document document = Parse(L"<Host/>");
    ASSERT_EQ(module->XMLSave(Root(document).Get(), document.Get()), S_OK);
    EXPECT_NE(Xml(document.Get()).find(L"<UserName>a &lt; b &amp; "), std::wstring::npos);
    const auto node = tam::dom::Select(tam::dom::Node(document), L"Host/Valve/UserName");
    EXPECT_EQ(tam::dom::TextOf(node), L"a < b & \"c\" \x00e4\x4e2d");
}

// Decided: an empty text has a text node, so that it can be read back.
TEST_F(CDBAppObjectXmlSaveTest, WritesATextNodeForAnEmptyText) {
    const auto module = Full();
    Put(module, &IAppObject::put_UserName, L"");
    const Document document = Parse(L"<Host/>");
    module->XMLSave(Root(document).Get(), document.Get());
    const auto node = tam::dom::Select(tam::dom::Node(document), L"Host/Valve/UserName");
    VARIANT_BOOL has = VARIANT_FALSE;
    node->hasChildNodes(&has);
    EXPECT_EQ(has, VARIANT_TRUE);
    LoadProject(module, L"<Valve><UserName>Other</UserName></Valve>");
    EXPECT_EQ(module->XmlLoad(tam::dom::Select(tam::dom::Node(document), L"Host/Valve").Get()), S_OK);
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"");
}

TEST_F(CDBAppObjectXmlSaveTest, AppendsAfterWhatTheHostHas) {
    const auto module = Full();
    const Document document = Parse(L"<Host><Before/></Host>");
    module->XMLSave(Root(document).Get(), document.Get());
    module->XMLSave(Root(document).Get(), document.Get());
    std::vector<std::wstring> names;
    tam::dom::ForEachChild(tam::dom::Node(Root(document)),
                           [&](const tam::dom::Node& child) { names.push_back(tam::dom::BaseName(child)); });
    EXPECT_EQ(names, (std::vector<std::wstring>{L"Before", L"Valve", L"Valve"}));
}

TEST_F(CDBAppObjectXmlSaveTest, BecomesTheDocumentElementOfAnEmptyDocument) {
    const auto module = Full();
    const Document document = NewDocument();
    EXPECT_EQ(module->XMLSave(document.Get(), document.Get()), S_OK);
    EXPECT_EQ(tam::dom::BaseName(tam::dom::Node(Root(document))), L"Valve");
}

TEST_F(CDBAppObjectXmlSaveTest, IsNamedAfterTheComponentWhenLoadedFromAStream) {
    EXPECT_EQ(Saved(Loaded(Stream({}, {}, {}, L"Pump"))),
              L"<Host><O_Tam_id><UserName>Pump</UserName><X_Position>0</X_Position><Y_Position>0</Y_Position>"
              L"<DevKey></DevKey><TamObjID>3</TamObjID></O_Tam_id></Host>");
}

TEST_F(CDBAppObjectXmlSaveTest, SavesByName) {
    const auto module = Full();
    const Document document = Parse(L"<Host/>");
    std::array<VARIANT, 2> arguments{};
    const com::Variant parent(Root(document).Get());
    const com::Variant owner(document.Get());
    arguments[0] = parent.Get();
    arguments[1] = owner.Get();
    com::CallMember(*module.Get(), L"XMLSave", arguments);
    EXPECT_EQ(BareXml(document.Get()), Saved(module));
}

TEST_F(CDBAppObjectXmlSaveTest, ReportsAMissingDocument) {
    const auto module = Full();
    const Document document = Parse(L"<Host/>");
    EXPECT_EQ(module->XMLSave(Root(document).Get(), nullptr), S_OK);
    ExpectOneReport(kObjectNotSetText, kLocation, kSave);
    EXPECT_EQ(BareXml(document.Get()), L"<Host/>");
}

TEST_F(CDBAppObjectXmlSaveTest, ReportsAMissingParentNode) {
    const auto module = Full();
    const Document document = Parse(L"<Host/>");
    EXPECT_EQ(module->XMLSave(nullptr, document.Get()), S_OK);
    ExpectOneReport(kObjectNotSetText, kLocation, kSave);
}

TEST_F(CDBAppObjectXmlSaveTest, ReportsAnObjectThatIsNoNode) {
    const auto module = Full();
    const Document document = Parse(L"<Host/>");
    const auto other = Held::Make();
    EXPECT_EQ(module->XMLSave(other.Get(), document.Get()), S_OK);
    ExpectOneReport(kTypeMismatchText, kLocation, kSave);
    EXPECT_EQ(module->XMLSave(Root(document).Get(), other.Get()), S_OK);
    ExpectOneReport(kTypeMismatchText, kLocation, kSave);
}

TEST_F(CDBAppObjectXmlSaveTest, ReportsAnObjectWithoutADefinitionName) {
    const auto module = NewModule();
    const Document document = Parse(L"<Host/>");
    EXPECT_EQ(module->XMLSave(Root(document).Get(), document.Get()), S_OK);
    ExpectOneReport(L"", kLocation, kSave);
    EXPECT_EQ(BareXml(document.Get()), L"<Host/>");
}

TEST_F(CDBAppObjectXmlSaveTest, LeavesWhatItAppendedBeforeAFault) {
    const auto module = Full();
    const Document document = Parse(L"<Host/>");
    {
        const DomFault fault(document, 3, kAll); // the object, its user name and its X position
        EXPECT_EQ(module->XMLSave(Root(document).Get(), document.Get()), S_OK);
    }
    ExpectOneReport(L"", kLocation, kSave);
    EXPECT_EQ(BareXml(document.Get()), L"<Host><Valve><UserName>Mine</UserName><X_Position>" +
                                           Local(L"12.5") + L"</X_Position></Valve></Host>");
}

TEST_F(CDBAppObjectXmlSaveTest, LeavesAnElementWithoutTheTextThatFailed) {
    const auto module = Full();
    const Document document = Parse(L"<Host/>");
    {
        const DomFault fault(document, kAll, 1);
        EXPECT_EQ(module->XMLSave(Root(document).Get(), document.Get()), S_OK);
    }
    ExpectOneReport(L"", kLocation, kSave);
    EXPECT_EQ(BareXml(document.Get()), L"<Host><Valve><UserName>Mine</UserName><X_Position/></Valve></Host>");
}

TEST_F(CDBAppObjectXmlSaveTest, LeavesTheOutputsWrittenBeforeAFault) {
    const auto module = Full();
    Output(module, L"Out1")->put_IsDisplayable(VARIANT_TRUE);
    Output(module, L"Out3")->put_IsDisplayable(VARIANT_TRUE);
    const Document document = Parse(L"<Host/>");
    {
        const DomFault fault(document, 8, kAll); // the object, five texts, Outputs and Out1
        EXPECT_EQ(module->XMLSave(Root(document).Get(), document.Get()), S_OK);
    }
    ExpectOneReport(L"", kLocation, kSave);
    EXPECT_NE(BareXml(document.Get()).find(L"<Outputs><Out1 IsDisplayable=\"1\"/></Outputs></Valve></Host>"),
              std::wstring::npos);
}

} // namespace
