#include "com/LateBound.h"

#include "tests/com/Subjects.h"
#include "tests/support/Caller.h"

#include <string>
#include <vector>

using namespace contract;

namespace {

using Script = com::Ref<IDispatch>;

/// A client that knows names and nothing else. What a member answers comes
/// with the interface that the member is declared with; a name may be any of
/// the object's, whichever interface that is.
class LateBoundTest : public ContractTest {
  protected:
    /// A property that is an object, as a script engine receives it.
    static Script Get(const Script& object, const std::wstring& name) {
        const com::Variant value = com::GetMember(*object.Get(), name);
        EXPECT_EQ(value.Get().vt, VT_DISPATCH) << Narrow(name);
        return Script(value.Get().vt == VT_DISPATCH ? value.Get().pdispVal : nullptr);
    }
    static std::wstring Text(const Script& object, const std::wstring& name) {
        const com::Variant value = com::GetMember(*object.Get(), name);
        EXPECT_EQ(value.Get().vt, VT_BSTR) << Narrow(name);
        return value.Get().vt == VT_BSTR ? com::Text(value.Get().bstrVal) : L"";
    }
    static long Number(const Script& object, const std::wstring& name) {
        const com::Variant value = com::GetMember(*object.Get(), name);
        EXPECT_EQ(value.Get().vt, VT_I4) << Narrow(name);
        return value.Get().lVal;
    }
    static bool Flag(const Script& object, const std::wstring& name) {
        const com::Variant value = com::GetMember(*object.Get(), name);
        EXPECT_EQ(value.Get().vt, VT_BOOL) << Narrow(name);
        return value.Get().boolVal != VARIANT_FALSE;
    }
    static void PutFlag(const Script& object, const std::wstring& name, bool flag) {
        VARIANT value{};
        value.vt = VT_BOOL;
        value.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
        com::PutMember(*object.Get(), name, value);
    }
    static com::Variant Call(const Script& object, const std::wstring& name, const std::wstring& argument) {
        com::Variant text(argument);
        VARIANT value = text.Get();
        return com::CallMember(*object.Get(), name, {&value, 1});
    }
    static Script Item(const Script& collection, const std::wstring& index) {
        const com::Variant item = Call(collection, L"Item", index);
        EXPECT_EQ(item.Get().vt, VT_DISPATCH);
        return Script(item.Get().vt == VT_DISPATCH ? item.Get().pdispVal : nullptr);
    }
    Script NewScript() { return Script(Module()); }

