#include "tests/points/Points.h"

#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

const std::wstring kType = L"<SNVTTYPE>105</SNVTTYPE>";

class CDBAttributesTest : public PointsTest {
  protected:
    com::Ref<IAttributes> Three() {
        module = WithAttributes(Named({L"Gain", L"Mode", L"Delay"}, kType));
        return Attributes(module);
    }
    void ExpectStopped(const std::wstring& description, const CalledFrom& = {}) {
        ExpectOnlyReport(Boxes(), description, L"O_Tam_id Class Module CDBAttributes", L"Sub XmlLoad");
    }
};

TEST_F(CDBAttributesTest, LeavesALaterAttributeWithoutKeysUntilTheNextWrite) {
    const auto attributes = Three();
    Put(module, &IAppObject::put_GlobalKey, L"K");
    EXPECT_EQ(Load(module, Stream({}, {}, Named({L"Late"}, kType))), S_OK);
    EXPECT_EQ(Text(Attribute(module, L"Late"), &IAttribute::get_GlobalKey), L"");
    EXPECT_EQ(Text(Attribute(module, L"Mode"), &IAttribute::get_GlobalKey), L"K\\ATT\\Mode");
    Put(module, &IAppObject::put_GlobalKey, L"K");
    EXPECT_EQ(Text(Attribute(module, L"Late"), &IAttribute::get_GlobalKey), L"K\\ATT\\Late");
}

TEST_F(CDBAttributesTest, RenewsTheExtendedKeysAtEachWriteForLateAttributesToo) {
    const auto attributes = Three();
    Put(module, &IAppObject::put_ExtendedKey, L"E");
    Put(module, &IAppObject::put_ExtendedKey, L"F");
    EXPECT_EQ(Text(Attribute(module, L"Mode"), &IAttribute::get_ExtendedKey), L"F\\ATT\\Mode");
    EXPECT_EQ(Load(module, Stream({}, {}, Named({L"Late"}, kType))), S_OK);
    EXPECT_EQ(Text(Attribute(module, L"Late"), &IAttribute::get_ExtendedKey), L"");
    EXPECT_EQ(Text(Attribute(module, L"Mode"), &IAttribute::get_ExtendedKey), L"F\\ATT\\Mode");
    Put(module, &IAppObject::put_ExtendedKey, L"G");
    for (const wchar_t* name : {L"Gain", L"Mode", L"Delay", L"Late"}) {
        EXPECT_EQ(Text(Attribute(module, name), &IAttribute::get_ExtendedKey),
                  std::wstring(L"G\\ATT\\") + name);
        EXPECT_EQ(Text(Attribute(module, name), &IAttribute::get_GlobalKey), L"");
    }
}

TEST_F(CDBAttributesTest, KeepsItsAttributesWhenAStreamIsLoaded) {
    const auto attributes = Three();
    EXPECT_EQ(Load(module, Stream({}, {}, Named({L"Late"}, kType))), S_OK);
    EXPECT_TRUE(com::SameObject(attributes.Get(), Attributes(module).Get()));
    EXPECT_EQ(Names(attributes), (std::vector<std::wstring>{L"Gain", L"Mode", L"Delay", L"Late"}));
}

TEST_F(CDBAttributesTest, RefusesADuplicateName) {
    module = NewModule();
    EXPECT_EQ(Load(module, Stream({}, {},
                                  L"<Gain>" + kType + L"<VALUE>1</VALUE></Gain><Gain>" + kType +
                                      L"<VALUE>2</VALUE></Gain><Mode>" + kType + L"</Mode>")),
              kDuplicateKey);
    EXPECT_EQ(LastError().description, kDuplicateKeyText);
    EXPECT_EQ(Names(Attributes(module)), std::vector<std::wstring>{L"Gain"});
    EXPECT_EQ(Text(Attribute(module, L"Gain"), &IAttribute::get_Value), L"1");
}

TEST_F(CDBAttributesTest, ReadsADuplicatesDefinitionBeforeItRefusesIt) {
    module = NewModule();
    EXPECT_EQ(
        Load(module, Stream({}, {}, L"<Gain>" + kType + L"</Gain><Gain><SNVTTYPE>999</SNVTTYPE></Gain>")),
        kDuplicateKey);
    EXPECT_EQ(Boxes().size(), 2u) << "the unknown type of the second";
    EXPECT_EQ(Names(Attributes(module)), std::vector<std::wstring>{L"Gain"});
}

TEST_F(CDBAttributesTest, RefusesTheSameStreamTwice) {
    Three();
    EXPECT_EQ(Load(module, Stream({}, {}, Named({L"Mode"}, kType))), kDuplicateKey);
    EXPECT_EQ(Names(Attributes(module)), (std::vector<std::wstring>{L"Gain", L"Mode", L"Delay"}));
}

TEST_F(CDBAttributesTest, LoadsASavedElementOfKnownNamesWithoutAChange) {
    const auto attributes = Three();
    const auto saved =
        Saved(L"<Attributes><Delay><Value>9</Value></Delay><!--none--><gain/><Gain/></Attributes>");
    EXPECT_EQ(attributes.As<_CDBAttributes>()->XmlLoad(saved.Get()), S_OK);
    EXPECT_EQ(Names(attributes), (std::vector<std::wstring>{L"Gain", L"Mode", L"Delay"}));
    EXPECT_EQ(Text(Attribute(module, L"Delay"), &IAttribute::get_Value), L"");
}

TEST_F(CDBAttributesTest, LoadsAnEmptySavedElement) {
    EXPECT_EQ(Three().As<_CDBAttributes>()->XmlLoad(Saved(L"<Attributes/>").Get()), S_OK);
}

TEST_F(CDBAttributesTest, ReportsAnUnknownSavedNameAndStopsThere) {
    const auto saved = Saved(L"<Attributes><Gain/><Nowhere/><Elsewhere/></Attributes>");
    EXPECT_EQ(Three().As<_CDBAttributes>()->XmlLoad(saved.Get()), S_OK);
    ExpectStopped(kInvalidCallText);
}

TEST_F(CDBAttributesTest, TakesOnlyElementsForSavedAttributes) {
    const auto attributes = Three().As<_CDBAttributes>();
    EXPECT_EQ(attributes->XmlLoad(
                  Saved(L"<Attributes>text<?Nowhere no?><Gain/><![CDATA[Nowhere]]></Attributes>").Get()),
              S_OK);
    EXPECT_TRUE(Boxes().empty());
    EXPECT_EQ(attributes->XmlLoad(Saved(L"<Attributes>text<Nowhere/></Attributes>").Get()), S_OK);
    ExpectStopped(kInvalidCallText);
}

TEST_F(CDBAttributesTest, ReportsALoadWithoutElement) {
    EXPECT_EQ(Three().As<_CDBAttributes>()->XmlLoad(nullptr), S_OK);
    ExpectStopped(kObjectNotSetText);
}

TEST_F(CDBAttributesTest, HidesTheComponentsOwnMembers) {
    const auto script = Three().As<IDispatch>();
    for (const wchar_t* name : {L"AddItem", L"RemoveItem", L"GetItem", L"ItemCount", L"Clear",
                                L"SetGlobalKey", L"SetExtendedKey"}) {
        std::wstring text = name;
        LPOLESTR names[] = {text.data()};
        DISPID id = 0;
        EXPECT_EQ(script->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), DISP_E_UNKNOWNNAME);
    }
}

} // namespace
