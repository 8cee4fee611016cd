#include "tests/appobject/Module.h"

#include "com/LateBound.h"
#include "common/resource.h"

#include <span>
#include <string>
#include <string_view>

using namespace support;
using namespace modules;

namespace {

constexpr const wchar_t* kInfos = L"Sub pGetBasicInfos";
constexpr const wchar_t* kSizes = L"Sub pGetDataSizes";

class CDBAppObjectDefinitionTest : public ModuleTest {
  protected:
    void ExpectInitReport(const std::wstring& description) {
        ExpectOneReport(description, L"IAppObject_Init Class Module CDBAppObject",
                        L"Function IAppObject_Init");
    }
};

/// What a parser says of a file that does not load: line, CR, reason.
std::wstring ParseErrorOf(const std::wstring& path) {
    const Document document = NewDocument();
    VARIANT_BOOL done = VARIANT_TRUE;
    document->load(com::Variant(std::wstring_view(path)).Get(), &done);
    EXPECT_EQ(done, VARIANT_FALSE);
    com::Ref<IXMLDOMParseError> error;
    com::Check(document->get_parseError(error.Put()));
    com::Bstr line;
    com::Bstr reason;
    com::Check(error->get_srcText(line.Put()));
    com::Check(error->get_reason(reason.Put()));
    return std::wstring(line.View()) + L"\r" + std::wstring(reason.View());
}

TEST_F(CDBAppObjectDefinitionTest, ReadsWhatTheObjectIs) {
    const auto module = Defined(L"<NAME>Valve</NAME><ID>77</ID><DESCRIPTION>Drives a valve</DESCRIPTION>"
                                L"<CATEGORY>Field</CATEGORY>",
                                L"File");
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Valve");
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Valve");
    EXPECT_EQ(Text(module, &IAppObject::get_ID), L"77");
    EXPECT_EQ(Text(module, &IAppObject::get_Description), L"Drives a valve");
    EXPECT_EQ(Text(module, &IAppObject::get_Category), L"Field");
    EXPECT_EQ(Text(module, &IAppObject::get_UniqueIDString), L"File");
    EXPECT_FALSE(Flag(module, &IAppObject::get_PlugInAvailable));
}

TEST_F(CDBAppObjectDefinitionTest, ReadsElementsInAnyLetterCase) {
    const auto module =
        Defined(L"<name>Valve</name><Id>77</Id><description>D</description><cAtEgOrY>C</cAtEgOrY>"
                L"<datasizes><t0 Name='a' CDB_Size='1'/></datasizes>");
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Valve");
    EXPECT_EQ(Text(module, &IAppObject::get_ID), L"77");
    EXPECT_EQ(Text(module, &IAppObject::get_Description), L"D");
    EXPECT_EQ(Text(module, &IAppObject::get_Category), L"C");
}

TEST_F(CDBAppObjectDefinitionTest, ComparesLocalNames) {
    DefineWhole(L"Valve", L"<AppObject xmlns:x='urn:x'><x:NAME>Valve</x:NAME></AppObject>");
    const auto module = NewModule();
    EXPECT_TRUE(Init(module, L"Valve"));
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Valve");
}

TEST_F(CDBAppObjectDefinitionTest, KeepsAUserNameThatWasWrittenBefore) {
    Define(L"Valve", L"<NAME>Valve</NAME>");
    const auto module = NewModule();
    Put(module, &IAppObject::put_UserName, L"Mine");
    EXPECT_TRUE(Init(module, L"Valve"));
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Valve");
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Mine");
}

TEST_F(CDBAppObjectDefinitionTest, KeepsTheFirstUserNameInASecondInit) {
    const auto module = Defined(L"<NAME>Valve</NAME>");
    Define(L"Pump", L"<NAME>Pump</NAME>");
    EXPECT_TRUE(Init(module, L"Pump"));
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Pump");
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Valve");
    EXPECT_EQ(Text(module, &IAppObject::get_UniqueIDString), L"Pump");
}

TEST_F(CDBAppObjectDefinitionTest, LetsTheLastOfRepeatedElementsWin) {
    const auto module = Defined(L"<NAME>First</NAME><NAME>Second</NAME><ID>1</ID><ID>2</ID>");
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Second");
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"First");
    EXPECT_EQ(Text(module, &IAppObject::get_ID), L"2");
}

TEST_F(CDBAppObjectDefinitionTest, SkipsCommentsAndUnknownElements) {
    const auto module =
        Defined(L"<!-- NAME --><Other><NAME>No</NAME></Other>text<NAME>Valve</NAME><!-- end -->");
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Valve");
}

TEST_F(CDBAppObjectDefinitionTest, TakesTheTextOfAllBelowAnElement) {
    const auto module = Defined(L"<DESCRIPTION>Drives <b>a</b> valve &amp; more</DESCRIPTION>");
    EXPECT_EQ(Text(module, &IAppObject::get_Description), L"Drives a valve & more");
}

