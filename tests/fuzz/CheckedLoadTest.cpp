// No surprise at load: documents of a module and the catalogue, changed at random, before the
// checks and the component. Channels' documents stand in CheckedChannelLoadTest.cpp.

#include "bench/Text.h"
#include "check/Check.h"
#include "tests/fuzz/CheckedLoads.h"
#include "tests/fuzz/DocumentRounds.h"
#include "tests/fuzz/Rounds.h"
#include "tests/fuzz/SmallChanges.h"
#include "tests/support/TypeLibrary.h"

#include <cstddef>
#include <string>
#include <vector>

namespace component_fuzz {

namespace {

using namespace support;
using bench::Utf8;

constexpr unsigned kSeed = 20261122;
// The users of both decimal marks get documents of their own: with those of channels ten thousand.
constexpr unsigned kWildRounds = 1000;
constexpr unsigned kSmallRounds = 3000;

constexpr const wchar_t* kDefinition = L"Checked";

void Write(const std::wstring& path, const std::string& bytes) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    CloseHandle(file);
}

class CheckedLoadTest : public DocumentsFuzzTest {
  protected:
    void SetUp() override {
        DocumentsFuzzTest::SetUp();
        samples_ = ReadFile(SamplesFolder() + L"catalogue.xml");
        sampleTypes_ = check::ReadCatalogue(samples_);
        goodTypes_ = check::ReadCatalogue(Utf8(GoodText(Input::Kind::Catalogue)));
    }

    void CompareStream(const std::wstring& text, const check::Catalogue& types) {
        const std::string document = Utf8(text);
        const check::Surroundings surroundings(&types);
        const check::Result result = check::CheckText(document, surroundings);
        const auto module = NewModule();
        const HRESULT loaded = module.As<ITamObject>()->LoadFromXmlStream(com::Bstr(text).Get());
        SetErrorInfo(0, nullptr);
        loads_.Compare(result, check::Kind::DeviceStream, loaded == S_OK, KnownBoxes(), document);
        module->Destroy();
    }

    void CompareDefinition(const std::string& bytes) {
        const check::Result result = check::CheckBytes(bytes, check::Surroundings(&goodTypes_));
        const std::wstring path = Component::Folder() + kDefinition + L".xml";
        Write(path, bytes);
        const auto module = NewModule();
        VARIANT_BOOL done = VARIANT_FALSE;
        const HRESULT loaded = module->Init(com::Bstr(kDefinition).Get(), &done);
        SetErrorInfo(0, nullptr);
        loads_.Compare(result,
                       result.kind == check::Kind::ChannelDefinition ? result.kind
                                                                     : check::Kind::ModuleDefinition,
                       loaded == S_OK && done != VARIANT_FALSE, KnownBoxes(), bytes);
        module->Destroy();
        DeleteFileW(path.c_str());
    }

    /// A catalogue speaks when a point of each of its types is loaded.
    void CompareCatalogue(const std::wstring& text) {
        const std::string document = Utf8(text);
        const check::Result result = check::CheckText(document, {});
        const check::Catalogue types = check::ReadCatalogue(document);
        const Document catalogue = NewDocument();
        VARIANT_BOOL done = VARIANT_FALSE;
        const HRESULT loaded = catalogue->loadXML(com::Bstr(text).Get(), &done);
        if (loaded != S_OK || done == VARIANT_FALSE) {
            EXPECT_TRUE(result.HasErrors()) << document.substr(0, 4000);
            return;
        }
        com::Check(NewModule()->putref_XmlSNVTDoc(catalogue.Get()));
        std::wstring outputs;
        std::size_t count = 0;
        for (const std::string& id : types.Identifiers()) {
            const std::wstring name = L"A_" + std::to_wstring(count++);
            outputs += L"<" + name + L"><SNVTTYPE>" + FromUtf8(id) + L"</SNVTTYPE></" + name + L">";
        }
        const auto module = NewModule();
        const HRESULT used = module.As<ITamObject>()->LoadFromXmlStream(com::Bstr(Stream({}, outputs)).Get());
        SetErrorInfo(0, nullptr);
        loads_.Compare(result, check::Kind::Catalogue, used == S_OK, KnownBoxes(), document);
        module->Destroy();
        com::Check(NewModule()->putref_XmlSNVTDoc(GoodCatalogue().Get()));
    }

    void CompareProject(const std::wstring& text) {
        const std::string document = Utf8(text);
        check::StreamSummary stream;
        const check::Surroundings types(&goodTypes_);
        check::CheckText(Utf8(GoodText(Input::Kind::Stream)), types, &stream);
        check::Surroundings surroundings(&goodTypes_);
        surroundings.Add(stream);
        const check::Result result = check::CheckText(document, surroundings);
        com::Check(NewModule()->putref_XmlSNVTDoc(GoodCatalogue().Get()));
        const Document project = NewDocument();
        VARIANT_BOOL done = VARIANT_FALSE;
        project->loadXML(com::Bstr(text).Get(), &done);
        if (done == VARIANT_FALSE) {
            EXPECT_TRUE(result.HasErrors()) << document.substr(0, 4000);
            return;
        }
        const auto module = Loaded(GoodText(Input::Kind::Stream));
        const HRESULT loaded = module->XmlLoad(Root(project).Get());
        SetErrorInfo(0, nullptr);
        loads_.Compare(result, check::Kind::Project, loaded == S_OK, KnownBoxes(), document);
        module->Destroy();
    }

