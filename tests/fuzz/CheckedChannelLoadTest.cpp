// No surprise at load: the documents that a host keeps for channels, changed at random, before
// the checks and the component.

#include "check/Check.h"
#include "tests/fuzz/CheckedLoads.h"
#include "tests/fuzz/DocumentMutator.h"
#include "tests/fuzz/DocumentRounds.h"
#include "tests/fuzz/Rounds.h"
#include "tests/fuzz/SmallChanges.h"
#include "tests/internal/Channel.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace component_fuzz {

namespace {

using namespace internal_tests;

constexpr unsigned kSeed = 20261123;
constexpr unsigned kRounds = 500;

class CheckedChannelLoadTest : public InternalTest {
  protected:
    void SetUp() override {
        InternalTest::SetUp();
        types_ = check::ReadCatalogue(ReadFile(SamplesFolder() + L"catalogue.xml"));
        watchdog_.emplace(KeepFile(L"checked-channel-document.txt"));
    }
    void TearDown() override {
        watchdog_.reset();
        InternalTest::TearDown();
    }

    /// Half of the rounds change a good document as a person does, the others as nobody would.
    template <class F>
    void ForEachRound(const std::vector<std::wstring>& good, F&& compare) {
        std::vector<Tree> trees;
        for (const std::wstring& text : good) {
            const support::Document document = support::Parse(text);
            trees.push_back(TreeOf(com::Ref<IXMLDOMNode>(support::Root(document).Get())));
        }
        RunRounds(*watchdog_, SeedOfUser(kSeed), kRounds, [&](Random& random, const std::string& what) {
            const std::size_t which = random.Below(good.size());
            std::wstring text;
            if (random.OneIn(2)) {
                text = WithSmallChanges(good[which], random);
            } else {
                Tree tree = trees[which];
                Mutate(tree, random);
                text = Damage(tree, L"nowhere.txt", random);
            }
            watchdog_->Begin(Utf8(text), what);
            compare(text);
            Calls().clear();
            SetErrorInfo(0, nullptr);
        });
        loads_.Print();
    }

    /// What the host's own parser makes of a text; nothing when it refuses it.
    static support::Document Parsed(const std::wstring& text) {
        support::Document document = support::NewDocument();
        VARIANT_BOOL done = VARIANT_FALSE;
        com::Check(document->loadXML(com::Bstr(text).Get(), &done));
        return done != VARIANT_FALSE ? document : support::Document();
    }

    void CompareDefinition(const std::wstring& text) {
        const std::string document = Utf8(text);
        const check::Result result = check::CheckText(document, check::Surroundings(&types_));
        bool isLoaded = false;
        if (const support::Document definition = Parsed(text)) {
            library->On(L"DefinitionDocument",
                        [definition](const Invocation& call) { return call.Answer(definition.Get()); });
            const auto object = NewChannel(L"AI3", Device().Get());
            isLoaded = object->Create() == S_OK && IsAnswered();
        }
        loads_.Compare(result, check::Kind::ChannelDefinition, isLoaded, Boxes(), document);
    }
    /// Both questions that the definition answers for an attribute.
    bool IsAnswered() {
        const auto attribute = gain->As<IAttribute>();
        VARIANT_BOOL answer = VARIANT_FALSE;
        VARIANT_BOOL isHandled = VARIANT_FALSE;
        return Interceptor()->InterceptIsUnitsDependent(attribute.Get(), &answer, &isHandled) == S_OK &&
               Interceptor()->InterceptIsDifferential(attribute.Get(), &answer, &isHandled) == S_OK;
    }

    void CompareLibrary(const std::wstring& text) {
        const std::string document = Utf8(text);
        const check::Result result = check::CheckText(document, {});
        bool isLoaded = false;
        if (const support::Document parsed = Parsed(text)) {
            const std::vector<std::wstring> versions = VersionsOf(parsed);
            context->Set(L"Document", parsed.Get());
            isLoaded = std::all_of(versions.begin(), versions.end(),
                                   [&](const std::wstring& version) { return IsSearched(version); });
        }
        loads_.Compare(result, check::Kind::DeviceLibrary, isLoaded, Boxes(), document);
    }
    static std::vector<std::wstring> VersionsOf(const support::Document& document) {
        std::vector<std::wstring> versions;
        com::Ref<IXMLDOMNodeList> list;
        com::Check(document->selectNodes(com::Bstr(L"Device/FWVersion/*").Get(), list.Put()));
        for (com::Ref<IXMLDOMNode> element; list->nextNode(element.Put()) == S_OK;) {
            com::Bstr name;
            com::Check(element->get_nodeName(name.Put()));
            versions.emplace_back(name.View());
        }
        return versions;
    }
    /// Whether a device with this firmware can ask for channel objects.
    bool IsSearched(const std::wstring& version) {
        context->Set(L"FirmwareVersion", version);
        VARIANT_BOOL answer = VARIANT_FALSE;
        return NewManager()->IsTamInternalObject(com::Bstr(L"o_tam_ai_id").Get(), &answer) == S_OK;
    }

    CheckedLoads loads_;

  private:
    check::Catalogue types_;
    std::optional<Watchdog> watchdog_;
};

TEST_F(CheckedChannelLoadTest, HoldsForDefinitions) {
    ForEachRound({FromUtf8(ReadFile(CorpusFolder() + L"good-channel.xml")),
                  FromUtf8(ReadFile(SamplesFolder() + L"channels\\O_Tam_AO_id.xml")),
                  FromUtf8(ReadFile(SamplesFolder() + L"channels\\O_Tam_AI_id.xml"))},
                 [&](const std::wstring& text) { CompareDefinition(text); });
    loads_.ExpectBothDirections(check::Kind::ChannelDefinition, 30, 100);
}

TEST_F(CheckedChannelLoadTest, HoldsForLibraries) {
    ForEachRound(
        {FromUtf8(ReadFile(CorpusFolder() + L"good-library.xml")),
         L"<?xml version=\"1.0\"?>\n<Device>\n  <Stream>streams/channels.xml</Stream>\n  <FWVersion>\n"
         L"    <V1_00>\n      <Objects>\n        <Library>\n          <o_tam_ai_id/>\n"
         L"          <o_tam_id/>\n        </Library>\n      </Objects>\n    </V1_00>\n    <V2_10>\n"
         L"      <Objects>\n        <Library>\n          <O_Tam_id/>\n        </Library>\n"
         L"      </Objects>\n    </V2_10>\n  </FWVersion>\n</Device>\n"},
        [&](const std::wstring& text) { CompareLibrary(text); });
}

} // namespace

} // namespace component_fuzz