TEST_F(CDBAppObjectDefinitionTest, TakesTheFirstAppObjectAtAnyDepth) {
    DefineWhole(L"Valve", L"<R><A><B><AppObject><NAME>Deep</NAME></AppObject></B></A>"
                          L"<AppObject><NAME>Later</NAME><ID>9</ID></AppObject></R>");
    const auto module = NewModule();
    EXPECT_TRUE(Init(module, L"Valve"));
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Deep");
    EXPECT_EQ(Text(module, &IAppObject::get_ID), L"");
}

TEST_F(CDBAppObjectDefinitionTest, ReportsADefinitionWithoutAnAppObjectAndAnswersTrue) {
    DefineWhole(L"Valve", L"<R><APPOBJECT><NAME>Valve</NAME></APPOBJECT></R>");
    const auto module = NewModule();
    EXPECT_TRUE(Init(module, L"Valve"));
    ExpectOneReport(kObjectNotSetText, kLocation, kInfos);
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"");
}

TEST_F(CDBAppObjectDefinitionTest, ReportsAMissingFileAndAnswersFalse) {
    const auto module = NewModule();
    EXPECT_FALSE(Init(module, L"Nowhere"));
    ExpectInitReport({});
    for (const auto member : {&IAppObject::get_Name, &IAppObject::get_UserName, &IAppObject::get_ID,
                              &IAppObject::get_Description, &IAppObject::get_Category}) {
        EXPECT_EQ(Text(module, member), L"");
    }
    EXPECT_EQ(Text(module, &IAppObject::get_UniqueIDString), L"Nowhere");
}

TEST_F(CDBAppObjectDefinitionTest, ReportsTheParsersLineAndReason) {
    DefineWhole(L"Broken", L"<AppObject>\n<NAME>Valve</NAME>\n</Wrong>");
    const auto module = NewModule();
    EXPECT_FALSE(Init(module, L"Broken"));
    const auto boxes = Boxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].controls.at(IDC_ERROR_DESCRIPTION), ParseErrorOf(Component::Folder() + L"Broken.xml"));
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"");
}

TEST_F(CDBAppObjectDefinitionTest, ReportsAnEmptyFile) {
    DefineWhole(L"Broken", L"");
    EXPECT_FALSE(Init(NewModule(), L"Broken"));
    ExpectInitReport({});
}

TEST_F(CDBAppObjectDefinitionTest, KeepsAnEarlierDefinitionsTextsWhenALaterOneFails) {
    const auto module = Defined(L"<NAME>Valve</NAME><ID>77</ID>");
    EXPECT_FALSE(Init(module, L"Nowhere"));
    ExpectInitReport({});
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Valve");
    EXPECT_EQ(Text(module, &IAppObject::get_ID), L"77");
    EXPECT_EQ(Text(module, &IAppObject::get_UniqueIDString), L"Nowhere");
}

TEST_F(CDBAppObjectDefinitionTest, LooksForTheFileBesideTheComponentOnly) {
    wchar_t folder[MAX_PATH] = {};
    GetCurrentDirectoryW(MAX_PATH, folder);
    const TextFile elsewhere(std::wstring(folder) + L"\\Elsewhere.xml",
                             L"<AppObject><NAME>No</NAME></AppObject>");
    EXPECT_FALSE(Init(NewModule(), L"Elsewhere"));
    ExpectInitReport({});
}

TEST_F(CDBAppObjectDefinitionTest, LoadsByName) {
    Define(L"Valve", L"<NAME>Valve</NAME>");
    const auto module = NewModule();
    const com::Variant name(L"Valve");
    VARIANT argument = name.Get();
    const com::Variant done = com::CallMember(*module.Get(), L"Init", std::span<VARIANT>(&argument, 1));
    EXPECT_EQ(done.Get().vt, VT_BOOL);
    EXPECT_EQ(done.Get().boolVal, VARIANT_TRUE);
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Valve");
}

TEST_F(CDBAppObjectDefinitionTest, MakesNoPointsOfTheDefinition) {
    DefineWhole(L"Valve", L"<Tam><AppObject><NAME>Valve</NAME></AppObject>"
                          L"<InReferences><In1/></InReferences></Tam>");
    const auto module = NewModule();
    EXPECT_TRUE(Init(module, L"Valve"));
    EXPECT_EQ(InputCount(module), 0);
}

// The sizes stay inside the component; what shows is whether they were accepted.

TEST_F(CDBAppObjectDefinitionTest, AcceptsSizeRowsOfEveryNumber) {
    EXPECT_TRUE(Defined(L"<DataSizes><T0 Name='a' CDB_Size='0' Size_area_1='255' Size_area_2='7'/><T1/><T2/>"
                        L"<x3/><T4/><T5 Name=''/><T3/></DataSizes>"));
}

TEST_F(CDBAppObjectDefinitionTest, ReportsASizeRowPastTheTable) {
    const auto module = Defined(L"<DataSizes><T6/></DataSizes><NAME>Valve</NAME>");
    ExpectOneReport(kSubscriptText, kLocation, kSizes);
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Valve") << "the other children are read";
}

