#include "core/Case.h"
#include "tests/fuzz/DocumentMutator.h"
#include "tests/fuzz/DocumentRounds.h"
#include "tests/fuzz/Rounds.h"
#include "tests/fuzz/Texts.h"
#include "tests/internal/Channel.h"

#include <cwchar>
#include <optional>
#include <string>
#include <vector>

namespace component_fuzz {

namespace {

using namespace internal_tests;
using Node = com::Ref<IXMLDOMNode>;
using Texts = std::vector<std::wstring>;
using support::Document;

constexpr unsigned kSeed = 20250308;
constexpr unsigned kRounds = 300;
constexpr const wchar_t* kSecret = L"SECRET-OF-ANOTHER-FILE";

Tree GoodTree(const wchar_t* name) {
    const Document document = support::Parse(FromUtf8(ReadFile(CorpusFolder() + name)));
    return TreeOf(Node(support::Root(document).Get()));
}

/// The documents that the host keeps for channels: definitions of its blocks
/// and the libraries of a device.
class ChannelDocumentsTest : public InternalTest {
  protected:
    void SetUp() override {
        InternalTest::SetUp();
        secretFile_.emplace(support::Component::Folder() + L"secret.txt", kSecret);
        watchdog_.emplace(KeepFile(L"channel-document.txt"));
    }
    void TearDown() override {
        watchdog_.reset();
        secretFile_.reset();
        InternalTest::TearDown();
    }

    /// Calls check(document, random) for each round until one fails.
    template <class F>
    void ForEachRound(const Tree& good, F&& check) {
        RunRounds(*watchdog_, kSeed, kRounds, [&](Random& random, const std::string& what) {
            Tree tree = good;
            Mutate(tree, random);
            const std::wstring text = Damage(tree, secretFile_->Path(), random);
            watchdog_->Begin(Utf8(text), what);
            check(Made(tree, text), random);
            for (const std::wstring& said : Said()) {
                EXPECT_EQ(said.find(kSecret), std::wstring::npos) << "another file has been read";
            }
            Calls().clear();
            SetErrorInfo(0, nullptr);
        });
    }
    /// The text parsed, or the tree built where the text is no XML.
    static Document Made(const Tree& tree, const std::wstring& text) {
        Document document = support::NewDocument();
        VARIANT_BOOL done = VARIANT_FALSE;
        com::Check(document->loadXML(com::Bstr(text).Get(), &done));
        if (done == VARIANT_FALSE) {
            if (const auto root = Build(document, tree)) {
                Node appended;
                com::Check(document->appendChild(root.Get(), appended.Put()));
            }
        }
        return document;
    }

