#include "tests/appobject/Module.h"

#include <string>

using namespace support;
using namespace modules;

namespace {

/// Documents that are legal but not as this system's own tools write them.
class CDBAppObjectUnusualDocumentsTest : public ModuleTest {
  protected:
    void ExpectLoadReport(const std::wstring& description) {
        ExpectOneReport(description, kLocation, L"Sub IAppObject_XmlLoad");
    }
    static std::wstring UserName(const com::Ref<IAppObject>& module) {
        return Text(module, &IAppObject::get_UserName);
    }
    /// UserName after this content of the project element was loaded.
    std::wstring UserNameOf(const std::wstring& content) {
        const auto module = NewModule();
        Put(module, &IAppObject::put_UserName, L"Before");
        LoadProject(module, L"<Valve>" + content + L"</Valve>");
        return UserName(module);
    }
    /// Whether Out1 is displayable after this element of OutReferences was read.
    bool Displayable(const std::wstring& reference) {
        const auto module = Loaded(Stream({}, L"<Out1/>"));
        LoadProject(module, L"<Valve><OutReferences>" + reference + L"</OutReferences></Valve>");
        return Flag(Output(module, L"Out1"), &IOutput::get_IsDisplayable);
    }
    static constexpr const wchar_t* kRest = L"<DevKey>K7</DevKey><IsLastOnDev>1</IsLastOnDev>"
                                            L"<TamObjID>3</TamObjID>";
};

// The definition.

TEST_F(CDBAppObjectUnusualDocumentsTest, ReadsADefinitionOfAnUnusualFileName) {
    for (const wchar_t* name : {L"Two words", L"Ventil \x00fc", L"#1", L"100%", L"a&b+c", L"1.2", L"a;b,c"}) {
        const auto module = Defined(L"<NAME>Valve</NAME>", name);
        EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Valve") << name;
        EXPECT_EQ(Text(module, &IAppObject::get_UniqueIDString), name);
    }
}

TEST_F(CDBAppObjectUnusualDocumentsTest, ReadsSectionsAndSplitTextsOfADefinition) {
    const auto module = Defined(L"<NAME a='1'><![CDATA[Valve <1>]]></NAME><ID>7<!-- no -->7</ID>"
                                L"<DESCRIPTION>a<![CDATA[b]]>c</DESCRIPTION>");
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Valve <1>");
    EXPECT_EQ(Text(module, &IAppObject::get_ID), L"77");
    EXPECT_EQ(Text(module, &IAppObject::get_Description), L"abc");
}

TEST_F(CDBAppObjectUnusualDocumentsTest, TakesAnEmptyElementForAnEmptyText) {
    const auto module = Defined(L"<NAME/><NAME>Valve</NAME><ID>7</ID><ID/><CATEGORY></CATEGORY>");
    EXPECT_EQ(UserName(module), L"Valve") << "an empty name leaves the user name to the next";
    EXPECT_EQ(Text(module, &IAppObject::get_ID), L"");
    Define(L"Nameless", L"<NAME/>");
    EXPECT_TRUE(Init(module, L"Nameless"));
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"");
    EXPECT_EQ(UserName(module), L"Valve");
}

TEST_F(CDBAppObjectUnusualDocumentsTest, ReadsAnAppObjectThatIsTheDocumentElementBetweenOtherNodes) {
    DefineWhole(L"Valve", L"<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?><!-- a --><?b c?>"
                          L"<AppObject version='2'>\r\n\t<!-- d -->\r\n\t<CATEGORY>C</CATEGORY>\r\n\t"
                          L"<NAME>Valve \x00e4\x4e2d</NAME>\r\n</AppObject><!-- e -->");
    const auto module = NewModule();
    EXPECT_TRUE(Init(module, L"Valve"));
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Valve \x00e4\x4e2d");
    EXPECT_EQ(Text(module, &IAppObject::get_Category), L"C");
}

TEST_F(CDBAppObjectUnusualDocumentsTest, TakesAnInstructionOfADefinitionByItsNameToo) {
    const auto module = Defined(L"text<?NAME Valve?><?b c?><?id 7?><!--ID-->");
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Valve");
    EXPECT_EQ(UserName(module), L"Valve");
    EXPECT_EQ(Text(module, &IAppObject::get_ID), L"7") << "of the children only comments do not count";
}

