#include "tests/points/Points.h"

#include "com/LateBound.h"

#include <span>
#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

/// What a script engine passes: numbers for texts and flags, variables by
/// reference, Nothing for an object.
class ScriptArgumentsTest : public PointsTest {
  protected:
    void SetUp() override {
        PointsTest::SetUp();
        module =
            Loaded(Stream(L"<In1><SNVTCOMPATIBILITYLIST>105,8</SNVTCOMPATIBILITYLIST></In1><In2/>",
                          L"<Out1><SNVTTYPE>105</SNVTTYPE></Out1>", L"<Gain><SNVTTYPE>36</SNVTTYPE></Gain>"));
    }
    static VARIANT Number(long value) {
        VARIANT number{};
        number.vt = VT_I4;
        number.lVal = value;
        return number;
    }
    static VARIANT Nothing() {
        VARIANT nothing{};
        nothing.vt = VT_DISPATCH;
        return nothing;
    }
    static VARIANT Variable(VARIANT& place) {
        VARIANT reference{};
        reference.vt = VT_BYREF | VT_VARIANT;
        reference.pvarVal = &place;
        return reference;
    }
    static com::Variant Call(IDispatch* object, const wchar_t* member, VARIANT argument) {
        return com::CallMember(*object, member, std::span(&argument, 1));
    }
    static HRESULT FailureOf(IDispatch* object, const wchar_t* member, VARIANT argument) {
        const auto failure = com::Attempt([&] { Call(object, member, argument); });
        return failure ? failure->code : S_OK;
    }
    static std::wstring NameOf(const com::Variant& object) {
        return com::Text(com::GetMember(*object.Get().pdispVal, L"Name").Get().bstrVal);
    }
};

TEST_F(ScriptArgumentsTest, FindsAnItemByAVariableOfTextOrNumber) {
    com::Variant name(L"in2");
    VARIANT text = name.Get();
    EXPECT_EQ(NameOf(Call(Inputs(module).Get(), L"Item", Variable(text))), L"In2");
    VARIANT position = Number(2);
    EXPECT_EQ(NameOf(Call(Inputs(module).Get(), L"Item", Variable(position))), L"In2");
    VARIANT whole{};
    whole.vt = VT_R8;
    whole.dblVal = 1;
    EXPECT_EQ(NameOf(Call(Outputs(module).Get(), L"Item", whole)), L"Out1");
    EXPECT_EQ(NameOf(Call(Attributes(module).Get(), L"Item", Variable(whole))), L"Gain");
}

TEST_F(ScriptArgumentsTest, FindsNothingForAnEmptyVariable) {
    VARIANT empty{};
    const auto none = Call(Inputs(module).Get(), L"Item", Variable(empty));
    EXPECT_EQ(none.Get().vt, VT_DISPATCH);
    EXPECT_EQ(none.Get().pdispVal, nullptr);
}

TEST_F(ScriptArgumentsTest, TakesANumberForAValue) {
    const auto gain = Attribute(module, L"Gain");
    com::PutMember(*gain.Get(), L"Value", Number(-7));
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), L"-7");
    com::PutMember(*gain.Get(), L"Value", VARIANT{});
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), L"");
    const auto input = Input(module, L"In1");
    VARIANT number = Number(12);
    com::PutMember(*input.Get(), L"Value", Variable(number));
    EXPECT_EQ(Text(input, &IInput::get_Value), L"12");
}

TEST_F(ScriptArgumentsTest, TakesANumberForAFlag) {
    const auto output = Output(module, L"Out1");
    com::PutMember(*output.Get(), L"IsDisplayable", Number(1));
    EXPECT_TRUE(Flag(output, &IOutput::get_IsDisplayable));
    com::PutMember(*output.Get(), L"IsDisplayable", Number(0));
    EXPECT_FALSE(Flag(output, &IOutput::get_IsDisplayable));
    com::PutMember(*output.Get(), L"IsConnected", Number(-1));
    EXPECT_TRUE(Flag(output, &IOutput::get_IsConnected));
}

