#include "tests/appobject/Module.h"

#include "com/LateBound.h"

#include <string>
#include <string_view>
#include <vector>

using namespace support;
using namespace modules;

namespace {

constexpr const wchar_t* kNoCompiler = L"Compiler.dll, necessary to exported Tam object hasn't been found";
constexpr const wchar_t* kDump = L"C:\\interop_K7_3.xml";

/// The environment variable DEBUG for the time of a test.
class Debug {
  public:
    explicit Debug(const wchar_t* value) { SetEnvironmentVariableW(L"DEBUG", value); }
    ~Debug() { SetEnvironmentVariableW(L"DEBUG", nullptr); }
    Debug(const Debug&) = delete;
    Debug& operator=(const Debug&) = delete;
};

bool Exists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

class CDBAppObjectExportTest : public ModuleTest {
  protected:
    void SetUp() override {
        ModuleTest::SetUp();
        SetEnvironmentVariableW(L"DEBUG", nullptr);
        DeleteFileW(kDump);
    }
    void TearDown() override {
        DeleteFileW(kDump);
        ModuleTest::TearDown();
    }
    /// A module with an input and the sizes 11 and 22.
    com::Ref<IAppObject> Sized() {
        return Loaded(
            L"<Tam><Name>Pump</Name><DevKey>K7</DevKey><IsLastOnDev>1</IsLastOnDev><TamObjID>3</TamObjID>"
            L"<CDB>11</CDB><DDB>22</DDB><InReferences><In1/></InReferences></Tam>");
    }
    static std::wstring StreamOf(const com::Ref<IAppObject>& module) {
        return Text(module, &IAppObject::get_Stream);
    }
    static void ExpectSizes(const com::Ref<IAppObject>& module, long cdb, long ddb) {
        EXPECT_EQ(Long(module, &IAppObject::get_CDBDimension), cdb);
        EXPECT_EQ(Long(module, &IAppObject::get_DDBDimension), ddb);
    }
    void ExpectNoCompilerBox() { ExpectOnlyBox(Boxes(), kNoCompiler, L"Gateway Object"); }
    /// The size that the compiler's text gives.
    long Size(const std::wstring& text) {
        UseDatabaseLocation();
        UseCompiler().cdbSize = text;
        const auto module = Sized();
        EXPECT_EQ(StreamOf(module), L"compiled");
        return Long(module, &IAppObject::get_CDBDimension);
    }
};

TEST_F(CDBAppObjectExportTest, AnswersTheCompiledStreamAndTakesTheSizes) {
    UseDatabaseLocation().path = L"D:\\Data\\Controller.db";
    Compiler& compiler = UseCompiler();
    compiler.stream = L"00FF \x00e4";
    compiler.cdbSize = L"120";
    compiler.ddbSize = L"64";
    const auto module = Sized();
    EXPECT_EQ(StreamOf(module), L"00FF \x00e4");
    EXPECT_EQ(compiler.calls, (std::vector<std::wstring>{L"SetDBPath", L"CompileTamObject"}));
    EXPECT_EQ(compiler.dbPath, L"D:\\Data\\Controller.db");
    ExpectSizes(module, 120, 64);
    EXPECT_EQ(Long(module, &IAppObject::get_SDBDimension), 0);
}

TEST_F(CDBAppObjectExportTest, CompilesAgainAtEachRead) {
    UseDatabaseLocation();
    Compiler& compiler = UseCompiler();
    compiler.cdbSize = L"1";
    const auto module = Sized();
    StreamOf(module);
    compiler.cdbSize = L"2";
    StreamOf(module);
    EXPECT_EQ(compiler.calls.size(), 4u);
    ExpectSizes(module, 2, 0);
}

TEST_F(CDBAppObjectExportTest, AnswersAnEmptyStreamOfTheCompiler) {
    UseDatabaseLocation();
    UseCompiler().stream = L"";
    EXPECT_EQ(StreamOf(Sized()), L"");
}

TEST_F(CDBAppObjectExportTest, TakesSizesAsLeadingNumbers) {
    EXPECT_EQ(Size(L"120"), 120);
    EXPECT_EQ(Size(L"120 bytes"), 120);
    EXPECT_EQ(Size(L"1.6"), 2);
    EXPECT_EQ(Size(L"1,6"), 1) << "a comma ends the number, whoever the user is";
    EXPECT_EQ(Size(L"-3"), -3);
    EXPECT_EQ(Size(L"2147483647"), 2147483647);
    EXPECT_EQ(Size(L"many"), 0);
    EXPECT_EQ(Size(L""), 0);
}

TEST_F(CDBAppObjectExportTest, EndsEmptyAtASizeThatIsTooLarge) {
    UseDatabaseLocation();
    Compiler& compiler = UseCompiler();
    compiler.cdbSize = L"3000000000";
    compiler.ddbSize = L"5";
    const auto first = Sized();
    EXPECT_EQ(StreamOf(first), L"");
    ExpectSizes(first, 11, 22);
    compiler.cdbSize = L"5";
    compiler.ddbSize = L"3000000000";
    const auto second = Sized();
    EXPECT_EQ(StreamOf(second), L"");
    ExpectSizes(second, 5, 22);
}

TEST_F(CDBAppObjectExportTest, EndsEmptyWhenTheCompilerRefusesThePath) {
    UseDatabaseLocation();
    Compiler& compiler = UseCompiler();
    compiler.setPathResult = E_ACCESSDENIED;
    const auto module = Sized();
    EXPECT_EQ(StreamOf(module), L"");
    EXPECT_EQ(compiler.calls, std::vector<std::wstring>{L"SetDBPath"});
    ExpectSizes(module, 11, 22);
}

TEST_F(CDBAppObjectExportTest, EndsEmptyWhenTheCompilerFails) {
    UseDatabaseLocation();
    Compiler& compiler = UseCompiler();
    compiler.compileResult = E_FAIL;
    const auto module = Sized();
    EXPECT_EQ(StreamOf(module), L"");
    EXPECT_EQ(compiler.calls.size(), 2u);
    ExpectSizes(module, 11, 22);
}

TEST_F(CDBAppObjectExportTest, AnswersTheDocumentItselfWithoutACompiler) {
    UseDatabaseLocation();
    const auto module = Sized();
    EXPECT_EQ(
        Bare(StreamOf(module)),
        L"<O_Tam_id DevAddr=\"\" AppID=\"\" DevKey=\"K7\" TamObjectID=\"3\" IsLastOnDev=\"1\"><Inputs>"
        L"<In1 LinkReference=\"\" LogicalAddress=\"\" SNVTType=\"\" isPermanent=\"0\" IsConnected=\"0\"/>"
        L"</Inputs><Outputs/><Attributes/></O_Tam_id>");
    ExpectNoCompilerBox();
    ExpectSizes(module, 0, 0);
}

TEST_F(CDBAppObjectExportTest, TakesACompilerThatCannotBeMadeForNone) {
    UseDatabaseLocation();
    const HostClass refused(kCompilerClass, kCompilerProgId, [](REFIID, void** out) {
        *out = nullptr;
        return E_OUTOFMEMORY;
    });
    const auto module = Sized();
    EXPECT_EQ(StreamOf(module).substr(0, 9), L"<O_Tam_id");
    ExpectNoCompilerBox();
    ExpectSizes(module, 0, 0);
}

TEST_F(CDBAppObjectExportTest, FailsAsTheDatabaseLocationFails) {
    UseDatabaseLocation().result = E_ACCESSDENIED;
    Compiler& compiler = UseCompiler();
    const auto module = Sized();
    com::Bstr stream(L"before");
    BSTR raw = stream.Get();
    EXPECT_EQ(module->get_Stream(&raw), E_ACCESSDENIED);
    EXPECT_EQ(raw, nullptr);
    EXPECT_TRUE(compiler.calls.empty());
    EXPECT_TRUE(Boxes().empty());
    ExpectSizes(module, 11, 22);
}

TEST_F(CDBAppObjectExportTest, FailsWithoutADatabaseLocationBeforeItLooksForACompiler) {
    const auto module = Sized();
    com::Bstr stream;
    EXPECT_EQ(module->get_Stream(stream.Put()), REGDB_E_CLASSNOTREG);
    EXPECT_TRUE(LastError().description.starts_with(L"The host's database location is not registered: its "
                                                    L"class {1D816F43-BC81-46F7-B17D-EE81B559E78F} "));
    EXPECT_TRUE(Boxes().empty()) << "the missing compiler is not reached";
    ExpectSizes(module, 11, 22);
}

TEST_F(CDBAppObjectExportTest, IgnoresAWrittenStream) {
    UseDatabaseLocation();
    UseCompiler();
    const auto module = Sized();
    EXPECT_EQ(Put(module, &IAppObject::put_Stream, L"written"), S_OK);
    EXPECT_EQ(StreamOf(module), L"compiled");
}

TEST_F(CDBAppObjectExportTest, ExportsTheSameWhateverTheExportIndex) {
    UseDatabaseLocation();
    Compiler& compiler = UseCompiler();
    const auto module = Sized();
    StreamOf(module);
    const std::wstring before = compiler.givenXml;
    module->put_ExportIndex(7);
    StreamOf(module);
    EXPECT_EQ(compiler.givenXml, before);
}

TEST_F(CDBAppObjectExportTest, ExportsByName) {
    UseDatabaseLocation();
    UseCompiler().cdbSize = L"12";
    const auto module = Sized();
    const com::Variant stream = com::GetMember(*module.Get(), L"Stream");
    ASSERT_EQ(stream.Get().vt, VT_BSTR);
    EXPECT_EQ(com::Text(stream.Get().bstrVal), L"compiled");
    EXPECT_EQ(com::GetMember(*module.Get(), L"CDBDimension").Get().lVal, 12);
}

TEST_F(CDBAppObjectExportTest, KeepsTheDocumentUnderDebug) {
    const Debug debug(L"1");
    UseDatabaseLocation();
    Compiler& compiler = UseCompiler();
    StreamOf(Sized());
    ASSERT_TRUE(Exists(kDump));
    const Document saved = NewDocument();
    VARIANT_BOOL done = VARIANT_FALSE;
    saved->load(com::Variant(std::wstring_view(kDump)).Get(), &done);
    EXPECT_EQ(done, VARIANT_TRUE);
    EXPECT_EQ(BareXml(Root(saved).Get()), Bare(compiler.givenXml));
}

TEST_F(CDBAppObjectExportTest, NamesTheKeptFileAfterDeviceAndObject) {
    const Debug debug(L"1");
    UseDatabaseLocation();
    UseCompiler();
    const std::wstring path = L"C:\\interop__-12.xml";
    DeleteFileW(path.c_str());
    const auto module = NewModule();
    LoadProject(module, L"<Valve><TamObjID>-12</TamObjID></Valve>");
    StreamOf(module);
    EXPECT_TRUE(Exists(path));
    DeleteFileW(path.c_str());
}

TEST_F(CDBAppObjectExportTest, KeepsNothingUnderAnotherDebug) {
    UseDatabaseLocation();
    UseCompiler();
    for (const wchar_t* value : {L"0", L"", L"11", L"1 ", L" 1", L"true", L"01"}) {
        const Debug debug(value);
        StreamOf(Sized());
        EXPECT_FALSE(Exists(kDump)) << value;
    }
    StreamOf(Sized());
    EXPECT_FALSE(Exists(kDump));
}

TEST_F(CDBAppObjectExportTest, KeepsTheDocumentWithoutACompiler) {
    const Debug debug(L"1");
    UseDatabaseLocation();
    StreamOf(Sized());
    ExpectNoCompilerBox();
    EXPECT_TRUE(Exists(kDump));
}

TEST_F(CDBAppObjectExportTest, KeepsTheDocumentThatDoesNotCompile) {
    const Debug debug(L"1");
    UseDatabaseLocation();
    UseCompiler().compileResult = E_FAIL;
    StreamOf(Sized());
    EXPECT_TRUE(Exists(kDump));
}

TEST_F(CDBAppObjectExportTest, KeepsNothingWhenThePathIsRefused) {
    const Debug debug(L"1");
    UseDatabaseLocation();
    UseCompiler().setPathResult = E_FAIL;
    StreamOf(Sized());
    EXPECT_FALSE(Exists(kDump));
}

TEST_F(CDBAppObjectExportTest, PassesOverAFileThatCannotBeKept) {
    const Debug debug(L"1");
    UseDatabaseLocation();
    Compiler& compiler = UseCompiler();
    compiler.cdbSize = L"120";
    CreateDirectoryW(kDump, nullptr); // nothing can be saved under the name of a folder
    const auto module = Sized();
    EXPECT_EQ(StreamOf(module), L"compiled");
    ExpectSizes(module, 120, 0);
    RemoveDirectoryW(kDump);
}

TEST_F(CDBAppObjectExportTest, ClearsTheReferencesOfItsInputs) {
    const auto module = Loaded(Stream(L"<In1/><In2/>", {}, L"<Gain><SNVTTYPE>36</SNVTTYPE></Gain>"));
    Put(Input(module, L"In1"), &IInput::put_Value, L"Boiler_5");
    Put(Attribute(module, L"Gain"), &IAttribute::put_Value, L"7");
    EXPECT_EQ(module->ClearReferences(), S_OK);
    EXPECT_EQ(Text(Input(module, L"In1"), &IInput::get_Value), L"000000");
    EXPECT_EQ(Text(Input(module, L"In2"), &IInput::get_Value), L"000000");
    EXPECT_EQ(Text(Attribute(module, L"Gain"), &IAttribute::get_Value), L"7");
}

TEST_F(CDBAppObjectExportTest, ExportsClearedInputsAsUnconnected) {
    UseDatabaseLocation();
    Compiler& compiler = UseCompiler();
    const auto module = Sized();
    Put(Input(module, L"In1"), &IInput::put_Value, L"Boiler_5");
    com::CallMember(*module.Get(), L"ClearReferences", {});
    StreamOf(module);
    EXPECT_NE(compiler.givenXml.find(L"LinkReference=\"000000\""), std::wstring::npos);
    EXPECT_NE(compiler.givenXml.find(L"IsConnected=\"0\""), std::wstring::npos);
}

TEST_F(CDBAppObjectExportTest, BearsAHostThatDropsTheLastReferenceWhileTheBoxIsShown) {
    UseDatabaseLocation();
    auto module = Sized();
    Watcher().OnBox([&](HWND, const bench::Box&) {
        module.Reset();
        return false;
    });
    IAppObject* const asked = module.Get();
    com::Bstr stream;
    EXPECT_EQ(asked->get_Stream(stream.Put()), S_OK);
    Watcher().OnBox(nullptr);
    EXPECT_FALSE(module);
    EXPECT_NE(stream.View().find(L"DevKey=\"K7\""), std::wstring::npos);
    ExpectNoCompilerBox();
    EXPECT_EQ(Dll().CanUnload(), S_OK);
}

TEST_F(CDBAppObjectExportTest, ClearsNothingWithoutInputs) {
    const auto module = NewModule();
    EXPECT_EQ(module->ClearReferences(), S_OK);
    module->Destroy();
    EXPECT_EQ(module->ClearReferences(), S_OK);
}

TEST_F(CDBAppObjectExportTest, GivesTheHostATurnAtEachInputToClear) {
    const auto module = Loaded(Stream(L"<In1/><In2/><In3/>"));
    const Reposter host;
    EXPECT_EQ(module->ClearReferences(), S_OK);
    EXPECT_EQ(host.Handled(), 3);
    OnYield idle([] {});
    EXPECT_EQ(NewModule()->ClearReferences(), S_OK);
    EXPECT_FALSE(idle.Ran()) << "without an input there is no turn";
}

TEST_F(CDBAppObjectExportTest, ClearsInputsThatTheHostDropsMeanwhile) {
    const auto module = Loaded(Stream(L"<In1/><In2/>"));
    const auto inputs = Object(module, &IAppObject::get_Inputs);
    OnYield turn([&] { module->Destroy(); });
    EXPECT_EQ(module->ClearReferences(), S_OK);
    EXPECT_EQ(Text(Item(inputs, &IInputs::get_Item, L"In2"), &IInput::get_Value), L"000000");
}

} // namespace