TEST_F(CDBAppObjectUnusualDocumentsTest, NumbersSizeRowsByTheirLocalName) {
    Defined(L"<DataSizes xmlns:x='urn:x'><x:T5/><x:T6/></DataSizes>");
    ExpectOneReport(kSubscriptText, kLocation, L"Sub pGetDataSizes");
}

TEST_F(CDBAppObjectUnusualDocumentsTest, ReadsAnEmptySizeTable) {
    EXPECT_TRUE(Defined(L"<DataSizes/><NAME>Valve</NAME>"));
    EXPECT_TRUE(Defined(L"<DataSizes>\r\n</DataSizes><NAME>Valve</NAME>"));
}

// The project element.

TEST_F(CDBAppObjectUnusualDocumentsTest, KeepsTheBlanksOfAProjectText) {
    EXPECT_EQ(UserNameOf(L"<UserName> Mine </UserName>"), L" Mine ");
    EXPECT_EQ(UserNameOf(L"<UserName>a\nb\tc</UserName>"), L"a\nb\tc");
}

TEST_F(CDBAppObjectUnusualDocumentsTest, TakesTheFirstChildAloneForAProjectText) {
    EXPECT_EQ(UserNameOf(L"<UserName><![CDATA[<Mine>]]></UserName>"), L"<Mine>");
    EXPECT_EQ(UserNameOf(L"<UserName>Mine<![CDATA[ too]]></UserName>"), L"Mine");
    EXPECT_EQ(UserNameOf(L"<UserName>Mine<!-- and -->yours</UserName>"), L"Mine");
    EXPECT_EQ(UserNameOf(L"<UserName>Mine<b>bold</b></UserName>"), L"Mine");
}

TEST_F(CDBAppObjectUnusualDocumentsTest, TakesTheValueOfAFirstChildOfAnyKind) {
    EXPECT_EQ(UserNameOf(L"<UserName><!-- c -->Mine</UserName>"), L" c ");
    EXPECT_EQ(UserNameOf(L"<UserName><!----><b/></UserName>"), L"");
    EXPECT_EQ(UserNameOf(L"<UserName><?p c d?>Mine</UserName>"), L"c d");
    const auto module = NewModule();
    LoadProject(module, L"<Valve><X_Position><!--12.5-->7</X_Position><Y_Position><![CDATA[3]]></Y_Position>"
                        L"<TamObjID><?n 9?></TamObjID><DevKey><!--K--></DevKey></Valve>");
    EXPECT_EQ(Double(module, &IAppObject::get_XPosition), 12.5);
    EXPECT_EQ(Double(module, &IAppObject::get_YPosition), 3.0);
    EXPECT_EQ(Short(module.As<ITamObject>(), &ITamObject::get_TamObjectID), 9);
    EXPECT_EQ(Text(module.As<ITamObject>(), &ITamObject::get_DeviceKey), L"K");
}

TEST_F(CDBAppObjectUnusualDocumentsTest, ReportsAProjectTextAfterAnElement) {
    EXPECT_EQ(UserNameOf(L"<UserName><b>Mine</b></UserName>"), L"Before");
    ExpectLoadReport(kObjectNotSetText);
}

TEST_F(CDBAppObjectUnusualDocumentsTest, TakesOnlyElementsForProjectValues) {
    EXPECT_EQ(UserNameOf(L"<?UserName No?><?DevKey?><UserName a='No'>Mine</UserName><?TamObjID 7?>"),
              L"Mine");
    EXPECT_FALSE(Displayable(L"<?Out1 1?>1<![CDATA[1]]>"));
}

TEST_F(CDBAppObjectUnusualDocumentsTest, LetsTheLastOfRepeatedProjectElementsWin) {
    EXPECT_EQ(UserNameOf(L"<UserName>First</UserName><USERNAME>Second</USERNAME>"), L"Second");
    const auto module = Loaded(Stream({}, L"<Out1/><Out2/>"));
    LoadProject(module, L"<Valve><OutReferences><Out1>1</Out1></OutReferences>"
                        L"<OutReferences><Out2>1</Out2></OutReferences></Valve>");
    EXPECT_TRUE(Flag(Output(module, L"Out1"), &IOutput::get_IsDisplayable));
    EXPECT_TRUE(Flag(Output(module, L"Out2"), &IOutput::get_IsDisplayable));
}