TEST_F(ScriptArgumentsTest, TakesANumberForAnIdentifier) {
    VARIANT known = Number(105);
    EXPECT_EQ(Call(Input(module, L"In1").Get(), L"IsSNVTCompatible", known).Get().boolVal, VARIANT_TRUE);
    EXPECT_EQ(Call(Output(module, L"Out1").Get(), L"IsSNVTCompatible", Variable(known)).Get().boolVal,
              VARIANT_TRUE);
    EXPECT_EQ(Call(Output(module, L"Out1").Get(), L"IsSNVTCompatible", Number(8)).Get().boolVal,
              VARIANT_FALSE);
    const auto list = Object(Input(module, L"In1"), &IInput::get_SNVTCompatibles);
    Call(list.Get(), L"Add", Number(51));
    EXPECT_EQ(Call(list.Get(), L"Exists", Number(51)).Get().boolVal, VARIANT_TRUE);
    Call(list.Get(), L"Remove", Number(105));
    EXPECT_EQ(Text(list, &ICompatibleSNVTs::ToString), L"8,51");
    EXPECT_EQ(FailureOf(list.Get(), L"Remove", Number(105)), kInvalidCall);
}

TEST_F(ScriptArgumentsTest, FindsAListsEntryByATextOfItsPosition) {
    const auto list = Object(Input(module, L"In1"), &IInput::get_SNVTCompatibles);
    const com::Variant second(L"2");
    const auto entry = Call(list.Get(), L"Item", second.Get());
    EXPECT_EQ(com::Text(com::GetMember(*entry.Get().pdispVal, L"ID").Get().bstrVal), L"8");
}

TEST_F(ScriptArgumentsTest, TakesNothingWhereAnObjectMayBeNone) {
    com::PutMember(*Input(module, L"In1").Get(), L"ConnectedType", Nothing());
    com::PutMember(*Input(module, L"In1").Get(), L"CallBack", Nothing());
    com::PutMember(*Inputs(module).Get(), L"CallBack", Nothing());
    com::PutMember(*Output(module, L"Out1").Get(), L"CallBack", Nothing());
    com::PutMember(*Outputs(module).Get(), L"CallBack", Nothing());
    com::PutMember(*Attribute(module, L"Gain").Get(), L"CallBack", Nothing());
    Call(Attribute(module, L"Gain").Get(), L"SetType", Nothing());
    EXPECT_EQ(com::GetMember(*Input(module, L"In1").Get(), L"ConnectedType").Get().pdispVal, nullptr);
}

TEST_F(ScriptArgumentsTest, RefusesNothingWhereAnObjectIsNeeded) {
    const auto list = Object(Input(module, L"In1"), &IInput::get_SNVTCompatibles);
    EXPECT_EQ(FailureOf(list.Get(), L"Merge", Nothing()), kObjectNotSet);
    const auto failure =
        com::Attempt([&] { com::PutMember(*Output(module, L"Out1").Get(), L"ConnectedType", Nothing()); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->code, kObjectNotSet);
    EXPECT_EQ(failure->description, kObjectNotSetText);
}

TEST_F(ScriptArgumentsTest, ReportsALoadFromNothing) {
    Call(Inputs(module).Get(), L"XmlLoad", Nothing());
    ExpectOnlyReport(Boxes(), kObjectNotSetText, L"O_Tam_id Class Module CDBInputs", L"Sub XmlLoad");
}

TEST_F(ScriptArgumentsTest, LoadsFromAVariable) {
    const auto saved = Saved(L"<Out1><IsDisplayable>1</IsDisplayable></Out1>");
    const com::Variant element(saved.Get());
    VARIANT place = element.Get();
    Call(Output(module, L"Out1").Get(), L"XmlLoad", Variable(place));
    EXPECT_TRUE(Flag(Output(module, L"Out1"), &IOutput::get_IsDisplayable));
}

TEST_F(ScriptArgumentsTest, LoadsFromADocumentByItsElement) {
    // A document's only child is its element, one unknown saved name here.
    const Document saved = Parse(L"<?xml version='1.0'?><!--saved--><In2/>");
    const auto inputs = Inputs(module).As<_CDBInputs>();
    EXPECT_EQ(inputs->XmlLoad(saved.Get()), S_OK);
    EXPECT_EQ(Names(Inputs(module)), (std::vector<std::wstring>{L"In2", L"In1"}));
}

} // namespace
