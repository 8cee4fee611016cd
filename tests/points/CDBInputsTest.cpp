#include "tests/points/Listener.h"
#include "tests/points/Points.h"

#include "com/LateBound.h"

#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

class CDBInputsTest : public PointsTest {
  protected:
    com::Ref<IInputs> Three() {
        module = WithInputs(Named({L"In1", L"Level", L"Set"}));
        return Inputs(module);
    }
    std::wstring Found(const com::Ref<IInputs>& inputs, const std::wstring& index) {
        const auto input = Item(inputs, &IInputs::get_Item, index);
        return input ? Text(input, &IInput::get_Name) : L"(none)";
    }
};

TEST_F(CDBInputsTest, StartsEmpty) {
    const auto inputs = Inputs(NewModule());
    ASSERT_TRUE(inputs);
    EXPECT_EQ(Long(inputs, &IInputs::get_Count), 0);
    EXPECT_EQ(Text(inputs, &IInputs::get_GlobalKey), L"");
    EXPECT_EQ(Text(inputs, &IInputs::get_ExtendedKey), L"");
    for (const wchar_t* index : {L"", L"0", L"1", L"In1"}) {
        EXPECT_EQ(Found(inputs, index), L"(none)");
    }
}

TEST_F(CDBInputsTest, KeepsTheDefinitionsOrderAndNumbersFromZero) {
    const auto inputs = Three();
    EXPECT_EQ(Long(inputs, &IInputs::get_Count), 3);
    EXPECT_EQ(Names(inputs), (std::vector<std::wstring>{L"In1", L"Level", L"Set"}));
    for (long i = 0; i < 3; ++i) {
        EXPECT_EQ(Long(Input(module, std::to_wstring(i + 1)), &IInput::get_Index), i);
    }
}

TEST_F(CDBInputsTest, FindsByNameOrPosition) {
    const auto inputs = Three();
    EXPECT_EQ(Found(inputs, L"Level"), L"Level");
    EXPECT_EQ(Found(inputs, L"LEVEL"), L"Level");
    EXPECT_EQ(Found(inputs, L"2"), L"Level");
    EXPECT_EQ(Found(inputs, L"3"), L"Set");
    for (const wchar_t* index : {L"0", L"4", L"-1", L"", L"absent", L"Lev", L"99999999999"}) {
        EXPECT_EQ(Found(inputs, index), L"(none)") << index;
    }
    EXPECT_TRUE(com::SameObject(Item(inputs, &IInputs::get_Item, L"Level").Get(),
                                Item(inputs, &IInputs::get_Item, L"2").Get()));
}

TEST_F(CDBInputsTest, FormsTheKeysOfItsInputs) {
    const auto inputs = Three();
    Put(module, &IAppObject::put_GlobalKey, L"K");
    Put(module, &IAppObject::put_ExtendedKey, L"E");
    EXPECT_EQ(Text(inputs, &IInputs::get_GlobalKey), L"K\\RIN");
    EXPECT_EQ(Text(inputs, &IInputs::get_ExtendedKey), L"E\\RIN");
    for (const wchar_t* name : {L"In1", L"Level", L"Set"}) {
        EXPECT_EQ(Text(Input(module, name), &IInput::get_GlobalKey), std::wstring(L"K\\RIN\\") + name);
        EXPECT_EQ(Text(Input(module, name), &IInput::get_ExtendedKey), std::wstring(L"E\\RIN\\") + name);
    }
}

TEST_F(CDBInputsTest, KeepsTheTwoKeysApart) {
    Three();
    Put(module, &IAppObject::put_ExtendedKey, L"E");
    EXPECT_EQ(Text(Input(module, L"Set"), &IInput::get_GlobalKey), L"");
    EXPECT_EQ(Text(Input(module, L"Set"), &IInput::get_ExtendedKey), L"E\\RIN\\Set");
}

TEST_F(CDBInputsTest, RenewsTheKeysAtEachWrite) {
    Three();
    for (const wchar_t* key : {L"Old", L"", L"New"}) {
        Put(module, &IAppObject::put_GlobalKey, key);
        Put(module, &IAppObject::put_ExtendedKey, key);
        const std::wstring expected = std::wstring(key) + L"\\RIN\\Set";
        EXPECT_EQ(Text(Input(module, L"Set"), &IInput::get_GlobalKey), expected);
        EXPECT_EQ(Text(Input(module, L"Set"), &IInput::get_ExtendedKey), expected);
    }
}

