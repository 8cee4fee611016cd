#include "common/resource.h"
#include "tests/fuzz/DocumentRounds.h"
#include "tests/fuzz/Resources.h"
#include "tests/internal/Channel.h"
#include "tests/Wine.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

// The whole life of a module, and of a channel object of the device that has
// it, over and over: what the process holds of the system stays the same. Every
// tenth module is edited in an editor, too. Of each label in that Wine's common
// controls keep a block of twelve bytes, which is taken off what is held there.

namespace component_fuzz {

using namespace support;

namespace {

constexpr unsigned kRounds = 1000;
/// What is made once, and what the system keeps for the next time, is there
/// after so many.
constexpr unsigned kWarmUp = 100;
constexpr unsigned kLines = 10;
constexpr unsigned kRoundsForAnEditor = 10;
/// Three pointers.
constexpr std::size_t kKeptOfALabel = 3 * sizeof(void*);
/// What system libraries may have cached once more, however long the run is:
/// far fewer than there are editors in it, or rounds.
constexpr std::size_t kMoreBlocks = 20;
constexpr std::size_t kMoreBytes = 4096;
/// Memory comes in pages. A small block takes up several times its size, with the
/// heap's part of it and what the count of blocks notes: some 150 bytes in Wine 10.
constexpr std::size_t kMorePrivateBytes = std::size_t{1} << 20;
constexpr std::size_t kPrivateOfALabel = 256;

/// An attribute, the keys that go to a control of its editor, and what it holds
/// after them and OK.
struct Edit {
    const wchar_t* attribute;
    int control;
    UINT message;
    const wchar_t* keys;
    const wchar_t* value;
};
constexpr std::array kEdits = {
    Edit{L"AI1_Gain", IDC_NEW_VALUE, WM_CHAR, L"23.5", L"23.5"},
    Edit{L"AI1_Label", IDC_NEW_VALUE, WM_CHAR, L"Hall", L"Hall"},
    Edit{L"AI1_Bits", IDC_BIT, WM_KEYDOWN, L" ", L"4"}, // 5 without its lowest bit
};

BOOL CALLBACK CountLabel(HWND control, LPARAM labels) {
    wchar_t name[8] = {};
    GetClassNameW(control, name, 8);
    if (std::wstring(name) == L"Static") {
        ++*reinterpret_cast<std::size_t*>(labels);
    }
    return TRUE;
}

void PrintHead() {
    std::printf("%10s %10s %12s %12s %8s %9s %8s\n", "rounds", "blocks", "bytes", "private", "handles",
                "graphics", "windows");
}

void Print(unsigned rounds, const Resources& held) {
    std::printf("%10u %10zu %12zu %12zu %8zu %9zu %8zu\n", rounds, held.heap.count, held.heap.bytes,
                held.privateBytes, held.handles, held.graphics, held.windows);
    std::fflush(stdout);
}

class SoakTest : public internal_tests::InternalTest {
  protected:
    void SetUp() override {
        // They stay for as long as the test, so they come before the count of host objects.
        UseCompiler();
        UseDatabaseLocation();
        InternalTest::SetUp();
        const std::wstring& folder = CorpusFolder();
        stream_ = FromUtf8(ReadFile(folder + L"good-stream.xml"));
        project_ = FromUtf8(ReadFile(folder + L"good-project.xml"));
        definition_.emplace(Component::Folder() + L"Valve.xml",
                            FromUtf8(ReadFile(folder + L"good-definition.xml")));
        catalogue_ = Parse(FromUtf8(ReadFile(folder + L"good-catalogue.xml")));
        device->On(L"Container",
                   [this](const auto& call) { return call.Answer(static_cast<IUnknown*>(module_.Get())); });
        generic.object->On(L"XMLSave", [](const auto& call) {
            const auto target = com::Query<IXMLDOMDocument2>(call.Input(1).pdispVal);
            const auto parent = com::Query<IXMLDOMNode>(call.Input(0).pdispVal);
            tam::dom::AppendText(target, tam::dom::Node(tam::dom::Append(target, parent, L"AI")), L"Name",
                                 L"Level");
            return S_OK;
        });
    }
    void TearDown() override {
        module_.Reset();
        catalogue_.Reset();
        definition_.reset();
        InternalTest::TearDown();
    }

    /// Labels of all editors so far.
    std::size_t Labels() const noexcept { return labels_; }

