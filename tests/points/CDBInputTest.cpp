#include "tests/points/Points.h"

#include "com/LateBound.h"

#include <string>

using namespace support;
using namespace points;

namespace {

class CDBInputTest : public PointsTest {
  protected:
    com::Ref<IInput>
    One(const std::wstring& content = L"<SNVTCOMPATIBILITYLIST>105,8</SNVTCOMPATIBILITYLIST>") {
        module = WithInputs(L"<In1>" + content + L"</In1>");
        return Input(module, L"In1");
    }
    com::Ref<ISubItemConnable> Connable(const com::Ref<IInput>& input, const CalledFrom& = {}) {
        auto connable = input.As<ISubItemConnable>();
        EXPECT_TRUE(connable);
        return connable;
    }
    bool Compatible(const com::Ref<IInput>& input, const std::wstring& id, const CalledFrom& = {}) {
        const com::Bstr text(id);
        VARIANT_BOOL value = VARIANT_FALSE;
        EXPECT_EQ(Connable(input)->get_IsSNVTCompatible(text.Get(), &value), S_OK);
        return value != VARIANT_FALSE;
    }
};

TEST_F(CDBInputTest, AnswersItsFixedValues) {
    const auto input = One();
    EXPECT_EQ(Long(input, &IInput::get_NodeType), 7);
    EXPECT_TRUE(Flag(input, &IInput::get_Visible));
    EXPECT_FALSE(Flag(input, &IInput::get_Mandatory));
    EXPECT_TRUE(Flag(input, &IInput::get_Extended));
    EXPECT_EQ(Long(input, &IInput::get_CDBPosition), 0);
    EXPECT_FALSE(Flag(input, &IInput::get_IsMacroConnected));
    EXPECT_EQ(Long(Connable(input), &ISubItemConnable::get_itemType), 7);
    EXPECT_FALSE(Object(Connable(input), &ISubItemConnable::get_SNVTType));
}

TEST_F(CDBInputTest, StartsUnconnectedAndEmpty) {
    const auto input = One();
    EXPECT_FALSE(Flag(input, &IInput::get_IsConnected));
    EXPECT_FALSE(Object(input, &IInput::get_ConnectedType));
    EXPECT_EQ(Text(input, &IInput::get_Value), L"");
    EXPECT_EQ(Text(input, &IInput::get_GlobalKey), L"");
    EXPECT_EQ(Text(input, &IInput::get_ExtendedKey), L"");
}

TEST_F(CDBInputTest, HasItsElementsNameOnBothInterfaces) {
    const auto input = One();
    EXPECT_EQ(Text(input, &IInput::get_Name), L"In1");
    EXPECT_EQ(Text(Connable(input), &ISubItemConnable::get_Name), L"In1");
}

TEST_F(CDBInputTest, HasItsKeyOnBothInterfaces) {
    const auto input = One();
    Put(module, &IAppObject::put_GlobalKey, L"K");
    EXPECT_EQ(Text(input, &IInput::get_GlobalKey), L"K\\RIN\\In1");
    EXPECT_EQ(Text(Connable(input), &ISubItemConnable::get_GlobalKey), L"K\\RIN\\In1");
}

TEST_F(CDBInputTest, StoresTheConnectedFlag) {
    const auto input = One();
    EXPECT_EQ(Connable(input)->put_IsConnected(VARIANT_TRUE), S_OK);
    EXPECT_TRUE(Flag(input, &IInput::get_IsConnected));
    EXPECT_EQ(Connable(input)->put_IsConnected(VARIANT_FALSE), S_OK);
    EXPECT_FALSE(Flag(input, &IInput::get_IsConnected));
}

TEST_F(CDBInputTest, AnswersTrueForAnyFlagThatIsNotFalse) {
    const auto input = One();
    EXPECT_EQ(Connable(input)->put_IsConnected(1), S_OK);
    VARIANT_BOOL value = VARIANT_FALSE;
    EXPECT_EQ(input->get_IsConnected(&value), S_OK);
    EXPECT_EQ(value, VARIANT_TRUE);
}

TEST_F(CDBInputTest, IgnoresPriorityAndConnectionIndex) {
    const auto connable = Connable(One());
    EXPECT_EQ(connable->put_HasPriority(VARIANT_TRUE), S_OK);
    EXPECT_EQ(connable->put_IncrementalConnIndex(7), S_OK);
    EXPECT_FALSE(Flag(Input(module, L"1"), &IInput::get_IsConnected));
}

TEST_F(CDBInputTest, HandsTheConnectedTypeBack) {
    module = Loaded(Stream(L"<In1/>", L"<Out1><SNVTTYPE>105</SNVTTYPE></Out1>"));
    const auto type = Object(Output(module, L"1"), &IOutput::get_SNVTType);
    const auto input = Input(module, L"1");
    EXPECT_EQ(Connable(input)->putref_ConnectedType(type.Get()), S_OK);
    EXPECT_TRUE(com::SameObject(Object(input, &IInput::get_ConnectedType).Get(), type.Get()));
    EXPECT_EQ(Connable(input)->putref_ConnectedType(nullptr), S_OK);
    EXPECT_FALSE(Object(input, &IInput::get_ConnectedType));
}

TEST_F(CDBInputTest, AnswersNoConnectedTypeForAnObjectThatIsNone) {
    const auto input = One();
    EXPECT_EQ(Connable(input)->putref_ConnectedType(module.Get()), S_OK);
    EXPECT_FALSE(Object(input, &IInput::get_ConnectedType));
    EXPECT_EQ(Connable(input)->putref_ConnectedType(nullptr), S_OK);
}

TEST_F(CDBInputTest, KeepsNothingOfAnObjectThatIsNoType) {
    const auto input = One();
    const auto target = Held::Make();
    EXPECT_EQ(Connable(input)->putref_ConnectedType(target.Get()), S_OK);
    EXPECT_EQ(target->Others(), 0u);
}

// A point of its own module would keep the module, and the module the input.
TEST_F(CDBInputTest, DoesNotKeepItsModuleByAPointThatIsGivenAsItsType) {
    auto input = One();
    EXPECT_EQ(Connable(input)->putref_ConnectedType(input.Get()), S_OK);
    EXPECT_EQ(Connable(Input(module, L"In1"))->putref_ConnectedType(Inputs(module).Get()), S_OK);
    input.Reset();
    module.Reset();
    EXPECT_EQ(Dll().CanUnload(), S_OK);
}

TEST_F(CDBInputTest, KeepsAWrittenValueAsItIs) {
    const auto input = One();
    for (const std::wstring value : {L"0000", L"000000", L"1.5", L" x ", L"", L"Dev_1\\Out"}) {
        EXPECT_EQ(Put(input, &IInput::put_Value, value), S_OK);
        EXPECT_EQ(Text(input, &IInput::get_Value), value);
    }
}

TEST_F(CDBInputTest, KeepsNothingOfACallBack) {
    const auto input = One();
    const auto target = Held::Make();
    EXPECT_EQ(input->putref_CallBack(target.Get()), S_OK);
    EXPECT_EQ(target->Others(), 0u);
}

TEST_F(CDBInputTest, IgnoresAChangeOfType) {
    const auto input = One();
    const com::Variant type(L"8");
    EXPECT_EQ(input->changeType(type.Get()), S_OK);
    EXPECT_EQ(Text(Object(input, &IInput::get_SNVTCompatibles), &ICompatibleSNVTs::ToString), L"105,8");
}

TEST_F(CDBInputTest, GivesItsOneCompatibleList) {
    const auto input = One();
    const auto list = Object(input, &IInput::get_SNVTCompatibles);
    ASSERT_TRUE(list);
    EXPECT_TRUE(com::SameObject(list.Get(), Object(input, &IInput::get_SNVTCompatibles).Get()));
    const com::Bstr more(L"51");
    EXPECT_EQ(list->Add(more.Get()), S_OK);
    EXPECT_TRUE(Compatible(input, L"51"));
}

TEST_F(CDBInputTest, IsCompatibleWithTheTypesOfItsListExactly) {
    const auto input = One(L"<SNVTCOMPATIBILITYLIST>105,Abc, 8</SNVTCOMPATIBILITYLIST>");
    EXPECT_TRUE(Compatible(input, L"105"));
    EXPECT_TRUE(Compatible(input, L"Abc"));
    EXPECT_TRUE(Compatible(input, L" 8"));
    for (const wchar_t* id : {L"8", L"abc", L"10", L"", L"105,Abc"}) {
        EXPECT_FALSE(Compatible(input, id)) << id;
    }
}

TEST_F(CDBInputTest, IsCompatibleWithNothingWhileItsListIsEmpty) {
    EXPECT_FALSE(Compatible(One(L"<SNVTTYPE>105</SNVTTYPE>"), L"105"));
    EXPECT_FALSE(Compatible(One(L""), L""));
}

TEST_F(CDBInputTest, HasItsModuleAsParent) {
    const auto input = One();
    EXPECT_TRUE(com::SameObject(Object(input, &IInput::get_Parent).Get(), module.Get()));
}

TEST_F(CDBInputTest, IsReachedByNameOverAllItsInterfaces) {
    const auto input = One();
    const auto script = input.As<IDispatch>();
    EXPECT_EQ(com::Text(com::GetMember(*script.Get(), L"Name").Get().bstrVal), L"In1");
    EXPECT_EQ(com::GetMember(*script.Get(), L"NodeType").Get().lVal, 7);
    EXPECT_EQ(com::GetMember(*script.Get(), L"itemType").Get().lVal, 7);
    VARIANT yes{};
    yes.vt = VT_BOOL;
    yes.boolVal = VARIANT_TRUE;
    com::PutMember(*script.Get(), L"IsConnected", yes);
    EXPECT_EQ(com::GetMember(*script.Get(), L"IsConnected").Get().boolVal, VARIANT_TRUE);
    com::Variant id(L"105");
    VARIANT argument = id.Get();
    EXPECT_EQ(com::CallMember(*script.Get(), L"changeType", {}).Get().vt, VT_EMPTY);
    DISPPARAMS arguments{&argument, nullptr, 1, 0};
    std::wstring name = L"IsSNVTCompatible";
    LPOLESTR names[] = {name.data()};
    DISPID member = 0;
    ASSERT_EQ(script->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &member), S_OK);
    com::Variant answer;
    EXPECT_EQ(script->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &arguments,
                             answer.Put(), nullptr, nullptr),
              S_OK);
    EXPECT_EQ(answer.Get().boolVal, VARIANT_TRUE);
}

} // namespace