    /// The object through the IDispatch that it answers as such.
    static Script Default(const Script& object) { return object.As<IDispatch>(); }
};

TEST_F(LateBoundTest, LoadsAStreamThroughTheModulesOwnDispatch) {
    const Script module(NewModule());
    Call(module, L"LoadFromXmlStream", support::Stream(L"<In1/>", {}, {}, L"ByName"));
    EXPECT_EQ(Text(module, L"Name"), L"ByName");
    EXPECT_EQ(Text(module, L"UserName"), L"ByName");
    EXPECT_EQ(Number(Get(module, L"Inputs"), L"Count"), 1);
}

TEST_F(LateBoundTest, ReachesTheModuleFromEachOfItsInterfaces) {
    const auto module = Module();
    for (const Script& script : {Script(module), Script(module.As<ITamObject>()),
                                 Script(module.As<ITamDialogs>()), module.As<IDispatch>()}) {
        com::Variant address(7L);
        com::PutMember(*script.Get(), L"Address", address.Get());
        EXPECT_EQ(com::GetMember(*script.Get(), L"Address").Get().iVal, 7);
        EXPECT_EQ(Number(script, L"NodeType"), 6);
        Call(script, L"Init", L"Nowhere");
        EXPECT_EQ(Boxes().size(), 1u);
        EXPECT_EQ(Text(script, L"UniqueIDString"), L"Nowhere");
        com::CallMember(*script.Get(), L"ShowAbout", {});
        EXPECT_EQ(Boxes().size(), 1u);
    }
}

TEST_F(LateBoundTest, ReadsAndWritesIsConnectedOfAnInputThroughOneDispatch) {
    const Script input = Item(Get(NewScript(), L"Inputs"), L"AI1_Value");
    for (const Script& script :
         {input, Default(input), Script(input.As<ISubItemConnable>()), Script(input.As<IInput>())}) {
        PutFlag(script, L"IsConnected", true);
        EXPECT_TRUE(Flag(script, L"IsConnected"));
        PutFlag(script, L"IsConnected", false);
        EXPECT_FALSE(Flag(script, L"IsConnected"));
    }
}

TEST_F(LateBoundTest, ReadsAndWritesIsConnectedOfAnOutputThroughOneDispatch) {
    const Script output = Item(Get(NewScript(), L"Outputs"), L"AO1_Value");
    for (const Script& script : {output, Default(output), Script(output.As<ISubItemConnable>())}) {
        PutFlag(script, L"IsConnected", true);
        EXPECT_TRUE(Flag(script, L"IsConnected"));
        PutFlag(script, L"IsConnected", false);
        EXPECT_FALSE(Flag(script, L"IsConnected"));
    }
}

TEST_F(LateBoundTest, AnswersAClashingNameByTheInterfaceAsked) {
    const Script output = Item(Get(NewScript(), L"Outputs"), L"AO1_Value");
    PutFlag(output, L"IsConnected", true);
    const Script display(output.As<IDisplayItem>());
    EXPECT_FALSE(Flag(display, L"IsConnected")) << "a display item never reports a connection";
    EXPECT_EQ(Number(display, L"itemType"), 10);
    EXPECT_EQ(Number(Script(output.As<ISubItemConnable>()), L"itemType"), 8);
}

TEST_F(LateBoundTest, SetsAConnectedTypeWithAndWithoutSet) {
    const Script module = NewScript();
    const Script input = Item(Get(module, L"Inputs"), L"1");
    const Script type = Get(Item(Get(module, L"Attributes"), L"1"), L"SNVTType");
    VARIANT value{};
    value.vt = VT_DISPATCH;
    value.pdispVal = type.Get();
    for (const int flags : {DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF}) {
        DISPID id = DISPID_UNKNOWN;
        ASSERT_EQ(IdOf(input.Get(), L"ConnectedType", id), S_OK);
        std::vector<VARIANT> values{value};
        EXPECT_EQ(support::Invoke(input.Get(), id, static_cast<WORD>(flags), values, nullptr, nullptr), S_OK);
        EXPECT_TRUE(com::SameObject(Get(input, L"ConnectedType").Get(), type.Get()));
        VARIANT none{};
        none.vt = VT_DISPATCH;
        std::vector<VARIANT> empty{none};
        EXPECT_EQ(support::Invoke(input.Get(), id, static_cast<WORD>(flags), empty, nullptr, nullptr), S_OK);
        EXPECT_FALSE(Get(input, L"ConnectedType"));
    }
}

// A property declared as IInputs* arrives as the IDispatch of IInputs, which is
// not the object's default interface: the class's own members are there too.

TEST_F(LateBoundTest, ReachesOwnMembersOfACollectionThatAPropertyAnswers) {
    const Script module = NewScript();
    const auto saved = support::Parse(L"<Inputs><AI2_Value/><AI1_Value/></Inputs>");
    const Script inputs = Get(module, L"Inputs");
    EXPECT_EQ(inputs.Get(), static_cast<IDispatch*>(inputs.As<IInputs>().Get()));
    EXPECT_NE(inputs.Get(), Default(inputs).Get()) << "the default interface is another one";
    VARIANT element{};
    element.vt = VT_DISPATCH;
    element.pdispVal = support::Root(saved).Detach();
    com::CallMember(*inputs.Get(), L"XmlLoad", {&element, 1});
    com::CallMember(*inputs.Get(), L"RebuildIndexes", {});
    element.pdispVal->Release();
    EXPECT_EQ(Number(inputs, L"Count"), 2);
}

TEST_F(LateBoundTest, ReachesOwnMembersOfPointsThatItemAnswers) {
    const Script module = NewScript();
    for (const wchar_t* name : {L"Inputs", L"Outputs", L"Attributes"}) {
        SCOPED_TRACE(Narrow(name));
        const Script point = Item(Get(module, name), L"1");
        EXPECT_NE(point.Get(), Default(point).Get());
        for (const Script& script : {point, Default(point)}) {
            DISPID own = DISPID_UNKNOWN;
            DISPID host = DISPID_UNKNOWN;
            EXPECT_EQ(IdOf(script.Get(), L"XMLSave", own), S_OK);
            EXPECT_EQ(IdOf(script.Get(), L"GlobalKey", host), S_OK);
            EXPECT_NE(own, host);
        }
    }
}

TEST_F(LateBoundTest, ReadsEachSideOfAType) {
    const Script type = Get(Item(Get(NewScript(), L"Attributes"), L"CONFIG"), L"SNVTType");
    EXPECT_EQ(Text(type, L"GenType"), L"Enum");
    EXPECT_TRUE(Flag(type, L"IsEnumType"));
    com::PutMember(*type.Get(), L"EnumDesc", com::Variant(L"0,Off;1,On;").Get());
    EXPECT_EQ(Text(type, L"EnumDesc"), L"0,Off;1,On;");
    const Script side(type.As<IEnumType>());
    EXPECT_EQ(Text(side, L"Name"), L"Switch");
}

TEST_F(LateBoundTest, ClonesACompatibleListThroughItsOwnDispatch) {
    const Script list = Get(Item(Get(NewScript(), L"Inputs"), L"1"), L"SNVTCompatibles");
    EXPECT_EQ(com::Text(com::CallMember(*list.Get(), L"ToString", {}).Get().bstrVal), L"105,95");
    const com::Variant copy = com::CallMember(*list.Get(), L"Clone", {});
    ASSERT_EQ(copy.Get().vt, VT_DISPATCH);
    const Script clone(copy.Get().pdispVal);
    EXPECT_EQ(Number(clone, L"Count"), 2);
    EXPECT_FALSE(com::SameObject(clone.Get(), list.Get()));
}

TEST_F(LateBoundTest, RefusesAnObjectOfAnotherClassForATypedArgument) {
    const Script module = NewScript();
    const Script list = Get(Item(Get(module, L"Inputs"), L"1"), L"SNVTCompatibles");
    DISPID id = DISPID_UNKNOWN;
    ASSERT_EQ(IdOf(list.Get(), L"Merge", id), S_OK);
    VARIANT other{};
    other.vt = VT_DISPATCH;
    other.pdispVal = module.Get();
    std::vector<VARIANT> values{other};
    com::Variant result;
    UINT wrong = 99;
    EXPECT_EQ(support::Invoke(list.Get(), id, DISPATCH_METHOD, values, result.Put(), nullptr, &wrong),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong, 0u);
    EXPECT_EQ(result.Get().vt, VT_EMPTY);
}

// Items.

TEST_F(LateBoundTest, TakesItemAsDefaultMember) {
    const Script module = NewScript();
    for (const wchar_t* name : {L"Inputs", L"Outputs", L"Attributes"}) {
        SCOPED_TRACE(Narrow(name));
        const Script collection = Get(module, name);
        for (const Script& script : {collection, Default(collection)}) {
            com::Variant index(L"2");
            std::vector<VARIANT> values{index.Get()};
            com::Variant item;
            ASSERT_EQ(support::Invoke(script.Get(), DISPID_VALUE, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                                      values, item.Put(), nullptr),
                      S_OK);
            ASSERT_EQ(item.Get().vt, VT_DISPATCH);
            EXPECT_TRUE(com::SameObject(item.Get().pdispVal, Item(collection, L"2").Get()));
        }
    }
}

TEST_F(LateBoundTest, TakesAnIndexAfterACollectionsName) {
    const Script module = NewScript();
    // module.Inputs("AI2_Value") is one call of `Inputs` with an argument.
    const com::Variant item = Call(module, L"Inputs", L"AI2_Value");
    ASSERT_EQ(item.Get().vt, VT_DISPATCH);
    EXPECT_EQ(Text(Script(item.Get().pdispVal), L"Name"), L"AI2_Value");
}

TEST_F(LateBoundTest, RefusesAnIndexAfterAnObjectThatIsNotThere) {
    const Script module = NewScript();
    DISPID id = DISPID_UNKNOWN;
    ASSERT_EQ(IdOf(module.Get(), L"Parent", id), S_OK);
    com::Variant index(L"2");
    std::vector<VARIANT> values{index.Get()};
    com::Variant result;
    EXPECT_EQ(support::Invoke(module.Get(), id, DISPATCH_METHOD | DISPATCH_PROPERTYGET, values, result.Put(),
                              nullptr),
              DISP_E_NOTACOLLECTION);
    EXPECT_EQ(result.Get().vt, VT_EMPTY);
}

TEST_F(LateBoundTest, RefusesAnIndexAfterATextsName) {
    const Script module = NewScript();
    com::Variant index(L"1");
    std::vector<VARIANT> values{index.Get()};
    com::Variant result;
    EXPECT_EQ(support::Invoke(module.Get(), 0x112, DISPATCH_PROPERTYGET, values, result.Put(), nullptr),
              DISP_E_NOTACOLLECTION);
}

TEST_F(LateBoundTest, RefusesAnIndexAfterAnObjectWithoutADefaultMember) {
    const Script module = NewScript();
    const Script input = Item(Get(module, L"Inputs"), L"1");
    DISPID id = DISPID_UNKNOWN;
    ASSERT_EQ(IdOf(input.Get(), L"Parent", id), S_OK);
    com::Variant index(L"1");
    std::vector<VARIANT> values{index.Get()};
    com::Variant result;
    EXPECT_EQ(support::Invoke(input.Get(), id, DISPATCH_PROPERTYGET, values, result.Put(), nullptr),
              DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(result.Get().vt, VT_EMPTY);
}

TEST_F(LateBoundTest, TellsWhyAPropertyAfterAnIndexCannotBeRead) {
    const Script module = NewScript();
    UseDatabaseLocation().result = E_ACCESSDENIED;
    DISPID id = DISPID_UNKNOWN;
    ASSERT_EQ(IdOf(module.Get(), L"Stream", id), S_OK);
    com::Variant index(L"1");
    std::vector<VARIANT> values{index.Get()};
    com::Variant result;
    EXCEPINFO exception{};
    EXPECT_EQ(support::Invoke(module.Get(), id, DISPATCH_PROPERTYGET, values, result.Put(), &exception),
              DISP_E_EXCEPTION);
    EXPECT_EQ(exception.scode, E_ACCESSDENIED);
    EXPECT_EQ(exception.bstrSource, nullptr) << "the host's object told nothing";
    EXPECT_EQ(exception.bstrDescription, nullptr);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    EXPECT_EQ(result.Get().vt, VT_EMPTY);
}

TEST_F(LateBoundTest, NamesTheWrongIndexAfterACollection) {
    const Script module = NewScript();
    DISPID id = DISPID_UNKNOWN;
    ASSERT_EQ(IdOf(module.Get(), L"Inputs", id), S_OK);
    VARIANT null{};
    null.vt = VT_NULL;
    std::vector<VARIANT> values{null};
    com::Variant result;
    UINT wrong = 99;
    EXPECT_EQ(support::Invoke(module.Get(), id, DISPATCH_PROPERTYGET, values, result.Put(), nullptr, &wrong),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong, 0u);
}

TEST_F(LateBoundTest, TakesANumberForAnIndexText) {
    const Script inputs = Get(NewScript(), L"Inputs");
    com::Variant two(2L);
    VARIANT value = two.Get();
    const com::Variant item = com::CallMember(*inputs.Get(), L"Item", {&value, 1});
    EXPECT_EQ(Text(Script(item.Get().pdispVal), L"Name"), L"AI2_Value");
}

TEST_F(LateBoundTest, EnumeratesByNumberMinusFour) {
    const Script module = NewScript();
    const Script list = Get(Item(Get(module, L"Inputs"), L"1"), L"SNVTCompatibles");
    for (const Script& collection :
         {Get(module, L"Inputs"), Get(module, L"Outputs"), Get(module, L"Attributes"), list}) {
        for (const Script& script : {collection, Default(collection)}) {
            std::vector<VARIANT> none;
            com::Variant result;
            ASSERT_EQ(support::Invoke(script.Get(), DISPID_NEWENUM, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                                      none, result.Put(), nullptr),
                      S_OK);
            ASSERT_EQ(result.Get().vt, VT_UNKNOWN);
            const auto enumerator = com::Query<IEnumVARIANT>(result.Get().punkVal);
            ASSERT_TRUE(enumerator);
            long count = 0;
            com::Variant item;
            ULONG fetched = 0;
            while (enumerator->Next(1, item.Put(), &fetched) == S_OK) {
                EXPECT_EQ(item.Get().vt, VT_DISPATCH);
                ++count;
            }
            EXPECT_EQ(count, 2);
        }
    }
}

TEST_F(LateBoundTest, AnswersAnEmptyObjectForNone) {
    const Script module = NewScript();
    EXPECT_FALSE(Get(module, L"Parent"));
    EXPECT_FALSE(Item(Get(module, L"Inputs"), L"nobody"));
    EXPECT_FALSE(Get(Item(Get(module, L"Inputs"), L"1"), L"ConnectedType"));
}

} // namespace
