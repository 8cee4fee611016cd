#include "com/CallArguments.h"

#include "tests/com/Subjects.h"
#include "tests/support/Caller.h"

#include <string>
#include <string_view>
#include <vector>

using namespace contract;

namespace {

constexpr const wchar_t* kManagerCall = L"CreateTamInternalAppObject";

VARIANT TextValue(const com::Bstr& text) {
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = text.Get();
    return value;
}

VARIANT Variable(VARIANT& variable) {
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = &variable;
    return reference;
}

VARIANT Object(VARTYPE type, IUnknown* object) {
    VARIANT value{};
    value.vt = type;
    value.punkVal = object;
    return value;
}

ULONG CountOf(IUnknown* object) {
    object->AddRef();
    return object->Release();
}

/// Calls with the values of a script: variables by reference, values of other
/// types, objects by any of their interfaces.
class CallVariablesTest : public ContractTest {
  protected:
    static HRESULT Call(IDispatch* object, const std::wstring& name, std::vector<VARIANT> values,
                        VARIANT* result = nullptr, UINT* wrong = nullptr) {
        DISPID id = DISPID_UNKNOWN;
        com::Check(IdOf(object, name, id));
        return support::Invoke(object, id, DISPATCH_METHOD | DISPATCH_PROPERTYGET, values, result, nullptr,
                               wrong);
    }

    /// What the member itself answers.
    static HRESULT FailureOf(IDispatch* object, const std::wstring& name, std::vector<VARIANT> values) {
        DISPID id = DISPID_UNKNOWN;
        com::Check(IdOf(object, name, id));
        EXCEPINFO exception{};
        com::Variant result;
        EXPECT_EQ(support::Invoke(object, id, DISPATCH_METHOD, values, result.Put(), &exception),
                  DISP_E_EXCEPTION);
        SysFreeString(exception.bstrSource);
        SysFreeString(exception.bstrDescription);
        return exception.scode;
    }

    static HRESULT Put(IDispatch* object, const std::wstring& name, const VARIANT& value) {
        DISPID id = DISPID_UNKNOWN;
        com::Check(IdOf(object, name, id));
        std::vector<VARIANT> values{value};
        return support::Invoke(object, id, DISPATCH_PROPERTYPUT, values, nullptr, nullptr);
    }

    com::Ref<ICompatibleSNVTs> List(const com::Ref<IAppObject>& module) {
        const auto inputs = support::Object(module, &IAppObject::get_Inputs);
        return support::Object(support::Item(inputs, &IInputs::get_Item, L"1"), &IInput::get_SNVTCompatibles);
    }

