#include "tests/host/Compiling.h"
#include "tests/support/Errors.h"

#include "com/Boundary.h"

#include <cstddef>
#include <string>

namespace hosttest {

namespace {

const std::wstring kGood = Document(Input(L"105"), Output(L"81"), Attribute(L"81", L"1"));

/// The good document with one text replaced, which must be there.
std::wstring With(const std::wstring& from, const std::wstring& to) {
    std::wstring document = kGood;
    const std::size_t at = document.find(from);
    EXPECT_NE(std::wstring::npos, at) << from;
    return at == std::wstring::npos ? document : document.replace(at, from.size(), to);
}

TEST(CompilersInteropTest, AcceptsEveryKindOfReference) {
    const Compiler::Result expected = Compiler().Compile(kGood); // references to texts
    Compiler compiler;

    com::Variant inPlace[3] = {com::Variant(kGood), com::Variant(), com::Variant(5L)};
    VARIANT raw[3] = {inPlace[0].Detach(), inPlace[1].Detach(), inPlace[2].Detach()};
    ASSERT_EQ(S_OK, compiler.Object().CompileTamObject(&raw[0], &raw[1], &raw[2]));
    EXPECT_EQ(expected.stream, com::View(raw[0].bstrVal));
    EXPECT_EQ(expected.cdb, com::View(raw[1].bstrVal));
    EXPECT_EQ(expected.ddb, com::View(raw[2].bstrVal));

    // References to variables, as scripts pass them, by name.
    VariantClear(&raw[0]);
    raw[0] = com::Variant(kGood).Detach();
    VariantClear(&raw[1]);
    VARIANT references[3] = {};
    for (int i = 0; i < 3; ++i) {
        references[i].vt = VT_BYREF | VT_VARIANT;
        references[i].pvarVal = &raw[i];
    }
    com::CallMember(compiler.Object(), L"CompileTamObject", references);
    EXPECT_EQ(expected.stream, com::View(raw[0].bstrVal));
    EXPECT_EQ(expected.cdb, com::View(raw[1].bstrVal));
    EXPECT_EQ(expected.ddb, com::View(raw[2].bstrVal));
    for (VARIANT& variant : raw) {
        EXPECT_EQ(VT_BSTR, variant.vt);
        VariantClear(&variant);
    }
}

TEST(CompilersInteropTest, RefusesAMissingArgumentWithoutTheErrorOfAnEarlierCall) {
    Compiler compiler;
    VARIANT text{};
    com::Ref<ICreateErrorInfo> earlier;
    ASSERT_EQ(S_OK, CreateErrorInfo(earlier.Put()));
    ASSERT_EQ(S_OK, SetErrorInfo(0, earlier.As<IErrorInfo>().Get()));
    EXPECT_EQ(E_POINTER, compiler.Object().CompileTamObject(&text, &text, nullptr));
    com::Ref<IErrorInfo> left;
    EXPECT_EQ(S_FALSE, GetErrorInfo(0, left.Put()));
}

TEST(CompilersInteropTest, FollowsAReferenceToAReference) {
    const Compiler::Result expected = Compiler().Compile(kGood);
    Compiler compiler;
    com::Bstr texts[3] = {com::Bstr(kGood), com::Bstr(L""), com::Bstr(L"")};
    VARIANT inner[3] = {};
    VARIANT outer[3] = {};
    for (int i = 0; i < 3; ++i) {
        inner[i] = com::ByReference(texts[i]);
        outer[i].vt = VT_BYREF | VT_VARIANT;
        outer[i].pvarVal = &inner[i];
    }
    ASSERT_EQ(S_OK, compiler.Object().CompileTamObject(&outer[0], &outer[1], &outer[2]));
    EXPECT_EQ(expected.stream, texts[0].View());
    EXPECT_EQ(expected.cdb, texts[1].View());
    EXPECT_EQ(expected.ddb, texts[2].View());
    VARIANT nowhere{};
    nowhere.vt = VT_BYREF | VT_VARIANT;
    EXPECT_EQ(support::kTypeMismatch, compiler.Object().CompileTamObject(&nowhere, &outer[1], &outer[2]));
    nowhere.vt = VT_BYREF | VT_BSTR;
    EXPECT_EQ(support::kTypeMismatch, compiler.Object().CompileTamObject(&outer[0], &nowhere, &outer[2]));
    EXPECT_EQ(expected.cdb, texts[1].View());
}

TEST(CompilersInteropTest, RefusesAVariableThatRefersToItself) {
    Compiler compiler;
    VARIANT text = com::Variant(kGood).Detach();
    VARIANT empty{};
    VARIANT itself{};
    itself.vt = VT_BYREF | VT_VARIANT;
    itself.pvarVal = &itself;
    EXPECT_EQ(support::kTypeMismatch, compiler.Object().CompileTamObject(&itself, &empty, &empty));
    EXPECT_EQ(support::kTypeMismatch, compiler.Object().CompileTamObject(&text, &empty, &itself));
    EXPECT_EQ(kGood, com::View(text.bstrVal));
    EXPECT_EQ(VT_EMPTY, empty.vt);
    EXPECT_EQ(&itself, itself.pvarVal);
    VariantClear(&text);
}

TEST(CompilersInteropTest, RefusesOtherArguments) {
    Compiler compiler;
    VARIANT text = com::Variant(kGood).Detach();
    VARIANT empty = {};
    VARIANT number = com::Variant(1L).Get();
    long target = 1;
    VARIANT numberReference = {};
    numberReference.vt = VT_BYREF | VT_I4;
    numberReference.plVal = &target;
    const HRESULT mismatch = support::kTypeMismatch;
    EXPECT_EQ(mismatch, compiler.Object().CompileTamObject(&number, &empty, &empty));
    EXPECT_EQ(support::kTypeMismatchText, LastError());
    EXPECT_EQ(mismatch, compiler.Object().CompileTamObject(&text, &numberReference, &empty));
    EXPECT_EQ(mismatch, compiler.Object().CompileTamObject(&text, &empty, &numberReference));
    EXPECT_EQ(E_POINTER, compiler.Object().CompileTamObject(&text, &empty, nullptr));
    EXPECT_EQ(E_POINTER, compiler.Object().CompileTamObject(nullptr, &empty, &empty));
    EXPECT_EQ(kGood, com::View(text.bstrVal));
    EXPECT_EQ(VT_EMPTY, empty.vt);
    EXPECT_EQ(1, target);
    VariantClear(&text);
}

TEST(CompilersInteropTest, WantsTheDatabaseFolderFirst) {
    const auto compiler = Create<ICompilersInterop>(__uuidof(CompilersInterop));
    com::Bstr stream(kGood);
    com::Bstr cdb;
    com::Bstr ddb;
    VARIANT arguments[] = {com::ByReference(stream), com::ByReference(cdb), com::ByReference(ddb)};
    const auto failure =
        com::Attempt([&] { com::CallMember(*compiler.Get(), L"CompileTamObject", arguments); });
    ASSERT_TRUE(failure) << "compiled without a database folder";
    EXPECT_EQ(kNoDatabasePath, failure->code);
    EXPECT_EQ(L"SetDBPath must name the database folder before an object is compiled", failure->description);
    EXPECT_EQ(L"OrvHost", failure->source);
    EXPECT_EQ(kGood, stream.View());
    EXPECT_EQ(nullptr, cdb.Get());
    EXPECT_EQ(nullptr, ddb.Get());
}

TEST(CompilersInteropTest, RefusesAFolderThatIsNotThere) {
    Compiler compiler;
    EXPECT_EQ(kDatabaseFolder, compiler.SetDBPath(L"C:\\no such folder"));
    EXPECT_EQ(L"There is no database folder \"C:\\no such folder\"", LastError());
    EXPECT_EQ(kDatabaseFolder, compiler.SetDBPath(L""));
    EXPECT_FALSE(compiler.Compile(kGood).stream.empty()) << "the folder set before still counts";
}

TEST(CompilersInteropTest, TakesTheFolderByName) {
    const auto location = Create<IDatabaseLocation>(__uuidof(DatabaseLocation));
    const auto compiler = Create<ICompilersInterop>(__uuidof(CompilersInterop));
    const std::wstring path = TextOf(*location.Get(), &IDatabaseLocation::get_Path);
    const com::Variant folder(path);
    VARIANT argument[] = {folder.Get()};
    com::CallMember(*compiler.Get(), L"SetDBPath", argument);
    com::Bstr stream(kGood);
    com::Bstr cdb;
    com::Bstr ddb;
    VARIANT arguments[] = {com::ByReference(stream), com::ByReference(cdb), com::ByReference(ddb)};
    com::CallMember(*compiler.Get(), L"CompileTamObject", arguments);
    EXPECT_EQ(L"42", cdb.View()); // 16 + 8 + 10 + 6 + 2
    EXPECT_EQ(L"6", ddb.View());  // 3 + 3
}

TEST(CompilersInteropTest, AcceptsWhatXmlAllows) {
    const Compiler::Result expected = Compiler().Compile(kGood);
    const std::wstring variants[] = {
        L"<?xml version=\"1.0\"?>\r\n" + kGood + L"\r\n",
        L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>" + kGood,
        L"<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + kGood,
        L"<!-- made by hand -->" + kGood + L"<!-- end -->",
        With(L"<Inputs>", L"<Inputs> <!-- one --> <?p?>\n\t"),
        With(L"isPermanent=\"0\" IsConnected=\"0\"/></Inputs>",
             L"IsConnected='0' isPermanent='&#48;'></I></Inputs>"),
    };
    for (const std::wstring& document : variants) {
        EXPECT_EQ(expected.stream, Compiler().Compile(document).stream) << document;
    }
}

TEST(CompilersInteropTest, AcceptsTheFlagsOfADefinitionAsTheyStandThere) {
    const std::wstring zero = Compiler().Compile(kGood).stream;
    const std::wstring one = Compiler().Compile(With(L"IsWritable=\"0\"", L"IsWritable=\"1\"")).stream;
    EXPECT_NE(zero, one);
    EXPECT_EQ(zero, Compiler().Compile(With(L"IsWritable=\"0\"", L"IsWritable=\"False\"")).stream);
    EXPECT_EQ(zero, Compiler().Compile(With(L"IsWritable=\"0\"", L"IsWritable=\"\"")).stream);
    EXPECT_EQ(one, Compiler().Compile(With(L"IsWritable=\"0\"", L"IsWritable=\"True\"")).stream);
}

TEST(CompilersInteropTest, SaysWhatIsWrongAndWhere) {
    const struct {
        const wchar_t* from;
        const wchar_t* to;
        const wchar_t* reason;
    } faults[] = {
        {L"DevAddr=\"12\"", L"", L"\"O_Tam_id\" has no attribute \"DevAddr\""},
        {L"DevAddr=\"12\"", L"DevAddr=\"12a\"",
         L"attribute \"DevAddr\" of \"O_Tam_id\" is \"12a\"; it must be a number from -32768 to 32767 or "
         L"nothing"},
        {L"DevAddr=\"12\"", L"DevAddr=\"32768\"",
         L"attribute \"DevAddr\" of \"O_Tam_id\" is \"32768\"; it must be a number from -32768 to 32767 or "
         L"nothing"},
        {L"IsLastOnDev=\"1\"", L"IsLastOnDev=\"True\"",
         L"attribute \"IsLastOnDev\" of \"O_Tam_id\" is \"True\"; it must be \"0\" or \"1\""},
        {L"<Inputs>", L"<Inputs Count=\"1\">", L"\"Inputs\" has an unknown attribute \"Count\""},
        {L"<Inputs>", L"<Inputs>text", L"\"Inputs\" must not hold text"},
        {L" LinkReference=\"0000\"", L"", L"\"I\" in \"Inputs\" has no attribute \"LinkReference\""},
        {L"LogicalAddress=\"1\"", L"LogicalAddress=\"65536\"",
         L"attribute \"LogicalAddress\" of \"I\" in \"Inputs\" is \"65536\"; it must be a number from 0 to "
         L"65535 or nothing"},
        {L"LogicalAddress=\"1\"", L"LogicalAddress=\"-1\"",
         L"attribute \"LogicalAddress\" of \"I\" in \"Inputs\" is \"-1\"; it must be a number from 0 to "
         L"65535 or nothing"},
        {L"isPermanent=\"0\"", L"isPermanent=\"\"",
         L"attribute \"isPermanent\" of \"I\" in \"Inputs\" is \"\"; it must be \"0\" or \"1\""},
        {L"isMapAsOO=\"0\"", L"isMapAsOO=\"2\"",
         L"attribute \"isMapAsOO\" of \"O\" in \"Outputs\" is \"2\"; it must be \"0\", \"1\", \"False\", "
         L"\"True\" or nothing"},
        {L"IsWritable=\"0\"", L"IsWritable=\"0\" DisplayWritable=\"\"",
         L"attribute \"DisplayWritable\" of \"O\" in \"Outputs\" is \"\"; it must be \"0\" or \"1\""},
        {L" Value=\"\"", L"", L"\"A\" in \"Attributes\" has no attribute \"Value\""},
        {L"<Outputs>", L"<Points/><Outputs>", L"\"O_Tam_id\" must hold \"Outputs\" here"},
        {L"<Attributes>", L"<Inputs>", L"\"O_Tam_id\" must hold \"Attributes\" here"},
        {L"</Attributes>", L"</Attributes><More/>", L"\"O_Tam_id\" must end after \"Attributes\""},
        {L"</Inputs>", L"<I2/></Inputs>", L"\"I2\" in \"Inputs\" has no attribute \"LinkReference\""},
        {L"IsConnected=\"0\"/></Inputs>", L"IsConnected=\"0\">x</I></Inputs>",
         L"\"I\" in \"Inputs\" must be empty"},
        {L"IsConnected=\"0\"/></Inputs>", L"IsConnected=\"0\"><x/></I></Inputs>",
         L"\"I\" in \"Inputs\" must be empty"},
    };
    Compiler compiler;
    for (const auto& fault : faults) {
        const std::wstring refusal = compiler.Refusal(With(fault.from, fault.to));
        EXPECT_TRUE(refusal.starts_with(L"line 1, column ")) << refusal;
        EXPECT_EQ(fault.reason, refusal.substr(refusal.find(L": ") + 2));
    }
}

TEST(CompilersInteropTest, RefusesTextsThatAreNoSuchDocument) {
    Compiler compiler;
    EXPECT_EQ(L"line 1, column 1: there is no root element", compiler.Refusal(L""));
    EXPECT_EQ(L"line 1, column 1: text outside the root element", compiler.Refusal(L"4F54"));
    EXPECT_EQ(L"line 1, column 1: the root element must be \"O_Tam_id\"", compiler.Refusal(L"<o_tam_id/>"));
    EXPECT_EQ(L"line 1, column 1: the root element must be \"O_Tam_id\"", compiler.Refusal(L"<Tam/>"));
    EXPECT_EQ(L"line 1, column 1: \"O_Tam_id\" must hold \"Inputs\" here",
              compiler.Refusal(
                  L"<O_Tam_id DevAddr=\"\" AppID=\"\" DevKey=\"\" TamObjectID=\"\" IsLastOnDev=\"0\"/>"));
}

TEST(CompilersInteropTest, CountsLinesAndColumns) {
    Compiler compiler;
    const std::wstring refusal = compiler.Refusal(With(L"<Outputs>", L"\n\n<Outputs Wrong=\"1\">"));
    EXPECT_EQ(L"line 3, column 10: \"Outputs\" has an unknown attribute \"Wrong\"", refusal);
}

TEST(CompilersInteropTest, RefusesATextThatIsTooLong) {
    Compiler compiler;
    const std::wstring longText(65536, L'x');
    EXPECT_FALSE(
        compiler.Compile(With(L"DevKey=\"K7\"", L"DevKey=\"" + longText.substr(1) + L"\"")).stream.empty());
    EXPECT_EQ(L"a text is longer than 65535 bytes; it begins with \"" + std::wstring(40, L'x') + L"\"",
              compiler.Refusal(With(L"DevKey=\"K7\"", L"DevKey=\"" + longText + L"\"")));
}

} // namespace

} // namespace hosttest
