#include "tests/appobject/Module.h"

#include "com/LateBound.h"

#include <span>
#include <string>
#include <string_view>
#include <utility>

using namespace support;
using namespace modules;

namespace {

class CDBAppObjectDeviceStreamTest : public ModuleTest {
  protected:
    /// A stream with this content after its four required elements.
    static std::wstring With(const std::wstring& content, const std::wstring& isLast = L"1",
                             const std::wstring& objectId = L"3") {
        return L"<Tam><Name>Pump</Name><DevKey>K7</DevKey><IsLastOnDev>" + isLast +
               L"</IsLastOnDev><TamObjID>" + objectId + L"</TamObjID>" + content + L"</Tam>";
    }
    /// The root's attribute in the export of a module loaded with this IsLastOnDev.
    bool IsLast(const std::wstring& text) {
        UseDatabaseLocation();
        Compiler& compiler = UseCompiler();
        Text(Loaded(With({}, text)), &IAppObject::get_Stream);
        return compiler.givenXml.find(L"IsLastOnDev=\"1\"") != std::wstring::npos;
    }
    static short ObjectId(const com::Ref<IAppObject>& module) {
        return Short(module.As<ITamObject>(), &ITamObject::get_TamObjectID);
    }
    static void ExpectFailure(HRESULT result, HRESULT expected, const std::wstring& description) {
        EXPECT_EQ(result, expected);
        EXPECT_EQ(LastError().description, description);
    }
};

TEST_F(CDBAppObjectDeviceStreamTest, ReadsTheModuleAndItsPoints) {
    const auto module = Loaded(With(L"<CDB>120</CDB><DDB>64</DDB><InReferences><In1/><In2/></InReferences>"
                                    L"<OutReferences><Out1/></OutReferences>"
                                    L"<Attributes><Gain><SNVTTYPE>36</SNVTTYPE></Gain></Attributes>"));
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Pump");
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Pump");
    EXPECT_EQ(Text(module, &IAppObject::get_UniqueIDString), L"O_Tam_id");
    EXPECT_EQ(ObjectId(module), 3);
    EXPECT_EQ(Long(module, &IAppObject::get_CDBDimension), 120);
    EXPECT_EQ(Long(module, &IAppObject::get_DDBDimension), 64);
    EXPECT_EQ(InputCount(module), 2);
    EXPECT_EQ(OutputCount(module), 1);
    EXPECT_EQ(AttributeCount(module), 1);
    EXPECT_EQ(Text(Input(module, L"2"), &IInput::get_Name), L"In2");
    EXPECT_EQ(Long(Input(module, L"In2"), &IInput::get_Index), 1);
}

TEST_F(CDBAppObjectDeviceStreamTest, LoadsWithoutSections) {
    const auto module = Loaded(With({}));
    EXPECT_EQ(InputCount(module) + OutputCount(module) + AttributeCount(module), 0);
}

TEST_F(CDBAppObjectDeviceStreamTest, MakesItselfTheParentOfItsPoints) {
    const auto module = Loaded(Stream(L"<In1/>", L"<Out1/>", L"<Gain><SNVTTYPE>36</SNVTTYPE></Gain>"));
    EXPECT_TRUE(com::SameObject(Object(Input(module, L"In1"), &IInput::get_Parent).Get(), module.Get()));
    EXPECT_TRUE(com::SameObject(Object(Output(module, L"Out1"), &IOutput::get_Parent).Get(), module.Get()));
    EXPECT_TRUE(
        com::SameObject(Object(Attribute(module, L"Gain"), &IAttribute::get_Parent).Get(), module.Get()));
}

TEST_F(CDBAppObjectDeviceStreamTest, ReplacesAUserName) {
    const auto module = NewModule();
    Put(module, &IAppObject::put_UserName, L"Mine");
    ASSERT_EQ(Load(module, With({})), S_OK);
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Pump");
}

TEST_F(CDBAppObjectDeviceStreamTest, KeepsAnEarlierDefinitionsOtherTexts) {
    const auto module = Defined(L"<NAME>Valve</NAME><ID>77</ID><CATEGORY>C</CATEGORY>");
    ASSERT_EQ(Load(module, With({})), S_OK);
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Pump");
    EXPECT_EQ(Text(module, &IAppObject::get_ID), L"77");
    EXPECT_EQ(Text(module, &IAppObject::get_Category), L"C");
    EXPECT_EQ(Text(module, &IAppObject::get_UniqueIDString), L"O_Tam_id");
}

TEST_F(CDBAppObjectDeviceStreamTest, LeavesTheDeviceKeyProperty) {
    const auto module = NewModule();
    Put(module.As<ITamObject>(), &ITamObject::put_DeviceKey, L"D1");
    ASSERT_EQ(Load(module, With({})), S_OK);
    EXPECT_EQ(Text(module.As<ITamObject>(), &ITamObject::get_DeviceKey), L"D1");
}

TEST_F(CDBAppObjectDeviceStreamTest, IsLastWhenTheNumberIsExactlyOne) {
    EXPECT_TRUE(IsLast(L"1"));
    EXPECT_TRUE(IsLast(L"1.0"));
    EXPECT_TRUE(IsLast(L"1 yes"));
    EXPECT_FALSE(IsLast(L"2"));
    EXPECT_FALSE(IsLast(L"0"));
    EXPECT_FALSE(IsLast(L"-1"));
    EXPECT_FALSE(IsLast(L"1.5"));
    EXPECT_FALSE(IsLast(L"True"));
    EXPECT_FALSE(IsLast(L""));
}

TEST_F(CDBAppObjectDeviceStreamTest, ReadsTheObjectIdAsANumber) {
    EXPECT_EQ(ObjectId(Loaded(With({}, L"1", L"-7"))), -7);
    EXPECT_EQ(ObjectId(Loaded(With({}, L"1", L"12abc"))), 12);
    EXPECT_EQ(ObjectId(Loaded(With({}, L"1", L"2.6"))), 3);
    EXPECT_EQ(ObjectId(Loaded(With({}, L"1", L"3,9"))), 3) << "a comma ends the number, whoever the user is";
    EXPECT_EQ(ObjectId(Loaded(With({}, L"1", L""))), 0);
}

TEST_F(CDBAppObjectDeviceStreamTest, RefusesAnObjectIdThatIsTooLarge) {
    ExpectFailure(Load(NewModule(), With({}, L"1", L"40000")), kOverflow, kOverflowText);
}

TEST_F(CDBAppObjectDeviceStreamTest, ReadsSizesAsNumbers) {
    const auto module = Loaded(With(L"<CDB>100000.4</CDB><DDB>abc</DDB>"));
    EXPECT_EQ(Long(module, &IAppObject::get_CDBDimension), 100000);
    EXPECT_EQ(Long(module, &IAppObject::get_DDBDimension), 0);
}

TEST_F(CDBAppObjectDeviceStreamTest, ReadsTheNumberThatASizeBeginsWith) {
    const auto module = Loaded(With(L"<CDB> 12abc</CDB><DDB>7,9</DDB>"));
    EXPECT_EQ(Long(module, &IAppObject::get_CDBDimension), 12);
    EXPECT_EQ(Long(module, &IAppObject::get_DDBDimension), 7);
}

TEST_F(CDBAppObjectDeviceStreamTest, RefusesASizeThatIsTooLarge) {
    ExpectFailure(Load(NewModule(), With(L"<CDB>3000000000</CDB>")), kOverflow, kOverflowText);
    ExpectFailure(Load(NewModule(), With(L"<DDB>3000000000</DDB>")), kOverflow, kOverflowText);
}

TEST_F(CDBAppObjectDeviceStreamTest, KeepsSizesThatAStreamDoesNotGive) {
    const auto module = Loaded(With(L"<CDB>120</CDB><DDB>64</DDB>"));
    ASSERT_EQ(Load(module, With(L"<DDB>65</DDB>")), S_OK);
    EXPECT_EQ(Long(module, &IAppObject::get_CDBDimension), 120);
    EXPECT_EQ(Long(module, &IAppObject::get_DDBDimension), 65);
    ASSERT_EQ(Load(module, With(L"<CDB>121</CDB>")), S_OK);
    EXPECT_EQ(Long(module, &IAppObject::get_CDBDimension), 121);
    EXPECT_EQ(Long(module, &IAppObject::get_DDBDimension), 65);
}

TEST_F(CDBAppObjectDeviceStreamTest, ReplacesInputsAndOutputsAndKeepsAttributes) {
    const auto module = Loaded(Stream(L"<In1/>", L"<Out1/>", L"<Gain><SNVTTYPE>36</SNVTTYPE></Gain>"));
    const auto inputs = Object(module, &IAppObject::get_Inputs);
    const auto outputs = Object(module, &IAppObject::get_Outputs);
    const auto attributes = Object(module, &IAppObject::get_Attributes);
    const auto gain = Attribute(module, L"Gain");
    ASSERT_EQ(Load(module, Stream(L"<In9/>", {}, L"<Limit><SNVTTYPE>36</SNVTTYPE></Limit>")), S_OK);
    EXPECT_FALSE(com::SameObject(Object(module, &IAppObject::get_Inputs).Get(), inputs.Get()));
    EXPECT_FALSE(com::SameObject(Object(module, &IAppObject::get_Outputs).Get(), outputs.Get()));
    EXPECT_TRUE(com::SameObject(Object(module, &IAppObject::get_Attributes).Get(), attributes.Get()));
    EXPECT_FALSE(Input(module, L"In1"));
    EXPECT_TRUE(Input(module, L"In9"));
    EXPECT_EQ(OutputCount(module), 0);
    EXPECT_EQ(AttributeCount(module), 2);
    EXPECT_TRUE(com::SameObject(Attribute(module, L"Gain").Get(), gain.Get()));
    EXPECT_EQ(Long(inputs, &IInputs::get_Count), 1) << "what the host holds is as it was";
}

TEST_F(CDBAppObjectDeviceStreamTest, GivesNewCollectionsNoKeys) {
    const auto module = NewModule();
    Put(module, &IAppObject::put_GlobalKey, L"G");
    ASSERT_EQ(Load(module, Stream(L"<In1/>")), S_OK);
    EXPECT_EQ(Text(Object(module, &IAppObject::get_Inputs), &IInputs::get_GlobalKey), L"");
    EXPECT_EQ(Text(Input(module, L"In1"), &IInput::get_GlobalKey), L"");
    EXPECT_EQ(Text(Object(module, &IAppObject::get_Attributes), &IAttributes::get_GlobalKey), L"G\\ATT");
}

TEST_F(CDBAppObjectDeviceStreamTest, RefusesAnAttributeThatIsThereAlready) {
    const std::wstring stream = Stream({}, {}, L"<Gain><SNVTTYPE>36</SNVTTYPE></Gain>");
    const auto module = Loaded(stream);
    EXPECT_EQ(Load(module, stream), kDuplicateKey);
    EXPECT_EQ(AttributeCount(module), 1);
}

TEST_F(CDBAppObjectDeviceStreamTest, StopsAtAnInputOfTheSameName) {
    const auto module = NewModule();
    EXPECT_EQ(Load(module, Stream(L"<In1/><In1/><In2/>", L"<Out1/>")), kDuplicateKey);
    EXPECT_EQ(InputCount(module), 1);
    EXPECT_EQ(OutputCount(module), 0) << "inputs are read first";
}

TEST_F(CDBAppObjectDeviceStreamTest, ReadsSectionsInItsOwnOrder) {
    const auto module = NewModule();
    EXPECT_EQ(Load(module, With(L"<Attributes><Gain><SNVTTYPE>36</SNVTTYPE></Gain></Attributes>"
                                L"<OutReferences><Out1/><Out1/></OutReferences>"
                                L"<InReferences><In1/></InReferences>")),
              kDuplicateKey);
    EXPECT_EQ(InputCount(module), 1);
    EXPECT_EQ(OutputCount(module), 1);
    EXPECT_EQ(AttributeCount(module), 0);
}

TEST_F(CDBAppObjectDeviceStreamTest, SkipsComments) {
    const auto module = Loaded(With(L"<!-- a --><InReferences><!-- In0 --><In1/><!-- b --></InReferences>"));
    EXPECT_EQ(InputCount(module), 1);
}

// Decided: only elements are references.
TEST_F(CDBAppObjectDeviceStreamTest, SkipsEverythingThatIsNoElement) {
    const auto module = Loaded(With(L"<InReferences>text<In1/><?work now?></InReferences>"));
    EXPECT_EQ(InputCount(module), 1);
}

TEST_F(CDBAppObjectDeviceStreamTest, NamesPointsByTheirLocalName) {
    const auto module = Loaded(With(L"<InReferences xmlns:x='urn:x'><x:In1/></InReferences>"));
    EXPECT_EQ(Text(Input(module, L"1"), &IInput::get_Name), L"In1");
}

TEST_F(CDBAppObjectDeviceStreamTest, ReadsTheFirstSectionOfEachKind) {
    const auto module =
        Loaded(With(L"<InReferences><In1/></InReferences><InReferences><In2/></InReferences>"));
    EXPECT_EQ(InputCount(module), 1);
    EXPECT_TRUE(Input(module, L"In1"));
}

TEST_F(CDBAppObjectDeviceStreamTest, ReadsNamesAsTheyAreWritten) {
    EXPECT_EQ(Load(NewModule(), L"<TAM><Name>P</Name><DevKey>K</DevKey><IsLastOnDev>1</IsLastOnDev>"
                                L"<TamObjID>3</TamObjID></TAM>"),
              kObjectNotSet);
    EXPECT_EQ(InputCount(Loaded(With(L"<inreferences><In1/></inreferences>"))), 0);
}

TEST_F(CDBAppObjectDeviceStreamTest, FailsWithoutARequiredElement) {
    const std::pair<const wchar_t*, const wchar_t*> required[] = {
        {L"Name", L"Pump"}, {L"DevKey", L"K7"}, {L"IsLastOnDev", L"1"}, {L"TamObjID", L"3"}};
    for (const auto& [missing, ignored] : required) {
        std::wstring content;
        for (const auto& [name, text] : required) {
            if (std::wstring(name) != missing) {
                content += std::wstring(L"<") + name + L">" + text + L"</" + name + L">";
            }
        }
        const auto module = Defined(L"<NAME>Valve</NAME>");
        ExpectFailure(Load(module, L"<Tam>" + content + L"<InReferences><In1/></InReferences></Tam>"),
                      kObjectNotSet, kObjectNotSetText);
        EXPECT_EQ(InputCount(module), 0);
        EXPECT_EQ(Text(module, &IAppObject::get_UniqueIDString), L"Valve");
    }
    EXPECT_TRUE(Boxes().empty());
}

TEST_F(CDBAppObjectDeviceStreamTest, FailsForATextThatIsNoXml) {
    for (const wchar_t* text : {L"", L"words", L"<Tam><Name>Pump</Name>", L"<Tam></Mat>"}) {
        ExpectFailure(Load(NewModule(), text), kObjectNotSet, kObjectNotSetText);
    }
    EXPECT_EQ(NewModule().As<ITamObject>()->LoadFromXmlStream(nullptr), kObjectNotSet);
    EXPECT_TRUE(Boxes().empty());
}

TEST_F(CDBAppObjectDeviceStreamTest, HasReplacedTheCollectionsWhenItFails) {
    const auto module = Loaded(Stream(L"<In1/>", L"<Out1/>", L"<Gain><SNVTTYPE>36</SNVTTYPE></Gain>"));
    EXPECT_EQ(Load(module, L"no XML"), kObjectNotSet);
    EXPECT_EQ(InputCount(module), 0);
    EXPECT_EQ(OutputCount(module), 0);
    EXPECT_EQ(AttributeCount(module), 1);
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Module");
}

TEST_F(CDBAppObjectDeviceStreamTest, TakesEmptyTexts) {
    const auto module = Loaded(L"<Tam><Name/><DevKey/><IsLastOnDev/><TamObjID/></Tam>");
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"");
    EXPECT_EQ(ObjectId(module), 0);
}

