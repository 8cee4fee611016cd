#include "common/Case.h"
#include "tests/fuzz/DocumentMutator.h"
#include "tests/fuzz/DocumentRounds.h"
#include "tests/fuzz/Texts.h"
#include "tests/internal/Channel.h"

#include <cstdio>
#include <cwchar>
#include <exception>

namespace component_fuzz {

namespace {

using namespace internal_tests;
using Node = com::Ref<IXMLDOMNode>;
using Texts = std::vector<std::wstring>;
using support::Document;

constexpr unsigned kSeed = 20250308;
constexpr unsigned kRounds = 300;
constexpr auto kNotSet = static_cast<HRESULT>(0x800A005B);

Tree GoodTree(const wchar_t* name) {
    const Document document = support::Parse(FromUtf8(ReadFile(std::wstring(TAM_FUZZ_DOCUMENTS) + name)));
    return TreeOf(Node(support::Root(document).Get()));
}

/// A changed document: its text parsed, or built where the text is no XML.
Document Changed(Tree tree, Random& random) {
    Mutate(tree, random);
    Document document = support::NewDocument();
    const com::Bstr text(Damage(tree, L"secret.txt", random));
    VARIANT_BOOL done = VARIANT_FALSE;
    com::Check(document->loadXML(text.Get(), &done));
    if (done == VARIANT_FALSE) {
        if (const auto root = Build(document, tree)) {
            Node appended;
            com::Check(document->appendChild(root.Get(), appended.Put()));
        }
    }
    return document;
}

/// The documents that the host keeps for channels: definitions of its blocks
/// and the libraries of a device.
class ChannelDocumentsTest : public InternalTest {
  protected:
    /// Calls check(random) for each round until one fails.
    template <class F>
    void ForEachRound(F&& check) {
        const unsigned seed = Setting(L"TAM_FUZZ_SEED", kSeed);
        const unsigned seconds = Setting(L"TAM_FUZZ_SECONDS", 0);
        const unsigned rounds = Setting(L"TAM_FUZZ_ROUNDS", seconds != 0 ? ~0u : kRounds);
        const ULONGLONG end = GetTickCount64() + seconds * 1000ull;
        unsigned round = 0;
        for (; round < rounds && (seconds == 0 || GetTickCount64() < end) && !HasFailure(); ++round) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
            Random random(seed, round);
            try {
                check(random);
            } catch (const std::exception& error) {
                ADD_FAILURE() << error.what();
            }
            Calls().clear();
            SetErrorInfo(0, nullptr);
        }
        std::printf("%u documents, seed %u\n", round, seed);
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
        EXPECT_EQ(result, hasRoot ? S_OK : kNotSet);
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
        return FAILED(result) ? result : library ? S_OK : kNotSet;
    }
};

TEST_F(ChannelDocumentsTest, HoldForChangedDefinitions) {
    const Tree good = GoodTree(L"good-channel.xml");
    ForEachRound([&](Random& random) {
        const Document definition = Changed(good, random);
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
    ForEachRound([&](Random& random) {
        const Document document = Changed(good, random);
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
