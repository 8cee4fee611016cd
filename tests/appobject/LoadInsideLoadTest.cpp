#include "tests/appobject/Module.h"
#include "tests/support/CalledFrom.h"
#include "tests/support/HostWindows.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

using namespace support;
using namespace modules;

namespace {

using Texts = std::vector<std::wstring>;

constexpr const wchar_t* kEndedText =
    L"The load was ended, because the object was loaded again or destroyed meanwhile";
constexpr const wchar_t* kType = L"<SNVTTYPE>105</SNVTTYPE>";
/// The turns that the stream below gives.
constexpr int kTurns = 6;

std::wstring Gain(const std::wstring& name) {
    return L"<" + name + L">" + kType + L"</" + name + L">";
}

/// Points of two streams never stand together, whatever a message of the host
/// calls while one is loaded.
class LoadInsideLoadTest : public ModuleTest {
  protected:
    com::Ref<IAppObject> module;

    void TearDown() override {
        module.Reset();
        ModuleTest::TearDown();
    }
    static std::wstring Outer() {
        return Stream(L"<In1/><In2/>", L"<Out1/><Out2/>", Gain(L"A1") + Gain(L"A2"), L"Outer");
    }
    static std::wstring Inner() { return Stream(L"<InB/>", L"<OutB/>", Gain(L"A1"), L"Inner"); }
    /// What loading the outer stream answers when the host does this at one of its turns.
    HRESULT LoadWhile(int turn, const std::function<void()>& action) const {
        bool ran = false;
        const Reposter host([&](int count) {
            if (count == turn) {
                ran = true;
                action();
            }
        });
        const auto* const before = module.Get();
        const HRESULT result = module.As<ITamObject>()->LoadFromXmlStream(com::Bstr(Outer()).Get());
        EXPECT_TRUE(ran);
        EXPECT_EQ(module.Get(), before);
        return result;
    }
    Texts Names() const {
        Texts names;
        for (long i = 1; i <= InputCount(module); ++i) {
            names.push_back(Text(Input(module, std::to_wstring(i)), &IInput::get_Name));
        }
        for (long i = 1; i <= OutputCount(module); ++i) {
            names.push_back(Text(Output(module, std::to_wstring(i)), &IOutput::get_Name));
        }
        for (long i = 1; i <= AttributeCount(module); ++i) {
            names.push_back(Text(Attribute(module, std::to_wstring(i)), &IAttribute::get_Name));
        }
        return names;
    }
    /// A load ends while a window of the host always has a message waiting, which is
    /// handled once a turn at most.
    void ExpectLoadedUnder(const HostWindow& window, const CalledFrom& = {}) {
        module = NewModule();
        EXPECT_EQ(Load(module, Outer()), S_OK);
        EXPECT_EQ(Names(), (Texts{L"In1", L"In2", L"Out1", L"Out2", L"A1", L"A2"}));
        EXPECT_GE(window.Handled(), 1);
        EXPECT_LE(window.Handled(), kTurns);
    }
    bool HasCollections() const {
        return Object(module, &IAppObject::get_Inputs) || Object(module, &IAppObject::get_Outputs) ||
               Object(module, &IAppObject::get_Attributes);
    }
};

TEST_F(LoadInsideLoadTest, LeavesThePointsOfTheLastStreamAlone) {
    for (int turn = 1; turn <= kTurns; ++turn) {
        module = Loaded(Stream(L"<In0/>", {}, Gain(L"Old")));
        const auto attributes = Object(module, &IAppObject::get_Attributes);
        EXPECT_EQ(LoadWhile(turn, [&] { EXPECT_EQ(Load(module, Inner()), S_OK); }), E_ABORT);
        EXPECT_EQ(LastError().description, kEndedText);
        EXPECT_EQ(Names(), (Texts{L"InB", L"OutB", L"Old", L"A1"})) << turn;
        EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Inner");
        EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Inner");
        EXPECT_TRUE(com::SameObject(Object(module, &IAppObject::get_Attributes).Get(), attributes.Get()))
            << "attributes are kept from stream to stream";
        ASSERT_EQ(Load(module, Stream(L"<In3/>", {}, Gain(L"New"))), S_OK);
        EXPECT_EQ(Names(), (Texts{L"In3", L"Old", L"A1", L"New"})) << turn;
    }
}

TEST_F(LoadInsideLoadTest, LeavesNoPointsWhenTheLastStreamIsNone) {
    for (int turn = 1; turn <= kTurns; ++turn) {
        module = Loaded(Stream(L"<In0/>", {}, Gain(L"Old")));
        EXPECT_EQ(LoadWhile(turn, [&] { EXPECT_EQ(Load(module, L"no XML"), kObjectNotSet); }), E_ABORT);
        EXPECT_EQ(Names(), (Texts{L"Old"})) << turn;
    }
}

TEST_F(LoadInsideLoadTest, EndsTwoLoadsForAThird) {
    // A message handled in a turn gives none, but the box that it shows does.
    module = NewModule();
    bool isOpen = false;
    Watcher().OnBox([&](HWND, const bench::Box&) {
        if (!std::exchange(isOpen, true)) {
            EXPECT_EQ(Load(module, Inner()), S_OK);
        }
        return false;
    });
    const std::wstring second = Stream(L"<InS/>", {}, L"<S><SNVTTYPE>999</SNVTTYPE></S>", L"Second");
    EXPECT_EQ(LoadWhile(6, [&] { EXPECT_EQ(Load(module, second), E_ABORT); }), E_ABORT);
    EXPECT_FALSE(Boxes().empty());
    EXPECT_EQ(Names(), (Texts{L"InB", L"OutB", L"A1"}));
    Watcher().OnBox({});
}

TEST_F(LoadInsideLoadTest, AddsNoPointWhoseDefinitionWasReadMeanwhile) {
    const std::wstring streams[] = {
        Stream(L"<In1><SNVTCompatibilityList></SNVTCompatibilityList></In1>"),
        Stream({}, L"<Out1><SNVTTYPE></SNVTTYPE></Out1>"),
        Stream({}, {}, L"<Bad><SNVTTYPE>999</SNVTTYPE></Bad>"),
    };
    for (const std::wstring& stream : streams) {
        module = NewModule();
        bool isOpen = false;
        Watcher().OnBox([&](HWND, const bench::Box&) {
            if (!std::exchange(isOpen, true)) {
                EXPECT_EQ(Load(module, Inner()), S_OK);
            }
            return false;
        });
        EXPECT_EQ(Load(module, stream), E_ABORT);
        EXPECT_TRUE(isOpen);
        EXPECT_FALSE(Boxes().empty());
        EXPECT_EQ(Names(), (Texts{L"InB", L"OutB", L"A1"}));
    }
    Watcher().OnBox({});
}

TEST_F(LoadInsideLoadTest, EndsWithDestroy) {
    for (int turn = 1; turn <= kTurns; ++turn) {
        module = Loaded(Stream(L"<In0/>", {}, Gain(L"Old")));
        EXPECT_EQ(LoadWhile(turn, [&] { EXPECT_EQ(module->Destroy(), S_OK); }), E_ABORT);
        EXPECT_EQ(LastError().description, kEndedText);
        EXPECT_FALSE(HasCollections()) << "nothing comes back";
        ASSERT_EQ(Load(module, Inner()), S_OK);
        EXPECT_EQ(Names(), (Texts{L"InB", L"OutB", L"A1"}));
    }
}

TEST_F(LoadInsideLoadTest, EndsWhenTheHostDestroysAndLoadsAgain) {
    module = Loaded(Stream({}, {}, Gain(L"Old")));
    EXPECT_EQ(LoadWhile(6,
                        [&] {
                            EXPECT_EQ(module->Destroy(), S_OK);
                            EXPECT_EQ(Load(module, Inner()), S_OK);
                        }),
              E_ABORT);
    EXPECT_EQ(Names(), (Texts{L"InB", L"OutB", L"A1"})) << "what Destroy dropped stays dropped";
}

TEST_F(LoadInsideLoadTest, GoesOnWhenTheHostReadsADefinition) {
    Define(L"Valve", L"<NAME>Valve</NAME>");
    Define(L"Pump", L"<NAME>Pump</NAME>");
    for (int turn = 1; turn <= kTurns; ++turn) {
        module = NewModule();
        ASSERT_TRUE(Init(module, L"Valve"));
        EXPECT_EQ(LoadWhile(turn, [&] { EXPECT_TRUE(Init(module, L"Pump")); }), S_OK);
        EXPECT_EQ(Names(), (Texts{L"In1", L"In2", L"Out1", L"Out2", L"A1", L"A2"})) << turn;
        EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Pump");
        EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Outer") << "Init keeps a user's name";
        EXPECT_EQ(Text(module, &IAppObject::get_UniqueIDString), L"Pump");
    }
}

TEST_F(LoadInsideLoadTest, GoesOnWhenTheHostReadsAProject) {
    for (int turn = 1; turn <= kTurns; ++turn) {
        module = NewModule();
        EXPECT_EQ(LoadWhile(turn,
                            [&] {
                                LoadProject(module, L"<O><UserName>Mine</UserName><OutReferences><Other>0"
                                                    L"</Other></OutReferences><DevKey>K</DevKey></O>");
                            }),
                  S_OK);
        EXPECT_EQ(Names(), (Texts{L"In1", L"In2", L"Out1", L"Out2", L"A1", L"A2"})) << turn;
        EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Mine");
        EXPECT_EQ(Text(module.As<ITamObject>(), &ITamObject::get_DeviceKey), L"K");
    }
}

TEST_F(LoadInsideLoadTest, EndsAProjectWhoseOutputsAreReplaced) {
    for (const int turn : {1, 2}) {
        module = Loaded(Stream({}, L"<OutB/>", {}, L"First"));
        const Reposter host([&](int count) {
            if (count == turn) {
                EXPECT_EQ(Load(module, Inner()), S_OK);
            }
        });
        LoadProject(module, L"<O><UserName>Mine</UserName><OutReferences><OutB>0</OutB><OutB>1</OutB>"
                            L"</OutReferences><UserName>Last</UserName></O>");
        ExpectOneReport(kEndedText, kLocation, L"Sub IAppObject_XmlLoad");
        EXPECT_FALSE(Flag(Output(module, L"OutB"), &IOutput::get_IsDisplayable));
        EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"Inner");
    }
}