TEST_F(CDBAppObjectUnusualDocumentsTest, ReadsADisplayFlagHoweverItsTextIsWritten) {
    EXPECT_TRUE(Displayable(L"<Out1><![CDATA[1]]></Out1>"));
    EXPECT_TRUE(Displayable(L"<Out1>&#49;</Out1>"));
    EXPECT_TRUE(Displayable(L"<Out1 flag='0'><!-- shown -->1</Out1>"));
    EXPECT_TRUE(Displayable(L"<x:out1 xmlns:x='urn:x'>1</x:out1>"));
    EXPECT_FALSE(Displayable(L"<Out1>1<![CDATA[1]]></Out1>"));
    EXPECT_FALSE(Displayable(L"<Out1>1\n</Out1>"));
    EXPECT_FALSE(Displayable(L"<Out1><b>1</b></Out1>"));
    EXPECT_FALSE(Displayable(L"<Out1 flag='1'/>"));
}

TEST_F(CDBAppObjectUnusualDocumentsTest, PassesOverEmptyReferences) {
    EXPECT_EQ(UserNameOf(L"<OutReferences/><UserName>Mine</UserName>"), L"Mine");
}

TEST_F(CDBAppObjectUnusualDocumentsTest, LoadsAProjectTwiceWithTheSameResult) {
    const auto module = Loaded(Stream({}, L"<Out1/>"));
    for (int i = 0; i < 2; ++i) {
        LoadProject(module, L"<Valve><UserName>Mine</UserName><OutReferences><Out1>1</Out1></OutReferences>"
                            L"<TamObjID>9</TamObjID></Valve>");
        EXPECT_EQ(UserName(module), L"Mine");
        EXPECT_TRUE(Flag(Output(module, L"Out1"), &IOutput::get_IsDisplayable));
        EXPECT_EQ(Short(module.As<ITamObject>(), &ITamObject::get_TamObjectID), 9);
    }
}

// The device stream.

TEST_F(CDBAppObjectUnusualDocumentsTest, ReadsAStreamThatNamesAnEncoding) {
    for (const wchar_t* encoding : {L"UTF-8", L"utf-16", L"ISO-8859-1"}) {
        const auto module = NewModule();
        ASSERT_EQ(Load(module, std::wstring(L"<?xml version=\"1.0\" encoding=\"") + encoding + L"\"?>" +
                                   Stream({}, {}, {}, L"Pumpe \x00fc")),
                  S_OK)
            << encoding;
        EXPECT_EQ(UserName(module), L"Pumpe \x00fc") << encoding;
    }
}

TEST_F(CDBAppObjectUnusualDocumentsTest, ReadsAStreamInAnyOrderBetweenOtherNodes) {
    const auto module =
        Loaded(L"<!-- a --><Tam v='1'><OutReferences b='2'/><TamObjID> 7 </TamObjID><?c d?>"
               L"<InReferences><In1/></InReferences><DDB>64</DDB><IsLastOnDev><!-- e -->1</IsLastOnDev>"
               L"<DevKey/><Other><Name>No</Name></Other><Name f='3'><![CDATA[Pu]]><!-- g -->mp</Name></Tam>");
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Pump");
    EXPECT_EQ(UserName(module), L"Pump");
    EXPECT_EQ(Short(module.As<ITamObject>(), &ITamObject::get_TamObjectID), 7);
    EXPECT_EQ(Long(module, &IAppObject::get_DDBDimension), 64);
    EXPECT_EQ(InputCount(module), 1);
    EXPECT_EQ(OutputCount(module), 0);
}

TEST_F(CDBAppObjectUnusualDocumentsTest, ReadsTheFirstOfRepeatedStreamElements) {
    const auto module = Loaded(std::wstring(L"<Tam><Name>First</Name><Name>Second</Name>") + kRest +
                               L"<TamObjID>4</TamObjID></Tam>");
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"First");
    EXPECT_EQ(Short(module.As<ITamObject>(), &ITamObject::get_TamObjectID), 3);
}