TEST_F(CDBInputsTest, LeavesWhatAStreamAddsAfterAKeyWithoutOneUntilTheNextWrite) {
    Three();
    // The first turn of the host comes before the first point.
    const Listener writing([&] {
        Put(module, &IAppObject::put_GlobalKey, L"K");
        Put(module, &IAppObject::put_ExtendedKey, L"E");
    });
    writing.Post();
    EXPECT_EQ(Load(module, Stream(Named({L"A", L"B"}))), S_OK);
    for (const wchar_t* name : {L"A", L"B"}) {
        EXPECT_EQ(Text(Input(module, name), &IInput::get_GlobalKey), L"");
        EXPECT_EQ(Text(Input(module, name), &IInput::get_ExtendedKey), L"");
    }
    EXPECT_EQ(Text(Inputs(module), &IInputs::get_GlobalKey), L"K\\RIN");
    Put(module, &IAppObject::put_GlobalKey, L"L");
    Put(module, &IAppObject::put_ExtendedKey, L"F");
    for (const wchar_t* name : {L"A", L"B"}) {
        EXPECT_EQ(Text(Input(module, name), &IInput::get_GlobalKey), std::wstring(L"L\\RIN\\") + name);
        EXPECT_EQ(Text(Input(module, name), &IInput::get_ExtendedKey), std::wstring(L"F\\RIN\\") + name);
    }
}

TEST_F(CDBInputsTest, PassesALaterKeyToTheCollectionThatAStreamBroughtAlone) {
    const auto before = Three();
    Put(module, &IAppObject::put_GlobalKey, L"K");
    Put(module, &IAppObject::put_ExtendedKey, L"E");
    EXPECT_EQ(Load(module, Stream(Named({L"Only"}))), S_OK);
    Put(module, &IAppObject::put_GlobalKey, L"L");
    Put(module, &IAppObject::put_ExtendedKey, L"F");
    EXPECT_EQ(Text(Input(module, L"Only"), &IInput::get_GlobalKey), L"L\\RIN\\Only");
    EXPECT_EQ(Text(Input(module, L"Only"), &IInput::get_ExtendedKey), L"F\\RIN\\Only");
    const auto old = Item(before, &IInputs::get_Item, L"Set");
    EXPECT_EQ(Text(before, &IInputs::get_GlobalKey), L"K\\RIN");
    EXPECT_EQ(Text(old, &IInput::get_GlobalKey), L"K\\RIN\\Set");
    EXPECT_EQ(Text(old, &IInput::get_ExtendedKey), L"E\\RIN\\Set");
}

TEST_F(CDBInputsTest, IsReplacedByAnEmptyOneWhenAStreamIsLoaded) {
    const auto before = Three();
    Put(module, &IAppObject::put_GlobalKey, L"K");
    EXPECT_EQ(Load(module, Stream(Named({L"Only"}))), S_OK);
    const auto after = Inputs(module);
    EXPECT_FALSE(com::SameObject(before.Get(), after.Get()));
    EXPECT_EQ(Names(after), std::vector<std::wstring>{L"Only"});
    EXPECT_EQ(Text(after, &IInputs::get_GlobalKey), L"");
    // What the host still holds is as it was.
    EXPECT_EQ(Names(before), (std::vector<std::wstring>{L"In1", L"Level", L"Set"}));
    EXPECT_EQ(Text(Item(before, &IInputs::get_Item, L"Set"), &IInput::get_GlobalKey), L"K\\RIN\\Set");
}

TEST_F(CDBInputsTest, RefusesADuplicateName) {
    module = NewModule();
    EXPECT_EQ(Load(module, Stream(L"<In1><LOGICALADDRESS>A</LOGICALADDRESS></In1><In1/><In2/>")),
              kDuplicateKey);
    EXPECT_EQ(LastError().description, kDuplicateKeyText);
    EXPECT_EQ(Names(Inputs(module)), std::vector<std::wstring>{L"In1"});
    EXPECT_EQ(Load(module, Stream(Named({L"In1", L"IN1"}))), kDuplicateKey);
    EXPECT_EQ(Names(Inputs(module)), std::vector<std::wstring>{L"In1"});
}

TEST_F(CDBInputsTest, ReadsADuplicatesDefinitionBeforeItRefusesIt) {
    module = NewModule();
    EXPECT_EQ(Load(module, Stream(L"<In1/><In1><SNVTCOMPATIBILITYLIST/></In1>")), kDuplicateKey);
    EXPECT_EQ(Boxes().size(), 1u);
}

TEST_F(CDBInputsTest, KeepsNothingOfACallBack) {
    const auto inputs = Three();
    const auto target = Held::Make();
    EXPECT_EQ(inputs->putref_CallBack(target.Get()), S_OK);
    EXPECT_EQ(target->Others(), 0u);
    EXPECT_EQ(inputs->putref_CallBack(nullptr), S_OK);
}

TEST_F(CDBInputsTest, IsReachedByName) {
    const auto script = Three().As<IDispatch>();
    EXPECT_EQ(com::GetMember(*script.Get(), L"Count").Get().lVal, 3);
    com::Variant index(L"level");
    VARIANT argument = index.Get();
    DISPPARAMS arguments{&argument, nullptr, 1, 0};
    com::Variant item;
    EXPECT_EQ(script->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &arguments,
                             item.Put(), nullptr, nullptr),
              S_OK);
    ASSERT_EQ(item.Get().vt, VT_DISPATCH);
    EXPECT_EQ(com::Text(com::GetMember(*item.Get().pdispVal, L"Name").Get().bstrVal), L"Level");
}

} // namespace