TEST_F(LoadInsideLoadTest, BearsAHostThatDropsTheObject) {
    IAppObject* asked = nullptr;
    const auto dropping = [&](const std::function<HRESULT()>& call) {
        module = Loaded(Stream(L"<In1/>", L"<Out1/>"));
        asked = module.Get();
        const OnYield turn([&] { module.Reset(); });
        EXPECT_EQ(call(), S_OK);
        EXPECT_TRUE(turn.Ran());
        EXPECT_FALSE(module);
    };
    const com::Bstr stream(Outer());
    ITamObject* tam = nullptr;
    dropping([&] { return asked->ClearReferences(); });
    const auto project =
        Root(Parse(L"<O><OutReferences><Out1>1</Out1></OutReferences><DevKey>K</DevKey></O>"));
    dropping([&] { return asked->XmlLoad(project.Get()); });
    dropping([&] {
        tam = module.As<ITamObject>().Get(); // the object is the module's own
        return tam->LoadFromXmlStream(stream.Get());
    });
}

// Hosts whose queue never gets empty.

TEST_F(LoadInsideLoadTest, EndsForAWindowThatPostsItsMessageAgain) {
    const Reposter window;
    ExpectLoadedUnder(window);
    EXPECT_EQ(window.Handled(), kTurns);
}

TEST_F(LoadInsideLoadTest, EndsForATimerThatExpiresInItsHandler) {
    ExpectLoadedUnder(SlowTimer());
}

TEST_F(LoadInsideLoadTest, EndsForAWindowThatIsNeverValidated) {
    ExpectLoadedUnder(Unpainted());
}

} // namespace