TEST_F(CDBAppObjectUnusualDocumentsTest, ReadsTheFirstOfRepeatedSections) {
    const auto module = Loaded(std::wstring(L"<Tam><Name>Pump</Name>") + kRest +
                               L"<InReferences><In1/></InReferences><InReferences><In2/></InReferences>"
                               L"<OutReferences/><OutReferences><Out1/></OutReferences>"
                               L"<Attributes><A1><SNVTTYPE>36</SNVTTYPE></A1></Attributes>"
                               L"<Attributes><A2><SNVTTYPE>36</SNVTTYPE></A2></Attributes></Tam>");
    EXPECT_EQ(InputCount(module), 1);
    EXPECT_TRUE(Input(module, L"In1"));
    EXPECT_EQ(OutputCount(module), 0) << "the first one is empty";
    EXPECT_EQ(AttributeCount(module), 1);
    EXPECT_TRUE(Attribute(module, L"A1"));
}

TEST_F(CDBAppObjectUnusualDocumentsTest, ReadsTheSectionThatTheDocumentFindsFirst) {
    // A section inside another element named Tam comes first in the document.
    const std::wstring stream = std::wstring(L"<Tam><Name>Pump</Name>") + kRest +
                                L"<Old><Tam><InReferences><Deep/></InReferences></Tam></Old>"
                                L"<InReferences><In1/></InReferences></Tam>";
    const auto module = Loaded(stream);
    ASSERT_EQ(InputCount(module), 1);
    com::Ref<IXMLDOMNodeList> sections;
    com::Check(Parse(stream)->getElementsByTagName(com::Bstr(L"Tam/InReferences").Get(), sections.Put()));
    com::Ref<IXMLDOMNode> first;
    com::Check(sections->get_item(0, first.Put()));
    com::Ref<IXMLDOMNode> child;
    com::Check(first->get_firstChild(child.Put()));
    EXPECT_EQ(Text(Input(module, L"1"), &IInput::get_Name), Text(child, &IXMLDOMNode::get_nodeName));
}

TEST_F(CDBAppObjectUnusualDocumentsTest, RefusesAStreamOfAnotherRootOrNamespace) {
    const std::wstring content = std::wstring(L"<Name>Pump</Name>") + kRest;
    EXPECT_EQ(Load(NewModule(), L"<R><Tam>" + content + L"</Tam></R>"), kObjectNotSet);
    EXPECT_EQ(Load(NewModule(), L"<Tam xmlns='urn:x'>" + content + L"</Tam>"), kObjectNotSet);
    EXPECT_EQ(Load(NewModule(), L"<x:Tam xmlns:x='urn:x'>" + content + L"</x:Tam>"), kObjectNotSet);
    EXPECT_EQ(Load(NewModule(), content), kObjectNotSet);
}

TEST_F(CDBAppObjectUnusualDocumentsTest, KeepsWhatAStreamGaveBeforeItsFault) {
    const auto module = Defined(L"<NAME>Valve</NAME>");
    EXPECT_EQ(Load(module, L"<Tam><Name>Pump</Name><TamObjID>3</TamObjID></Tam>"), kObjectNotSet);
    EXPECT_EQ(Text(module, &IAppObject::get_UniqueIDString), L"Valve");
    EXPECT_EQ(Short(module.As<ITamObject>(), &ITamObject::get_TamObjectID), 0);
    ASSERT_EQ(Load(module, Stream(L"<In1/>")), S_OK) << "the next stream loads as the first";
    EXPECT_EQ(InputCount(module), 1);
}

// What the object writes into documents of the host.

TEST_F(CDBAppObjectUnusualDocumentsTest, SavesIntoADocumentWithANamespaceAndOtherNodes) {
    const auto module = Loaded(Stream({}, {}, {}, L"Pump"));
    const Document document = Parse(L"<!-- a --><h:Host xmlns:h='urn:h'><?b c?><Inner>text</Inner></h:Host>");
    const auto inner = tam::dom::Select(tam::dom::Node(Root(document)), L"Inner");
    EXPECT_EQ(module->XMLSaveForInteroperability(inner.Get(), document.Get()), S_OK);
    EXPECT_EQ(Bare(Xml(inner.Get())),
              L"<Inner>text<O_Tam_id><UserName>Pump</UserName><Key></Key></O_Tam_id></Inner>");
}

} // namespace