    /// What a section of the configuration writes to the points of these names.
    static void AddWrites(const Node& configuration, const wchar_t* path, const Texts& points,
                          Texts& writes) {
        com::Ref<IXMLDOMNodeList> list;
        com::Check(configuration->selectNodes(com::Bstr(path).Get(), list.Put()));
        for (Node element; list->nextNode(element.Put()) == S_OK;) {
            const auto visible = tam::dom::Attribute(element, L"Visible");
            const std::wstring name = tam::dom::Attribute(element, L"Name").value_or(L"");
            for (const std::wstring& point : points) {
                if (visible && _wcsicmp(point.c_str(), name.c_str()) == 0 && point.size() == name.size()) {
                    writes.push_back(point + L".put Visible(" + (*visible == L"1" ? L"True" : L"False") +
                                     L")");
                }
            }
        }
    }
    static Texts ExpectedWrites(const Document& definition) {
        Texts writes;
        if (const Node configuration = tam::dom::Select(Node(definition.Get()), L"AppObject/TAMConfig")) {
            AddWrites(configuration, L"InReferences/InReference", {L"In1", L"In2"}, writes);
            AddWrites(configuration, L"OutReferences/OutReference", {L"Out", L"Alarm"}, writes);
            AddWrites(configuration, L"Attributes/Attrib", {L"Gain", L"Channel", L"Setup"}, writes);
        }
        return writes;
    }
    static Texts Writes() {
        Texts writes;
        for (const std::wstring& text : Said()) {
            if (text.find(L".put Visible(") != std::wstring::npos) {
                writes.push_back(text);
            }
        }
        return writes;
    }
    /// Whether values of Gain depend on units; `before` where nothing says so.
    static VARIANT_BOOL ExpectedFlag(const Document& definition, VARIANT_BOOL before) {
        const Node root(support::Root(definition).Get());
        const Node attribute = tam::dom::Select(root, L"TAMConfig/Attributes/Attrib[@Name=\"Gain\"]");
        if (!attribute) {
            return before;
        }
        return tam::dom::Attribute(attribute, L"UnitDependent") == L"1" ? VARIANT_TRUE : VARIANT_FALSE;
    }
    void CheckFlag(const Document& definition, VARIANT_BOOL before) {
        VARIANT_BOOL answer = before;
        VARIANT_BOOL handled = VARIANT_FALSE;
        const HRESULT result =
            Interceptor()->InterceptIsUnitsDependent(gain->As<IAttribute>().Get(), &answer, &handled);
        const bool hasRoot = static_cast<bool>(support::Root(definition));
        EXPECT_EQ(result, hasRoot ? S_OK : kObjectNotSet);
        EXPECT_EQ(answer, hasRoot ? ExpectedFlag(definition, before) : before);
    }
    /// How a search of the library ends.
    static HRESULT ExpectedSearch(const Document& document, const std::wstring& version, bool& isFound) {
        const com::Bstr path(L"Device/FWVersion/" + version + L"/Objects/Library");
        Node library;
        const HRESULT result = document->selectSingleNode(path.Get(), library.Put());
        isFound = library && tam::dom::AnyChild(library, [](const Node& child) {
                      com::Bstr name;
                      com::Check(child->get_nodeName(name.Put()));
                      return tam::dom::IsElement(child) && tam::LowerCase(name.View()) == L"o_tam_id";
                  });
        return FAILED(result) ? result : library ? S_OK : kObjectNotSet;
    }

  private:
    std::optional<support::TextFile> secretFile_;
    std::optional<Watchdog> watchdog_;
};

TEST_F(ChannelDocumentsTest, HoldForChangedDefinitions) {
    const Tree good = GoodTree(L"good-channel.xml");
    ForEachRound(good, [&](const Document& definition, Random&) {
        library->On(L"DefinitionDocument",
                    [definition](const Invocation& call) { return call.Answer(definition.Get()); });
        const auto object = NewChannel(L"AI3", Device().Get());
        Calls().clear();
        EXPECT_EQ(object->Create(), S_OK);
        EXPECT_EQ(Writes(), ExpectedWrites(definition));
        CheckFlag(definition, VARIANT_TRUE);
        CheckFlag(definition, VARIANT_FALSE);
    });
}

TEST_F(ChannelDocumentsTest, HoldForChangedLibraries) {
    const Tree good = GoodTree(L"good-library.xml");
    ForEachRound(good, [&](const Document& document, Random& random) {
        const std::wstring version = random.OneIn(4) ? AnyText(random) : L"V12";
        context->Set(L"Document", document.Get());
        context->Set(L"FirmwareVersion", version);
        bool isFound = false;
        const HRESULT expected = ExpectedSearch(document, version, isFound);
        const auto manager = NewManager();
        VARIANT_BOOL answer = VARIANT_TRUE;
        EXPECT_EQ(manager->IsTamInternalObject(com::Bstr(L"o_tam_ai_id").Get(), &answer), expected);
        EXPECT_EQ(answer, isFound ? VARIANT_TRUE : VARIANT_FALSE);
        EXPECT_EQ(manager->IsTamInternalObject(com::Bstr(L"o_tam_ai_id").Get(), &answer), S_OK)
            << "it is not searched again";
        EXPECT_EQ(answer, isFound ? VARIANT_TRUE : VARIANT_FALSE);
    });
}

} // namespace

} // namespace component_fuzz
