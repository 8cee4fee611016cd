#include "tests/points/Points.h"

#include "com/LateBound.h"

#include <string>

using namespace support;
using namespace points;

namespace {

class CDBAttributeTest : public PointsTest {
  protected:
    com::Ref<IAttribute> One(const std::wstring& content = L"<SNVTTYPE>105</SNVTTYPE>",
                             const CalledFrom& = {}) {
        module = WithAttributes(L"<Gain>" + content + L"</Gain>");
        return Attribute(module, L"Gain");
    }
};

TEST_F(CDBAttributeTest, AnswersFixedTextsEmpty) {
    const auto gain = One(L"<DESCRIPTION>words</DESCRIPTION><SNVTTYPE>105</SNVTTYPE><VALUE>3</VALUE>");
    for (const auto member :
         {&IAttribute::get_DefaultValue, &IAttribute::get_Description, &IAttribute::get_DeviceKey,
          &IAttribute::get_DispDefault, &IAttribute::get_DispMax, &IAttribute::get_DispMin,
          &IAttribute::get_Max, &IAttribute::get_Min, &IAttribute::get_Tag}) {
        EXPECT_EQ(Text(gain, member), L"");
    }
}

TEST_F(CDBAttributeTest, AnswersFixedFlagsFalseButVisible) {
    const auto gain = One();
    EXPECT_TRUE(Flag(gain, &IAttribute::get_Visible));
    for (const auto member :
         {&IAttribute::get_IsDeviceDependent, &IAttribute::get_IsKeepFloatStandard,
          &IAttribute::get_IsMacroConnected, &IAttribute::get_IsType, &IAttribute::get_IsUnit,
          &IAttribute::get_IsUnitDependent, &IAttribute::get_ToolOnly}) {
        EXPECT_FALSE(Flag(gain, member));
    }
}

TEST_F(CDBAttributeTest, AnswersFixedNumbers) {
    const auto gain = One();
    EXPECT_EQ(Long(gain, &IAttribute::get_NodeType), 9);
    EXPECT_EQ(Long(gain, &IAttribute::get_CDBPosition), 0);
    EXPECT_EQ(Long(gain, &IAttribute::get_DividedBy), 0);
}

TEST_F(CDBAttributeTest, ExposesNoFields) {
    EXPECT_FALSE(Object(One(), &IAttribute::get_Fields));
}

TEST_F(CDBAttributeTest, IsVisibleWhateverTheDefinitionSays) {
    for (const wchar_t* visible : {L"", L"<VISIBLE/>", L"<VISIBLE>0</VISIBLE>", L"<VISIBLE>1</VISIBLE>"}) {
        EXPECT_TRUE(Flag(One(std::wstring(visible) + L"<SNVTTYPE>105</SNVTTYPE>"), &IAttribute::get_Visible));
    }
}

TEST_F(CDBAttributeTest, HasItsElementsName) {
    EXPECT_EQ(Text(One(), &IAttribute::get_Name), L"Gain");
}

TEST_F(CDBAttributeTest, StartsWithoutKeys) {
    const auto gain = One();
    EXPECT_EQ(Text(gain, &IAttribute::get_GlobalKey), L"");
    EXPECT_EQ(Text(gain, &IAttribute::get_ExtendedKey), L"");
}

TEST_F(CDBAttributeTest, DropsAWrittenTag) {
    const auto gain = One();
    EXPECT_EQ(Put(gain, &IAttribute::put_Tag, L"mark"), S_OK);
    EXPECT_EQ(Text(gain, &IAttribute::get_Tag), L"");
}

TEST_F(CDBAttributeTest, KeepsAWrittenValueAsItIs) {
    const auto gain = One();
    for (const std::wstring value :
         {L"1.5", L"1,5", L" 7 ", L"", L"no number", L"999999999999", L"\x00e4\x4e2d\xd83d\xde00"}) {
        EXPECT_EQ(Put(gain, &IAttribute::put_Value, value), S_OK);
        EXPECT_EQ(Text(gain, &IAttribute::get_Value), value);
    }
}

TEST_F(CDBAttributeTest, KeepsANulInAValue) {
    const auto gain = One();
    const std::wstring value(L"a\0b", 3);
    EXPECT_EQ(Put(gain, &IAttribute::put_Value, value), S_OK);
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), value);
}

TEST_F(CDBAttributeTest, TakesANullTextForAnEmptyValue) {
    const auto gain = One(L"<SNVTTYPE>105</SNVTTYPE><VALUE>3</VALUE>");
    EXPECT_EQ(gain->put_Value(nullptr), S_OK);
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), L"");
}

TEST_F(CDBAttributeTest, WritesTheValueThroughItsOwnInterfaceToo) {
    const auto gain = One();
    EXPECT_EQ(Put(gain.As<_CDBAttribute>(), &_CDBAttribute::put_Value, L"12"), S_OK);
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), L"12");
}

TEST_F(CDBAttributeTest, LeavesTheValueOnBackToDefault) {
    const auto gain = One(L"<SNVTTYPE>105</SNVTTYPE><VALUE>3</VALUE>");
    EXPECT_EQ(gain->BackToDefault(), S_OK);
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), L"3");
}

