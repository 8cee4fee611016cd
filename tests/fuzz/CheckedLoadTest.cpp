// No surprise at load: what the checks pass without an error loads without a box and
// without a failing call, and each box or failure was an error of theirs before.

#include "bench/Text.h"
#include "check/Check.h"
#include "tests/fuzz/DocumentRounds.h"
#include "tests/fuzz/Rounds.h"
#include "tests/fuzz/SmallChanges.h"
#include "tests/support/TypeLibrary.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace component_fuzz {

namespace {

using namespace support;
using bench::Utf8;

constexpr unsigned kSeed = 20261122;
constexpr unsigned kWildRounds = 1500;
constexpr unsigned kSmallRounds = 3000;

constexpr const wchar_t* kDefinition = L"Checked";

std::string Shown(const check::Result& result) {
    std::string text;
    for (const check::Finding& finding : result.findings) {
        if (finding.Level() == check::Severity::Error) {
            text += std::to_string(finding.line) + ":" + std::to_string(finding.column) + " " +
                    std::string(check::RuleOf(finding.rule).name) + ": " + finding.message + "\n";
        }
    }
    return text;
}

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

    static std::wstring SamplesFolder() {
        wchar_t folder[MAX_PATH] = L"";
        GetEnvironmentVariableW(L"TAM_SAMPLES", folder, MAX_PATH);
        return std::wstring(folder) + L"\\";
    }

    /// Compares what the checks say with what the component did.
    void Compare(const check::Result& result, check::Kind kind, bool isLoaded, const std::string& document) {
        const auto boxes = KnownBoxes();
        if (result.kind != kind && result.kind != check::Kind::Unknown && !result.HasErrors()) {
            ++tally_["another kind of document"];
            return; // a good one, that no host would load here
        }
        const bool isQuiet = isLoaded && boxes.empty();
        tally_[std::string(check::NameOf(result.kind)) + (result.HasErrors() ? ", errors, " : ", passed, ") +
               (!isLoaded       ? "failed"
                : boxes.empty() ? "quiet"
                                : "boxes")]++;
        EXPECT_TRUE(isQuiet || result.HasErrors())
            << (isLoaded ? "" : "the call failed; ")
            << (boxes.empty() ? std::string() : "a box: " + Utf8(boxes.front().text)) << "\n"
            << document.substr(0, 4000);
        for (const bench::Box& box : boxes) {
            EXPECT_TRUE(IsExplained(result, box)) << Utf8(box.text) << "\n" << Shown(result);
        }
    }

    /// Whether an error says what the box says: of that type, or of that point's list.
    static bool IsExplained(const check::Result& result, const bench::Box& box) {
        const std::string text = Utf8(box.text);
        constexpr std::string_view kNoNode = "Can't find the node related to SNVT ID ";
        const bool isType = text.starts_with(kNoNode);
        const bool isList = text.find(": SNVT Compatibility list not defined") != std::string::npos;
        const bool isBroken =
            std::any_of(result.findings.begin(), result.findings.end(), [](const check::Finding& finding) {
                return finding.rule <= check::RuleId::XmlSpace;
            });
        return isBroken || std::any_of(result.findings.begin(), result.findings.end(),
                                       [&](const check::Finding& finding) {
                                           if (finding.Level() != check::Severity::Error) {
                                               return false;
                                           }
                                           if (isType) {
                                               return finding.rule == check::RuleId::TypeUnknown ||
                                                      finding.rule == check::RuleId::TextSplit ||
                                                      finding.rule == check::RuleId::ElementInText ||
                                                      finding.rule == check::RuleId::InstructionInside;
                                           }
                                           if (isList) {
                                               return finding.rule == check::RuleId::ListEmpty ||
                                                      finding.rule == check::RuleId::TypeEmpty ||
                                                      finding.rule == check::RuleId::TextSplit ||
                                                      finding.rule == check::RuleId::ElementInText ||
                                                      finding.rule == check::RuleId::InstructionInside;
                                           }
                                           return true;
                                       });
    }

