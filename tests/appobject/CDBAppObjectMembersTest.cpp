#include "tests/appobject/Module.h"

#include "com/LateBound.h"

#include <array>
#include <cstddef>
#include <string>
#include <utility>

using namespace support;
using namespace modules;

namespace {

class CDBAppObjectMembersTest : public ModuleTest {
  protected:
    com::Ref<IAppObject> module;
    com::Ref<ITamObject> tam;

    void SetUp() override {
        ModuleTest::SetUp();
        module = NewModule();
        tam = module.As<ITamObject>();
    }
    void TearDown() override {
        tam.Reset();
        module.Reset();
        ModuleTest::TearDown();
    }
    IDispatch& ByName() { return *module.Get(); }
    std::wstring TextByName(const std::wstring& name) {
        const com::Variant value = com::GetMember(ByName(), name);
        EXPECT_EQ(value.Get().vt, VT_BSTR);
        return com::Text(value.Get().bstrVal);
    }
};

TEST_F(CDBAppObjectMembersTest, AnswersFixedNumbers) {
    EXPECT_EQ(Long(module, &IAppObject::get_ExecTime), 0);
    EXPECT_EQ(Long(module, &IAppObject::get_MaxInstances), 0);
    EXPECT_EQ(Long(module, &IAppObject::get_Width), 0);
    EXPECT_EQ(Long(module, &IAppObject::get_InputWidth), 0);
    EXPECT_EQ(Long(module, &IAppObject::get_SDBDimension), 0);
    EXPECT_EQ(Long(module, &IAppObject::get_NodeType), 6);
    EXPECT_EQ(Short(module, &IAppObject::get_NumObjects), 1);
}

TEST_F(CDBAppObjectMembersTest, AnswersFixedFlags) {
    EXPECT_FALSE(Flag(module, &IAppObject::get_IsDeviceDependent));
    EXPECT_FALSE(Flag(module, &IAppObject::get_UsesDeviceClock));
    EXPECT_TRUE(Flag(module, &IAppObject::get_IsHidden));
    EXPECT_FALSE(Flag(module, &IAppObject::get_IsVirtual));
}

TEST_F(CDBAppObjectMembersTest, IgnoresAWrittenPath) {
    EXPECT_EQ(Put(module, &IAppObject::put_Path, L"C:\\somewhere"), S_OK);
    EXPECT_EQ(Text(module, &IAppObject::get_Path), L"");
}

TEST_F(CDBAppObjectMembersTest, IgnoresColours) {
    EXPECT_EQ(module->put_Color(0xFF00FF), S_OK);
    EXPECT_EQ(Long(module, &IAppObject::get_Color), 0);
    EXPECT_EQ(module->SetColor(0x00FF00), S_OK);
    EXPECT_EQ(Long(module, &IAppObject::get_Color), 0);
}

TEST_F(CDBAppObjectMembersTest, DoesNothingOnCreateAndObjectDebug) {
    EXPECT_EQ(module->Create(), S_OK);
    EXPECT_EQ(module->ObjectDebug(), S_OK);
    EXPECT_EQ(Text(module, &IAppObject::get_UniqueIDString), L"");
}

TEST_F(CDBAppObjectMembersTest, KeepsNoBinaryState) {
    const auto stream = Held::Make();
    const com::Variant object(static_cast<IDispatch*>(static_cast<IHostDocument*>(stream.Get())));
    Put(module, &IAppObject::put_UserName, L"Mine");
    EXPECT_EQ(module->Save(object.Get()), S_OK);
    EXPECT_EQ(module->Load(object.Get()), S_OK);
    EXPECT_EQ(stream->Others(), 1u) << "only the variant holds it";
    EXPECT_EQ(module->Save(VARIANT{}), S_OK);
    EXPECT_EQ(module->Load(VARIANT{}), S_OK);
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Mine");
}

TEST_F(CDBAppObjectMembersTest, KeepsNothingOfACallBack) {
    const auto target = Held::Make();
    EXPECT_EQ(module->CallBack(target.Get()), S_OK);
    EXPECT_EQ(target->Others(), 0u);
    EXPECT_EQ(module->CallBack(nullptr), S_OK);
}

TEST_F(CDBAppObjectMembersTest, IgnoresManageShortFloat) {
    EXPECT_EQ(module->put_ManageShortFloat(VARIANT_TRUE), S_OK);
    EXPECT_EQ(module->put_ManageShortFloat(VARIANT_FALSE), S_OK);
}

TEST_F(CDBAppObjectMembersTest, SavesNothingForSimulation) {
    const Document document = Parse(L"<Host/>");
    EXPECT_EQ(module->XMLSaveSim(Root(document).Get(), document.Get()), S_OK);
    EXPECT_EQ(BareXml(document.Get()), L"<Host/>");
    EXPECT_EQ(module->XMLSaveSim(nullptr, nullptr), S_OK);
}

TEST_F(CDBAppObjectMembersTest, StoresTexts) {
    using Get = HRESULT (STDMETHODCALLTYPE IAppObject::*)(BSTR*);
    using Set = HRESULT (STDMETHODCALLTYPE IAppObject::*)(BSTR);
    const std::array<std::pair<Get, Set>, 6> members = {{
        {&IAppObject::get_UserName, &IAppObject::put_UserName},
        {&IAppObject::get_Tag, &IAppObject::put_Tag},
        {&IAppObject::get_GlobalKey, &IAppObject::put_GlobalKey},
        {&IAppObject::get_key, &IAppObject::put_key},
        {&IAppObject::get_UniqueID, &IAppObject::put_UniqueID},
        {&IAppObject::get_ExtendedKey, &IAppObject::put_ExtendedKey},
    }};
    for (std::size_t i = 0; i < members.size(); ++i) {
        EXPECT_EQ(Put(module, members[i].second, L"text " + std::to_wstring(i)), S_OK);
    }
    for (std::size_t i = 0; i < members.size(); ++i) {
        EXPECT_EQ(Text(module, members[i].first), L"text " + std::to_wstring(i));
    }
    for (const auto& member : members) {
        EXPECT_EQ((module.Get()->*member.second)(nullptr), S_OK);
        EXPECT_EQ(Text(module, member.first), L"");
    }
}

TEST_F(CDBAppObjectMembersTest, StoresTextsAsTheyStand) {
    const std::wstring odd(L" \x00e4\x4e2d\xd83d\xde00\0 end ", 11);
    EXPECT_EQ(Put(module, &IAppObject::put_Tag, odd), S_OK);
    EXPECT_EQ(Text(module, &IAppObject::get_Tag), odd);
}

TEST_F(CDBAppObjectMembersTest, StoresNumbers) {
    EXPECT_EQ(module->put_Language(-7), S_OK);
    EXPECT_EQ(Long(module, &IAppObject::get_Language), -7);
    EXPECT_EQ(module->put_ExportIndex(-32768), S_OK);
    EXPECT_EQ(Short(module, &IAppObject::get_ExportIndex), -32768);
    EXPECT_EQ(module->put_XPosition(12.5), S_OK);
    EXPECT_EQ(module->put_YPosition(-1e300), S_OK);
    EXPECT_EQ(Double(module, &IAppObject::get_XPosition), 12.5);
    EXPECT_EQ(Double(module, &IAppObject::get_YPosition), -1e300);
}

TEST_F(CDBAppObjectMembersTest, StoresWhatTheDeviceSays) {
    EXPECT_EQ(Put(tam, &ITamObject::put_DeviceKey, L"D1"), S_OK);
    EXPECT_EQ(Text(tam, &ITamObject::get_DeviceKey), L"D1");
    EXPECT_EQ(Put(tam, &ITamObject::put_ApplicationID, L"App 2"), S_OK);
    EXPECT_EQ(Text(tam, &ITamObject::get_ApplicationID), L"App 2");
}

TEST_F(CDBAppObjectMembersTest, StoresAnAddress) {
    for (const short address : {short{12}, short{0}, short{-5}, short{32767}, short{-32768}}) {
        EXPECT_EQ(tam->put_Address(address), S_OK);
        EXPECT_EQ(Short(tam, &ITamObject::get_Address), address);
    }
}

TEST_F(CDBAppObjectMembersTest, KeepsItsObjectIdWhenOneIsWritten) {
    EXPECT_EQ(tam->put_TamObjectID(7), S_OK);
    EXPECT_EQ(Short(tam, &ITamObject::get_TamObjectID), 0);
    ASSERT_EQ(Load(module, Stream({})), S_OK);
    EXPECT_EQ(tam->put_TamObjectID(7), S_OK);
    EXPECT_EQ(Short(tam, &ITamObject::get_TamObjectID), 3);
}

TEST_F(CDBAppObjectMembersTest, GivesItsGlobalKeyToItsPoints) {
    ASSERT_EQ(Load(module, Stream(L"<In1/>", L"<Out1/>", L"<Gain><SNVTTYPE>36</SNVTTYPE></Gain>")), S_OK);
    EXPECT_EQ(Put(module, &IAppObject::put_GlobalKey, L"G"), S_OK);
    EXPECT_EQ(Text(Object(module, &IAppObject::get_Attributes), &IAttributes::get_GlobalKey), L"G\\ATT");
    EXPECT_EQ(Text(Object(module, &IAppObject::get_Inputs), &IInputs::get_GlobalKey), L"G\\RIN");
    EXPECT_EQ(Text(Object(module, &IAppObject::get_Outputs), &IOutputs::get_GlobalKey), L"G\\ROU");
    EXPECT_EQ(Text(Attribute(module, L"Gain"), &IAttribute::get_GlobalKey), L"G\\ATT\\Gain");
    EXPECT_EQ(Text(Input(module, L"In1"), &IInput::get_GlobalKey), L"G\\RIN\\In1");
    EXPECT_EQ(Text(Output(module, L"Out1"), &IOutput::get_GlobalKey), L"G\\ROU\\Out1");
    EXPECT_EQ(Text(Input(module, L"In1"), &IInput::get_ExtendedKey), L"");
}

TEST_F(CDBAppObjectMembersTest, GivesItsExtendedKeyToItsPoints) {
    ASSERT_EQ(Load(module, Stream(L"<In1/>", L"<Out1/>", L"<Gain><SNVTTYPE>36</SNVTTYPE></Gain>")), S_OK);
    EXPECT_EQ(Put(module, &IAppObject::put_ExtendedKey, L"E"), S_OK);
    EXPECT_EQ(Text(Object(module, &IAppObject::get_Attributes), &IAttributes::get_ExtendedKey), L"E\\ATT");
    EXPECT_EQ(Text(Object(module, &IAppObject::get_Inputs), &IInputs::get_ExtendedKey), L"E\\RIN");
    EXPECT_EQ(Text(Object(module, &IAppObject::get_Outputs), &IOutputs::get_ExtendedKey), L"E\\ROU");
    EXPECT_EQ(Text(Attribute(module, L"Gain"), &IAttribute::get_ExtendedKey), L"E\\ATT\\Gain");
    EXPECT_EQ(Text(Input(module, L"In1"), &IInput::get_ExtendedKey), L"E\\RIN\\In1");
    EXPECT_EQ(Text(Output(module, L"Out1"), &IOutput::get_ExtendedKey), L"E\\ROU\\Out1");
    EXPECT_EQ(Text(Attribute(module, L"Gain"), &IAttribute::get_GlobalKey), L"");
}

TEST_F(CDBAppObjectMembersTest, PassesAnEmptyKeyOnToo) {
    EXPECT_EQ(Put(module, &IAppObject::put_GlobalKey, L""), S_OK);
    EXPECT_EQ(Text(Object(module, &IAppObject::get_Inputs), &IInputs::get_GlobalKey), L"\\RIN");
}

TEST_F(CDBAppObjectMembersTest, LeavesTheKeysOfPointsWhenItsOwnKeyIsWritten) {
    EXPECT_EQ(Put(module, &IAppObject::put_key, L"K"), S_OK);
    EXPECT_EQ(Text(Object(module, &IAppObject::get_Inputs), &IInputs::get_GlobalKey), L"");
}

// Decided: with the collections gone the key is stored all the same.
TEST_F(CDBAppObjectMembersTest, StoresKeysAfterDestroy) {
    module->Destroy();
    EXPECT_EQ(Put(module, &IAppObject::put_GlobalKey, L"G"), S_OK);
    EXPECT_EQ(Put(module, &IAppObject::put_ExtendedKey, L"E"), S_OK);
    EXPECT_EQ(Text(module, &IAppObject::get_GlobalKey), L"G");
    EXPECT_EQ(Text(module, &IAppObject::get_ExtendedKey), L"E");
}

TEST_F(CDBAppObjectMembersTest, AnswersByName) {
    EXPECT_EQ(com::GetMember(ByName(), L"NodeType").Get().lVal, 6);
    EXPECT_EQ(com::GetMember(ByName(), L"NumObjects").Get().iVal, 1);
    EXPECT_EQ(com::GetMember(ByName(), L"IsHidden").Get().boolVal, VARIANT_TRUE);
    EXPECT_EQ(TextByName(L"ProgrammaticID"), L"O_Tam_id.CDBAppObject");
    EXPECT_EQ(com::GetMember(ByName(), L"IntelStream").Get().vt, VT_EMPTY);
}

TEST_F(CDBAppObjectMembersTest, StoresByName) {
    com::PutMember(ByName(), L"UserName", com::Variant(L"Mine").Get());
    com::PutMember(ByName(), L"GlobalKey", com::Variant(L"G").Get());
    com::PutMember(ByName(), L"XPosition", com::Variant(4L).Get());
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Mine");
    EXPECT_EQ(TextByName(L"UserName"), L"Mine");
    EXPECT_EQ(Text(Object(module, &IAppObject::get_Inputs), &IInputs::get_GlobalKey), L"G\\RIN");
    EXPECT_EQ(Double(module, &IAppObject::get_XPosition), 4.0);
}

TEST_F(CDBAppObjectMembersTest, OffersTheDevicesMembersByNameToo) {
    com::PutMember(ByName(), L"Address", com::Variant(12L).Get());
    com::PutMember(ByName(), L"TamObjectID", com::Variant(7L).Get());
    EXPECT_EQ(com::GetMember(ByName(), L"Address").Get().iVal, 12);
    EXPECT_EQ(com::GetMember(ByName(), L"TamObjectID").Get().iVal, 0);
}

TEST_F(CDBAppObjectMembersTest, AnswersAnEmptyIntelStream) {
    com::Variant value(5L);
    EXPECT_EQ(module->get_IntelStream(value.Put()), S_OK);
    EXPECT_EQ(value.Get().vt, VT_EMPTY);
}

TEST_F(CDBAppObjectMembersTest, RefusesANullResult) {
    EXPECT_EQ(module->get_Name(nullptr), E_POINTER);
    EXPECT_EQ(module->get_NodeType(nullptr), E_POINTER);
    EXPECT_EQ(module->get_Inputs(nullptr), E_POINTER);
    EXPECT_EQ(module->get_Stream(nullptr), E_POINTER);
    EXPECT_EQ(module->get_Icon(nullptr), E_POINTER);
    EXPECT_EQ(module->Init(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(tam->Contains(nullptr, nullptr), E_POINTER);
}

} // namespace
