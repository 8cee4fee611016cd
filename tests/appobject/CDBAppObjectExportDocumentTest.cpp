#include "tests/appobject/Module.h"

#include <string>

using namespace support;
using namespace modules;

namespace {

class CDBAppObjectExportDocumentTest : public ModuleTest {
  protected:
    /// The document that the compiler is given.
    std::wstring Exported(const com::Ref<IAppObject>& module) {
        UseDatabaseLocation();
        Compiler& compiler = UseCompiler();
        EXPECT_EQ(Text(module, &IAppObject::get_Stream), L"compiled");
        return Bare(compiler.givenXml);
    }
    /// One of its three sections.
    std::wstring Section(const com::Ref<IAppObject>& module, const std::wstring& name) {
        const std::wstring all = Exported(module);
        const auto begin = all.find(L"<" + name);
        const auto end = all.find(L"</" + name + L">");
        return begin == std::wstring::npos || end == std::wstring::npos
                   ? all
                   : all.substr(begin, end - begin + name.size() + 3);
    }
    /// What an input with this link reference says of its connection.
    std::wstring Connected(const std::wstring& link) {
        const auto module = Loaded(Stream(L"<In1/>"));
        Put(Input(module, L"In1"), &IInput::put_Value, link);
        const std::wstring all = Exported(module);
        const auto begin = all.find(L"IsConnected=\"");
        return begin == std::wstring::npos ? all : all.substr(begin + 13, 1);
    }
    com::Ref<IAppObject> WithLink(const std::wstring& link, const std::wstring& outputs,
                                  const std::wstring& attributes = {}) {
        auto module = Loaded(Stream(L"<In1/>", outputs, attributes));
        Put(Input(module, L"In1"), &IInput::put_Value, link);
        return module;
    }
};

TEST_F(CDBAppObjectExportDocumentTest, HasThreeEmptySectionsWithoutPoints) {
    EXPECT_EQ(Exported(Loaded(Stream({}))),
              L"<O_Tam_id DevAddr=\"\" AppID=\"\" DevKey=\"K7\" TamObjectID=\"3\" IsLastOnDev=\"1\">"
              L"<Inputs/><Outputs/><Attributes/></O_Tam_id>");
}

TEST_F(CDBAppObjectExportDocumentTest, DescribesAnObjectThatWasNeverLoaded) {
    EXPECT_EQ(Exported(NewModule()),
              L"<O_Tam_id DevAddr=\"\" AppID=\"\" DevKey=\"\" TamObjectID=\"0\" IsLastOnDev=\"0\">"
              L"<Inputs/><Outputs/><Attributes/></O_Tam_id>");
}

TEST_F(CDBAppObjectExportDocumentTest, HasThreeEmptySectionsAfterDestroy) {
    const auto module = Loaded(Stream(L"<In1/>", L"<Out1/>"));
    module->Destroy();
    EXPECT_EQ(Exported(module),
              L"<O_Tam_id DevAddr=\"\" AppID=\"\" DevKey=\"K7\" TamObjectID=\"3\" IsLastOnDev=\"1\">"
              L"<Inputs/><Outputs/><Attributes/></O_Tam_id>");
}

TEST_F(CDBAppObjectExportDocumentTest, DescribesTheWholeModule) {
    const auto module = Loaded(Stream(
        L"<In1><LOGICALADDRESS>10</LOGICALADDRESS><SNVTTYPE>105</SNVTTYPE><ISPERMANENT>1</ISPERMANENT>"
        L"<PROTOCOLREFERENCE>R1</PROTOCOLREFERENCE></In1><In2/>",
        L"<Boiler_Flow><LOGICALADDRESS>20</LOGICALADDRESS><SNVTTYPE>105</SNVTTYPE><ISMAPASOO>1</ISMAPASOO>"
        L"<OBJOFFSET>4</OBJOFFSET><ABSOLUTEOBJECTINDEX>7</ABSOLUTEOBJECTINDEX><ISWRITABLE>True</ISWRITABLE>"
        L"</Boiler_Flow><Out2/>",
        L"<Config_Gain><LOGICALADDRESS>30</LOGICALADDRESS><SNVTTYPE>36</SNVTTYPE><VALUE>1.5</VALUE>"
        L"<ISPERMANENT>0</ISPERMANENT></Config_Gain><Mode><SNVTTYPE>95</SNVTTYPE></Mode>"));
    const auto tam = module.As<ITamObject>();
    tam->put_Address(12);
    Put(tam, &ITamObject::put_ApplicationID, L"A2");
    Put(Input(module, L"In1"), &IInput::put_Value, L"boiler_5");
    Put(Attribute(module, L"Mode"), &IAttribute::put_Value, L"1");
    const auto type = Object(Attribute(module, L"Mode"), &IAttribute::get_SNVTType).As<IEnumType>();
    Put(type, &IEnumType::put_EnumDesc, L"0,Off;1,On;");
    EXPECT_EQ(
        Exported(module),
        L"<O_Tam_id DevAddr=\"12\" AppID=\"A2\" DevKey=\"K7\" TamObjectID=\"3\" IsLastOnDev=\"1\"><Inputs>"
        L"<In1 LinkReference=\"boiler_5\" LogicalAddress=\"10\" SNVTType=\"105\" isPermanent=\"1\" "
        L"IsConnected=\"1\"/>"
        L"<In2 LinkReference=\"\" LogicalAddress=\"\" SNVTType=\"\" isPermanent=\"0\" IsConnected=\"0\"/>"
        L"</Inputs><Outputs>"
        L"<Boiler_Flow LogicalAddress=\"20\" SNVTType=\"105\" isMapAsOO=\"1\" ObjOffset=\"4\" "
        L"AbsoluteObjectIndex=\"7\" IsConnected=\"1\" IsWritable=\"1\"/>"
        L"<Out2 LogicalAddress=\"\" SNVTType=\"\" isMapAsOO=\"0\" ObjOffset=\"\" AbsoluteObjectIndex=\"\" "
        L"IsConnected=\"0\" IsWritable=\"0\"/>"
        L"</Outputs><Attributes>"
        L"<Config_Gain LogicalAddress=\"30\" SNVTType=\"36\" Value=\"1.5\" isPermanent=\"0\" "
        L"IsConnected=\"1\"/>"
        L"<Mode LogicalAddress=\"\" SNVTType=\"95\" Value=\"1\" isPermanent=\"1\" IsConnected=\"0\" "
        L"EnumDesc=\"0,Off;1,On;\"/></Attributes></O_Tam_id>");
}

TEST_F(CDBAppObjectExportDocumentTest, WritesAWrittenAddressInDecimal) {
    const auto module = NewModule();
    module.As<ITamObject>()->put_Address(-5);
    EXPECT_NE(Exported(module).find(L"DevAddr=\"-5\""), std::wstring::npos);
}

TEST_F(CDBAppObjectExportDocumentTest, WritesTheStreamsDeviceKeyNotTheProperty) {
    const auto module = Loaded(Stream({}));
    Put(module.As<ITamObject>(), &ITamObject::put_DeviceKey, L"D1");
    EXPECT_NE(Exported(module).find(L" DevKey=\"K7\""), std::wstring::npos);
}

TEST_F(CDBAppObjectExportDocumentTest, WritesAFalseLastOnDevice) {
    const auto module = NewModule();
    ASSERT_EQ(Load(module, L"<Tam><Name>P</Name><DevKey>K</DevKey><IsLastOnDev>0</IsLastOnDev>"
                           L"<TamObjID>-4</TamObjID></Tam>"),
              S_OK);
    EXPECT_NE(Exported(module).find(L"TamObjectID=\"-4\" IsLastOnDev=\"0\""), std::wstring::npos);
}

TEST_F(CDBAppObjectExportDocumentTest, EscapesTexts) {
    const auto module = Loaded(Stream(L"<In1/>"));
    Put(Input(module, L"In1"), &IInput::put_Value, L"a<b&\"c\"");
    EXPECT_NE(Exported(module).find(L"LinkReference=\"a&lt;b&amp;&quot;c&quot;\""), std::wstring::npos);
}

TEST_F(CDBAppObjectExportDocumentTest, TakesUpToSixZerosForNoConnection) {
    for (const wchar_t* link : {L"", L"0", L"00", L"000", L"0000", L"00000", L"000000"}) {
        EXPECT_EQ(Connected(link), L"0") << link;
    }
    for (const wchar_t* link : {L"0000000", L"0001", L"4203", L" ", L" 0000", L"O", L"_"}) {
        EXPECT_EQ(Connected(link), L"1") << link;
    }
}

TEST_F(CDBAppObjectExportDocumentTest, ConnectsAnInputByItsLinkAlone) {
    const auto module = Loaded(Stream(L"<In1/>"));
    Input(module, L"In1").As<ISubItemConnable>()->put_IsConnected(VARIANT_TRUE);
    EXPECT_EQ(Section(module, L"Inputs"),
              L"<Inputs><In1 LinkReference=\"\" LogicalAddress=\"\" SNVTType=\"\" isPermanent=\"0\" "
              L"IsConnected=\"0\"/></Inputs>");
}

TEST_F(CDBAppObjectExportDocumentTest, TakesOnlyAnExactOneForAPermanentInput) {
    for (const wchar_t* text : {L"0", L"true", L"2", L""}) {
        const auto module =
            Loaded(Stream(std::wstring(L"<In1><ISPERMANENT>") + text + L"</ISPERMANENT></In1>"));
        EXPECT_NE(Exported(module).find(L"isPermanent=\"0\""), std::wstring::npos) << text;
    }
}

/// What an output says of its connection when an input has a link.
struct LinkCase {
    const wchar_t* link;
    const wchar_t* output;
    bool connected;
};

TEST_F(CDBAppObjectExportDocumentTest, ConnectsOutputsThatAnInputRefersTo) {
    const LinkCase cases[] = {
        {L"Boiler_5", L"Boiler_Flow", true}, // the key is what stands before the last "_"
        {L"boiler_5", L"BOILER_Flow", true}, // in capitals
        {L"Boiler_A_5", L"Boiler_B", false}, // BOILER_A is another key
        {L"Boiler_A_5", L"Boiler_A_Flow", true},
        {L"Boiler", L"Boiler", true}, // no "_": the whole text
        {L"Boiler", L"Boiler_Flow", true},
        {L"Boiler_5", L"Boiler", true},
        {L"Boiler5", L"Boiler_Flow", false},
        {L"0000", L"_0000", false},
        {L"_5", L"_Flow", true}, // an empty key is a key
    };
    for (const LinkCase& one : cases) {
        const auto module = WithLink(one.link, std::wstring(L"<") + one.output + L"/>");
        const std::wstring flag = one.connected ? L"1" : L"0";
        EXPECT_NE(Section(module, L"Outputs").find(L" IsConnected=\"" + flag + L"\""), std::wstring::npos)
            << one.link << L" and " << one.output;
    }
}

TEST_F(CDBAppObjectExportDocumentTest, RefersToNothingThroughAnUnconnectedInput) {
    const auto module = WithLink(L"000000", L"<Out1/>", L"<Gain><SNVTTYPE>36</SNVTTYPE></Gain>");
    EXPECT_EQ(Exported(module).find(L"IsConnected=\"1\""), std::wstring::npos);
}

TEST_F(CDBAppObjectExportDocumentTest, ConnectsAnOutputByItsOwnFlag) {
    const auto module = Loaded(Stream({}, L"<Out1/><Out2/>"));
    Output(module, L"Out2").As<ISubItemConnable>()->put_IsConnected(VARIANT_TRUE);
    EXPECT_EQ(Section(module, L"Outputs"),
              L"<Outputs><Out1 LogicalAddress=\"\" SNVTType=\"\" isMapAsOO=\"0\" ObjOffset=\"\" "
              L"AbsoluteObjectIndex=\"\" IsConnected=\"0\" IsWritable=\"0\"/>"
              L"<Out2 LogicalAddress=\"\" SNVTType=\"\" isMapAsOO=\"0\" ObjOffset=\"\" "
              L"AbsoluteObjectIndex=\"\" IsConnected=\"1\" IsWritable=\"0\"/></Outputs>");
}

TEST_F(CDBAppObjectExportDocumentTest, ConnectsTwoInputsToOneKeyOnce) {
    const auto module = Loaded(Stream(L"<In1/><In2/>", L"<Boiler_1/><Pump_1/>"));
    Put(Input(module, L"In1"), &IInput::put_Value, L"Boiler_5");
    Put(Input(module, L"In2"), &IInput::put_Value, L"BOILER_6");
    const std::wstring outputs = Section(module, L"Outputs");
    EXPECT_NE(outputs.find(L"IsConnected=\"1\""), std::wstring::npos);
    EXPECT_EQ(outputs.find(L"IsConnected=\"1\""), outputs.rfind(L"IsConnected=\"1\""));
}

TEST_F(CDBAppObjectExportDocumentTest, ConnectsAttributesOfTheConfiguration) {
    for (const wchar_t* name : {L"CONFIG", L"Config_Gain", L"config_1"}) {
        const std::wstring element = name;
        const auto module =
            Loaded(Stream({}, {}, L"<" + element + L"><SNVTTYPE>36</SNVTTYPE></" + element + L">"));
        EXPECT_NE(Section(module, L"Attributes").find(L"IsConnected=\"1\""), std::wstring::npos) << name;
    }
    for (const wchar_t* name : {L"Configuration_1", L"My_Config", L"Config_A_Gain"}) {
        const std::wstring element = name;
        const auto module =
            Loaded(Stream({}, {}, L"<" + element + L"><SNVTTYPE>36</SNVTTYPE></" + element + L">"));
        EXPECT_NE(Section(module, L"Attributes").find(L"IsConnected=\"0\""), std::wstring::npos) << name;
    }
}

TEST_F(CDBAppObjectExportDocumentTest, ConnectsAttributesThatAnInputRefersTo) {
    const auto module = WithLink(L"boiler_5", {}, L"<Boiler_Gain><SNVTTYPE>36</SNVTTYPE></Boiler_Gain>");
    EXPECT_NE(Section(module, L"Attributes").find(L"IsConnected=\"1\""), std::wstring::npos);
}

TEST_F(CDBAppObjectExportDocumentTest, TakesTextsThatMeanTrueForFlags) {
    for (const wchar_t* text : {L"1", L"-1", L"2", L"True", L"true", L"TRUE"}) {
        const std::wstring value = text;
        const auto module = Loaded(Stream(
            {}, L"<Out1><ISMAPASOO>" + value + L"</ISMAPASOO><ISWRITABLE>" + value + L"</ISWRITABLE></Out1>",
            L"<Gain><SNVTTYPE>36</SNVTTYPE><ISPERMANENT>" + value + L"</ISPERMANENT></Gain>"));
        const std::wstring all = Exported(module);
        EXPECT_NE(all.find(L"isMapAsOO=\"1\""), std::wstring::npos) << text;
        EXPECT_NE(all.find(L"IsWritable=\"1\""), std::wstring::npos) << text;
        EXPECT_NE(all.find(L"isPermanent=\"1\""), std::wstring::npos) << text;
    }
}

TEST_F(CDBAppObjectExportDocumentTest, TakesOtherTextsForFalseFlags) {
    for (const wchar_t* text : {L"0", L"False", L"false", L"yes", L"", L"1 2 x"}) {
        const std::wstring value = text;
        const auto module = Loaded(Stream(
            {}, L"<Out1><ISMAPASOO>" + value + L"</ISMAPASOO><ISWRITABLE>" + value + L"</ISWRITABLE></Out1>",
            L"<Gain><SNVTTYPE>36</SNVTTYPE><ISPERMANENT>0</ISPERMANENT></Gain>"));
        const std::wstring all = Exported(module);
        EXPECT_NE(all.find(L"isMapAsOO=\"0\""), std::wstring::npos) << text;
        EXPECT_NE(all.find(L"IsWritable=\"0\""), std::wstring::npos) << text;
        EXPECT_NE(all.find(L"isPermanent=\"0\""), std::wstring::npos) << text;
    }
}

// Nothing sets the display-writable flag of a module's output, displayable or writable as it may be.
TEST_F(CDBAppObjectExportDocumentTest, WritesNoDisplayWritableForAModulesOutputs) {
    const auto module = Loaded(Stream({}, L"<Out1 TYPEDEPENDENT='1'><ISWRITABLE>1</ISWRITABLE></Out1>"));
    Output(module, L"Out1")->put_IsDisplayable(VARIANT_TRUE);
    EXPECT_EQ(Exported(module).find(L"DisplayWritable"), std::wstring::npos);
}

TEST_F(CDBAppObjectExportDocumentTest, WritesNoDescriptionForAnotherTypeOrAnEmptyOne) {
    const auto module =
        Loaded(Stream({}, {}, L"<Gain><SNVTTYPE>36</SNVTTYPE></Gain><Mode><SNVTTYPE>95</SNVTTYPE></Mode>"));
    const auto type = Object(Attribute(module, L"Gain"), &IAttribute::get_SNVTType).As<IEnumType>();
    Put(type, &IEnumType::put_EnumDesc, L"0,Off;");
    EXPECT_EQ(Exported(module).find(L"EnumDesc"), std::wstring::npos);
}

} // namespace