    void CompareStream(const std::wstring& text, const check::Catalogue& types) {
        const std::string document = Utf8(text);
        const check::Surroundings surroundings(&types);
        const check::Result result = check::CheckText(document, surroundings);
        const auto module = NewModule();
        const HRESULT loaded = module.As<ITamObject>()->LoadFromXmlStream(com::Bstr(text).Get());
        SetErrorInfo(0, nullptr);
        Compare(result, check::Kind::DeviceStream, loaded == S_OK, document);
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
        Compare(result,
                result.kind == check::Kind::ChannelDefinition ? result.kind : check::Kind::ModuleDefinition,
                loaded == S_OK && done != VARIANT_FALSE, bytes);
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
        Compare(result, check::Kind::Catalogue, used == S_OK, document);
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
        Compare(result, check::Kind::Project, loaded == S_OK, document);
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

    void PrintTally() const {
        for (const auto& [what, count] : tally_) {
            std::printf("%8u %s\n", count, what.c_str());
        }
    }

    std::string samples_;
    check::Catalogue sampleTypes_;
    check::Catalogue goodTypes_;
    std::map<std::string, unsigned> tally_;
};

TEST_F(CheckedLoadTest, HoldsForTheCorpus) {
    for (const std::wstring& name : Corpus()) {
        SCOPED_TRACE(Utf8(name));
        CompareInput(FromFile(name));
    }
    PrintTally();
}

TEST_F(CheckedLoadTest, HoldsForTheSamples) {
    com::Check(NewModule()->putref_XmlSNVTDoc(Parse(FromUtf8(samples_)).Get()));
    for (const wchar_t* name :
         {L"full", L"channels", L"oddities", L"damaged", L"missing_name", L"duplicate_attribute"}) {
        SCOPED_TRACE(Utf8(name));
        CompareStream(FromUtf8(ReadFile(SamplesFolder() + L"streams\\" + name + L".xml")), sampleTypes_);
    }
    PrintTally();
}

TEST_F(CheckedLoadTest, HoldsForWildlyChangedDocuments) {
    RunRounds(Dog(), kSeed, kWildRounds, [this](Random& random, const std::string& what) {
        const Input input = Changed(random);
        Dog().Begin(input.bytes, what);
        CompareInput(input);
    });
    PrintTally();
}

TEST_F(CheckedLoadTest, HoldsForDocumentsWithASmallChange) {
    com::Check(NewModule()->putref_XmlSNVTDoc(Parse(FromUtf8(samples_)).Get()));
    const std::wstring stream = FromUtf8(ReadFile(SamplesFolder() + L"streams\\channels.xml"));
    const std::string definition = ReadFile(SamplesFolder() + L"O_Tam_id.xml");
    RunRounds(Dog(), kSeed + 1, kSmallRounds, [&](Random& random, const std::string& what) {
        if (random.OneIn(5)) {
            const std::string bytes = Utf8(WithSmallChanges(FromUtf8(definition), random));
            Dog().Begin(bytes, what);
            CompareDefinition(bytes);
            return;
        }
        const std::wstring text = WithSmallChanges(stream, random);
        Dog().Begin(Utf8(text), what);
        CompareStream(text, sampleTypes_);
    });
    PrintTally();
}

TEST_F(CheckedLoadTest, HoldsForEveryEncodingThatIsRead) {
    for (const char* encoding :
         {"UTF-8",        "US-ASCII",     "ISO-8859-1",   "ISO-8859-2",   "ISO-8859-3",
          "ISO-8859-4",   "ISO-8859-5",   "ISO-8859-6",   "ISO-8859-7",   "ISO-8859-8",
          "ISO-8859-9",   "ISO-8859-13",  "ISO-8859-15",  "windows-1250", "windows-1251",
          "windows-1252", "windows-1253", "windows-1254", "windows-1255", "windows-1256",
          "windows-1257", "windows-1258", "ISO-8859-10",  "ISO-8859-14",  "ISO-8859-16"}) {
        SCOPED_TRACE(encoding);
        CompareDefinition("<?xml version=\"1.0\" encoding=\"" + std::string(encoding) +
                          "\"?><AppObject><NAME>n</NAME><DataSizes/></AppObject>");
    }
    PrintTally();
}

} // namespace

} // namespace component_fuzz