TEST_F(CDBAppObjectDefinitionTest, BearsAHostThatDropsTheLastReferenceWhileAReportIsShown) {
    DefineWhole(L"Valve",
                L"<Tam><AppObject><DataSizes><T6/></DataSizes><NAME>Valve</NAME></AppObject></Tam>");
    auto module = NewModule();
    Watcher().OnBox([&](HWND, const bench::Box&) {
        module.Reset();
        return false;
    });
    IAppObject* const asked = module.Get();
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(asked->Init(com::Bstr(L"Valve").Get(), &done), S_OK);
    Watcher().OnBox(nullptr);
    EXPECT_FALSE(module);
    EXPECT_EQ(done, VARIANT_TRUE);
    ExpectOneReport(kSubscriptText, kLocation, kSizes);
    EXPECT_EQ(Dll().CanUnload(), S_OK);
}

TEST_F(CDBAppObjectDefinitionTest, ReportsTheLargestRowNumberAsPastTheTable) {
    Defined(L"<DataSizes><T255/></DataSizes>");
    ExpectOneReport(kSubscriptText, kLocation, kSizes);
}

TEST_F(CDBAppObjectDefinitionTest, ReportsARowNumberThatIsNoByte) {
    Defined(L"<DataSizes><T256/></DataSizes>");
    ExpectOneReport(kOverflowText, kLocation, kSizes);
}

TEST_F(CDBAppObjectDefinitionTest, ReportsARowWithoutANumber) {
    for (const wchar_t* row : {L"<T/>", L"<Row/>", L"<!-- a comment -->"}) {
        Defined(std::wstring(L"<DataSizes>") + row + L"</DataSizes>");
        ExpectOneReport(kTypeMismatchText, kLocation, kSizes);
    }
}

TEST_F(CDBAppObjectDefinitionTest, ReportsASizeThatIsNoNumber) {
    for (const wchar_t* size : {L"CDB_Size", L"Size_area_1", L"Size_area_2"}) {
        for (const wchar_t* text : {L"many", L""}) {
            Defined(std::wstring(L"<DataSizes><T1 ") + size + L"='" + text + L"'/></DataSizes>");
            ExpectOneReport(kTypeMismatchText, kLocation, kSizes);
        }
    }
}

TEST_F(CDBAppObjectDefinitionTest, ReportsASizeThatIsNoByte) {
    for (const wchar_t* size : {L"CDB_Size", L"Size_area_1", L"Size_area_2"}) {
        for (const wchar_t* text : {L"256", L"-1"}) {
            Defined(std::wstring(L"<DataSizes><T1 ") + size + L"='" + text + L"'/></DataSizes>");
            ExpectOneReport(kOverflowText, kLocation, kSizes);
        }
    }
}

TEST_F(CDBAppObjectDefinitionTest, IgnoresSizesInAnotherLetterCase) {
    EXPECT_TRUE(
        Defined(L"<DataSizes><T1 name='a' cdb_size='many' SIZE_AREA_1='256' size_area_2='-1' Other='x'/>"
                L"</DataSizes>"));
}

TEST_F(CDBAppObjectDefinitionTest, EndsTheSizesAtTheirFirstFault) {
    Defined(L"<DataSizes><T1/><T9/><T8 CDB_Size='many'/></DataSizes>");
    ExpectOneReport(kSubscriptText, kLocation, kSizes);
}

TEST_F(CDBAppObjectDefinitionTest, ReportsEachFaultySizeTable) {
    Defined(L"<DataSizes><T9/></DataSizes><DataSizes><T1 CDB_Size='many'/></DataSizes>");
    const auto boxes = Boxes();
    ASSERT_EQ(boxes.size(), 2u);
    ExpectReport(boxes[0], kSubscriptText, kLocation, kSizes);
    ExpectReport(boxes[1], kTypeMismatchText, kLocation, kSizes);
}

TEST_F(CDBAppObjectDefinitionTest, AcceptsManySizeRows) {
    std::wstring rows;
    for (int i = 0; i < 255; ++i) {
        rows += L"<T0/>";
    }
    EXPECT_TRUE(Defined(L"<DataSizes>" + rows + L"</DataSizes>"));
}

// Decided: the count of rows is a byte too.
TEST_F(CDBAppObjectDefinitionTest, ReportsMoreSizeRowsThanAByteCounts) {
    std::wstring rows;
    for (int i = 0; i < 256; ++i) {
        rows += L"<T0/>";
    }
    Defined(L"<DataSizes>" + rows + L"</DataSizes>");
    ExpectOneReport(kOverflowText, kLocation, kSizes);
}

TEST_F(CDBAppObjectDefinitionTest, CountsSizeRowsAgainInEachDefinition) {
    std::wstring rows;
    for (int i = 0; i < 200; ++i) {
        rows += L"<T0/>";
    }
    const auto module = Defined(L"<DataSizes>" + rows + L"</DataSizes>");
    EXPECT_TRUE(Init(module, L"Valve"));
    EXPECT_TRUE(Init(NewModule(), L"Valve"));
}

} // namespace