    /// As a user does: the whole text is marked, typed over, and confirmed.
    void EditInEditor(const com::Ref<IAttributes>& attributes, const Edit& edit) {
        Watcher().OnBox([&](HWND window, const bench::Box& box) {
            if (box.isMessageBox) {
                return false;
            }
            EnumChildWindows(window, &CountLabel, reinterpret_cast<LPARAM>(&labels_));
            const HWND control = GetDlgItem(window, edit.control);
            PostMessageW(control, EM_SETSEL, 0, -1);
            for (const wchar_t* key = edit.keys; *key != L'\0'; ++key) {
                PostMessageW(control, edit.message, *key, 1);
            }
            return PostMessageW(window, WM_COMMAND, IDOK, 0) != FALSE;
        });
        const auto attribute = Item(attributes, &IAttributes::get_Item, edit.attribute);
        com::Check(attribute->SetValue());
        Watcher().OnBox(nullptr);
        EXPECT_EQ(Boxes().size(), 1u) << "the editor and no message";
        ASSERT_EQ(Text(attribute, &IAttribute::get_Value), edit.value);
    }

    /// Creates a channel object of the module's device, changes values in it
    /// and in the host, which the module takes over, saves, loads and ends it.
    void LiveChannel(const com::Ref<IAppObject>& module) {
        module_ = module;
        const auto object = NewChannel(L"AI1", Device().Get());
        com::Check(object->Create());
        const auto mirrored = internal_tests::AttributeOf(module, L"AI1_Gain");
        com::Check(Put(internal_tests::AttributeOf(object, L"Gain"), &IAttribute::put_Value, L"24.5"));
        ASSERT_EQ(gain->Value(L"Value"), L"\"24.5\"");
        ASSERT_EQ(Text(mirrored, &IAttribute::get_Value), L"24.5");
        gain->Set(L"Value", L"25.5");
        VARIANT_BOOL handled = VARIANT_FALSE;
        com::Check(Interceptor()->InterceptAttributeValueChanged(gain->As<IAttribute>().Get(), &handled));
        ASSERT_EQ(Text(mirrored, &IAttribute::get_Value), L"25.5");
        com::Check(internal_tests::OutputOf(object, L"Out")->put_IsDisplayable(VARIANT_FALSE));
        ASSERT_FALSE(Flag(internal_tests::OutputOf(module, L"AI1_Out"), &IOutput::get_IsDisplayable));

        const Document document = Parse(L"<Project/>");
        const auto root = Root(document);
        com::Check(object->XMLSave(root.Get(), document.Get()));
        const auto saved = tam::dom::Select(tam::dom::Node(root.Get()), L"AI[DevKey='DEV7']");
        ASSERT_TRUE(saved);
        com::Check(object->XmlLoad(saved.Get()));
        ASSERT_TRUE(com::SameObject(generic.object->Kept<IUnknown>(L"XmlLoad").Get(), saved.Get()));
        com::Check(object->Destroy());
        for (const wchar_t* given : {L"XmlLoad", L"RegisterInterceptor"}) {
            generic.object->Set(given, 0L); // as hosts let go of them
        }
        Calls().clear();
        module_.Reset();
    }

    /// Creates a module, loads it, edits it, saves it, exports it, ends it.
    void Live(unsigned round) {
        const auto module = NewModule();
        ASSERT_TRUE(module);
        com::Check(module->putref_XmlSNVTDoc(catalogue_.Get()));
        VARIANT_BOOL done = VARIANT_FALSE;
        com::Check(module->Init(com::Bstr(L"Valve").Get(), &done));
        ASSERT_EQ(done, VARIANT_TRUE);
        com::Check(Put(module, &IAppObject::put_GlobalKey, L"G"));
        com::Check(module.As<ITamObject>()->LoadFromXmlStream(com::Bstr(stream_).Get()));
        com::Check(module->XmlLoad(Root(Parse(project_)).Get()));

        const auto attributes = Object(module, &IAppObject::get_Attributes);
        const auto value = Item(attributes, &IAttributes::get_Item, L"AI1_Gain");
        ASSERT_EQ(Text(value, &IAttribute::get_Value), L"21.5");
        com::Check(Put(value, &IAttribute::put_Value, L"22.5"));
        ASSERT_EQ(Text(value, &IAttribute::get_DispValue), L"converted label");
        const auto input = Item(Object(module, &IAppObject::get_Inputs), &IInputs::get_Item, L"1");
        com::Check(Put(input, &IInput::put_Value, L"AI1_Out"));
        com::Check(module->ClearReferences());
        if (round % kRoundsForAnEditor == 0) {
            EditInEditor(attributes, kEdits.at(round / kRoundsForAnEditor % kEdits.size()));
        }
        LiveChannel(module);

        const Document document = Parse(L"<Project/>");
        const auto root = Root(document);
        com::Check(module->XMLSave(root.Get(), document.Get()));
        com::Check(module->XMLSaveForInteroperability(root.Get(), document.Get()));
        com::Bstr exported;
        com::Check(module->get_Stream(exported.Put()));
        ASSERT_EQ(exported.View(), L"compiled");
        com::Check(module->Destroy());
        UseCompiler().calls.clear();
        Units().asked.clear();
        Units().labelAsked.clear();
        EXPECT_TRUE(Boxes().empty());
    }

