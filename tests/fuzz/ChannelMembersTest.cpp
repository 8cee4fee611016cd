#include "tests/fuzz/RandomCalls.h"
#include "tests/internal/Channel.h"

#include <optional>
#include <string>

// Any calls of the object manager, of channel objects with their points and
// collections, of the interceptor that their host holds, and of the module that
// they mirror to. The host's own objects answer whatever they were given.

namespace component_fuzz {

using namespace internal_tests;
using internal_tests::Double; // not the reader of a number

namespace {

constexpr unsigned kSequences = 30;
constexpr int kCalls = 150;

constexpr const wchar_t* kDefinition =
    L"<AppObject><TAMConfig><InReferences><InReference Name='In1' Visible='0'/></InReferences>"
    L"<OutReferences><OutReference Name='Out' Visible='1'/></OutReferences>"
    L"<Attributes><Attrib Name='Gain' Visible='1' UnitDependent='1' Differential='1'/></Attributes>"
    L"</TAMConfig></AppObject>";

class ChannelMembersFuzzTest : public InternalTest {
  protected:
    void SetUp() override {
        InternalTest::SetUp();
        SetCatalogue(L"<SNVT_105><Name>Temperature</Name><Type>SignedNumeric</Type></SNVT_105>");
        watchdog_.emplace(KeepFile(L"channel-calls.txt"));
        document_ = support::Parse(L"<O_Tam_ai_id><UserName>a</UserName></O_Tam_ai_id>");
        // A manager that was told no context ends the process at its next call.
        calls_.Spare(__uuidof(ITamObjectManager), L"Init");
        Watcher().OnBox([](HWND window, const bench::Box& box) {
            return !box.isMessageBox && PostMessageW(window, WM_COMMAND, IDCANCEL, 0) != FALSE;
        });
    }
    void TearDown() override {
        watchdog_.reset();
        document_.Reset();
        InternalTest::TearDown();
    }

    void Run(Random& random, bool tells) {
        Begin();
        for (int call = 0; call < kCalls && !HasFailure(); ++call) {
            calls_.CallOne(random, tells);
            Calls().clear();
            if (random.OneIn(10)) {
                Boxes();
            }
        }
        End();
        EXPECT_EQ(Dll().CanUnload(), S_OK) << "objects of the component are still alive";
        EXPECT_EQ(DoublesAlive(), 0) << "a host object is still held, or was released too often";
    }

    Watchdog& Dog() { return *watchdog_; }

  private:
    /// A channel of a device whose module has items of the channel's names.
    void Begin() {
        MakeDoubles();
        SetDefinition(kDefinition);
        const std::wstring point = L"<SNVTTYPE>105</SNVTTYPE>";
        const auto module = Loaded(
            support::Stream(L"<AI3_In1/><AI3_In2/>", L"<AI3_Out>" + point + L"</AI3_Out>",
                            L"<AI3_Gain>" + point + L"</AI3_Gain><AI3_Setup>" + point + L"</AI3_Setup>"));
        device->On(L"Container", [module](const Invocation& call) { return call.Answer(module.Get()); });
        const auto object = Created();
        calls_.Keep(NewManager().As<IDispatch>());
        calls_.Keep(object.As<IDispatch>());
        calls_.Keep(Interceptor().As<IDispatch>());
        calls_.Keep(module.As<IDispatch>());
        for (const Double& host : {device, context, generic.object, in1, out, gain}) {
            calls_.Offer(host->As<IDispatch>());
        }
        calls_.Offer(document_.As<IDispatch>());
        calls_.Offer(support::Root(document_).As<IDispatch>());
    }

    void End() {
        calls_.End();
        ForgetWhatWasPut();
        ForgetDoubles();
        Calls().clear();
        Boxes();
    }

    RandomCalls calls_;
    support::Document document_;
    std::optional<Watchdog> watchdog_;
};

TEST_F(ChannelMembersFuzzTest, HoldsForCallsInAnyOrder) {
    RunSequences(Dog(), kSequences, [this](Random& random, bool tells) { Run(random, tells); });
}

} // namespace

} // namespace component_fuzz
