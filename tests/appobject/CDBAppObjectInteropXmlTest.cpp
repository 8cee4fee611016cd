#include "tests/appobject/DomFault.h"
#include "tests/appobject/Module.h"

#include "com/LateBound.h"

#include <array>
#include <string>

using namespace support;
using namespace modules;

namespace {

constexpr int kAll = 1000;

class CDBAppObjectInteropXmlTest : public ModuleTest {
  protected:
    /// What XMLSaveForInteroperability puts into an empty element Host.
    static std::wstring Saved(const com::Ref<IAppObject>& module) {
        const Document document = Parse(L"<Host/>");
        EXPECT_EQ(module->XMLSaveForInteroperability(Root(document).Get(), document.Get()), S_OK);
        return BareXml(document.Get());
    }
    com::Ref<IAppObject> Full() {
        return Loaded(
            Stream(L"<In1><PROTOCOLREFERENCE>R1</PROTOCOLREFERENCE><LOGICALADDRESS>10</LOGICALADDRESS>"
                   L"<ISPERMANENT>1</ISPERMANENT><SNVTTYPE>105</SNVTTYPE></In1><In2/>",
                   L"<Out1><SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>20</LOGICALADDRESS></Out1>"
                   L"<Out2><SNVTTYPE>95</SNVTTYPE><LOGICALADDRESS>21</LOGICALADDRESS></Out2>",
                   L"<Gain><SNVTTYPE>36</SNVTTYPE><VALUE>1.5</VALUE></Gain>"
                   L"<Text><SNVTTYPE>36</SNVTTYPE></Text>",
                   L"Pump"));
    }
};

TEST_F(CDBAppObjectInteropXmlTest, WritesTheWholeElement) {
    const auto module = Full();
    Put(module, &IAppObject::put_UserName, L"Mine");
    Put(module, &IAppObject::put_ExtendedKey, L"E\\1");
    Output(module, L"Out2")->put_IsDisplayable(VARIANT_TRUE);
    EXPECT_EQ(
        Saved(module),
        L"<Host><O_Tam_id><UserName>Mine</UserName><Key>E\\1</Key>"
        L"<Inputs><In1><Reference>R1</Reference><LogicalAddress>10</LogicalAddress>"
        L"<isPermanent>True</isPermanent><SNVTType>105</SNVTType></In1>"
        L"<In2><Reference></Reference><LogicalAddress></LogicalAddress><isPermanent>False</isPermanent>"
        L"<SNVTType></SNVTType></In2></Inputs>"
        L"<Outputs><Out1><SNVT_Type>105</SNVT_Type><LogicalAddress>20</LogicalAddress></Out1>"
        L"<Out2 "
        L"IsDisplayable=\"1\"><SNVT_Type>95</SNVT_Type><LogicalAddress>21</LogicalAddress></Out2></Outputs>"
        L"<Attributes><Gain><Value>1.5</Value></Gain><Text><Value></Value></Text></Attributes></O_Tam_id></"
        L"Host>");
}

TEST_F(CDBAppObjectInteropXmlTest, WritesNoSectionWithoutPoints) {
    EXPECT_EQ(Saved(Loaded(Stream({}, {}, {}, L"Pump"))),
              L"<Host><O_Tam_id><UserName>Pump</UserName><Key></Key></O_Tam_id></Host>");
}

TEST_F(CDBAppObjectInteropXmlTest, WritesTheSectionsThatHavePoints) {
    EXPECT_EQ(Saved(Loaded(Stream({}, L"<Out1/>", {}, L"Pump"))),
              L"<Host><O_Tam_id><UserName>Pump</UserName><Key></Key><Outputs><Out1><SNVT_Type></SNVT_Type>"
              L"<LogicalAddress></LogicalAddress></Out1></Outputs></O_Tam_id></Host>");
}

TEST_F(CDBAppObjectInteropXmlTest, WritesNoSectionAfterDestroy) {
    const auto module = Full();
    module->Destroy();
    EXPECT_EQ(Saved(module), L"<Host><O_Tam_id><UserName>Pump</UserName><Key></Key></O_Tam_id></Host>");
}

TEST_F(CDBAppObjectInteropXmlTest, IsNamedAfterTheDefinition) {
    EXPECT_EQ(Saved(Defined(L"<NAME>Valve</NAME>", L"File")),
              L"<Host><File><UserName>Valve</UserName><Key></Key></File></Host>");
}

TEST_F(CDBAppObjectInteropXmlTest, WritesTheExtendedKeyAndNotTheOthers) {
    const auto module = Loaded(Stream({}, {}, {}, L"Pump"));
    Put(module, &IAppObject::put_GlobalKey, L"G");
    Put(module, &IAppObject::put_key, L"K");
    Put(module.As<ITamObject>(), &ITamObject::put_DeviceKey, L"D");
    EXPECT_EQ(Saved(module), L"<Host><O_Tam_id><UserName>Pump</UserName><Key></Key></O_Tam_id></Host>");
}

TEST_F(CDBAppObjectInteropXmlTest, WritesTheReferenceThatTheDefinitionGaveNotTheLink) {
    const auto module = Full();
    Put(Input(module, L"In1"), &IInput::put_Value, L"Boiler_1");
    EXPECT_NE(Saved(module).find(L"<Reference>R1</Reference>"), std::wstring::npos);
}

TEST_F(CDBAppObjectInteropXmlTest, WritesTheAttributesPresentValueAsItStands) {
    const auto module = Full();
    Put(Attribute(module, L"Gain"), &IAttribute::put_Value, L" 2,5 < 3 ");
    EXPECT_NE(Saved(module).find(L"<Gain><Value> 2,5 &lt; 3 </Value></Gain>"), std::wstring::npos);
}

TEST_F(CDBAppObjectInteropXmlTest, AppendsAfterWhatTheHostHas) {
    const auto module = Loaded(Stream({}, {}, {}, L"Pump"));
    const Document document = Parse(L"<Host><Before/></Host>");
    EXPECT_EQ(module->XMLSaveForInteroperability(Root(document).Get(), document.Get()), S_OK);
    EXPECT_EQ(BareXml(document.Get()),
              L"<Host><Before/><O_Tam_id><UserName>Pump</UserName><Key></Key></O_Tam_id></Host>");
}

TEST_F(CDBAppObjectInteropXmlTest, SavesByName) {
    const auto module = Full();
    const Document document = Parse(L"<Host/>");
    const com::Variant parent(Root(document).Get());
    const com::Variant owner(document.Get());
    std::array<VARIANT, 2> arguments{parent.Get(), owner.Get()};
    com::CallMember(*module.Get(), L"XMLSaveForInteroperability", arguments);
    EXPECT_EQ(BareXml(document.Get()), Saved(module));
}

TEST_F(CDBAppObjectInteropXmlTest, HandsAMissingArgumentToTheHost) {
    const auto module = Full();
    const Document document = Parse(L"<Host/>");
    EXPECT_EQ(module->XMLSaveForInteroperability(nullptr, document.Get()), kObjectNotSet);
    EXPECT_EQ(LastError().description, kObjectNotSetText);
    EXPECT_EQ(module->XMLSaveForInteroperability(Root(document).Get(), nullptr), kObjectNotSet);
    EXPECT_TRUE(Boxes().empty());
}

TEST_F(CDBAppObjectInteropXmlTest, HandsAnObjectThatIsNoNodeToTheHost) {
    const auto module = Full();
    const Document document = Parse(L"<Host/>");
    EXPECT_EQ(module->XMLSaveForInteroperability(Held::Make().Get(), document.Get()), kTypeMismatch);
    EXPECT_EQ(LastError().description, kTypeMismatchText);
}

TEST_F(CDBAppObjectInteropXmlTest, HandsAFailureOfTheDocumentToTheHost) {
    const auto module = Full();
    const Document document = Parse(L"<Host/>");
    {
        const DomFault fault(document, kAll, 1);
        EXPECT_EQ(module->XMLSaveForInteroperability(Root(document).Get(), document.Get()),
                  DomFault::kRefused);
    }
    EXPECT_TRUE(Boxes().empty());
    EXPECT_EQ(BareXml(document.Get()), L"<Host><O_Tam_id><UserName>Pump</UserName><Key/></O_Tam_id></Host>");
}

TEST_F(CDBAppObjectInteropXmlTest, HandsAFailureByNameToTheHostWithItsText) {
    const auto module = Full();
    const Document document = Parse(L"<Host/>");
    VARIANT none{};
    none.vt = VT_DISPATCH;
    const com::Variant owner(document.Get());
    std::array<VARIANT, 2> arguments{none, owner.Get()};
    const auto failure =
        com::Attempt([&] { com::CallMember(*module.Get(), L"XMLSaveForInteroperability", arguments); });
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->code, kObjectNotSet);
    EXPECT_EQ(failure->description, kObjectNotSetText);
}

} // namespace