    void Live(unsigned from, unsigned to) {
        for (unsigned round = from; round < to && !HasFatalFailure(); ++round) {
            Live(round);
        }
        EXPECT_EQ(Dll().CanUnload(), S_OK);
    }

  private:
    std::wstring stream_;
    std::wstring project_;
    std::optional<TextFile> definition_;
    Document catalogue_;
    /// What has the channel of the device.
    com::Ref<IAppObject> module_;
    std::size_t labels_ = 0;
};

// The measure itself: it sees what is kept.
TEST(SoakResourcesTest, CountsWhatIsKept) {
    constexpr std::size_t kKept = 100;
    Resources::Now();
    const Resources before = Resources::Now();
    std::array<com::Bstr, kKept> texts;
    std::array<std::unique_ptr<int>, kKept> numbers;
    std::array<HANDLE, kKept> events{};
    std::array<HBRUSH, kKept> brushes{};
    for (std::size_t i = 0; i < kKept; ++i) {
        texts.at(i) = com::Bstr(L"text");
        numbers.at(i) = std::make_unique<int>(1);
        events.at(i) = CreateEventW(nullptr, TRUE, FALSE, nullptr);
        brushes.at(i) = CreateSolidBrush(RGB(1, 2, 3));
    }
    const HWND window =
        CreateWindowW(L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    const Resources kept = Resources::Now();
    DestroyWindow(window);
    for (std::size_t i = 0; i < kKept; ++i) {
        CloseHandle(events.at(i));
        DeleteObject(brushes.at(i));
    }
    EXPECT_GE(kept.heap.count, before.heap.count + 2 * kKept);
    EXPECT_GE(kept.heap.bytes, before.heap.bytes + kKept * (sizeof L"text" + sizeof(int)));
    EXPECT_GE(kept.handles, before.handles + kKept);
    EXPECT_GE(kept.graphics, before.graphics + kKept);
    EXPECT_GT(kept.windows, before.windows); // more than one: an input method has its own
}

TEST_F(SoakTest, HoldsNoMoreAfterManyRounds) {
    const unsigned rounds = Setting(L"TAM_SOAK_ROUNDS", kRounds);
    PrintHead(); // first: what is printed first makes the buffer of all output
    Live(0, 1);
    Resources::Now(); // all modules are there
    Live(1, kWarmUp);
    const Resources before = Resources::Now();
    Print(kWarmUp, before);
    const std::size_t labelsBefore = Labels();
    Resources now = before;
    unsigned done = 0;
    for (unsigned line = 1; line <= kLines && !HasFailure(); ++line) {
        const unsigned upTo = static_cast<unsigned>(std::uint64_t{rounds} * line / kLines);
        Live(done, upTo);
        done = upTo;
        now = Resources::Now();
        Print(kWarmUp + done, now);
    }
    const std::size_t labels = tests::IsWine() ? Labels() - labelsBefore : 0;
    std::printf("labels of editors: %zu\n", labels);
    EXPECT_LE(now.heap.count, before.heap.count + labels + kMoreBlocks);
    EXPECT_LE(now.heap.bytes, before.heap.bytes + kKeptOfALabel * labels + kMoreBytes);
    EXPECT_LE(now.privateBytes, before.privateBytes + kPrivateOfALabel * labels + kMorePrivateBytes);
    EXPECT_EQ(now.handles, before.handles);
    EXPECT_EQ(now.graphics, before.graphics);
    EXPECT_EQ(now.windows, before.windows);
}

} // namespace

} // namespace component_fuzz