    /// The key of the channel object that a call with this key makes.
    std::wstring KeyMadeWith(const VARIANT& key) {
        const auto manager = Manager();
        com::Variant made;
        EXPECT_EQ(Call(manager.Get(), kManagerCall, {Object(VT_DISPATCH, nullptr), key}, made.Put()), S_OK);
        if (made.Get().vt != VT_DISPATCH || made.Get().pdispVal == nullptr) {
            return L"no object";
        }
        const auto object = com::Query<ITamInternalAppObject>(made.Get().pdispVal);
        return support::Text(object, &ITamInternalAppObject::get_TamInternalObjectKey);
    }
};

TEST_F(CallVariablesTest, KeepsNoArgumentOfARefusedCall) {
    const auto module = Module();
    const auto list = List(module);
    const ULONG before = CountOf(list.Get());
    UINT wrong = 99;
    // A text has to be the second argument; the first one takes anything.
    EXPECT_EQ(Call(module.Get(), L"ShowRename",
                   {Object(VT_DISPATCH, module.Get()), Object(VT_DISPATCH, list.Get())}, nullptr, &wrong),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong, 0u);
    EXPECT_EQ(Call(module.Get(), L"XMLSave", {Object(VT_UNKNOWN, list.Get())}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(CountOf(list.Get()), before);
}

TEST_F(CallVariablesTest, LeavesTheCallersObjectsAsTheyAre) {
    const auto module = Module();
    const auto list = List(module);
    const auto other = support::Object(List(module).As<IClonable>(), &IClonable::Clone);
    const auto script = other.As<IClonable>();
    const ULONG before = CountOf(script.Get());
    std::vector<VARIANT> values{Object(VT_DISPATCH, script.Get())};
    DISPID id = DISPID_UNKNOWN;
    ASSERT_EQ(IdOf(list.Get(), L"Merge", id), S_OK);
    com::Variant result;
    EXPECT_EQ(support::Invoke(list.Get(), id, DISPATCH_METHOD, values, result.Put(), nullptr), S_OK);
    EXPECT_EQ(values[0].pdispVal, static_cast<IDispatch*>(script.Get()));
    EXPECT_EQ(CountOf(script.Get()), before);
}

TEST_F(CallVariablesTest, MissesARequiredArgumentBesideANamedOne) {
    const auto module = Module();
    const com::Bstr text(L"key");
    VARIANT value = TextValue(text);
    DISPID second = 1;
    DISPID id = DISPID_UNKNOWN;
    ASSERT_EQ(IdOf(module.Get(), L"ShowRename", id), S_OK);
    DISPPARAMS params{&value, &second, 1, 1};
    EXPECT_EQ(module->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, nullptr, nullptr,
                             nullptr),
              DISP_E_PARAMNOTOPTIONAL);
}

TEST_F(CallVariablesTest, TakesAVariableForATextByReference) {
    com::Bstr text(L"AI7");
    VARIANT direct{};
    direct.vt = VT_BYREF | VT_BSTR;
    direct.pbstrVal = text.Address();
    com::Variant held(std::wstring_view(L"AI8"));
    com::Variant number(9L);
    VARIANT nested = direct;
    EXPECT_EQ(KeyMadeWith(direct), L"AI7");
    EXPECT_EQ(KeyMadeWith(TextValue(text)), L"AI7");
    EXPECT_EQ(KeyMadeWith(Variable(nested)), L"AI7");
    EXPECT_EQ(KeyMadeWith(Variable(*held.Address())), L"AI8");
    EXPECT_EQ(KeyMadeWith(Variable(*number.Address())), L"9");
    EXPECT_EQ(KeyMadeWith(number.Get()), L"9");
    // The member writes nothing, so nothing changes.
    EXPECT_EQ(text.View(), L"AI7");
    EXPECT_EQ(com::Text(held.Get().bstrVal), L"AI8");
    EXPECT_EQ(number.Get().vt, VT_I4);
    EXPECT_EQ(number.Get().lVal, 9);
}

TEST_F(CallVariablesTest, RefusesAReferenceToAnotherType) {
    const auto manager = Manager();
    long number = 9;
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_I4;
    reference.plVal = &number;
    UINT wrong = 99;
    EXPECT_EQ(Call(manager.Get(), kManagerCall, {Object(VT_DISPATCH, nullptr), reference}, nullptr, &wrong),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong, 1u);
}

TEST_F(CallVariablesTest, LeavesARefusedReferenceToItsMember) {
    const auto module = Module();
    const auto manager = Manager();
    VARIANT nowhere{};
    nowhere.vt = VT_BYREF | VT_BSTR;
    for (const VARIANT& key : {nowhere, Variable(nowhere)}) {
        EXPECT_EQ(FailureOf(manager.Get(), kManagerCall, {Object(VT_DISPATCH, nullptr), key}), E_POINTER);
    }
    nowhere.vt = VT_BYREF | VT_VARIANT;
    EXPECT_EQ(FailureOf(module.Get(), L"ShowRename", {nowhere}), E_POINTER);
    EXPECT_TRUE(Boxes().empty());
}

// Whoever owns such a variable writes to the place after it, and would not
// let go of a text that stands there instead.
TEST_F(CallVariablesTest, LeavesAReferenceInAVariableAlone) {
    const auto channel = Channel();
    const auto attributes = support::Object(channel, &IAppObject::get_Attributes);
    const auto attribute = support::Item(attributes, &IAttributes::get_Item, L"1");
    long number = 5;
    VARIANT variable{};
    variable.vt = VT_BYREF | VT_I4;
    variable.plVal = &number;
    UINT wrong = 99;
    EXPECT_EQ(Call(channel.Get(), L"InterceptIsUnitsDependent",
                   {Variable(variable), Object(VT_DISPATCH, attribute.Get())}, nullptr, &wrong),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong, 0u);
    EXPECT_EQ(variable.vt, VT_BYREF | VT_I4);
    const auto module = Module();
    EXPECT_EQ(FailureOf(module.Get(), L"ShowRename", {Variable(variable)}), kTypeMismatch);
    EXPECT_TRUE(Boxes().empty()) << "refused before anything is typed";
    EXPECT_EQ(variable.vt, VT_BYREF | VT_I4);
    EXPECT_EQ(variable.plVal, &number);
    EXPECT_EQ(number, 5);
    short choice = 7;
    EXPECT_EQ(module.As<ITamDialogs>()->ShowRename(&variable, nullptr, &choice), kTypeMismatch);
    VARIANT outer = Variable(variable);
    EXPECT_EQ(module.As<ITamDialogs>()->ShowRename(&outer, nullptr, &choice), kTypeMismatch);
    EXPECT_EQ(choice, 0);
    EXPECT_TRUE(Boxes().empty());
}

TEST_F(CallVariablesTest, RefusesAReferenceWithoutAPlaceBySlotToo) {
    const auto module = Module();
    const auto object = Host().Create<IAppObject>(__uuidof(::GenericObject));
    VARIANT_BOOL done = VARIANT_FALSE;
    ASSERT_EQ(object->Init(com::Bstr(HostServices::kDefinition).Get(), &done), S_OK);
    ASSERT_EQ(object->Create(), S_OK);
    const auto input =
        support::Item(support::Object(object, &IAppObject::get_Inputs), &IInputs::get_Item, L"1");
    const auto output =
        support::Item(support::Object(object, &IAppObject::get_Outputs), &IOutputs::get_Item, L"1");
    for (const int type : {VT_BSTR, VT_I4, VT_VARIANT}) {
        VARIANT nowhere{};
        nowhere.vt = static_cast<VARTYPE>(VT_BYREF | type);
        VARIANT variable = Variable(nowhere);
        for (VARIANT* given : {&nowhere, &variable}) {
            short choice = 7;
            EXPECT_EQ(module.As<ITamDialogs>()->ShowRename(given, nullptr, &choice), kTypeMismatch);
            EXPECT_EQ(choice, 0);
            EXPECT_EQ(module->ViewDatasheet(*given), S_OK) << "no sheet: no window is needed";
            EXPECT_EQ(Boxes().size(), 1u);
            EXPECT_EQ(input->changeType(*given), kTypeMismatch);
            EXPECT_EQ(output->changeType(*given), kTypeMismatch);
        }
    }
}

TEST_F(CallVariablesTest, TakesVariablesForValues) {
    const auto module = Module();
    com::Variant text(std::wstring_view(L"a name"));
    EXPECT_EQ(Put(module.Get(), L"UserName", Variable(*text.Address())), S_OK);
    EXPECT_EQ(support::Text(module, &IAppObject::get_UserName), L"a name");
    com::Variant number(12L);
    EXPECT_EQ(Put(module.Get(), L"UserName", Variable(*number.Address())), S_OK);
    EXPECT_EQ(support::Text(module, &IAppObject::get_UserName), L"12");
    com::Bstr other(L"another");
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_BSTR;
    reference.pbstrVal = other.Address();
    EXPECT_EQ(Put(module.Get(), L"UserName", reference), S_OK);
    EXPECT_EQ(support::Text(module, &IAppObject::get_UserName), L"another");
    const auto parent = Module();
    VARIANT object = Object(VT_DISPATCH, parent.Get());
    EXPECT_EQ(Put(module.Get(), L"Parent", Variable(object)), S_OK);
    EXPECT_TRUE(com::SameObject(support::Object(module, &IAppObject::get_Parent).Get(), parent.Get()));
    EXPECT_EQ(Put(module.Get(), L"Parent", Object(VT_UNKNOWN, nullptr)), S_OK);
    EXPECT_FALSE(support::Object(module, &IAppObject::get_Parent));
}

TEST_F(CallVariablesTest, ReadsANumberTextWithTheUsersMarks) {
    const auto module = Module();
    const com::Bstr text(support::Local(L"2.5"));
    EXPECT_EQ(Put(module.Get(), L"XPosition", TextValue(text)), S_OK);
    EXPECT_EQ(support::Double(module, &IAppObject::get_XPosition), 2.5);
}

TEST_F(CallVariablesTest, TakesNoTextForANumberThatIsNone) {
    const auto module = Module();
    wchar_t currency[16] = {};
    ASSERT_NE(GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SCURRENCY, currency, 16), 0);
    module->put_XPosition(7);
    for (const std::wstring& text : {std::wstring(), std::wstring(L"12 pieces"),
                                     std::wstring(L"1\0"
                                                  L"2",
                                                  3),
                                     currency + std::wstring(L"2")}) {
        const com::Bstr number(text);
        EXPECT_EQ(Put(module.Get(), L"XPosition", TextValue(number)), DISP_E_TYPEMISMATCH) << Narrow(text);
    }
    EXPECT_EQ(support::Double(module, &IAppObject::get_XPosition), 7.0);
}

} // namespace