TEST_F(CDBAttributeTest, KeepsNothingOfACallBack) {
    const auto gain = One();
    const auto target = Held::Make();
    EXPECT_EQ(gain->putref_CallBack(target.Get()), S_OK);
    EXPECT_EQ(target->Others(), 0u);
    EXPECT_EQ(gain->putref_CallBack(nullptr), S_OK);
}

TEST_F(CDBAttributeTest, HasAnEmptyBitSet) {
    const auto gain = One();
    EXPECT_EQ(Text(gain.As<_CDBAttribute>(), &_CDBAttribute::get_BitSet), L"");
}

TEST_F(CDBAttributeTest, GivesTheModulesUnitConverter) {
    const auto manager = Object(One().As<_CDBAttribute>(), &_CDBAttribute::get_UnitsManager);
    EXPECT_TRUE(com::SameObject(manager.Get(), static_cast<IUnitConverter*>(&Units())));
}

TEST_F(CDBAttributeTest, HasItsModuleAsParent) {
    const auto gain = One();
    EXPECT_TRUE(com::SameObject(Object(gain, &IAttribute::get_Parent).Get(), module.Get()));
}

TEST_F(CDBAttributeTest, ShowsItsTypeAsOneObject) {
    const auto gain = One();
    const auto type = Object(gain, &IAttribute::get_SNVTType);
    ASSERT_TRUE(type);
    EXPECT_EQ(Text(type, &ISNVType::get_ID), L"105");
    EXPECT_TRUE(com::SameObject(type.Get(), Object(gain, &IAttribute::get_SNVTType).Get()));
}

TEST_F(CDBAttributeTest, NeverChangesItsTypeOnSetType) {
    module = WithAttributes(L"<Gain><SNVTTYPE>105</SNVTTYPE></Gain><Other><SNVTTYPE>95</SNVTTYPE></Other>");
    const auto gain = Attribute(module, L"Gain");
    const auto other = Object(Attribute(module, L"Other"), &IAttribute::get_SNVTType);
    const auto mutableType = gain.As<IMutableTypeAttribute>();
    ASSERT_TRUE(mutableType);
    EXPECT_EQ(mutableType->SetType(other.Get()), S_OK);
    EXPECT_EQ(mutableType->SetType(nullptr), S_OK);
    EXPECT_EQ(Text(Object(gain, &IAttribute::get_SNVTType), &ISNVType::get_ID), L"105");
}

TEST_F(CDBAttributeTest, RefusesToEditAnUnknownGeneralType) {
    const auto gain = One(L"<SNVTTYPE>900</SNVTTYPE>");
    EXPECT_EQ(Boxes().size(), 2u); // the bad type, at both look-ups
    EXPECT_EQ(gain->SetValue(), kObjectNotSet);
    EXPECT_EQ(LastError().description, kObjectNotSetText);
}

TEST_F(CDBAttributeTest, RefusesToEditWithoutAType) {
    module = NewModule();
    EXPECT_EQ(Load(module, Stream({}, {}, L"<Gain/>")), kObjectNotSet);
    const auto gain = Attribute(module, L"Gain");
    ASSERT_TRUE(gain);
    EXPECT_EQ(gain->SetValue(), kObjectNotSet);
}

TEST_F(CDBAttributeTest, KeepsItsEditorChoiceWhenTheTypeChanges) {
    const auto gain = One(L"<SNVTTYPE>900</SNVTTYPE>");
    Boxes();
    EXPECT_EQ(gain.As<_CDBAttribute>()->XmlLoad(Saved(L"<Gain><SNVT_TYPE>105</SNVT_TYPE></Gain>").Get()),
              S_OK);
    EXPECT_EQ(Text(Object(gain, &IAttribute::get_SNVTType), &ISNVType::get_GenType), L"SignedNumeric");
    EXPECT_EQ(gain->SetValue(), kObjectNotSet);
}

TEST_F(CDBAttributeTest, IsReachedByName) {
    const auto gain = One(L"<SNVTTYPE>36</SNVTTYPE><VALUE>1.5</VALUE>");
    const auto script = gain.As<IDispatch>();
    EXPECT_EQ(com::Text(com::GetMember(*script.Get(), L"Name").Get().bstrVal), L"Gain");
    EXPECT_EQ(com::Text(com::GetMember(*script.Get(), L"DispValue").Get().bstrVal), Local(L"1.5"));
    EXPECT_EQ(com::GetMember(*script.Get(), L"NodeType").Get().lVal, 9);
    EXPECT_EQ(com::GetMember(*script.Get(), L"Visible").Get().boolVal, VARIANT_TRUE);
    const com::Variant value(L"changed");
    com::PutMember(*script.Get(), L"Value", value.Get());
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), L"changed");
}

TEST_F(CDBAttributeTest, HidesTheComponentsOwnMembers) {
    const auto script = One().As<IDispatch>();
    for (const wchar_t* name :
         {L"SetGlobalKey", L"SetExtendedKey", L"SetParent", L"GetParent", L"SNVTName", L"AttributeName",
          L"CreateEditor", L"LoadDefinition", L"LogicalAddress", L"IsPermanent"}) {
        std::wstring text = name;
        LPOLESTR names[] = {text.data()};
        DISPID id = 0;
        EXPECT_EQ(script->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), DISP_E_UNKNOWNNAME);
    }
}

} // namespace
