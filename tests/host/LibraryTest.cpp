#include "com/Dom.h"
#include "tests/host/GenericObjects.h"

#include "com/LateBound.h"

#include <string>

namespace hosttest {

namespace {

class LibraryTest : public testing::Test {
  protected:
    ~LibraryTest() override {
        folder_->put_Folder(nullptr);
        SetEnvironmentVariableW(L"ORV_LIBRARY", nullptr);
    }
    HRESULT Definition(const wchar_t* identifier, com::Ref<IDispatch>& document) {
        com::Ref<ILibrary> library;
        EXPECT_EQ(S_OK, service_->get_Library(library.Put()));
        return library->DefinitionDocument(com::Bstr(identifier).Get(), document.Put());
    }
    std::wstring TextAt(const com::Ref<IDispatch>& document, const wchar_t* path) {
        com::Ref<IXMLDOMNode> node;
        com::Bstr text;
        EXPECT_EQ(S_OK, document.As<IXMLDOMDocument2>()->selectSingleNode(com::Bstr(path).Get(), node.Put()));
        EXPECT_EQ(S_OK, node->get_text(text.Put()));
        return std::wstring(text.View());
    }
    std::wstring Folder() { return TextOf(*folder_.Get(), &ILibraryFolder::get_Folder); }

    com::Ref<ILibraryService> service_ = Create<ILibraryService>(__uuidof(LibraryService));
    com::Ref<ILibraryFolder> folder_ = Create<ILibraryFolder>(__uuidof(LibraryService));
};

TEST_F(LibraryTest, LiesBesideTheDllByDefault) {
    EXPECT_EQ(SampleFolder(), Folder());
}

TEST_F(LibraryTest, LiesWhereTheEnvironmentSays) {
    SetEnvironmentVariableW(L"ORV_LIBRARY", L"C:\\windows\\..\\windows");
    EXPECT_EQ(L"C:\\windows\\", Folder());
    SetEnvironmentVariableW(L"ORV_LIBRARY", nullptr);
    EXPECT_EQ(SampleFolder(), Folder());
}

TEST_F(LibraryTest, LiesWhereItWasSetForTheWholeHost) {
    SetEnvironmentVariableW(L"ORV_LIBRARY", L"C:\\nowhere");
    ASSERT_EQ(S_OK, folder_->put_Folder(com::Bstr(L"C:\\windows").Get()));
    EXPECT_EQ(L"C:\\windows\\", TextOf(*service_.As<ILibraryFolder>().Get(), &ILibraryFolder::get_Folder));
    ASSERT_EQ(S_OK, folder_->put_Folder(com::Bstr(L"").Get()));
    EXPECT_EQ(L"C:\\nowhere\\", Folder());
}

TEST_F(LibraryTest, RefusesAFolderThatIsNotThere) {
    ASSERT_EQ(S_OK, folder_->put_Folder(com::Bstr(L"C:\\windows").Get()));
    EXPECT_EQ(kLibraryFolder, folder_->put_Folder(com::Bstr(L"C:\\no such folder").Get()));
    EXPECT_EQ(L"The library folder \"C:\\no such folder\" is not there", LastError());
    EXPECT_EQ(L"C:\\windows\\", Folder());
}

TEST_F(LibraryTest, GivesTheDefinitionsOfTheSamples) {
    const struct {
        const wchar_t* identifier;
        const wchar_t* name;
    } samples[] = {{L"O_Tam_AI_id", L"Analogue input"},
                   {L"O_Tam_AO_id", L"Analogue output"},
                   {L"O_Tam_DI_id", L"Digital input"},
                   {L"O_Tam_DO_id", L"Digital output"},
                   {L"O_InpCntx_id", L"Input context"}};
    for (const auto& sample : samples) {
        com::Ref<IDispatch> document;
        ASSERT_EQ(S_OK, Definition(sample.identifier, document)) << LastError();
        EXPECT_EQ(sample.name, TextAt(document, L"AppObject/NAME"));
    }
    com::Ref<IDispatch> document;
    ASSERT_EQ(S_OK, Definition(L"O_Tam_AI_id", document));
    EXPECT_EQ(L"0", TextAt(document, L"AppObject/TAMConfig/Attributes/Attrib[@Name=\"Channel\"]/@Visible"));
}

TEST_F(LibraryTest, CarriesTheConfigurationOfTheSamples) {
    const struct {
        const wchar_t* identifier;
        const wchar_t* path;
        const wchar_t* text;
    } samples[] = {
        {L"o_tam_ai_id", L"Attributes/Attrib[@Name=\"Offset\"]/@UnitDependent", L"1"},
        {L"o_tam_ai_id", L"Attributes/Attrib[@Name=\"Offset\"]/@Differential", L"1"},
        {L"o_tam_ai_id", L"Attributes/Attrib[@Name=\"Filter\"]/@UnitDependent", L"0"},
        {L"o_tam_ao_id", L"InReferences/InReference[@Name=\"In2\"]/@Visible", L"0"},
        {L"o_tam_ao_id", L"OutReferences/OutReference[@Name=\"Out\"]/@Visible", L"1"},
        {L"o_tam_di_id", L"Attributes/Attrib[@Name=\"Debounce\"]/@Visible", L"1"},
        {L"o_tam_do_id", L"Attributes/Attrib[@Name=\"Channel\"]/@Visible", L"0"},
    };
    for (const auto& sample : samples) {
        com::Ref<IDispatch> document;
        ASSERT_EQ(S_OK, Definition(sample.identifier, document)) << LastError();
        EXPECT_EQ(sample.text,
                  TextAt(document, (std::wstring(L"AppObject/TAMConfig/") + sample.path).c_str()));
    }
}

TEST_F(LibraryTest, GivesEachCallerADocumentOfItsOwn) {
    com::Ref<IDispatch> first;
    com::Ref<IDispatch> second;
    ASSERT_EQ(S_OK, Definition(L"O_Tam_AI_id", first));
    com::Ref<IXMLDOMNode> name;
    ASSERT_EQ(S_OK,
              first.As<IXMLDOMDocument2>()->selectSingleNode(com::Bstr(L"AppObject/NAME").Get(), name.Put()));
    ASSERT_EQ(S_OK, name->put_text(com::Bstr(L"edited").Get()));
    ASSERT_EQ(S_OK, Definition(L"O_Tam_AI_id", second));
    EXPECT_EQ(L"Analogue input", TextAt(second, L"AppObject/NAME"));
    EXPECT_EQ(L"edited", TextAt(first, L"AppObject/NAME"));
}

TEST_F(LibraryTest, SeesAFileThatWasEdited) {
    TemporaryLibrary library;
    com::Ref<IDispatch> document;
    library.Write(L"Pump.xml", "<AppObject><NAME>old</NAME></AppObject>");
    ASSERT_EQ(S_OK, Definition(L"Pump", document));
    EXPECT_EQ(L"old", TextAt(document, L"AppObject/NAME"));
    library.Write(L"Pump.xml", "<AppObject><NAME>new</NAME></AppObject>");
    ASSERT_EQ(S_OK, Definition(L"Pump", document));
    EXPECT_EQ(L"new", TextAt(document, L"AppObject/NAME"));
}

TEST_F(LibraryTest, SaysWhichDefinitionIsMissing) {
    TemporaryLibrary library;
    com::Ref<IDispatch> document;
    EXPECT_EQ(kNoDefinition, Definition(L"O_Unknown_id", document));
    EXPECT_EQ(L"The library has no definition of \"O_Unknown_id\" (" + library.Folder() +
                  L"O_Unknown_id.xml)",
              LastError());
    EXPECT_FALSE(document);
}

TEST_F(LibraryTest, LeadsNowhereElse) {
    TemporaryLibrary library;
    library.Write(L"Pump.xml", "<AppObject/>");
    const std::wstring inside =
        library.Folder().substr(library.Folder().rfind(L'\\', library.Folder().size() - 2) + 1);
    for (const std::wstring& identifier : {L"..\\" + inside + L"Pump", std::wstring(L".\\Pump"),
                                           std::wstring(L"./Pump"), std::wstring(), std::wstring(L"*")}) {
        com::Ref<IDispatch> document;
        EXPECT_EQ(kNoDefinition, Definition(identifier.c_str(), document))
            << testing::PrintToString(identifier);
    }
}

TEST_F(LibraryTest, RefusesWhatIsNoDefinition) {
    TemporaryLibrary library;
    library.Write(L"Broken.xml", "<AppObject><NAME></AppObject>");
    library.Write(L"Other.xml", "<Device/>");
    com::Ref<IDispatch> document;
    EXPECT_EQ(kNotADefinition, Definition(L"Broken", document));
    const std::wstring broken = L"\"" + library.Folder() + L"Broken.xml\" cannot be read as XML";
    EXPECT_EQ(broken, LastError().substr(0, broken.size()));
    EXPECT_EQ(kNotADefinition, Definition(L"Other", document));
    EXPECT_EQ(L"\"" + library.Folder() +
                  L"Other.xml\" is no definition: its document element is \"Device\", not \"AppObject\"",
              LastError());
    EXPECT_FALSE(document);
}

TEST_F(LibraryTest, RefusesADocumentType) {
    TemporaryLibrary library;
    library.Write(L"Typed.xml",
                  "<!DOCTYPE AppObject [<!ENTITY e \"x\">]><AppObject><NAME>&e;</NAME></AppObject>");
    com::Ref<IDispatch> document;
    EXPECT_EQ(kNotADefinition, Definition(L"Typed", document));
    EXPECT_EQ(L"\"" + library.Folder() + L"Typed.xml\" cannot be read as XML: DTD is prohibited.",
              LastError());
    EXPECT_FALSE(document);
}

TEST_F(LibraryTest, IsReachedByName) {
    const com::Variant library = com::GetMember(*service_.Get(), L"Library");
    ASSERT_EQ(VT_DISPATCH, library.Get().vt);
    VARIANT argument[] = {com::Variant(L"O_Tam_DI_id").Detach()};
    const com::Variant document = com::CallMember(*library.Get().pdispVal, L"DefinitionDocument", argument);
    VariantClear(&argument[0]);
    ASSERT_EQ(VT_DISPATCH, document.Get().vt);
    EXPECT_EQ(L"Digital input", TextAt(com::Ref<IDispatch>(document.Get().pdispVal), L"AppObject/NAME"));
}

} // namespace

} // namespace hosttest