TEST_F(CDBAppObjectDeviceStreamTest, MakesCollectionsAgainAfterDestroy) {
    const auto module = Loaded(Stream(L"<In1/>"));
    module->Destroy();
    ASSERT_EQ(Load(module, Stream(L"<In2/>", L"<Out2/>", L"<Gain><SNVTTYPE>36</SNVTTYPE></Gain>")), S_OK);
    EXPECT_EQ(InputCount(module), 1);
    EXPECT_EQ(OutputCount(module), 1);
    EXPECT_EQ(AttributeCount(module), 1);
}

TEST_F(CDBAppObjectDeviceStreamTest, GivesTheHostATurnAtEachChild) {
    const auto module = NewModule();
    for (const wchar_t* child : {L"<In1/>", L"<!-- a comment -->"}) {
        OnYield turn([] {});
        ASSERT_EQ(Load(module, Stream(child)), S_OK);
        EXPECT_TRUE(turn.Ran());
    }
    OnYield turn([] {});
    ASSERT_EQ(Load(module, Stream({})), S_OK);
    EXPECT_FALSE(turn.Ran()) << "without a child there is no turn";
}

TEST_F(CDBAppObjectDeviceStreamTest, LoadsByName) {
    const auto module = NewModule();
    const com::Variant stream{std::wstring_view(With({}))};
    VARIANT argument = stream.Get();
    com::CallMember(*module.Get(), L"LoadFromXmlStream", std::span<VARIANT>(&argument, 1));
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Pump");
}

} // namespace