    void CompareInput(const Input& input) {
        switch (input.kind) {
        case Input::Kind::Definition:
            return CompareDefinition(input.bytes);
        case Input::Kind::Catalogue:
            return CompareCatalogue(input.text);
        case Input::Kind::Stream:
            com::Check(NewModule()->putref_XmlSNVTDoc(GoodCatalogue().Get()));
            return CompareStream(input.text, goodTypes_);
        case Input::Kind::Project:
            return CompareProject(input.text);
        case Input::Kind::Saved:
            return; // elements of other makers' blocks
        }
    }

    std::string samples_;
    check::Catalogue sampleTypes_;
    check::Catalogue goodTypes_;
    CheckedLoads loads_;
};

TEST_F(CheckedLoadTest, HoldsForTheCorpus) {
    for (const std::wstring& name : Corpus()) {
        SCOPED_TRACE(Utf8(name));
        CompareInput(FromFile(name));
    }
    loads_.Print();
}

TEST_F(CheckedLoadTest, HoldsForTheSamples) {
    com::Check(NewModule()->putref_XmlSNVTDoc(Parse(FromUtf8(samples_)).Get()));
    for (const wchar_t* name :
         {L"full", L"channels", L"oddities", L"damaged", L"missing_name", L"duplicate_attribute"}) {
        SCOPED_TRACE(Utf8(name));
        CompareStream(FromUtf8(ReadFile(SamplesFolder() + L"streams\\" + name + L".xml")), sampleTypes_);
    }
    loads_.Print();
}

TEST_F(CheckedLoadTest, HoldsForWildlyChangedDocuments) {
    RunRounds(Dog(), SeedOfUser(kSeed), kWildRounds, [this](Random& random, const std::string& what) {
        Input input = Changed(random);
        while (input.kind == Input::Kind::Saved) {
            input = Changed(random); // no document that a host loads alone
        }
        Dog().Begin(input.bytes, what);
        CompareInput(input);
    });
    loads_.Print();
}

TEST_F(CheckedLoadTest, HoldsForDocumentsWithASmallChange) {
    const Document samples = Parse(FromUtf8(samples_));
    const std::wstring channels = FromUtf8(ReadFile(SamplesFolder() + L"streams\\channels.xml"));
    const std::wstring full = FromUtf8(ReadFile(SamplesFolder() + L"streams\\full.xml"));
    const std::wstring definition = FromUtf8(ReadFile(SamplesFolder() + L"O_Tam_id.xml"));
    RunRounds(Dog(), SeedOfUser(kSeed + 1), kSmallRounds, [&](Random& random, const std::string& what) {
        const std::size_t kind = random.Below(10);
        const std::wstring text = WithSmallChanges(kind < 4   ? channels
                                                   : kind < 5 ? full
                                                   : kind < 7 ? definition
                                                   : kind < 9 ? GoodText(Input::Kind::Project)
                                                              : GoodText(Input::Kind::Catalogue),
                                                   random);
        Dog().Begin(Utf8(text), what);
        if (kind < 5) {
            com::Check(NewModule()->putref_XmlSNVTDoc(samples.Get()));
            CompareStream(text, sampleTypes_);
        } else if (kind < 7) {
            CompareDefinition(Utf8(text));
        } else if (kind < 9) {
            CompareProject(text);
        } else {
            CompareCatalogue(text);
        }
    });
    loads_.Print();
    loads_.ExpectBothDirections(check::Kind::DeviceStream, 200, 400);
    loads_.ExpectBothDirections(check::Kind::ModuleDefinition, 80, 100);
    loads_.ExpectErrorsThatShow(check::Kind::Project, 4);
    loads_.ExpectErrorsThatShow(check::Kind::Catalogue, 6);
}

TEST_F(CheckedLoadTest, HoldsForEveryEncodingThatIsRead) {
    const auto compareIn = [this](const std::string& encoding) {
        SCOPED_TRACE(encoding);
        CompareDefinition("<?xml version=\"1.0\" encoding=\"" + encoding +
                          "\"?><AppObject><NAME>n</NAME><DataSizes/></AppObject>");
    };
    for (const char* encoding :
         {"UTF-8",        "US-ASCII",     "ISO-8859-1",   "ISO-8859-2",   "ISO-8859-3",   "ISO-8859-4",
          "ISO-8859-5",   "ISO-8859-6",   "ISO-8859-7",   "ISO-8859-8",   "ISO-8859-9",   "ISO-8859-11",
          "ISO-8859-13",  "ISO-8859-15",  "windows-1250", "windows-1251", "windows-1252", "windows-1253",
          "windows-1254", "windows-1255", "windows-1256", "windows-1257", "windows-1258"}) {
        compareIn(encoding);
    }
    EXPECT_EQ(23U, loads_.Count(check::Kind::ModuleDefinition, "passed, quiet"));
    // Not every parser loads these: an error of a definition, whatever this parser does.
    for (const char* encoding : {"ISO-8859-10", "ISO-8859-14", "ISO-8859-16", "KOI8-R", "windows-874",
                                 "IBM850", "TIS-620", "macintosh"}) {
        compareIn(encoding);
    }
    loads_.Print();
    EXPECT_EQ(23U, loads_.Count(check::Kind::ModuleDefinition, "passed, quiet"));
}

} // namespace

} // namespace component_fuzz
